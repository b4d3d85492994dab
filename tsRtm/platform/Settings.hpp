#pragma once
// The settings store ("registry"): texts by hive, key path and name.
#include <optional>
#include <vector>

#include "tsRtm/platform/SystemError.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm::platform {

// The hives by their numbers. Each is a tree of its own.
enum class HKeys : uint32 {
    classesRoot = 0x80000000,
    currentUser = 0x80000001,
    localMachine = 0x80000002,
    users = 0x80000003,
    performanceData = 0x80000004,
};

// Key paths ("Software\Tessarol") and names are compared without regard to case; delimiters at the ends of a
// path do not count. A value is any text. A ground whose values have kinds gives text kinds as they are,
// numbers as decimal text, and all others as nothing.
//
// Several processes write at once, and a reader sees the newest value. A damaged, locked or missing store
// reads as empty; a write then gives an error and changes nothing: a damaged store is left to people, since
// most of it may still be saved.
class Settings {
 public:
    virtual ~Settings() = default;
    virtual std::optional<Text> get(HKeys hive, TextView key, TextView name) = 0;
    // Makes the key and the value where they are missing.
    [[nodiscard]] virtual SystemError set(HKeys hive, TextView key, TextView name, TextView value) = 0;
    // Sets a value only where it is `expected` still, in one step against all other writers. Success, and
    // nothing done, where it is another one by now.
    [[nodiscard]] virtual SystemError replace(HKeys hive, TextView key, TextView name, TextView expected,
                                              TextView value) = 0;
    // Success where there is no such value or key.
    [[nodiscard]] virtual SystemError remove(HKeys hive, TextView key, TextView name) = 0;
    // The key with its values and all keys below it. invalidParameter for an empty path: a hive stays.
    [[nodiscard]] virtual SystemError removeKey(HKeys hive, TextView key) = 0;
    // Names of the values of one key, sorted.
    virtual std::vector<Text> names(HKeys hive, TextView key) = 0;
    // Names of the keys right below one key, sorted.
    virtual std::vector<Text> keys(HKeys hive, TextView key) = 0;

    // Whether the user has the right to read, or to write, at this key or where it would be made.
    virtual bool mayAccess(HKeys hive, TextView key, bool write) = 0;
};

// For those who look after the store.
class SettingsCare {
 public:
    virtual ~SettingsCare() = default;
    // Why the hive reads as empty; none for a sound one and for one in which nothing was stored yet.
    [[nodiscard]] virtual SystemError check(HKeys hive) = 0;
    // Where people find the hive: a file's name, for instance.
    virtual Text location(HKeys hive) = 0;
};

}  // namespace tsRtm::platform
