// SQLite as the peer that is there on every machine, with the same options, output lines and work as
// workload_tsrtm.
//
// Its settings are the fast ones that still keep the table in German order whole when a process dies: names
// by an ICU collation (German, accents count, case does not), synchronous=OFF (nothing waits for the disk, as
// in our engine), a page cache of 64 MiB. Alone on the file it works without a journal and with a larger
// cache. Rollback journal or write-ahead log in shared writing is chosen by --journal delete|wal, mapped
// reading by --mmap-mb.
#include <sqlite3.h>
#include <unicode/ucol.h>

#include <cstdio>
#include <functional>
#include <map>
#include <memory>

#include "bench/support/Gate.hpp"
#include "bench/support/Measure.hpp"
#include "bench/support/Rows.hpp"

namespace tsRtm::bench {
namespace {

constexpr const char* kColumns = "Nr,Name,Vorname,Strasse,PLZ,Ort,Geburt,Betrag";
constexpr const char* kTable =
    "CREATE TABLE Kunde(Nr TEXT, Name TEXT COLLATE German, Vorname TEXT COLLATE German, Strasse TEXT, PLZ "
    "TEXT,"
    " Ort TEXT, Geburt TEXT, Betrag TEXT)";
constexpr const char* kIndexes =
    "CREATE INDEX ByName ON Kunde(Name,Vorname);"
    "CREATE INDEX ByPlz ON Kunde(PLZ);"
    "CREATE INDEX ByGeburt ON Kunde(Geburt)";
const std::string kFirst =
    std::string("SELECT ") + kColumns + " FROM Kunde WHERE Name=?1 AND Vorname=?2 ORDER BY rowid LIMIT 1";
constexpr const char* kRename = "UPDATE Kunde SET Name=?1 WHERE rowid=?2";
constexpr int kAmountWidth = kRowWidths[fBetrag];
constexpr int kWaitMilliseconds = 600'000;

enum class Use { shared, alone };

void demand(int code, sqlite3* db, const char* what) {
    if (code == SQLITE_OK || code == SQLITE_DONE || code == SQLITE_ROW) return;
    die(std::string("SQLite, ") + what + ": " + ::sqlite3_errmsg(db));
}

class Statement {
 public:
    Statement(sqlite3* db, const std::string& sql) : db_(db) {
        demand(::sqlite3_prepare_v3(db, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &statement_, nullptr), db,
               sql.c_str());
    }
    ~Statement() { ::sqlite3_finalize(statement_); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    // The text outlives the next run.
    void bind(int place, std::string_view text) {
        ::sqlite3_bind_text(statement_, place, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
    }
    void bind(int place, std::int64_t number) { ::sqlite3_bind_int64(statement_, place, number); }
    // True while there is a row.
    bool step() {
        const int code = ::sqlite3_step(statement_);
        if (code != SQLITE_ROW) demand(code, db_, ::sqlite3_sql(statement_));
        return code == SQLITE_ROW;
    }
    void reset() { ::sqlite3_reset(statement_); }
    void run() {
        step();
        reset();
    }
    std::string_view text(int column) {
        const auto* in = reinterpret_cast<const char*>(::sqlite3_column_text(statement_, column));
        return {in, static_cast<std::size_t>(::sqlite3_column_bytes(statement_, column))};
    }
    std::int64_t number(int column) { return ::sqlite3_column_int64(statement_, column); }

 private:
    sqlite3* db_;
    sqlite3_stmt* statement_ = nullptr;
};

UCollator* german() {
    static UCollator* const collator = [] {
        UErrorCode status = U_ZERO_ERROR;
        UCollator* out = ::ucol_open("de", &status);
        ::ucol_setStrength(out, UCOL_SECONDARY);
        if (U_FAILURE(status)) die("ICU has no German order");
        return out;
    }();
    return collator;
}

int compareGerman(void* collator, int lengthA, const void* a, int lengthB, const void* b) {
    UErrorCode status = U_ZERO_ERROR;
    return ::ucol_strcollUTF8(static_cast<UCollator*>(collator), static_cast<const char*>(a), lengthA,
                              static_cast<const char*>(b), lengthB, &status);
}

struct Closer {
    void operator()(sqlite3* db) const noexcept { demand(::sqlite3_close(db), db, "close"); }
};
using Database = std::unique_ptr<sqlite3, Closer>;

void execute(const Database& db, const std::string& sql) {
    demand(::sqlite3_exec(db.get(), sql.c_str(), nullptr, nullptr, nullptr), db.get(), sql.c_str());
}

class Workloads {
 public:
    explicit Workloads(Options options);
    bool run();

 private:
    Database open(Use use);
    static std::string select(const std::string& rest) {
        return std::string("SELECT ") + kColumns + " FROM Kunde " + rest;
    }
    void readAll(Statement& row) {
        for (std::size_t f = 0; f < kRowFields; ++f) sink_.take(f, row.text(static_cast<int>(f)));
    }
    std::int64_t sumBetrag();
    void emit(std::string_view workload, double value, const char* unit) {
        bench::emit(label_, workload, o_.n, value, unit);
    }

    void insertSingle();
    void loadBulk();
    void lookup();
    void scan(bool byName);
    bool find(Statement& first, const NameKeys& keys, std::size_t i);
    void updateKey();
    void besideWriter();
    void rankAt();
    void rankOf();
    void reindex();
    void deletePack();
    void multiuser();
    void work(int me, Gate& gate);

    Options o_;
    std::string label_;
    RowSink<char> sink_;
};

Workloads::Workloads(Options options)
    : o_(std::move(options)), label_(o_.engine.empty() ? "sqlite-icu" : o_.engine) {
    const bool writesShared = o_.workload == "insert_single" || o_.workload == "update_key" ||
                              o_.workload == "multiuser" || o_.workload == "durable" ||
                              o_.workload == "beside";
    if (writesShared && o_.journal != "delete") label_ += "-" + o_.journal;
    if (o_.mmapMb > 0) label_ += "-mmap";
}

Database Workloads::open(Use use) {
    sqlite3* opened = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    demand(::sqlite3_open_v2((o_.dir + "/Kunde.sqlite").c_str(), &opened, flags, nullptr), opened, "open");
    Database db(opened);
    demand(::sqlite3_create_collation(opened, "German", SQLITE_UTF8, german(), compareGerman), opened,
           "collation");
    ::sqlite3_busy_timeout(opened, kWaitMilliseconds);
    execute(db, o_.workload == "durable" ? "PRAGMA synchronous=FULL" : "PRAGMA synchronous=OFF");
    execute(db, "PRAGMA temp_store=MEMORY");
    if (use == Use::alone)
        execute(db,
                "PRAGMA locking_mode=EXCLUSIVE; PRAGMA journal_mode=OFF; PRAGMA threads=2; PRAGMA "
                "cache_size=-524288");
    else
        execute(db, "PRAGMA cache_size=-65536; PRAGMA mmap_size=" + std::to_string(o_.mmapMb << 20));
    return db;
}

std::int64_t Workloads::sumBetrag() {
    const Database db = open(Use::shared);
    Statement rows(db.get(), "SELECT Betrag FROM Kunde");
    std::int64_t sum = 0;
    while (rows.step()) sum += centsOf(rows.text(0));
    return sum;
}

void Workloads::insertSingle() {
    const RowTable rows(o_.csv, o_.n);
    emptyFolder(o_.dir);
    const Database db = open(Use::shared);
    execute(db, "PRAGMA journal_mode=" + o_.journal);
    execute(db, kTable);
    execute(db, kIndexes);
    Statement insert(db.get(), "INSERT INTO Kunde VALUES(?,?,?,?,?,?,?,?)");
    const Stopwatch watch;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (std::size_t f = 0; f < kRowFields; ++f) insert.bind(static_cast<int>(f) + 1, rows(i, f));
        insert.run();
    }
    emit("insert_single", static_cast<double>(o_.n) / watch.seconds(), "rows/s");
    emit("private:insert_single", privateMemoryMiB(), "MiB");
}

void Workloads::loadBulk() {
    emptyFolder(o_.dir);
    const Stopwatch watch;
    Database db = open(Use::alone);
    execute(db, kTable);
    execute(db, "BEGIN");
    {
        Statement insert(db.get(), "INSERT INTO Kunde VALUES(?,?,?,?,?,?,?,?)");
        RowReader reader(o_.csv);
        Row row;
        for (long i = 0; i < o_.n; ++i) {
            if (!reader.next(row)) die("too few rows");
            for (std::size_t f = 0; f < kRowFields; ++f) insert.bind(static_cast<int>(f) + 1, row[f]);
            insert.run();
        }
    }
    execute(db, kIndexes);
    execute(db, "COMMIT");
    db.reset();
    emit("load_bulk", static_cast<double>(o_.n) / watch.seconds(), "rows/s");
}

void Workloads::lookup() {
    const NameKeys keys = lookupKeys(o_);
    const Database db = open(Use::shared);
    Statement first(db.get(), kFirst);
    std::size_t hits = 0;
    const Stopwatch watch;
    for (std::size_t i = 0; i < keys.size(); ++i) hits += find(first, keys, i) ? 1 : 0;
    emit("lookup", static_cast<double>(keys.size()) / watch.seconds(), "ops/s");
    emit("private:lookup", privateMemoryMiB(), "MiB");
    remark("check", label_, "lookup hits " + std::to_string(hits) + " nrsum " + std::to_string(sink_.nrSum));
}

bool Workloads::find(Statement& first, const NameKeys& keys, std::size_t i) {
    first.bind(1, keys.name(i));
    first.bind(2, keys.vorname(i));
    const bool found = first.step();
    if (found) readAll(first);
    first.reset();
    return found;
}

void Workloads::scan(bool byName) {
    const Database db = open(Use::shared);
    std::int64_t rows = 0;
    const Stopwatch watch;
    Statement all(db.get(), select(byName ? "INDEXED BY ByName ORDER BY Name,Vorname" : "NOT INDEXED"));
    for (; all.step(); ++rows) readAll(all);
    emit(byName ? "scan_index" : "scan_raw", static_cast<double>(rows) / watch.seconds(), "rows/s");
    remark("check", label_, "scan rows " + std::to_string(rows) + " cents " + std::to_string(sink_.cents));
}

void Workloads::updateKey() {
    const Updates updates = drawUpdates(o_);
    const Database db = open(Use::shared);
    execute(db, "PRAGMA journal_mode=" + o_.journal);
    Statement update(db.get(), kRename);
    const Stopwatch watch;
    for (std::size_t i = 0; i < updates.records.size(); ++i) {
        update.bind(1, updates.names.name(i));
        update.bind(2, static_cast<std::int64_t>(updates.records[i]));
        update.run();
    }
    emit("update_key", static_cast<double>(updates.records.size()) / watch.seconds(), "ops/s");
}

void Workloads::besideWriter() {
    execute(open(Use::shared), "PRAGMA journal_mode=" + o_.journal);
    const NameKeys keys = lookupKeys(o_);
    const Updates updates = drawUpdates(o_);
    Gate gate(2);
    if (gate.child() != 0) {
        const Database db = open(Use::shared);
        Statement statement(db.get(), gate.child() == 1 ? kRename : kFirst);
        Latencies latencies;
        std::size_t i = 0;
        gate.waitForStart();
        const Stopwatch watch;
        for (; watch.seconds() < kBesideSeconds; ++i) {
            if (gate.child() == 1) {
                statement.bind(1, updates.name(i));
                statement.bind(2, static_cast<std::int64_t>(updates.record(i)));
                statement.run();
            } else {
                latencies.time([&] { find(statement, keys, i % keys.size()); });
            }
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

void Workloads::rankAt() {
    const Database db = open(Use::shared);
    Statement row(db.get(), select("INDEXED BY ByName ORDER BY Name,Vorname LIMIT 1 OFFSET ?1"));
    Random random(seedRankAt);
    std::size_t count = 0;
    const Stopwatch watch;
    for (; count < kRanks && watch.seconds() < o_.budget; ++count) {
        row.bind(1, static_cast<std::int64_t>(random.below(static_cast<std::uint32_t>(o_.n))));
        if (row.step()) readAll(row);
        row.reset();
    }
    emit("rank_at", static_cast<double>(count) / watch.seconds(), "ops/s");
    remark("reps", label_,
           "rank_at n " + std::to_string(o_.n) + ": " + std::to_string(count) + " repetitions, nrsum " +
               std::to_string(sink_.nrSum));
}

void Workloads::rankOf() {
    const NameKeys keys = rankKeys(o_);
    const Database db = open(Use::shared);
    Statement below(db.get(), "SELECT count(*) FROM Kunde INDEXED BY ByName WHERE (Name,Vorname)<(?1,?2)");
    std::size_t count = 0;
    std::int64_t sum = 0;
    const Stopwatch watch;
    for (; count < keys.size() && watch.seconds() < o_.budget; ++count) {
        below.bind(1, keys.name(count));
        below.bind(2, keys.vorname(count));
        if (below.step()) sum += below.number(0);
        below.reset();
    }
    emit("rank_of", static_cast<double>(count) / watch.seconds(), "ops/s");
    remark("reps", label_,
           "rank_of n " + std::to_string(o_.n) + ": " + std::to_string(count) + " repetitions, sum " +
               std::to_string(sum));
}

void Workloads::reindex() {
    const Database db = open(Use::alone);
    const Stopwatch watch;
    execute(db, "BEGIN; DROP INDEX ByName; DROP INDEX ByPlz; DROP INDEX ByGeburt");
    execute(db, kIndexes);
    execute(db, "COMMIT");
    emit("reindex", watch.seconds(), "s");
}

void Workloads::deletePack() {
    const Database db = open(Use::alone);
    const Stopwatch watch;
    execute(db, "BEGIN");
    {
        Statement one(db.get(), "DELETE FROM Kunde WHERE rowid=?1");
        for (std::int64_t record = 1; record <= o_.n; ++record) {
            if (!isDoomed(static_cast<std::uint32_t>(record))) continue;
            one.bind(1, record);
            one.run();
        }
    }
    execute(db, "COMMIT");
    execute(db, "VACUUM");
    emit("delete_pack", watch.seconds(), "s");
    Statement left(db.get(), "SELECT count(*) FROM Kunde");
    left.step();
    remark("check", label_, "delete_pack rows " + std::to_string(left.number(0)));
}

void Workloads::work(int me, Gate& gate) {
    const Database db = open(Use::shared);
    Statement begin(db.get(), "BEGIN IMMEDIATE"), commit(db.get(), "COMMIT"),
        read(db.get(), "SELECT Betrag FROM Kunde WHERE rowid=?1"),
        write(db.get(), "UPDATE Kunde SET Betrag=?1 WHERE rowid=?2");
    Random random(seedMulti + static_cast<std::uint64_t>(me) * 77777);
    const auto rows = static_cast<std::uint32_t>(o_.hot != 0 ? o_.hot : o_.n);
    gate.waitForStart();
    for (long i = 0; i < o_.per; ++i) {
        const std::int64_t record = 1 + random.below(rows);
        begin.run();
        read.bind(1, record);
        read.step();
        const std::string bare = amountOf(centsOf(read.text(0)) + 1);
        read.reset();
        const std::string amount = std::string(kAmountWidth - bare.size(), ' ') + bare;
        write.bind(1, std::string_view(amount));
        write.bind(2, record);
        write.run();
        commit.run();
    }
    gate.endOfChild();
}

void Workloads::multiuser() {
    execute(open(Use::shared), "PRAGMA journal_mode=" + o_.journal);
    const std::int64_t before = sumBetrag();
    Gate gate(static_cast<int>(o_.procs));
    if (gate.child() != 0) work(gate.child(), gate);
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
        {"scan_index", [&] { scan(true); }},
        {"scan_raw", [&] { scan(false); }},
        {"update_key", [&] { updateKey(); }},
        {"rank",
         [&] {
             rankAt();
             rankOf();
         }},
        {"reindex", [&] { reindex(); }},
        {"delete_pack", [&] { deletePack(); }},
        {"beside", [&] { besideWriter(); }},
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
    if (options.dir.empty() || options.n < 1) {
        std::fprintf(stderr, "usage: peer_sqlite --engine sqlite-icu --workload W --dir D --csv F --n N\n");
        return 2;
    }
    if (tsRtm::bench::Workloads(std::move(options)).run()) return 0;
    std::fprintf(stderr, "unknown workload\n");
    return 2;
}
