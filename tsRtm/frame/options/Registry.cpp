#include "tsRtm/frame/options/Registry.hpp"

#include <algorithm>
#include <array>
#include <optional>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/state/SystemKinds.hpp"

namespace tsRtm::registry {

namespace {

constexpr std::array hives{HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_USERS,
                           HKEY_PERFORMANCE_DATA};

constexpr platform::HKeys storesHive(HKeys hive) noexcept {
    return static_cast<platform::HKeys>(static_cast<uint32>(hive));
}
static_assert(storesHive(HKEY_CLASSES_ROOT) == platform::HKeys::classesRoot);
static_assert(storesHive(HKEY_PERFORMANCE_DATA) == platform::HKeys::performanceData);

struct FlagWord {
    TextView word, flag;
};

constexpr std::array flagWords{
    FlagWord{u"WAHR", u"-1"},
    FlagWord{u"TRUE", u"-1"},
    FlagWord{u"FALSCH", u"0"},
    FlagWord{u"FALSE", u"0"},
};

// Bits of an access mask that ask for a change: set a value, make a key, write attributes (two), delete
// (two), change rights, change the owner, all, write.
constexpr uint32 writeBits =
    0x2 | 0x4 | 0x10 | 0x40 | 0x100 | 0x10000 | 0x40000 | 0x80000 | 0x10000000 | 0x40000000;
constexpr uint32 neutralBits = 0x120000;  // read the rights, wait: in masks of both kinds

std::optional<platform::HKeys> hiveOf(HKeys hive) noexcept {
    if (std::find(hives.begin(), hives.end(), hive) == hives.end()) return std::nullopt;
    return storesHive(hive);
}

platform::Settings& store() { return rtmMain::system().settings; }

// Empty for a text that is no flag word.
TextView flagOf(TextView value) {
    const Text wanted = upper(value);
    for (const auto& row : flagWords)
        if (row.word == wanted) return row.flag;
    return {};
}

}  // namespace

Text pathOf(TextView subkey) {
    Text path(kRoot);
    if (!subkey.empty() && subkey.front() != u'\\') path += u'\\';
    return path += subkey;
}

Text storedForm(TextView value) {
    if (const auto flag = flagOf(value); !flag.empty()) return Text(flag);
    if (value.empty() && rtmMain::state().os.platformId == systemKind::ntFamily) return Text(1, u'\0');
    return Text(value);
}

Text read(HKeys hive, TextView path, TextView name) {
    const auto known = hiveOf(hive);
    if (!known) return {};
    Text value = rtmMain::RegRaw(*known, path, name);
    const auto flag = flagOf(value);
    if (flag.empty()) return value;
    // The old word stays where this fails, and is read again next time. It may have ended in a NUL.
    for (const Text& word : {value, value + u'\0'})
        static_cast<void>(store().replace(*known, path, name, word, flag));
    return rtmMain::RegRaw(*known, path, name);
}

void write(HKeys hive, TextView path, TextView name, TextView value) {
    if (const auto known = hiveOf(hive))
        static_cast<void>(store().set(*known, path, name, storedForm(value)));
}

void erase(HKeys hive, TextView path, TextView name) {
    const auto known = hiveOf(hive);
    if (!known) return;
    static_cast<void>(name.empty() ? store().removeKey(*known, path) : store().remove(*known, path, name));
}

bool mayAccess(HKeys hive, TextView path, int32 mask) {
    if (rtmMain::state().os.platformId != systemKind::ntFamily) return true;
    const auto known = hiveOf(hive);
    const auto bits = static_cast<uint32>(mask);
    const bool writes = (bits & writeBits) != 0;
    const bool reads = (bits & ~(writeBits | neutralBits)) != 0;
    return known && (!writes || store().mayAccess(*known, path, true)) &&
           (!reads || store().mayAccess(*known, path, false));
}

}  // namespace tsRtm::registry
