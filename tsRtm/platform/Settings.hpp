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

// Key paths ("Software\Tessarol") and names are compared without regard to case. Several processes write at
// once, and a reader sees the newest value. A damaged, locked or missing store reads as empty; a write then
// gives an error and changes nothing.
class Settings {
 public:
    virtual ~Settings() = default;
    virtual std::optional<Text> get(HKeys hive, TextView key, TextView name) = 0;
    [[nodiscard]] virtual SystemError set(HKeys hive, TextView key, TextView name, TextView value) = 0;
    [[nodiscard]] virtual SystemError remove(HKeys hive, TextView key, TextView name) = 0;
    // Names of the values of one key, sorted.
    virtual std::vector<Text> names(HKeys hive, TextView key) = 0;
    // Names of the keys right below one key, sorted.
    virtual std::vector<Text> keys(HKeys hive, TextView key) = 0;
};

}  // namespace tsRtm::platform
