#pragma once
// One hive of settings in a SQLite database: its opening, its statements, its waits.
#include <array>
#include <chrono>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "tsRtm/platform/SystemError.hpp"
#include "tsRtm/types/Text.hpp"

struct sqlite3;
struct sqlite3_stmt;

namespace tsRtm::platform::posix {

// What is asked of the table settings (hive, path, name, text). The first parameter is always the hive, the
// others come in the order told here.
enum class SettingsQuery {
    value,      // path, name: the text
    names,      // path: names of its values
    paths,      // all paths
    check,      // none: "ok" of a sound database
    set,        // path, name, text
    replace,    // path, name, text, text until now
    remove,     // path, name
    removeKey,  // path
};

// Opened at the first question that finds the file, and kept open with its statements; opened anew when the
// file was replaced by another one and after every error. Not thread-safe.
class SettingsFile {
 public:
    // `folderMode`: rights of folders that are made for it. A question waits for other processes no longer
    // than `patience`; once one has waited in vain, the next do not wait at all until one succeeds, so that a
    // neighbour that hangs delays a program once and not at each setting.
    SettingsFile(std::string path, uint32 hive, unsigned folderMode, std::chrono::milliseconds patience);
    ~SettingsFile();
    SettingsFile(const SettingsFile&) = delete;
    SettingsFile& operator=(const SettingsFile&) = delete;

    const std::string& path() const noexcept { return path_; }
    // The first column of all rows; none where there is no file or no table yet.
    Result<std::vector<Text>> read(SettingsQuery query, std::initializer_list<TextView> parameters);
    // All or nothing. Makes file and table where `makes`, else does nothing where they are missing.
    [[nodiscard]] SystemError change(SettingsQuery query, std::initializer_list<TextView> parameters,
                                     bool makes);

 private:
    static constexpr std::size_t kQueries = 8;
    struct Closer {
        void operator()(sqlite3* database) const noexcept;
        void operator()(sqlite3_stmt* statement) const noexcept;
    };

    SystemError open(bool make);
    void close() noexcept;
    // SQLite's result code of one statement with its parameters; rows go to `rows`.
    int run(SettingsQuery query, std::initializer_list<TextView> parameters, std::vector<Text>& rows);
    int runInTransaction(SettingsQuery query, std::initializer_list<TextView> parameters);
    // After every question: what the code means, and what follows from it.
    SystemError settle(int code);
    static int waitForNeighbour(void* self, int asked) noexcept;

    std::string path_;
    uint32 hive_;
    unsigned folderMode_;
    std::chrono::milliseconds patience_;
    bool patient_ = true;
    std::unique_ptr<sqlite3, Closer> database_;
    std::array<std::unique_ptr<sqlite3_stmt, Closer>, kQueries> statements_;  // closed before the database
};

}  // namespace tsRtm::platform::posix
