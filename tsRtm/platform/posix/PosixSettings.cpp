#include "tsRtm/platform/posix/PosixSettings.hpp"

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "tsRtm/platform/posix/PosixFolders.hpp"

namespace tsRtm::platform::posix {
namespace {

constexpr int kWaitMilliseconds = 3000;

// Asks every millisecond: the growing pauses of the library's own handler let a busy neighbour win every
// time.
int waitForNeighbour(void*, int asked) noexcept {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return asked < kWaitMilliseconds ? 1 : 0;
}

// Rollback journal (the default), not a write-ahead log: the latter needs shared memory, which a home on a
// network folder does not have.
constexpr const char* kSchema =
    "CREATE TABLE IF NOT EXISTS settings ("
    " hive INTEGER NOT NULL,"
    " path TEXT NOT NULL COLLATE NOCASE,"
    " name TEXT NOT NULL COLLATE NOCASE,"
    " text TEXT NOT NULL,"
    " PRIMARY KEY (hive, path, name)) WITHOUT ROWID";
constexpr const char* kGet = "SELECT text FROM settings WHERE hive = ?1 AND path = ?2 AND name = ?3";
constexpr const char* kSet =
    "INSERT INTO settings (hive, path, name, text) VALUES (?1, ?2, ?3, ?4)"
    " ON CONFLICT (hive, path, name) DO UPDATE SET text = excluded.text";
constexpr const char* kRemove = "DELETE FROM settings WHERE hive = ?1 AND path = ?2 AND name = ?3";
constexpr const char* kNames = "SELECT name FROM settings WHERE hive = ?1 AND path = ?2 ORDER BY name";
constexpr const char* kPaths = "SELECT DISTINCT path FROM settings WHERE hive = ?1 ORDER BY path";

const char* hiveName(HKeys hive) noexcept {
    switch (hive) {
        case HKeys::classesRoot:
            return "classesRoot";
        case HKeys::currentUser:
            return "currentUser";
        case HKeys::localMachine:
            return "localMachine";
        case HKeys::users:
            return "users";
        case HKeys::performanceData:
            return "performanceData";
    }
    return "other";
}

struct KnownCode {
    int code;
    SystemError error;
};

// clang-format off
constexpr KnownCode kKnownCodes[] = {
    {SQLITE_OK,       SystemError::none},
    {SQLITE_ROW,      SystemError::none},
    {SQLITE_DONE,     SystemError::none},
    {SQLITE_BUSY,     SystemError::lockViolation},
    {SQLITE_LOCKED,   SystemError::lockViolation},
    {SQLITE_READONLY, SystemError::accessDenied},
    {SQLITE_PERM,     SystemError::accessDenied},
    {SQLITE_AUTH,     SystemError::accessDenied},
    {SQLITE_CANTOPEN, SystemError::accessDenied},
    {SQLITE_FULL,     SystemError::diskFull},
    {SQLITE_NOMEM,    SystemError::notEnoughMemory},
    {SQLITE_CORRUPT,  SystemError::readFault},
    {SQLITE_NOTADB,   SystemError::readFault},
};
// clang-format on

SystemError fromSqlite(int code) noexcept {
    for (const auto& row : kKnownCodes)
        if (row.code == (code & 0xFF)) return row.error;
    return SystemError::writeFault;
}

TextView withoutOuterMarks(TextView key) noexcept {
    while (!key.empty() && key.front() == u'\\') key.remove_prefix(1);
    while (!key.empty() && key.back() == u'\\') key.remove_suffix(1);
    return key;
}

}  // namespace

void PosixSettings::Closer::operator()(sqlite3* database) const noexcept { ::sqlite3_close_v2(database); }

// One prepared statement, its first parameter the hive.
class PosixSettings::Query {
 public:
    Query(sqlite3* database, const char* sql, HKeys hive) {
        code_ = ::sqlite3_prepare_v2(database, sql, -1, &statement_, nullptr);
        if (code_ == SQLITE_OK) code_ = ::sqlite3_bind_int64(statement_, 1, static_cast<uint32>(hive));
    }
    ~Query() { ::sqlite3_finalize(statement_); }
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;

    void bind(int parameter, TextView text) {
        if (code_ != SQLITE_OK) return;
        const auto utf8 = toUtf8(text);
        code_ = ::sqlite3_bind_text64(statement_, parameter, utf8.data(), utf8.size(), SQLITE_TRANSIENT,
                                      SQLITE_UTF8);
    }
    // True while there is a row.
    bool step() {
        if (code_ == SQLITE_OK || code_ == SQLITE_ROW) code_ = ::sqlite3_step(statement_);
        return code_ == SQLITE_ROW;
    }
    Text text() const {
        const auto* bytes = reinterpret_cast<const char*>(::sqlite3_column_text(statement_, 0));
        const auto length = static_cast<std::size_t>(::sqlite3_column_bytes(statement_, 0));
        return bytes ? fromUtf8({bytes, length}) : Text();
    }
    SystemError error() const noexcept { return fromSqlite(code_); }

 private:
    sqlite3_stmt* statement_ = nullptr;
    int code_ = SQLITE_OK;
};

PosixSettings::PosixSettings(std::string userFolder, std::string machineFolder)
    : userFolder_(std::move(userFolder)), machineFolder_(std::move(machineFolder)) {}

std::string PosixSettings::folder(HKeys hive) const {
    return hive == HKeys::localMachine ? machineFolder_ : userFolder_;
}

sqlite3* PosixSettings::reading(HKeys hive) {
    auto& database = open_[hive];
    if (database) return database.get();
    const auto path = folder(hive) + '/' + hiveName(hive) + ".sqlite";
    // Most users never store a setting: the first look does not wake the database library.
    if (::access(path.c_str(), F_OK) != 0) return nullptr;
    sqlite3* opened = nullptr;
    // Opens for reading alone where the file may not be written.
    const int code = ::sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    Database owner(opened);
    if (code != SQLITE_OK) return nullptr;
    ::sqlite3_busy_handler(opened, &waitForNeighbour, nullptr);
    database = std::move(owner);
    return opened;
}

Result<sqlite3*> PosixSettings::writing(HKeys hive) {
    if (auto* database = reading(hive)) return database;
    const unsigned mode = hive == HKeys::localMachine ? 0755 : 0700;
    if (!makeFolders(folder(hive), mode)) return SystemError::accessDenied;
    const auto path = folder(hive) + '/' + hiveName(hive) + ".sqlite";
    sqlite3* opened = nullptr;
    const int code =
        ::sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    Database owner(opened);
    if (code != SQLITE_OK) return fromSqlite(code);
    ::sqlite3_busy_handler(opened, &waitForNeighbour, nullptr);
    open_[hive] = std::move(owner);
    return opened;
}

SystemError PosixSettings::change(HKeys hive, const char* sql, TextView key, TextView name,
                                  const TextView* value) {
    const auto database = writing(hive);
    if (!database) return database.error();
    const auto run = [&](const char* command) {
        return fromSqlite(::sqlite3_exec(*database, command, nullptr, nullptr, nullptr));
    };
    // The right to write is taken first: a reader that wants it later would be refused without a wait.
    auto error = run("BEGIN IMMEDIATE");
    // Each time: the file may be new, or another process may have made it at this moment.
    if (!failed(error)) error = run(kSchema);
    if (!failed(error)) {
        Query query(*database, sql, hive);
        query.bind(2, withoutOuterMarks(key));
        query.bind(3, name);
        if (value) query.bind(4, *value);
        query.step();
        error = query.error();
    }
    if (!failed(error)) error = run("COMMIT");
    if (failed(error)) open_.erase(hive);  // closing rolls back
    return error;
}

std::vector<Text> PosixSettings::read(HKeys hive, const char* sql,
                                      std::initializer_list<TextView> parameters) {
    auto* database = reading(hive);
    if (!database) return {};
    std::vector<Text> rows;
    auto error = SystemError::none;
    {
        Query query(database, sql, hive);
        int number = 2;
        for (const auto parameter : parameters) query.bind(number++, parameter);
        while (query.step()) rows.push_back(query.text());
        error = query.error();
    }
    if (!failed(error)) return rows;
    open_.erase(hive);  // after its statement: the file may be mended or replaced by the next question
    return {};
}

std::optional<Text> PosixSettings::get(HKeys hive, TextView key, TextView name) {
    const auto rows = read(hive, kGet, {withoutOuterMarks(key), name});
    return rows.empty() ? std::nullopt : std::optional(rows.front());
}

SystemError PosixSettings::set(HKeys hive, TextView key, TextView name, TextView value) {
    return change(hive, kSet, key, name, &value);
}

SystemError PosixSettings::remove(HKeys hive, TextView key, TextView name) {
    if (!reading(hive)) return SystemError::none;  // what is not there is removed
    return change(hive, kRemove, key, name, nullptr);
}

std::vector<Text> PosixSettings::names(HKeys hive, TextView key) {
    return read(hive, kNames, {withoutOuterMarks(key)});
}

std::vector<Text> PosixSettings::keys(HKeys hive, TextView key) {
    Text prefix(withoutOuterMarks(key));
    if (!prefix.empty()) prefix += u'\\';
    std::vector<Text> result;
    for (const auto& path : read(hive, kPaths, {})) {
        if (path.size() <= prefix.size()) continue;
        if (!equalIgnoringCase(TextView(path).substr(0, prefix.size()), prefix)) continue;
        const Text child = path.substr(prefix.size(), path.find(u'\\', prefix.size()) - prefix.size());
        const bool known = std::any_of(result.begin(), result.end(), [&child](const Text& other) {
            return equalIgnoringCase(other, child);
        });
        if (!known) result.push_back(child);
    }
    std::sort(result.begin(), result.end(), [](const Text& a, const Text& b) { return upper(a) < upper(b); });
    return result;
}

}  // namespace tsRtm::platform::posix
