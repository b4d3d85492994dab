#pragma once
// What all holiday tests stand on: a German ground in June 2026, whose zone has the summer time of today.
#include "tests/calendar/CalendarTest.hpp"
#include "tsRtm/frame/Bundeslaender.hpp"
#include "tsRtm/holidays/clsFeierTage.hpp"

namespace tsRtm::test {

class HolidaysTest : public CalendarTest {
 protected:
    static void in(int32 state) { rtmMain::state().bundesland = state; }

    // TTMM by the name of a row that has a day in the year, "" for none; of several the last.
    static Text dayOf(const std::vector<std::array<Text, 4>>& rows, TextView name) {
        Text day;
        for (const auto& row : rows)
            if (row[0] == name && !row[1].empty()) day = row[1];
        return day;
    }
    static Text digits(int64 value, std::size_t width) {
        const Text text = toText(value + 10000);
        return text.substr(text.size() - width);
    }

    clsFeierTage days;
};

}  // namespace tsRtm::test
