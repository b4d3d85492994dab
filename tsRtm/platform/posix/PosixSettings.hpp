#pragma once
// The settings store in SQLite databases, one for each hive.
#include <map>

#include "tsRtm/platform/Settings.hpp"
#include "tsRtm/platform/posix/SettingsFile.hpp"

namespace tsRtm::platform::posix {

// Files "<hive>.sqlite" with one table, settings (hive, path, name, text), readable with any SQLite tool.
// Writers wait for each other a few seconds at most. Letters beyond ASCII must match exactly (the collation
// NOCASE folds no others).
//
// A file that is no database, or a damaged one, is never emptied, moved or made anew by this class: what can
// be read of it is read, writes into it fail or are undone. People save it (".recover" of the SQLite shell)
// or put it away; the next write then makes a new one. A program that died while it wrote leaves a journal
// beside the file, by which the next reader that may write undoes the half write; one that may not write
// reads nothing until then.
class PosixSettings final : public Settings, public SettingsCare {
 public:
    static constexpr std::chrono::milliseconds kPatience{3000};

    // The machine's hive lies in a folder of its own, which users may read; all others lie in the user's.
    PosixSettings(std::string userFolder, std::string machineFolder,
                  std::chrono::milliseconds patience = kPatience);

    std::optional<Text> get(HKeys hive, TextView key, TextView name) override;
    [[nodiscard]] SystemError set(HKeys hive, TextView key, TextView name, TextView value) override;
    [[nodiscard]] SystemError replace(HKeys hive, TextView key, TextView name, TextView expected,
                                      TextView value) override;
    [[nodiscard]] SystemError remove(HKeys hive, TextView key, TextView name) override;
    [[nodiscard]] SystemError removeKey(HKeys hive, TextView key) override;
    std::vector<Text> names(HKeys hive, TextView key) override;
    std::vector<Text> keys(HKeys hive, TextView key) override;
    bool mayAccess(HKeys hive, TextView key, bool write) override;
    [[nodiscard]] SystemError check(HKeys hive) override;
    Text location(HKeys hive) override;

 private:
    SettingsFile& file(HKeys hive);
    // Nothing where the store cannot be read.
    std::vector<Text> read(HKeys hive, SettingsQuery query, std::initializer_list<TextView> parameters);

    std::string userFolder_;
    std::string machineFolder_;
    std::chrono::milliseconds patience_;
    std::map<HKeys, SettingsFile> files_;
};

}  // namespace tsRtm::platform::posix
