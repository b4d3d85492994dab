#include "tsRtm/platform/posix/SettingsFile.hpp"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

#include "tsRtm/platform/posix/PosixFolders.hpp"
#include "tsRtm/platform/posix/PosixHandle.hpp"
#include "tsRtm/platform/posix/PosixPath.hpp"

namespace tsRtm::platform::posix {
namespace {

// Rollback journal (the default), not a write-ahead log: the latter needs shared memory, which a home on a
// network folder does not have.
constexpr const char* kSchema =
    "CREATE TABLE IF NOT EXISTS settings ("
    " hive INTEGER NOT NULL,"
    " path TEXT NOT NULL COLLATE NOCASE,"
    " name TEXT NOT NULL COLLATE NOCASE,"
    " text TEXT NOT NULL,"
    " PRIMARY KEY (hive, path, name)) WITHOUT ROWID";

// In the order of SettingsQuery.
constexpr std::array kQueryTexts{
    "SELECT text FROM settings WHERE hive = ?1 AND path = ?2 AND name = ?3",
    "SELECT name FROM settings WHERE hive = ?1 AND path = ?2 ORDER BY name",
    "SELECT DISTINCT path FROM settings WHERE hive = ?1 ORDER BY path",
    "SELECT quick_check FROM pragma_quick_check(1) WHERE ?1 = ?1",
    "INSERT INTO settings (hive, path, name, text) VALUES (?1, ?2, ?3, ?4)"
    " ON CONFLICT (hive, path, name) DO UPDATE SET text = excluded.text",
    "UPDATE settings SET text = ?4 WHERE hive = ?1 AND path = ?2 AND name = ?3 AND text = ?5",
    "DELETE FROM settings WHERE hive = ?1 AND path = ?2 AND name = ?3",
    "DELETE FROM settings WHERE hive = ?1 AND (path = ?2"
    " OR substr(path, 1, length(?2) + 1) COLLATE NOCASE = ?2 || '\\')",
};

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

Text columnText(sqlite3_stmt* statement) {
    const auto* bytes = reinterpret_cast<const char*>(::sqlite3_column_text(statement, 0));
    const auto length = static_cast<std::size_t>(::sqlite3_column_bytes(statement, 0));
    return bytes ? fromUtf8({bytes, length}) : Text();
}

int bindText(sqlite3_stmt* statement, int parameter, TextView text) {
    const auto utf8 = toUtf8(text);
    return ::sqlite3_bind_text64(statement, parameter, utf8.data(), utf8.size(), SQLITE_TRANSIENT,
                                 SQLITE_UTF8);
}

// An empty file is a store to be. It gets these rights whatever the user's mask takes away: a store for all
// that an administrator makes must not be for him alone.
void makeStore(const std::string& path, unsigned mode) {
    const Handle made(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (made) static_cast<void>(::fchmod(made.get(), mode));
}

}  // namespace

void SettingsFile::Closer::operator()(sqlite3* database) const noexcept { ::sqlite3_close_v2(database); }
void SettingsFile::Closer::operator()(sqlite3_stmt* statement) const noexcept {
    ::sqlite3_finalize(statement);
}

SettingsFile::SettingsFile(std::string path, uint32 hive, unsigned folderMode,
                           std::chrono::milliseconds patience)
    : path_(std::move(path)), hive_(hive), folderMode_(folderMode), patience_(patience) {
    static_assert(kQueryTexts.size() == kQueries);
}

SettingsFile::~SettingsFile() = default;

// Asks every millisecond: the growing pauses of the database's own handler let a busy neighbour win every
// time.
int SettingsFile::waitForNeighbour(void* self, int asked) noexcept {
    const auto& file = *static_cast<const SettingsFile*>(self);
    if (!file.patient_ || asked >= file.patience_.count()) return 0;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return 1;
}

void SettingsFile::close() noexcept {
    for (auto& statement : statements_) statement.reset();
    database_.reset();
}

// Leaves no database open, without an error, where there is no file and none is to be made.
SystemError SettingsFile::open(bool make) {
    if (database_) {
        int moved = 0;
        ::sqlite3_file_control(database_.get(), nullptr, SQLITE_FCNTL_HAS_MOVED, &moved);
        if (moved == 0) return SystemError::none;
        close();  // somebody has put another file in its place, or none
    }
    // Most users never store a setting: the first look does not wake the database library.
    if (!make && ::access(path_.c_str(), F_OK) != 0) return SystemError::none;
    if (make) {
        if (!makeFolders(folderOf(path_), folderMode_)) return SystemError::accessDenied;
        makeStore(path_, folderMode_ & 0666);
    }
    // Opens for reading alone where the file may not be written.
    sqlite3* opened = nullptr;
    const int code = ::sqlite3_open_v2(path_.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    std::unique_ptr<sqlite3, Closer> owner(opened);
    if (code != SQLITE_OK) return fromSqlite(code);
    ::sqlite3_busy_handler(opened, &waitForNeighbour, this);
    database_ = std::move(owner);
    return SystemError::none;
}

int SettingsFile::run(SettingsQuery query, std::initializer_list<TextView> parameters,
                      std::vector<Text>& rows) {
    const auto index = static_cast<std::size_t>(query);
    auto& statement = statements_.at(index);
    if (!statement) {
        sqlite3_stmt* prepared = nullptr;
        const int code = ::sqlite3_prepare_v3(database_.get(), kQueryTexts.at(index), -1,
                                              SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
        if (code != SQLITE_OK) return code;
        statement.reset(prepared);
    }
    int code = ::sqlite3_bind_int64(statement.get(), 1, hive_);
    int number = 2;
    for (const auto parameter : parameters)
        if (code == SQLITE_OK) code = bindText(statement.get(), number++, parameter);
    if (code == SQLITE_OK)
        while ((code = ::sqlite3_step(statement.get())) == SQLITE_ROW)
            rows.push_back(columnText(statement.get()));
    ::sqlite3_reset(statement.get());  // gives the lock back; its result repeats the code
    ::sqlite3_clear_bindings(statement.get());
    return code;
}

int SettingsFile::runInTransaction(SettingsQuery query, std::initializer_list<TextView> parameters) {
    const auto command = [this](const char* text) {
        return ::sqlite3_exec(database_.get(), text, nullptr, nullptr, nullptr);
    };
    // The right to write is taken first: a reader that wants it later would be refused without a wait.
    int code = command("BEGIN IMMEDIATE");
    // Each time: the file may be new, or another process may have made it at this moment.
    if (code == SQLITE_OK) code = command(kSchema);
    std::vector<Text> none;
    if (code == SQLITE_OK) code = run(query, parameters, none);
    return code == SQLITE_DONE ? command("COMMIT") : code;
}

SystemError SettingsFile::settle(int code) {
    const auto error = fromSqlite(code);
    patient_ = error != SystemError::lockViolation;
    if (failed(error)) close();  // rolls back; the file may be mended or replaced by the next question
    return error;
}

Result<std::vector<Text>> SettingsFile::read(SettingsQuery query,
                                             std::initializer_list<TextView> parameters) {
    std::vector<Text> rows;
    if (const auto error = open(false); failed(error)) return error;
    if (!database_) return rows;
    const int code = run(query, parameters, rows);
    if (code == SQLITE_ERROR) return std::vector<Text>();  // no table: nothing was stored yet
    if (const auto error = settle(code); failed(error)) return error;
    return rows;
}

SystemError SettingsFile::change(SettingsQuery query, std::initializer_list<TextView> parameters,
                                 bool makes) {
    if (const auto error = open(makes); failed(error)) return error;
    return database_ ? settle(runInTransaction(query, parameters)) : SystemError::none;
}

}  // namespace tsRtm::platform::posix
