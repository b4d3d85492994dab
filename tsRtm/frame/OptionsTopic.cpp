#include "tsRtm/frame/OptionsTopic.hpp"

#include <limits>

#include "tsRtm/frame/clsTSOptions.hpp"
#include "tsRtm/frame/options/IniFile.hpp"
#include "tsRtm/frame/options/Registry.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/NumberText.hpp"

namespace tsRtm {

namespace {

constexpr int32 readAndWrite = 0x120089 | 0x120116;
constexpr std::size_t flagCharacters = 2;

}  // namespace

OptionsTopic::OptionsTopic() : options_(std::make_shared<clsTSOptions>()) {}
OptionsTopic::~OptionsTopic() = default;

Text OptionsTopic::RegLesen(HKeys Zweig, TextView Subkey, TextView Variable) const {
    return RegLesenEx(Zweig, registry::pathOf(Subkey), Variable);
}

Text OptionsTopic::RegLesenEx(HKeys Zweig, TextView Subkey, TextView Variable) const {
    return registry::read(Zweig, Subkey, Variable);
}

void OptionsTopic::RegSchreiben(HKeys Zweig, TextView Subkey, TextView Variable, TextView Inhalt) const {
    RegSchreibenEX(Zweig, registry::pathOf(Subkey), Variable, Inhalt);
}

void OptionsTopic::RegSchreibenEX(HKeys Zweig, TextView Subkey, TextView Variable, TextView Inhalt) const {
    registry::write(Zweig, Subkey, Variable, Inhalt);
}

void OptionsTopic::RegLoeschen(HKeys Zweig, TextView Subkey, TextView Variable) const {
    RegLoeschenEx(Zweig, registry::pathOf(Subkey), Variable);
}

void OptionsTopic::RegLoeschenEx(HKeys Zweig, TextView Subkey, TextView Variable) const {
    registry::erase(Zweig, Subkey, Variable);
}

bool OptionsTopic::BoolOption(TextView REGKEY, TextView OptName) const {
    return Val(RegLesen(HKEY_CURRENT_USER, REGKEY, OptName).substr(0, flagCharacters)) != 0;
}

void OptionsTopic::BoolOption(TextView REGKEY, TextView OptName, bool Value) const {
    RegSchreiben(HKEY_CURRENT_USER, REGKEY, OptName, Value ? u"-1" : u"0");
}

int32 OptionsTopic::LongOption(TextView REGKEY, TextView OptName) const {
    const Text text = RegLesen(HKEY_CURRENT_USER, REGKEY, OptName);
    const auto& locale = rtmMain::state().locale;
    if (!IstNumerisch(text, locale.sepDec, locale.sep1000)) return 0;
    const float64 number = TSVal(text);
    const int32 rounded = roundToInt32(number);
    const bool fits =
        number < std::numeric_limits<int32>::max() + 0.5 && number >= std::numeric_limits<int32>::min() - 0.5;
    return fits ? rounded : 0;
}

void OptionsTopic::LongOption(TextView REGKEY, TextView OptName, int32 Value) const {
    RegSchreiben(HKEY_CURRENT_USER, REGKEY, OptName, toText(Value));
}

bool OptionsTopic::HKLMRights() const {
    return CheckRegistryAccess(HKEY_LOCAL_MACHINE, registry::pathOf(rtmMain::state().appProgID),
                               readAndWrite);
}

bool OptionsTopic::CheckRegistryAccess(HKeys RegHive, TextView REGKEY, int32 DesiredAccess) const {
    return registry::mayAccess(RegHive, REGKEY, DesiredAccess);
}

Text OptionsTopic::INIGetValue(TextView Path, TextView Sect, TextView Key) const {
    return iniValue(Path, Sect, Key);
}

std::shared_ptr<clsTSOptions> OptionsTopic::TSOptions() const { return options_; }

}  // namespace tsRtm
