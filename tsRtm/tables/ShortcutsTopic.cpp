#include "tsRtm/tables/ShortcutsTopic.hpp"

#include <algorithm>

#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/LocaleForms.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/tables/DatenTab.hpp"

namespace tsRtm {
namespace {

constexpr TextView kFileName = u"Tabelle.iom";
constexpr std::size_t kLongestKey = 4;
constexpr std::size_t kCodeDigits = 3;
constexpr std::size_t kOffsetDigits = 5;  // with the sign

struct Shortcut {
    Text key;
    Text replacement;
};

// Kept in the state of the process.
struct Shortcuts final : Object {
    std::vector<Shortcut> all;
    Text path;
    bool stopped = false;
};

Shortcuts& shortcuts() {
    auto& kept = rtmMain::state().shortcuts;
    if (!kept) kept = std::make_shared<Shortcuts>();
    return static_cast<Shortcuts&>(*kept);
}

// "^M" becomes code 13, and so on for the codes 64 to 95.
Text withControlCharacters(TextView text) {
    Text out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t next = i + 1 < text.size() ? text[i + 1] : u'\0';
        const bool control = text[i] == u'^' && next >= 64 && next <= 95;
        out += control ? static_cast<char16_t>(next - 64) : text[i];
        if (control) ++i;
    }
    return out;
}

// "~065" becomes "A".
Text withCodes(TextView text) {
    Text out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const TextView digits = text.substr(i + 1, kCodeDigits);
        const bool marked = text[i] == u'~' && !digits.empty() && digits[0] >= u'0' && digits[0] <= u'9';
        const int32 code = marked ? roundToInt32(Val(digits)) : 0;
        // Code 0 stays as it is written: it would end the text for other programs.
        const bool replaced = code >= 1 && code <= 255;
        out += replaced ? ansiToUnicode(static_cast<uint8>(code)) : text[i];
        if (replaced) i += digits.size();
    }
    return out;
}

Text timeWithSeconds() {
    for (;;) {
        Text minutes = rtmMain::TI_();
        const Text seconds = toText(100 + rtmMain::system().clock.now().parts().second).substr(1);
        if (minutes == rtmMain::TI_()) return (minutes += rtmMain::state().locale.sepTime) += seconds;
    }
}

// A letter of a form, as a capital, at this place from 0; `none` behind its end.
char16_t letterAt(TextView input, std::size_t place, char16_t none) {
    return place < input.size() ? upper(input[place]) : none;
}

Text timeForm(const Text& input) {
    switch (letterAt(input, 2, u'5')) {
        case u'5':
            return rtmMain::TI_();
        case u'0':
            return replaceAll(rtmMain::TI_(), rtmMain::state().locale.sepTime, u"");
        case u'8':
            return timeWithSeconds();
        default:
            return input;
    }
}

// Days from today, 0 without a sign.
int32 offsetIn(TextView input) {
    const auto position = [&](char16_t sign) {
        const auto found = input.find(sign);
        return found == TextView::npos ? 0 : found + 1;
    };
    // Both positions put together by "or": a form has one of them at most.
    const auto begin = position(u'+') | position(u'-');
    if (begin == 0 || begin > input.size()) return 0;
    return roundToInt32(Val(input.substr(begin - 1, kOffsetDigits)));
}

// Local digits of the day so many days from today.
Text dayFromToday(int32 days) {
    const clsDatum dates;
    const int64 today = dates.JulianDay(dates.DateTo6(rtmMain::DA8()));
    return dates.KalenderDay(roundToInt32(static_cast<float64>(today + days)));
}

Text dateForm(const Text& input) {
    const clsDatum dates;
    Text day = dayFromToday(offsetIn(input));
    const char16_t form = letterAt(input, 2, u'8');
    switch (form == u'+' || form == u'-' ? u'8' : form) {
        case u'Z':
            return dates.DateTo8(day) + u" " + rtmMain::TI_();
        case u'8':
            return dates.DateTo8(day);
        case u'0':
            return day;
        case u'6':
            return dates.DateTo8(day.size() < 6 ? day : day.substr(0, 4) + day.substr(day.size() - 2));
        case u'T':
            return dates.WordDate(day);
        case u'W':
            return dates.DayName(day) + u", " + dates.WordDate(day);
        default:
            return input;
    }
}

Text expandedForm(const Text& input) {
    switch (letterAt(input, 1, u'\0')) {
        case u'U':
            return {};  // a text of the host's own, which no host can set
        case u'Z':
            return timeForm(input);
        case u'D':
            return dateForm(input);
        default:
            return input;
    }
}

bool isForm(const Text& input) { return input.starts_with(u'#'); }

}  // namespace

Text ShortcutsTopic::TablePath() const {
    const auto& state = rtmMain::state();
    if (!shortcuts().path.empty()) return shortcuts().path;
    return FilesTopic::Exist(FilesTopic::MakePath({state.userDir, Text(kFileName)})) ? state.userDir
                                                                                     : state.runtimeDataDir;
}

void ShortcutsTopic::TablePath(TextView Value) { shortcuts().path = Value; }
bool ShortcutsTopic::TableStopped() const { return shortcuts().stopped; }
void ShortcutsTopic::TableStopped(bool Value) { shortcuts().stopped = Value; }

void ShortcutsTopic::TableInit() {
    DatenTab table;
    table.Init(FilesTopic::MakePath({TablePath(), Text(kFileName)}), 2, u"SS");
    auto& all = shortcuts().all;
    all.clear();
    const int32 count = table.Count();
    all.reserve(static_cast<std::size_t>(count));
    for (int32 row = 1; row <= count; ++row) {
        const Text key = table.Item(row, 1);
        if (key.empty() || key.size() > kLongestKey) continue;
        const Text replacement = withCodes(withControlCharacters(table.Item(row, 2)));
        all.push_back({Text(trim(key)), Text(trim(replacement))});
    }
}

bool ShortcutsTopic::Table(Text& Eingabe, int32 /*Param*/) {
    const auto& all = shortcuts().all;
    if (Eingabe == TextView(u"\0", 1) || all.empty()) TableInit();
    // Without a row there is nothing to expand, a date form neither.
    if (all.empty() || TableStopped() || Eingabe.empty()) return false;
    bool replaced = false;
    if (Eingabe.size() <= kLongestKey) {
        const auto hit = std::find_if(all.begin(), all.end(),
                                      [&](const Shortcut& shortcut) { return shortcut.key == Eingabe; });
        replaced = hit != all.end();
        if (replaced) Eingabe = hit->replacement;
    }
    if (!isForm(Eingabe)) return replaced;
    Eingabe = expandedForm(Eingabe);
    return replaced || !isForm(Eingabe);
}

}  // namespace tsRtm
