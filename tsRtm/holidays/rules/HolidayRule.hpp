#pragma once
// A line of the rule table in its parts, read while the library is compiled.
#include "tsRtm/types/Text.hpp"

namespace tsRtm::holidays {

enum DayKind : int32 { named = 0, holidayEverywhere = 1, holidayInStates = 2 };

struct HolidayRule {
    TextView name;
    char16_t letter = 0;  // of a day that moves
    int32 offset = 0;     // days from what the letter names; the number of a season
    int32 fixed = 0;      // TTMM as a number; 0 for a day that moves
    int32 kind = named;
    int32 from = 0, to = 0;
    uint32 states = 0;  // bit n: the state of number n

    constexpr bool in(int32 year) const noexcept { return from <= year && year <= to; }
    constexpr bool isHolidayIn(int32 state) const noexcept {
        // With no state known, what is a holiday anywhere is one.
        return kind == holidayEverywhere || state == 0 || (states >> state & 1U) != 0;
    }
};

// The number at the start of a text, blanks skipped; 0 for none.
constexpr int32 leadingNumber(TextView text) noexcept {
    std::size_t at = 0;
    while (at < text.size() && text[at] == u' ') ++at;
    const bool negative = at < text.size() && text[at] == u'-';
    if (negative || (at < text.size() && text[at] == u'+')) ++at;
    int32 value = 0;
    for (; at < text.size() && text[at] >= u'0' && text[at] <= u'9'; ++at)
        value = value * 10 + (text[at] - u'0');
    return negative ? -value : value;
}

constexpr HolidayRule parsedRule(TextView line) noexcept {
    const auto next = [&line] {
        const auto end = line.find(u'|');
        const auto field = line.substr(0, end);
        line = end == TextView::npos ? TextView() : line.substr(end + 1);
        return field;
    };
    HolidayRule rule;
    rule.name = next();
    const auto day = next();
    rule.fixed = leadingNumber(day);
    if (rule.fixed == 0) {
        rule.letter = day.front();
        rule.offset = leadingNumber(day.substr(1));
    }
    rule.kind = leadingNumber(next());
    rule.from = leadingNumber(next());
    rule.to = leadingNumber(next());
    for (auto states = next(); states.size() >= 2; states = states.substr(2))
        rule.states |= 1U << leadingNumber(states.substr(0, 2));
    return rule;
}

}  // namespace tsRtm::holidays
