// Memos and rows of chains beside SQLite: a column of long texts, a child table with its index. Neither side
// waits for the disk; each write is a transaction of its own.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "tsRtm/database/BulkLoader.hpp"
#include "tsRtm/tsRtm.hpp"

namespace tsRtm::bench {
namespace {

constexpr int32 kMost = 2'000'000;  // counted trees
constexpr int32 kParents = 1000;
constexpr int32 kChainField = 5;
constexpr int32 kAddRow = 5;

[[noreturn]] void die(const std::string& what) {
    std::fprintf(stderr, "upkeep_bench: %s\n", what.c_str());
    std::exit(1);
}

// A folder that goes with the object.
class Folder {
 public:
    Folder() : path_(std::filesystem::temp_directory_path() / "tsrtm-upkeep-bench") {
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    std::string file(const char* name) const { return (path_ / name).string(); }

 private:
    std::filesystem::path path_;
};

std::string nameOf(int32 n) {
    return "Name" + std::to_string(static_cast<uint32>(n) * 2654435761u % 1000003u);
}
std::string placeOf(int32 n) { return std::to_string(10000 + n % 90000); }
std::string dayOf(int32 n) { return std::to_string(19500101 + n % 20000); }

// --- Our side

std::shared_ptr<TSIO> field(TextView name, int32 length, int32 typ) {
    auto out = std::make_shared<TSIO>();
    out->Laenge(length);
    out->Typ(typ);
    out->Caption(name);
    out->Name(name);
    return out;
}

struct Ours {
    explicit Ours(int32 records) {
        const TSIOArray fields{field(u"NAME", 30, typDRUCKBAR), field(u"PLZ", 5, typDRUCKBAR),
                               field(u"TAG", 8, typDRUCKBAR), field(u"NOTIZ", 60, tsMemo),
                               field(u"POS", 10, tsKette)};
        const Text name = fromUtf8(folder.file("Kunde"));
        if (!rtm.DB_Create(name, fields, kMost, u"  1  0  0  2  0  0  3  0  0"))
            die("cannot make the database");
        std::ofstream(folder.file("Kunde.DBD/KetteCtl.005"), std::ios::binary)
            << "TS1,2\r\n0,1,1,20,1,\"Text@@7TEXT\"\r\n0,2,1,8,5,\"Zahl@@7ZAHL\"\r\n31,100,0\r\n0\r\n";
        {
            const auto alone = rtm.OpenTSDB(name, false, true);
            BulkLoader loader(*alone);
            for (int32 n = 1; n <= records; ++n) {
                loader.setUtf8(1, nameOf(n));
                loader.setUtf8(2, placeOf(n));
                loader.setUtf8(3, dayOf(n));
                if (!loader.add()) die("no room");
            }
            if (!loader.finish()) die("no indexes");
        }
        db = rtm.OpenTSDB(name);
        if (!db) die("cannot open the database");
    }
    void good() {
        if (const int32 error = db->Error(); error != 0) die("error " + std::to_string(error));
    }

    Folder folder;
    clsRtm rtm;
    std::shared_ptr<clsTSDB> db;
};

// --- SQLite

struct Theirs {
    explicit Theirs(int32 records) {
        if (sqlite3_open(folder.file("kunde.sqlite").c_str(), &db) != SQLITE_OK) die("cannot open the peer");
        run("PRAGMA synchronous=OFF; PRAGMA temp_store=MEMORY; PRAGMA cache_size=-65536; PRAGMA "
            "journal_mode=WAL;"
            "CREATE TABLE Kunde(Name TEXT, Plz TEXT, Tag TEXT, Notiz TEXT);"
            "CREATE TABLE Pos(Kunde INTEGER, Text TEXT, Zahl TEXT); BEGIN");
        auto* insert = prepare("INSERT INTO Kunde VALUES(?,?,?,NULL)");
        for (int32 n = 1; n <= records; ++n) {
            bind(insert, 1, nameOf(n));
            bind(insert, 2, placeOf(n));
            bind(insert, 3, dayOf(n));
            step(insert);
        }
        sqlite3_finalize(insert);
        run("CREATE INDEX ByName ON Kunde(Name); CREATE INDEX ByPlz ON Kunde(Plz); CREATE INDEX ByTag ON "
            "Kunde(Tag);"
            "CREATE INDEX ByKunde ON Pos(Kunde); COMMIT");
    }
    ~Theirs() { sqlite3_close(db); }
    Theirs(const Theirs&) = delete;
    Theirs& operator=(const Theirs&) = delete;

    void run(const char* sql) {
        if (sqlite3_exec(db, sql, nullptr, nullptr, nullptr) != SQLITE_OK) die(sqlite3_errmsg(db));
    }
    sqlite3_stmt* prepare(const char* sql) {
        sqlite3_stmt* out = nullptr;
        if (sqlite3_prepare_v2(db, sql, -1, &out, nullptr) != SQLITE_OK) die(sqlite3_errmsg(db));
        return out;
    }
    static void bind(sqlite3_stmt* to, int place, const std::string& text) {
        sqlite3_bind_text(to, place, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
    }
    // Bytes of the columns of all rows.
    std::size_t step(sqlite3_stmt* statement) {
        std::size_t bytes = 0;
        int code = sqlite3_step(statement);
        for (; code == SQLITE_ROW; code = sqlite3_step(statement))
            for (int i = 0; i < sqlite3_column_count(statement); ++i) {
                sqlite3_column_text(statement, i);
                bytes += static_cast<std::size_t>(sqlite3_column_bytes(statement, i));
            }
        if (code != SQLITE_DONE) die(sqlite3_errmsg(db));
        sqlite3_reset(statement);
        return bytes;
    }

    Folder folder;
    sqlite3* db = nullptr;
};

// --- A text of 1 kB.

const Text& longText() {
    static const Text text(1000, u'x');
    return text;
}

void memoWriteOurs(benchmark::State& state) {
    Ours ours(kParents);
    int32 n = 0;
    for (auto _ : state) {
        ours.db->AktSatzNr(++n % kParents + 1);
        ours.db->Memo(1, longText());
    }
    ours.good();
}
void memoWriteTheirs(benchmark::State& state) {
    Theirs theirs(kParents);
    auto* update = theirs.prepare("UPDATE Kunde SET Notiz=?1 WHERE rowid=?2");
    const std::string text(1000, 'x');
    int32 n = 0;
    for (auto _ : state) {
        Theirs::bind(update, 1, text);
        sqlite3_bind_int(update, 2, ++n % kParents + 1);
        theirs.step(update);
    }
    sqlite3_finalize(update);
}
void memoReadOurs(benchmark::State& state) {
    Ours ours(kParents);
    for (int32 n = 1; n <= kParents; ++n) {
        ours.db->AktSatzNr(n);
        ours.db->Memo(1, longText());
    }
    int32 n = 0;
    for (auto _ : state) {
        ours.db->AktSatzNr(++n % kParents + 1);
        benchmark::DoNotOptimize(ours.db->Memo(1));
    }
    ours.good();
}
void memoReadTheirs(benchmark::State& state) {
    Theirs theirs(kParents);
    theirs.run("UPDATE Kunde SET Notiz=printf('%.1000c','x')");
    auto* select = theirs.prepare("SELECT * FROM Kunde WHERE rowid=?1");
    int32 n = 0;
    for (auto _ : state) {
        sqlite3_bind_int(select, 1, ++n % kParents + 1);
        benchmark::DoNotOptimize(theirs.step(select));
    }
    sqlite3_finalize(select);
}
BENCHMARK(memoWriteOurs)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(memoWriteTheirs)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(memoReadOurs)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(memoReadTheirs)->Unit(benchmark::kMicrosecond)->UseRealTime();

// --- Rows: one more at the end of a chain; all of one, ten of them.

void addRow(Ours& ours, int32 parent) {
    ours.db->AktSatzNr(parent);
    TextTable row{{}, {u"Papier, weiß", u"12345"}};
    int32 rows = 1;
    ours.db->KetteAction(kAddRow, kChainField, row, rows);
}
constexpr const char* kInsertRow = "INSERT INTO Pos VALUES(?1,'Papier, weiß','12345')";

void rowAddOurs(benchmark::State& state) {
    Ours ours(kParents);
    int32 n = 0;
    for (auto _ : state) addRow(ours, ++n % kParents + 1);
    ours.good();
}
void rowAddTheirs(benchmark::State& state) {
    Theirs theirs(kParents);
    auto* insert = theirs.prepare(kInsertRow);
    int32 n = 0;
    for (auto _ : state) {
        sqlite3_bind_int(insert, 1, ++n % kParents + 1);
        theirs.step(insert);
    }
    sqlite3_finalize(insert);
}
void rowsReadOurs(benchmark::State& state) {
    Ours ours(kParents);
    for (int32 n = 0; n < kParents * 10; ++n) addRow(ours, n % kParents + 1);
    TextTable rows;
    int32 n = 0;
    for (auto _ : state) {
        ours.db->AktSatzNr(++n % kParents + 1);
        ours.db->KetteLesen(1, rows);
        if (rows.size() != 10) die("rows are missing");
    }
    ours.good();
}
void rowsReadTheirs(benchmark::State& state) {
    Theirs theirs(kParents);
    auto* insert = theirs.prepare(kInsertRow);
    for (int32 n = 0; n < kParents * 10; ++n) {
        sqlite3_bind_int(insert, 1, n % kParents + 1);
        theirs.step(insert);
    }
    sqlite3_finalize(insert);
    auto* record = theirs.prepare("SELECT * FROM Kunde WHERE rowid=?1");
    auto* select = theirs.prepare("SELECT Text, Zahl FROM Pos WHERE Kunde=?1 ORDER BY rowid");
    int32 n = 0;
    for (auto _ : state) {
        ++n;
        for (auto* statement : {record, select}) {
            sqlite3_bind_int(statement, 1, n % kParents + 1);
            benchmark::DoNotOptimize(theirs.step(statement));
        }
    }
    sqlite3_finalize(record);
    sqlite3_finalize(select);
}
BENCHMARK(rowAddOurs)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(rowAddTheirs)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(rowsReadOurs)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(rowsReadTheirs)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace
}  // namespace tsRtm::bench
