#include "cli/options/OptionList.hpp"

#include <algorithm>
#include <array>

#include "cli/shared/CliError.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/options/OptionRules.hpp"
#include "tsRtm/frame/options/Registry.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::cli {
namespace {

using enum OptionKind;

constexpr std::array kLibraryOptions{
    LibraryOption{u"Debug", HKEY_CURRENT_USER, flag, u"0"},
    LibraryOption{u"Expert", HKEY_CURRENT_USER, flag, u"0"},
    LibraryOption{u"NetWait", HKEY_CURRENT_USER, number, u"5"},
    LibraryOption{u"NoMBString", HKEY_CURRENT_USER, flag, u"0"},
    LibraryOption{u"RunTimeDir", HKEY_LOCAL_MACHINE, text, u""},
    LibraryOption{u"RunTimeDataDir", HKEY_LOCAL_MACHINE, text, u""},
};

struct Limits {
    TextView option;
    int32 low, high;
    int32 step = 1;
};

// Numbers that mean something; others would be stored and then not be used.
// clang-format off
constexpr std::array kLimits{
    Limits{u"NetWait",           1,    999},
    Limits{u"UpdateStrategy",    0,    3},
    Limits{u"PreviewWindowSize", 0,    1},
    Limits{u"PreviewZoom",       0,    2},
    Limits{u"ExpressBarWidth",   1000, 9999},
    Limits{u"ExpressBarHeight",  1,    3},
    Limits{u"ToolbarSize",       16,   128, 8},
    Limits{u"MDIChildWState",    0,    2,   2},
    Limits{u"TileWallPaper",     0,    9},
};
// clang-format on

constexpr std::array kTrueWords{u"TRUE", u"YES", u"ON", u"WAHR", u"JA", u"AN", u"1", u"-1"};
constexpr std::array kFalseWords{u"FALSE", u"NO", u"OFF", u"FALSCH", u"NEIN", u"AUS", u"0"};

Text raw(HKeys hive, TextView path, TextView name) { return rtmMain::RegRaw(storesHive(hive), path, name); }

template <class Words>
bool among(const Words& words, TextView word) {
    return std::any_of(words.begin(), words.end(), [&](TextView one) { return one == word; });
}

Text storableNumber(const Option& option, const std::string& word) {
    const Text digits = fromUtf8(word);
    const int32 value = roundToInt32(Val(digits));
    std::string range;
    bool fits = IstZiffern(digits);
    for (const auto& row : kLimits) {
        if (toUtf8(row.option) != option.label) continue;
        fits = fits && value >= row.low && value <= row.high && (value - row.low) % row.step == 0;
        range = " from " + std::to_string(row.low) + " to " + std::to_string(row.high);
        if (row.step > 1) range += " in steps of " + std::to_string(row.step);
    }
    if (!fits) throw CliError(option.label + " is a number" + range + ", not '" + word + "'");
    return toText(value);  // without zeros in front: only the first characters are read
}

}  // namespace

OptionList::OptionList(OptionScope scope) : scope_(std::move(scope)) {
    rtmMain::state().appProgID = fromUtf8(scope_.app.value_or(""));
}

Text OptionList::path() const { return registry::pathOf(rtmMain::state().appProgID); }

std::vector<Text> OptionList::keys() const { return store().keys(storesHive(hive()), registry::kRoot); }

Option OptionList::of(const OptionRule& rule) const {
    const HKeys place =
        scope_.machine && rule.place == OptionPlace::machine ? HKEY_LOCAL_MACHINE : options_.hive(rule);
    return {toUtf8(rule.property),
            Text(rule.name),
            place,
            registry::pathOf(clsTSOptions::subkey(rule)),
            rule.kind,
            &rule,
            nullptr};
}

// Whether an option has a meaning in the scope.
bool OptionList::has(const OptionRule& rule) const noexcept {
    if (scope_.machine) return scope_.app && rule.place == OptionPlace::machine;
    return scope_.app || rule.twoLevels || rule.place == OptionPlace::internet;
}

std::vector<Option> OptionList::all() const {
    std::vector<Option> found;
    if (!scope_.app)
        for (const auto& row : kLibraryOptions)
            if (row.hive == hive())
                found.push_back({toUtf8(row.name), Text(row.name), row.hive, Text(registry::kRoot), row.kind,
                                 nullptr, &row});
    for (const auto& rule : optionTable::rows)
        if (has(rule)) found.push_back(of(rule));
    for (const auto& name : store().names(storesHive(hive()), path())) {
        const bool known = std::any_of(found.begin(), found.end(), [&](const Option& option) {
            return option.hive == hive() && option.path == path() && equalIgnoringCase(option.name, name);
        });
        if (!known) found.push_back({toUtf8(name), name, hive(), path(), text, nullptr, nullptr});
    }
    return found;
}

Option OptionList::find(const std::string& name) const {
    const Text wanted = fromUtf8(name);
    if (wanted.empty()) throw CliError("an option has a name");
    const auto named = [&](TextView other) { return equalIgnoringCase(wanted, other); };
    if (!scope_.app)
        for (const auto& row : kLibraryOptions)
            if (named(row.name) && (row.hive == hive() || !scope_.machine))
                return {toUtf8(row.name), Text(row.name), row.hive, Text(registry::kRoot),
                        row.kind,         nullptr,        &row};
    for (const auto& rule : optionTable::rows) {
        if (!named(rule.property) && !named(rule.name)) continue;
        if (has(rule)) return of(rule);
        const std::string label = toUtf8(rule.property);
        if (scope_.machine && rule.place != OptionPlace::machine)
            throw CliError(label + " is each user's own; leave --machine out");
        throw CliError(label + " is an option of an application; name it with --app ID");
    }
    return {name, wanted, hive(), path(), text, nullptr, nullptr};
}

Text OptionList::stored(const Option& option) const {
    // A machine's own value is asked for by itself; the library would look where this session keeps it.
    if (option.rule && option.hive == options_.hive(*option.rule)) return options_.stored(*option.rule);
    return raw(option.hive, option.path, option.name);
}

Text OptionList::value(const Option& option) const {
    Text text = stored(option);
    if (option.rule && option.hive == options_.hive(*option.rule)) return options_.effective(*option.rule);
    if (!option.library || option.kind == OptionKind::text) return text;
    const int32 read = rtmMain::SwitchValue(text);
    if (option.kind == flag) return read != 0 ? u"-1" : u"0";
    return read != 0 ? toText(read) : Text(option.library->unset);
}

std::string OptionList::source(const Option& option) const {
    if (stored(option).empty()) return "default";
    if (option.hive == HKEY_LOCAL_MACHINE) return "machine";
    const bool own = option.path == path() && scope_.app;
    return own && !raw(option.hive, option.path, option.name).empty() ? "application" : "all applications";
}

Text OptionList::storable(const Option& option, const std::string& word) {
    const Text upperWord = upper(fromUtf8(word));
    if (option.kind == text) return registry::storedForm(fromUtf8(word));
    if (option.kind == number) return storableNumber(option, word);
    if (among(kTrueWords, upperWord)) return u"-1";
    if (among(kFalseWords, upperWord)) return u"0";
    throw CliError(option.label + " is a flag: true or false, not '" + word + "'");
}

}  // namespace tsRtm::cli
