// The library's side of the peer comparison. Options and output lines are those of all measured programs, see
// README.md.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>

#include "bench/support/Gate.hpp"
#include "bench/support/Measure.hpp"
#include "bench/support/Rows.hpp"
#include "tsRtm/clsRtm.hpp"
#include "tsRtm/database/BulkLoader.hpp"
#include "tsRtm/database/RecordScan.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/TextOrder.hpp"

namespace tsRtm::bench {
namespace {

// The big form, which keeps counted trees.
constexpr int32 kMostRecords = 2'000'000;
constexpr TextView kIndexes =
    u"002003000"
    u"005000000"
    u"007000000";
constexpr int32 kByName = 1, kPhysical = 0;
constexpr int32 kFieldName = 2, kFieldBetrag = 8;

enum class Use { shared, alone };

struct FieldForm {
    const char16_t* caption;
    int32 length;
    int32 typ;
    int32 decimals;
};
constexpr FieldForm kForms[kRowFields] = {
    {u"Nr", 8, typZIFFERN, 0},        {u"Name", 30, typDRUCKBAR, 0}, {u"Vorname", 20, typDRUCKBAR, 0},
    {u"Strasse", 30, typDRUCKBAR, 0}, {u"PLZ", 5, typDRUCKBAR, 0},   {u"Ort", 24, typDRUCKBAR, 0},
    {u"Geburt", 8, typDRUCKBAR, 0},   {u"Betrag", 12, typWERT, 2},
};

TSIOArray fields() {
    TSIOArray out;
    for (const auto& form : kForms) {
        auto field = std::make_shared<TSIO>();
        field->Titel(form.caption);
        field->Zeile(static_cast<int32>(out.size()) + 1);
        field->Spalte(1);
        field->Laenge(form.length);
        field->Typ(form.typ);
        field->NachKomma(form.decimals);
        out.push_back(std::move(field));
    }
    return out;
}

std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return text;
}

class Workloads {
 public:
    explicit Workloads(Options options) : o_(std::move(options)), path_(fromUtf8(o_.dir + "/Kunde")) {}
    bool run();

 private:
    using Database = std::shared_ptr<clsTSDB>;

    void create();
    Database open(Use use);
    // Ends the program where the database has recorded a failure.
    static void expect(const Database& db, bool good, const char* what);
    void readAll(clsTSDB& db);
    void key(const NameKeys& keys, std::size_t i, Text& into);
    int64 sumBetrag();
    void emit(std::string_view workload, double value, const char* unit) {
        bench::emit(o_.engine, workload, o_.n, value, unit);
    }
    void check(const std::string& text) { remark("check", o_.engine, text); }

    void insertSingle();
    void loadBulk();
    void lookup();
    bool find(clsTSDB& db, const NameKeys& keys, std::size_t i);
    void scanIndex();
    void scanRaw();
    void updateKey();
    void rename(const Database& db, const Updates& updates, std::size_t i);
    void rename(const Database& db, int32 record);
    void besideWriter();
    void heal();
    void rank();
    void reindex();
    void deletePack();
    void multiuser();
    int64 addCents(clsTSDB& db, int32 record);

    Options o_;
    Text path_;
    clsRtm rtm_;
    Text text_, part_, found_;
    RowSink<char16_t> sink_;
};

void Workloads::create() {
    if (!rtm_.DB_Create(path_, fields(), kMostRecords, kIndexes)) die("create the database");
}

Workloads::Database Workloads::open(Use use) {
    auto db = rtm_.OpenTSDB(path_, false, use == Use::alone);
    if (!db) die("open the database: error " + std::to_string(rtmMain::state().F));
    return db;
}

void Workloads::expect(const Database& db, bool good, const char* what) {
    if (const int32 error = db->Error(); !good || error != 0)
        die(std::string(what) + ": error " + std::to_string(error));
}

void Workloads::readAll(clsTSDB& db) {
    for (std::size_t f = 0; f < kRowFields; ++f) sink_.take(f, db.FieldView(static_cast<int32>(f) + 1));
}

// As the user types it: an empty part is a blank.
void Workloads::key(const NameKeys& keys, std::size_t i, Text& into) {
    widen(keys.name(i), into);
    widen(keys.vorname(i), part_);
    into.push_back(u' ');
    into.append(part_.empty() ? u" " : TextView(part_));
}

int64 Workloads::sumBetrag() {
    const auto db = open(Use::shared);
    int64 sum = 0;
    for (int32 record = 1; record <= o_.n; ++record)
        sum += centsOf(TextView(db->GetField(record, kFieldBetrag)));
    return sum;
}

void Workloads::insertSingle() {
    const RowTable rows(o_.csv, o_.n);
    emptyFolder(o_.dir);
    create();
    const auto db = open(Use::shared);
    const Stopwatch watch;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto record = db->Add();
        if (!record) die("add a record");
        for (std::size_t f = 0; f < kRowFields; ++f) {
            widen(trimmed(rows(i, f)), text_);
            record->Fields(static_cast<int32>(f) + 1, text_);
        }
        expect(db, record->Update(), "store a record");
    }
    emit("insert_single", static_cast<double>(o_.n) / watch.seconds(), "rows/s");
    emit("private:insert_single", privateMemoryMiB(), "MiB");
    if (db->AnzahlDSaetze() != o_.n) die("records are missing");
}

void Workloads::loadBulk() {
    emptyFolder(o_.dir);
    const Stopwatch watch;
    create();
    auto db = open(Use::alone);
    {
        BulkLoader loader(*db);
        RowReader reader(o_.csv);
        Row row;
        while (loader.rows() < o_.n && reader.next(row)) {
            for (std::size_t f = 0; f < kRowFields; ++f)
                loader.setUtf8(static_cast<int32>(f) + 1, trimmed(row[f]));
            expect(db, loader.add(), "add a row");
        }
        expect(db, loader.finish() && loader.rows() == o_.n, "finish loading");
    }
    db.reset();
    emit("load_bulk", static_cast<double>(o_.n) / watch.seconds(), "rows/s");
}

void Workloads::lookup() {
    const NameKeys keys = lookupKeys(o_);
    const auto db = open(Use::shared);
    db->SetIndex(kByName);
    std::size_t hits = 0;
    const Stopwatch watch;
    for (std::size_t i = 0; i < keys.size(); ++i) hits += find(*db, keys, i) ? 1 : 0;
    emit("lookup", static_cast<double>(keys.size()) / watch.seconds(), "ops/s");
    emit("private:lookup", privateMemoryMiB(), "MiB");
    check("lookup hits " + std::to_string(hits) + " nrsum " + std::to_string(sink_.nrSum));
}

// The first row with this key, all its fields read; false where there is none.
bool Workloads::find(clsTSDB& db, const NameKeys& keys, std::size_t i) {
    key(keys, i, text_);
    db.Gehezu(text_);
    if (db.EOFile()) return false;
    found_ = db.FieldView(kFieldName);
    const TextView second = db.FieldView(kFieldName + 1);
    found_.push_back(u' ');
    found_.append(second.empty() ? u" " : second);
    if (TextCompare(found_, text_) != 0) return false;
    readAll(db);
    return true;
}

void Workloads::scanIndex() {
    const auto db = open(Use::shared);
    db->SetIndex(kByName);
    int64 rows = 0;
    const Stopwatch watch;
    for (db->MoveFirst(); !db->EOFile(); db->MoveNext()) {
        readAll(*db);
        ++rows;
    }
    emit("scan_index", static_cast<double>(rows) / watch.seconds(), "rows/s");
    check("scan rows " + std::to_string(rows) + " cents " + std::to_string(sink_.cents));
}

// The columns of all fields as they stand; then the same with each field as text.
void Workloads::scanRaw() {
    const auto db = open(Use::shared);
    RowSink<char> sink;
    int64 rows = 0;
    const Stopwatch watch;
    for (RecordScan scan(*db); scan.next(); ++rows)
        for (std::size_t f = 0; f < kRowFields; ++f) sink.take(f, scan.columns(static_cast<int32>(f) + 1));
    emit("scan_raw", static_cast<double>(rows) / watch.seconds(), "rows/s");
    check("scan rows " + std::to_string(rows) + " cents " + std::to_string(sink.cents));

    const Stopwatch texts;
    for (RecordScan scan(*db); scan.next();)
        for (std::size_t f = 0; f < kRowFields; ++f) sink_.take(f, scan.value(static_cast<int32>(f) + 1));
    emit("scan_raw:texts", static_cast<double>(rows) / texts.seconds(), "rows/s");
    check("scan rows " + std::to_string(rows) + " cents " + std::to_string(sink_.cents));
}

void Workloads::updateKey() {
    const Updates updates = drawUpdates(o_);
    const auto db = open(Use::shared);
    db->SetIndex(kPhysical);
    const Stopwatch watch;
    for (std::size_t i = 0; i < updates.records.size(); ++i) rename(db, updates, i);
    emit("update_key", static_cast<double>(updates.records.size()) / watch.seconds(), "ops/s");
}

void Workloads::rename(const Database& db, const Updates& updates, std::size_t i) {
    widen(updates.name(i), text_);
    rename(db, static_cast<int32>(updates.record(i)));
}

// The name is in text_.
void Workloads::rename(const Database& db, int32 record) {
    bool good = db->Sperren(record);
    db->AktSatzNr(record);
    db->Fields(kFieldName, text_);
    db->Update();
    good = good && db->Error() == 0 && db->Entsperren(record);
    expect(db, good, "update a record");
}

// One process moves keys as fast as it can, another one searches.
void Workloads::besideWriter() {
    const NameKeys keys = lookupKeys(o_);
    const Updates updates = drawUpdates(o_);
    Gate gate(2);
    if (gate.child() != 0) {
        const auto db = open(Use::shared);
        db->SetIndex(gate.child() == 1 ? kPhysical : kByName);
        Latencies latencies;
        std::size_t i = 0;
        gate.waitForStart();
        const Stopwatch watch;
        for (; watch.seconds() < kBesideSeconds; ++i) {
            if (gate.child() == 1)
                rename(db, updates, i);
            else
                latencies.time([&] { find(*db, keys, i % keys.size()); });
        }
        if (gate.child() == 1) {
            emit("beside:updates", static_cast<double>(i) / watch.seconds(), "ops/s");
        } else {
            emit("beside:median", latencies.within(0.5), "us");
            emit("beside:p99.9", latencies.within(0.999), "us");
        }
        gate.endOfChild();
    }
    gate.run();
}

// A user dies in the middle of an update; what that costs the next one who writes.
void Workloads::heal() {
    Victim victim([this] {
        const auto db = open(Use::shared);
        const auto dies = db->IndexChange.connect([](int32) { ::_exit(0); });
        db->AktSatzNr(1);
        db->Fields(kFieldName, u"Unvollendet");
        db->Update();
    });
    const auto db = open(Use::shared);
    text_ = u"Vorher";
    rename(db, 2);
    victim.die();
    text_ = u"Nachher";
    const Stopwatch watch;
    rename(db, 2);
    emit("heal", watch.seconds(), "s");
    if (!db->Check(false, u"")) die("the indexes are not whole");
}

void Workloads::rank() {
    const auto db = open(Use::shared);
    db->SetIndex(kByName);
    Random random(seedRankAt);
    std::size_t count = 0;
    const Stopwatch at;
    for (; count < kRanks && at.seconds() < o_.budget; ++count) {
        text_.assign(u"#").append(toText(random.below(static_cast<std::uint32_t>(o_.n)) + 1));
        db->Gehezu(text_);
        readAll(*db);
    }
    emit("rank_at", static_cast<double>(count) / at.seconds(), "ops/s");
    const auto reps = [&](const char* name) {
        return std::string(name) + " n " + std::to_string(o_.n) + ": " + std::to_string(count) +
               " repetitions, ";
    };
    remark("reps", o_.engine, reps("rank_at") + "nrsum " + std::to_string(sink_.nrSum));

    const NameKeys keys = rankKeys(o_);
    int64 sum = 0;
    const Stopwatch of;
    for (count = 0; count < kRanks && of.seconds() < o_.budget; ++count) {
        key(keys, count, text_);
        sum += db->Rang(text_) - 1;
    }
    emit("rank_of", static_cast<double>(count) / of.seconds(), "ops/s");
    remark("reps", o_.engine, reps("rank_of") + "sum " + std::to_string(sum));
}

void Workloads::reindex() {
    const auto db = open(Use::alone);
    const Stopwatch watch;
    expect(db, db->Sort(-1), "sort");
    emit("reindex", watch.seconds(), "s");
}

// Three in ten go, and the room they took.
void Workloads::deletePack() {
    const auto db = open(Use::alone);
    const Stopwatch watch;
    for (int32 record = 1; record <= o_.n; ++record)
        if (isDoomed(static_cast<std::uint32_t>(record))) db->Delete(record);
    expect(db, true, "delete the records");
    expect(db, db->Pack() && db->Sort(-1), "pack");
    emit("delete_pack", watch.seconds(), "s");
    check("delete_pack rows " + std::to_string(db->AnzahlDSaetze()));
}

// One update as an application does it; gives the cents before.
int64 Workloads::addCents(clsTSDB& db, int32 record) {
    if (!db.Sperren(record)) die("lock a record");
    db.AktSatzNr(record);
    const int64 before = centsOf(TextView(db.Fields(kFieldBetrag)));
    const std::string after = amountOf(before + 1);
    text_.assign(after.begin(), after.end());
    db.Fields(kFieldBetrag, text_);
    db.Update();
    if (db.Error() != 0 || !db.Entsperren(record)) die("update a record");
    return before;
}

void Workloads::multiuser() {
    const int64 before = sumBetrag();
    Gate gate(static_cast<int>(o_.procs));
    if (gate.child() != 0) {
        auto db = open(Use::shared);
        db->Dauerhaft(o_.workload == "durable");
        Random random(seedMulti + static_cast<std::uint64_t>(gate.child()) * 77777);
        const auto rows = static_cast<std::uint32_t>(o_.hot != 0 ? o_.hot : o_.n);
        gate.waitForStart();
        for (long i = 0; i < o_.per; ++i) addCents(*db, static_cast<int32>(random.below(rows)) + 1);
        gate.endOfChild();
    }
    const double seconds = gate.run();
    const double all = static_cast<double>(o_.per) * static_cast<double>(o_.procs);
    const std::string name = multiuserName(o_);
    emit(name, all / seconds, "ops/s");
    emit(name + "_lost", all - static_cast<double>(sumBetrag() - before), "updates");
}

bool Workloads::run() {
    const std::map<std::string, std::function<void()>> known = {
        {"insert_single", [&] { insertSingle(); }},
        {"load_bulk", [&] { loadBulk(); }},
        {"lookup", [&] { lookup(); }},
        {"scan_index", [&] { scanIndex(); }},
        {"scan_raw", [&] { scanRaw(); }},
        {"update_key", [&] { updateKey(); }},
        {"rank", [&] { rank(); }},
        {"reindex", [&] { reindex(); }},
        {"delete_pack", [&] { deletePack(); }},
        {"beside", [&] { besideWriter(); }},
        {"heal", [&] { heal(); }},
        {"multiuser", [&] { multiuser(); }},
        {"durable", [&] { multiuser(); }},
        {"size", [&] { emit("size", folderMiB(o_.dir), "MiB"); }},
    };
    const auto workload = known.find(o_.workload);
    if (workload == known.end()) return false;
    workload->second();
    if (o_.workload != "size" && o_.workload != "multiuser" && o_.workload != "durable" &&
        o_.workload != "beside")
        emit("rss:" + o_.workload, peakMemoryMiB(), "MiB");
    return true;
}

}  // namespace
}  // namespace tsRtm::bench

int main(int argc, char** argv) {
    auto options = tsRtm::bench::readOptions(argc, argv);
    if (options.engine.empty()) options.engine = "tsrtm";
    if (options.dir.empty() || options.n < 1) {
        std::fprintf(stderr, "usage: workload_tsrtm --engine tsrtm --workload W --dir D --csv F --n N\n");
        return 2;
    }
    if (tsRtm::bench::Workloads(std::move(options)).run()) return 0;
    std::fprintf(stderr, "unknown workload\n");
    return 2;
}
