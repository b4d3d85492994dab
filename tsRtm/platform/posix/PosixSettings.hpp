#pragma once
// The settings store in SQLite databases, one for each hive.
#include <initializer_list>
#include <map>
#include <memory>
#include <string>

#include "tsRtm/platform/Settings.hpp"

struct sqlite3;

namespace tsRtm::platform::posix {

// Files "<hive>.sqlite" with one table, settings (hive, path, name, text), readable with any SQLite tool.
// Writers wait for each other a few seconds at most. A database is opened at its first use, and anew after an
// error. Letters beyond ASCII must match exactly (the collation NOCASE folds no others).
class PosixSettings final : public Settings {
 public:
    // The machine's hive lies in a folder of its own, which users may read; all others lie in the user's.
    PosixSettings(std::string userFolder, std::string machineFolder);

    std::optional<Text> get(HKeys hive, TextView key, TextView name) override;
    [[nodiscard]] SystemError set(HKeys hive, TextView key, TextView name, TextView value) override;
    [[nodiscard]] SystemError remove(HKeys hive, TextView key, TextView name) override;
    std::vector<Text> names(HKeys hive, TextView key) override;
    std::vector<Text> keys(HKeys hive, TextView key) override;

 private:
    struct Closer {
        void operator()(sqlite3* database) const noexcept;
    };
    using Database = std::unique_ptr<sqlite3, Closer>;
    class Query;

    std::string folder(HKeys hive) const;
    // nullptr where there is none to read.
    sqlite3* reading(HKeys hive);
    // Makes the store where it is missing.
    Result<sqlite3*> writing(HKeys hive);
    // The first column of all rows; nothing where the store cannot be read.
    std::vector<Text> read(HKeys hive, const char* sql, std::initializer_list<TextView> parameters);
    SystemError change(HKeys hive, const char* sql, TextView key, TextView name, const TextView* value);

    std::string userFolder_;
    std::string machineFolder_;
    std::map<HKeys, Database> open_;
};

}  // namespace tsRtm::platform::posix
