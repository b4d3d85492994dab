// clsTSDB: records between the file and memory.
#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/database/records/FieldValue.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm {

bool clsTSDB::readRecord(int32 Satznummer, bool plain) {
    auto& e = *engine_;
    e.d.guard.lookAnew();
    if (!e.d.store || !e.d.store.reaches(Satznummer)) return e.fail(DatabaseError::badRecord);
    e.d.read(Satznummer, e.c.felder.room());
    e.c.felder.loaded(plain);
    e.c.aktSatz = Satznummer;
    return true;
}

// A record that was found, as it was then.
bool clsTSDB::showRecord(int32 Satznummer) {
    auto& e = *engine_;
    e.d.refreshWhenDue();
    if (Satznummer == 0 || std::exchange(e.seenRecord, 0) != Satznummer) return readRecord(Satznummer);
    e.c.felder.room().swap(e.seen);
    e.c.felder.loaded();
    e.c.aktSatz = Satznummer;
    return true;
}

Text clsTSDB::GetSatz(int32 Satznummer, bool Gehezu) {
    const Working working(*this);
    auto& e = *engine_;
    if (e.d.layout.mixed()) raise(445, u"clsTSDB.GetSatz", kUnicodeFieldsRefused);
    try {
        if (readRecord(Satznummer, Gehezu)) return e.d.layout.text(e.c.felder.image());
    } catch (const Failure& failure) {
        e.fail(failure);
    }
    return {};
}

void clsTSDB::PutSatz(int32 Satznummer) {
    const Working working(*this);
    auto& e = *engine_;
    if (e.d.layout.mixed()) raise(445, u"clsTSDB.PutSatz", kUnicodeFieldsRefused);
    const auto out = e.writer.place(Satznummer, e.c.felder);
    if (!out) {
        e.fail(out.error);
        return;
    }
    e.c.aktSatz = Satznummer;
    recordChanged(Satznummer);
}

Text clsTSDB::GetField(int32 Satznummer, int32 FeldNummer) {
    const Working working(*this);
    auto& e = *engine_;
    const auto& layout = e.d.layout;
    auto& store = e.d.store;
    Text out;
    try {
        e.d.guard.lookAnew();
        // One behind the last reads as blank: a new record is in the indexes before it is in the file.
        if (!store || Satznummer < 1 || (!store.reaches(Satznummer) && Satznummer != store.count() + 1)) {
            e.fail(DatabaseError::badRecord);
            return out;
        }
        if (FeldNummer != 0 && !layout.has(FeldNummer)) {
            e.fail(DatabaseError::badField);
            return out;
        }
        if (FeldNummer == 0) {
            char mark[2] = {' ', 0};
            e.d.read(Satznummer, 0, std::span(mark, layout.unit()));
            return Text(1, static_cast<char16_t>(static_cast<uint8>(mark[0])));
        }
        const auto& field = layout.field(FeldNummer);
        Bytes bytes(field.bytes, ' ');
        e.d.read(Satznummer, field.offset, bytes);
        layout.decode(field, bytes, RecordLayout::Decode::value, out);
    } catch (const Failure& failure) {
        e.fail(failure);
    }
    return out;
}

void clsTSDB::PutField(int32 Satznummer, int32 FeldNummer, TextView Inhalt) {
    const Working working(*this);
    auto& e = *engine_;
    const auto& layout = e.d.layout;
    if (FeldNummer == 0) return putMark(Satznummer, Inhalt.empty() ? u' ' : Inhalt.front());
    // To the last record only, where GetField goes one further.
    if (!e.d.folder.readOnly && e.d.store && e.d.store.reaches(Satznummer) && !layout.has(FeldNummer)) {
        e.fail(DatabaseError::badField);
        return;
    }
    WriteOutcome out{DatabaseError::badRecord, 0, 0};
    if (layout.has(FeldNummer)) {
        const auto& field = layout.field(FeldNummer);
        Bytes bytes(field.bytes, ' ');
        layout.encode(field, Inhalt, bytes);
        out = e.writer.patch(Satznummer, field.offset, bytes);
    }
    if (out)
        recordChanged(Satznummer);
    else
        e.fail(out.error);
}

void clsTSDB::putMark(int32 Satznummer, char16_t mark) {
    const Working working(*this);
    auto& e = *engine_;
    const Bytes bytes = e.d.layout.wide() ? toUtf16Le({&mark, 1}) : e.d.layout.toRecordCode({&mark, 1});
    const auto out = e.writer.patch(Satznummer, 0, bytes);
    if (!out) {
        e.fail(out.error);
        return;
    }
    if (Satznummer == e.c.aktSatz) e.c.felder.set(0, {&mark, 1});
    recordChanged(Satznummer);
}

void clsTSDB::Delete(int32 Satznummer) { putMark(Satznummer, u'*'); }
void clsTSDB::Reaktivieren(int32 Satznummer) { putMark(Satznummer, u' '); }

bool clsTSDB::IsDeleted() const { return engine_->c.felder.deleted(); }

const Text& clsTSDB::Fields(int32 Index) {
    auto& e = *engine_;
    if (Index != 0 && !e.d.layout.has(Index)) {
        e.fail(DatabaseError::badField);
        shown_.clear();
        return shown_;
    }
    const Text& stored = e.c.felder[Index];
    if (Index == 0 || stored.empty()) return stored;
    const auto& field = e.d.layout.field(Index);
    // By the low bits alone, so a serial number shows without its zeros.
    if ((field.typ & 7) != 5) return stored;
    showNumber(field, stored, shown_);
    return shown_;
}

TextView clsTSDB::FieldView(int32 Index) {
    auto& e = *engine_;
    if (Index == 0 || !e.d.layout.has(Index)) return Fields(Index);
    const auto& field = e.d.layout.field(Index);
    const TextView stored = e.c.felder.view(Index);
    if ((field.typ & 7) != 5 || stored.empty()) return stored;
    showNumber(field, stored, shown_);
    return shown_;
}

void clsTSDB::Fields(int32 Index, TextView Inhalt) {
    auto& e = *engine_;
    if (e.d.folder.readOnly) {
        e.fail(DatabaseError::readOnly);
        return;
    }
    if (Index != 0 && !e.d.layout.has(Index)) {
        e.fail(DatabaseError::badField);
        return;
    }
    if (Index == 0 || (e.d.layout.field(Index).typ & 7) != 5)
        e.c.felder.set(Index, Inhalt);
    else
        e.c.felder.set(Index, storedNumber(e.d.layout.field(Index), Inhalt));
}

Text clsTSDB::Satz(std::vector<Text>& Feld) {
    Feld.resize(static_cast<std::size_t>(CtrlEintraege()) + 1);
    for (int32 i = 0; i <= CtrlEintraege(); ++i) Feld[static_cast<std::size_t>(i)] = Fields(i);
    return Feld[0];
}

void clsTSDB::ClearRecord() { engine_->c.felder.clear(); }

namespace {

template <class Answer>
auto ofField(const OpenDatabase& d, int32 index, Answer answer)
    -> decltype(answer(std::declval<const TSIO&>())) {
    if (!d.control || !d.layout.has(index)) return {};
    return answer(d.control->field(index));
}

int32 placeIn(const std::vector<int32>& numbers, int32 field) {
    for (std::size_t i = 0; i < numbers.size(); ++i)
        if (numbers[i] == field) return static_cast<int32>(i) + 1;
    return 0;
}

}  // namespace

Text clsTSDB::Caption(int32 Index) const {
    return ofField(engine_->d, Index, [](auto& f) { return Text(f.Caption()); });
}
Text clsTSDB::Hilfetext(int32 Index) const {
    return ofField(engine_->d, Index, [](auto& f) { return Text(f.Hilfe()); });
}
int32 clsTSDB::Laenge(int32 Index) const {
    return ofField(engine_->d, Index, [](auto& f) { return f.Laenge(); });
}
int32 clsTSDB::Spalte(int32 Index) const {
    return ofField(engine_->d, Index, [](auto& f) { return f.Spalte(); });
}
int32 clsTSDB::Typ(int32 Index) const {
    return ofField(engine_->d, Index, [](auto& f) { return f.Typ(); });
}
int32 clsTSDB::Zeile(int32 Index) const {
    return ofField(engine_->d, Index, [](auto& f) { return f.Zeile(); });
}
int32 clsTSDB::NachKomma(int32 Index) const {
    return ofField(engine_->d, Index, [](auto& f) { return f.NachKomma(); });
}

int32 clsTSDB::ViewLaenge(int32 Index) const {
    return engine_->d.layout.has(Index) ? engine_->viewLaenge[static_cast<std::size_t>(Index - 1)] : 0;
}

int32 clsTSDB::MemoNr(int32 FeldNummer) const {
    if (!engine_->d.control) return 0;
    const auto& memos = engine_->d.control->memos();
    for (std::size_t i = 0; i < memos.size(); ++i)
        if (memos[i].Feld() == FeldNummer) return static_cast<int32>(i) + 1;
    return 0;
}

int32 clsTSDB::KetteNr(int32 FeldNummer) const {
    return engine_->d.control ? placeIn(engine_->d.control->chains(), FeldNummer) : 0;
}

int32 clsTSDB::IndexNr(const Variant& FeldNummer) const {
    return engine_->d.control ? engine_->d.control->IndexNr(FeldNummer) : 0;
}

int32 clsTSDB::IndexFeld(int32 Index, int32 Item) const {
    return engine_->d.control ? engine_->d.control->Index(Index, Item) : 0;
}

}  // namespace tsRtm
