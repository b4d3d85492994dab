// clsTSDB: work on the whole database.
#include <optional>

#include "tsRtm/database/chains/ChainCheck.hpp"
#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/clsTSRecordSet.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/database/upkeep/Conversion.hpp"
#include "tsRtm/database/upkeep/IndexCheck.hpp"
#include "tsRtm/database/upkeep/IndexSort.hpp"
#include "tsRtm/database/upkeep/LostFiles.hpp"
#include "tsRtm/database/upkeep/MemoCheck.hpp"
#include "tsRtm/database/upkeep/Packing.hpp"
#include "tsRtm/database/upkeep/SidePacking.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {
namespace {

// Tells the one who asks a record set of the database to let go of it.
constexpr int32 kLetGo = -3;
constexpr int32 kYes = 6;

// Keeps writes by handlers out for the length of a work.
class Occupied {
 public:
    explicit Occupied(RecordWriter& writer) : writer_(writer) { writer_.occupy(true); }
    ~Occupied() { writer_.occupy(false); }
    Occupied(const Occupied&) = delete;
    Occupied& operator=(const Occupied&) = delete;

 private:
    RecordWriter& writer_;
};

}  // namespace

bool clsTSDB::Sort(int32 IndexSpalte) {
    const Working working(*this);
    auto& e = *engine_;
    if (e.writer.busy()) return e.fail(DatabaseError::locked);
    std::optional<Occupied> occupied(std::in_place, e.writer);
    const auto error = sortIndexes(
        e.d, IndexSpalte, [this](int32 phase, int32 done, int32 sum) { UpdateProgress(phase, done, sum); });
    occupied.reset();
    if (failed(error)) return e.fail(error);
    for (int32 n = 1; n <= e.d.indexes.count(); ++n)
        if (IndexSpalte == -1 || n == IndexSpalte) indexRebuilt(e.d.indexes.keys(n).primary());
    if (!e.keineEreignisse) RecordChange(e.c.aktSatz);
    return true;
}

bool clsTSDB::Check(bool Repair, TextView Zusatz) {
    const Working working(*this);
    auto& e = *engine_;
    auto& d = e.d;
    befunde_.clear();
    rtmMain::DebugLog(u"Konsistenzprüfung für Datenbank " + Pfad());
    if (!Zusatz.empty()) rtmMain::DebugLog(Zusatz);
    std::optional<DatabaseHold> hold;
    if (!d.folder.readOnly && !e.writer.busy()) hold.emplace(d.locks);
    if (e.writer.busy() || (hold && !*hold)) {
        rtmMain::DebugLog(u"DB kann nicht gesperrt werden.");
        return e.fail(DatabaseError::locked);
    }
    e.fehler = 0;
    const int32 count = d.records();
    d.refreshCount();
    const auto note = [this](Text line) {
        rtmMain::DebugLog(line);
        befunde_.push_back(std::move(line));
    };
    if (d.records() != count)
        note(u"Count: " + toText(count) + u" - Dateilänge: " +
             toText(static_cast<int64>(d.store ? d.store.bytes().knownSize() : 0)) + u" -> Anzahl: " +
             toText(d.records()));
    bool sound = true;
    const auto noteAll = [&](std::vector<Text> lines) {
        sound = sound && lines.empty();
        for (auto& line : lines) note(std::move(line));
    };
    std::vector<int32> faulty;
    const bool mends = Repair && !d.folder.readOnly && d.store;
    try {
        if (hold)
            if (const auto error = d.sign.enter(); failed(error)) return e.fail(error);
        for (int32 number = 1; d.store && d.indexes.has(number); ++number) {
            rtmMain::DebugLog(u"Konsistenzprüfung Index " + Caption(d.indexes.keys(number).primary()));
            auto lines = d.folder.readOnly ? checkBeside(d, number) : checkIndex(d, number);
            if (!lines.empty()) faulty.push_back(number);
            noteAll(std::move(lines));
        }
        noteAll(unfinishedWork(d.folder));
        if (d.store) noteAll(checkMemos(d, mends ? Mend::yes : Mend::no));
        if (d.store) noteAll(checkChains(d.chains, ChainMending::none));
        if (d.store) noteAll(checkRowMemos(d, Mend::no));
        if (mends && !d.chains.fields().empty()) {
            checkChains(d.chains, ChainMending::repair);
            checkRowMemos(d, Mend::yes);
        }
        if (mends && (!faulty.empty() || d.marks.leftBehind())) repairIndexes(d, faulty);
    } catch (const Failure& failure) {
        e.fail(failure);
        return false;
    }
    return sound;
}

// Runs a work that exchanges files. Where records get other numbers, whatever knows one ends.
template <class Work>
bool clsTSDB::exchanging(Work work, Exchanged what) {
    const Working working(*this);
    auto& e = *engine_;
    e.fehler = 0;
    if (e.writer.busy()) return e.fail(DatabaseError::locked);
    const bool anew = what == Exchanged::numbers;
    if (what != Exchanged::places) letGoOfSets();
    BulkFace face;
    face.progress = [this](int32 phase, int32 done, int32 sum) { UpdateProgress(phase, done, sum); };
    face.stopped = [this] { return closing_ || rtmMain::state().stopped; };
    if (anew)
        face.prepared = [this] {
            KillAllObjects();
            engine_->d.locks.unlockRecords();
        };
    BulkOutcome out;
    {
        const Occupied occupied(e.writer);
        out = work(e.d, face);
    }
    if (out.changed && !e.d.store) {
        // The next opening finishes what was begun.
        Schliesse();
        return e.fail(out.error);
    }
    if (out.changed && anew) {
        // Listeners who heard of the end may have asked for what was there then.
        KillAllObjects();
        e.c = Cursor();
        e.c.felder = RecordBuffer(e.d.layout);
        e.c.logPos = 1;
    } else if (out.changed) {
        e.c.felder.clear();
        if (e.d.store && e.d.store.reaches(e.c.aktSatz)) readRecord(e.c.aktSatz);
    }
    if (failed(out.error)) return e.fail(out.error);
    if (out.changed && anew) Packed();
    if (out.changed && !anew) contentReplaced();
    return true;
}

bool clsTSDB::exchanged(const std::function<BulkOutcome(OpenDatabase&, const BulkFace&)>& work) {
    return exchanging(work, Exchanged::numbers);
}

void clsTSDB::letGoOfSets() {
    std::shared_ptr<clsTSRecordSet> none;
    HalloIndex(kLetGo, none);
}

bool clsTSDB::Pack() { return exchanging(packRecords, Exchanged::numbers); }

bool clsTSDB::PackMemoKette() { return exchanging(packSideFiles, Exchanged::places); }

void clsTSDB::Zap() { exchanging(emptyDatabase, Exchanged::numbers); }

bool clsTSDB::convert(Conversion conversion) {
    auto& e = *engine_;
    const auto accepts = [&](const ConversionLoss& loss) {
        Text where = loss.record == 0 ? Text(u"in der Struktur") : u"in Satz " + toText(loss.record);
        where += u", Feld " + toText(loss.field) + u" (" + Caption(loss.field) + u")";
        const Text question = u"Die Datenbank enthält " + toText(loss.characters) +
                              u" Zeichen, die es in ANSI nicht gibt, zuerst " + where +
                              u".@Sollen sie durch \"?\" ersetzt werden?";
        constexpr int32 kButtons = dlgYesNo | dlgQuestion | dlgDefault2;
        return e.d.folder.messages().TSMsgBox(question, kButtons, Variant(u"clsTSDB")) == kYes;
    };
    ConversionOutcome out;
    const bool done = exchanging(
        [&](OpenDatabase& d, const BulkFace& face) {
            out = convertDatabase(d, face, conversion, accepts);
            if (out.changed && d.store) e.writer.prepare();
            return BulkOutcome(out);
        },
        Exchanged::forms);
    if (out.changed && e.d.store) {
        e.spareBuffer.reset();
        // Rows have another layout: their sets end. Records are read anew.
        const auto sets = e.live.sets;
        for (const auto& weak : sets)
            if (const auto set = weak.lock(); set && set->KettenFeldNr() != 0) set->invalidate();
        for (auto* const record : e.live.records) record->structureChanged();
    }
    return done && !out.refused;
}

bool clsTSDB::ConvertToWin() { return convert(Conversion::fromDos); }
bool clsTSDB::ConvertToAnsi() { return convert(Conversion::toAnsi); }
bool clsTSDB::ConvertToUnicode() { return convert(Conversion::toUnicode); }

bool clsTSDB::Rebuild() {
    const Working working(*this);
    auto& d = engine_->d;
    // One lock for all of it: nobody comes in between.
    const ReorganisationHold alone(d.reorganisation);
    if (!alone) return engine_->fail(d.folder.readOnly ? DatabaseError::readOnly : alone.error());
    const int32 before = d.records();
    if (!Pack()) return false;
    if ((!d.indexes.big() || d.records() == before) && !Sort()) return false;
    return PackMemoKette();
}

void clsTSDB::CreateIndex(int32 Primaer, int32 Sekundaer, int32 Tertiaer) {
    const Working working(*this);
    auto& e = *engine_;
    e.fehler = 0;
    if (e.writer.busy()) {
        e.fail(DatabaseError::locked);
        return;
    }
    const Occupied occupied(e.writer);
    const auto error =
        createIndex(e.d, {Primaer, Sekundaer, Tertiaer},
                    [this](int32 phase, int32 done, int32 sum) { UpdateProgress(phase, done, sum); });
    e.writer.prepare();
    if (failed(error))
        e.fail(error);
    else
        indexRebuilt(Primaer);
}

void clsTSDB::DelIndex(int32 IndexSpalte) {
    const Working working(*this);
    auto& e = *engine_;
    e.fehler = 0;
    if (e.writer.busy()) {
        e.fail(DatabaseError::locked);
        return;
    }
    const int32 active = ActiveIndex();
    const Occupied occupied(e.writer);
    const auto error = deleteIndex(e.d, IndexSpalte);
    e.writer.prepare();
    // The active order keeps its field, whatever its number is now.
    e.c.aktIndex = active == 0 ? 0 : e.d.control->IndexNr(Variant(active));
    if (failed(error))
        e.fail(error);
    else
        indexDropped(IndexSpalte);
}

}  // namespace tsRtm
