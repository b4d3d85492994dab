// clsTSDB: records between the file and memory.
#include "tsRtm/database/DatabaseParts.hpp"
#include "tsRtm/database/FieldValue.hpp"
#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/frame/rtmMain.hpp"

namespace tsRtm {
bool clsTSDB::readRecord(int32 Satznummer, bool plain) {
    auto& d = *parts_;
    d.refreshWhenDue();
    if (!d.hasRecord(Satznummer)) return d.fail(63);
    static thread_local Bytes room;
    const BytesView bytes = d.store.view(Satznummer, room);
    d.felder.load(bytes, plain);
    d.store.bytes().check();
    d.aktSatz = Satznummer;
    return true;
}

Text clsTSDB::GetSatz(int32 Satznummer, bool Gehezu) {
    auto& d = *parts_;
    if (d.layout.mixed()) raise(445, u"clsTSDB.GetSatz", kUnicodeFieldsRefused);
    try {
        if (readRecord(Satznummer, Gehezu)) return d.layout.text(d.felder.image());
    } catch (const Failure& failure) {
        recordFailure(d, failure);
    }
    return {};
}

void clsTSDB::PutSatz(int32 Satznummer) {
    auto& d = *parts_;
    if (d.layout.mixed()) raise(445, u"clsTSDB.PutSatz", kUnicodeFieldsRefused);
    try {
        d.refreshWhenDue();
        if (d.readOnly) {
            d.fail(5);
            return;
        }
        const int32 count = d.records();
        if (d.big && d.istNeu && Satznummer <= count) {
            rtmMain::DebugLog(u"AppendBig: m_AnzahlDSaetze " + toText(count) + u" - SatzNummer " +
                              toText(Satznummer));
            d.fail(63);
            return;
        }
        if (!d.store || Satznummer < 1 || (Satznummer > count + 1 && !d.hasRecord(Satznummer - 1))) {
            d.fail(63);
            return;
        }
        d.store.write(Satznummer, d.felder.image());
        d.aktSatz = Satznummer;
        if (Satznummer > count) d.count.write(d.records());
    } catch (const Failure& failure) {
        recordFailure(d, failure);
        return;
    }
    recordChanged(Satznummer);
}

// Whoever holds an object of this record shows the new fields at its next read.
void clsTSDB::recordChanged(int32 Satznummer) {
    auto& d = *parts_;
    if (d.keineEreignisse) return;
    if (HalloSatz.connected()) {
        std::shared_ptr<clsTSRecord> record;
        HalloSatz(Satznummer, record);
        if (record && !record->Changed()) record->Reset();
    }
    RecordChange(Satznummer);
}

Text clsTSDB::GetField(int32 Satznummer, int32 FeldNummer) {
    auto& d = *parts_;
    Text out;
    try {
        // One behind the last reads as blank: a new record is in the indexes before it is in the file.
        if (!d.store || Satznummer < 1 || (Satznummer != d.records() + 1 && !d.hasRecord(Satznummer))) {
            d.fail(63);
            return out;
        }
        if (FeldNummer != 0 && !d.layout.has(FeldNummer)) {
            d.fail(9);
            return out;
        }
        if (FeldNummer == 0) {
            char mark[2] = {' ', 0};
            d.store.readPart(Satznummer, 0, std::span(mark, d.layout.unit()));
            return Text(1, static_cast<char16_t>(static_cast<uint8>(mark[0])));
        }
        const auto& field = d.layout.field(FeldNummer);
        Bytes bytes(field.bytes, ' ');
        d.store.readPart(Satznummer, field.offset, bytes);
        d.layout.decode(field, bytes, RecordLayout::Decode::value, out);
    } catch (const Failure& failure) {
        recordFailure(d, failure);
    }
    return out;
}

void clsTSDB::PutField(int32 Satznummer, int32 FeldNummer, TextView Inhalt) {
    auto& d = *parts_;
    try {
        if (d.readOnly) {
            d.fail(5);
            return;
        }
        // To the last record only, where GetField goes one further.
        if (!d.hasRecord(Satznummer)) {
            d.fail(63);
            return;
        }
        if (FeldNummer != 0 && !d.layout.has(FeldNummer)) {
            d.fail(9);
            return;
        }
        if (FeldNummer == 0) {
            setMark(Satznummer, Inhalt.starts_with(u'*'));
        } else {
            const auto& field = d.layout.field(FeldNummer);
            Bytes bytes(field.bytes, ' ');
            d.layout.encode(field, Inhalt, bytes);
            d.store.writePart(Satznummer, field.offset, bytes);
        }
    } catch (const Failure& failure) {
        recordFailure(d, failure);
        return;
    }
    recordChanged(Satznummer);
}

void clsTSDB::setMark(int32 Satznummer, bool deleted) {
    auto& d = *parts_;
    char mark[2] = {};
    const std::span<char> bytes(mark, d.layout.unit());
    d.layout.setDeleted(bytes, deleted);
    d.store.writePart(Satznummer, 0, {mark, bytes.size()});
    if (Satznummer == d.aktSatz) d.felder.set(0, deleted ? u"*" : u" ");
}

void clsTSDB::Delete(int32 Satznummer) { PutFieldMark(Satznummer, true); }
void clsTSDB::Reaktivieren(int32 Satznummer) { PutFieldMark(Satznummer, false); }

void clsTSDB::PutFieldMark(int32 Satznummer, bool deleted) { PutField(Satznummer, 0, deleted ? u"*" : u" "); }

bool clsTSDB::IsDeleted() const { return parts_->felder.deleted(); }

const Text& clsTSDB::Fields(int32 Index) {
    auto& d = *parts_;
    if (Index != 0 && !d.layout.has(Index)) {
        d.fail(9);
        shown_.clear();
        return shown_;
    }
    const Text& stored = d.felder[Index];
    if (Index == 0 || stored.empty()) return stored;
    const auto& field = d.layout.field(Index);
    // By the low bits alone, so a serial number shows without its zeros.
    if ((field.typ & 7) != 5) return stored;
    showNumber(field, stored, shown_);
    return shown_;
}

TextView clsTSDB::FieldView(int32 Index) {
    auto& d = *parts_;
    if (Index == 0 || !d.layout.has(Index)) return Fields(Index);
    const auto& field = d.layout.field(Index);
    const TextView stored = d.felder.view(Index);
    if ((field.typ & 7) != 5 || stored.empty()) return stored;
    showNumber(field, stored, shown_);
    return shown_;
}

void clsTSDB::Fields(int32 Index, TextView Inhalt) {
    auto& d = *parts_;
    if (d.readOnly) {
        d.fail(5);
        return;
    }
    if (Index != 0 && !d.layout.has(Index)) {
        d.fail(9);
        return;
    }
    if (Index == 0 || (d.layout.field(Index).typ & 7) != 5)
        d.felder.set(Index, Inhalt);
    else
        d.felder.set(Index, storedNumber(d.layout.field(Index), Inhalt));
}

Text clsTSDB::Satz(std::vector<Text>& Feld) {
    Feld.resize(static_cast<std::size_t>(CtrlEintraege()) + 1);
    for (int32 i = 0; i <= CtrlEintraege(); ++i) Feld[static_cast<std::size_t>(i)] = Fields(i);
    return Feld[0];
}

void clsTSDB::ClearRecord() { parts_->felder.clear(); }

namespace {

template <class Answer>
auto ofField(const DatabaseParts& parts, int32 index, Answer answer)
    -> decltype(answer(std::declval<const TSIO&>())) {
    if (!parts.control || !parts.layout.has(index)) return {};
    return answer(parts.control->field(index));
}

int32 placeIn(const std::vector<int32>& numbers, int32 field) {
    for (std::size_t i = 0; i < numbers.size(); ++i)
        if (numbers[i] == field) return static_cast<int32>(i) + 1;
    return 0;
}

}  // namespace

Text clsTSDB::Caption(int32 Index) const {
    return ofField(*parts_, Index, [](auto& f) { return Text(f.Caption()); });
}
Text clsTSDB::Hilfetext(int32 Index) const {
    return ofField(*parts_, Index, [](auto& f) { return Text(f.Hilfe()); });
}
int32 clsTSDB::Laenge(int32 Index) const {
    return ofField(*parts_, Index, [](auto& f) { return f.Laenge(); });
}
int32 clsTSDB::Spalte(int32 Index) const {
    return ofField(*parts_, Index, [](auto& f) { return f.Spalte(); });
}
int32 clsTSDB::Typ(int32 Index) const {
    return ofField(*parts_, Index, [](auto& f) { return f.Typ(); });
}
int32 clsTSDB::Zeile(int32 Index) const {
    return ofField(*parts_, Index, [](auto& f) { return f.Zeile(); });
}
int32 clsTSDB::NachKomma(int32 Index) const {
    return ofField(*parts_, Index, [](auto& f) { return f.NachKomma(); });
}

int32 clsTSDB::ViewLaenge(int32 Index) const {
    return parts_->layout.has(Index) ? parts_->viewLaenge[static_cast<std::size_t>(Index - 1)] : 0;
}

int32 clsTSDB::MemoNr(int32 FeldNummer) const {
    if (!parts_->control) return 0;
    const auto& memos = parts_->control->memos();
    for (std::size_t i = 0; i < memos.size(); ++i)
        if (memos[i].Feld() == FeldNummer) return static_cast<int32>(i) + 1;
    return 0;
}

int32 clsTSDB::KetteNr(int32 FeldNummer) const {
    return parts_->control ? placeIn(parts_->control->chains(), FeldNummer) : 0;
}

int32 clsTSDB::IndexNr(const Variant& FeldNummer) const {
    return parts_->control ? parts_->control->IndexNr(FeldNummer) : 0;
}

int32 clsTSDB::IndexFeld(int32 Index, int32 Item) const {
    return parts_->control ? parts_->control->Index(Index, Item) : 0;
}

}  // namespace tsRtm
