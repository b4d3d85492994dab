#pragma once
// Keys of appointments as recurrence rules of iCalendar (RFC 5545), and back.
#include <optional>
#include <string>
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::appointments {

// A series: its first day by Julian number, and the value of RRULE, empty for one day.
struct Recurrence {
    int32 first = 0;
    std::string rule;
};

// Of a key with its validity, which are local dates or empty. An event begins on a day that is due: the first
// one from the validity on, or without one from `notBefore` on. Nothing for a key that is never due then.
// `timed`: the event has a time, and the rule's end one, too.
std::optional<Recurrence> recurrenceOf(TextView key, TextView from, TextView to, int32 notBefore, bool timed);

// A key with its validity by Julian numbers, 0 for none. One rule may need several.
struct KeyedSeries {
    Text key;
    int32 from = 0, to = 0;
};
// Throws std::invalid_argument that says in English why there is no key for a rule, which is the case where
// some day would be due too much or too little.
std::vector<KeyedSeries> seriesOf(const Recurrence& recurrence);

// The series without that day: as it was, in two parts, in one, or nothing. Parts that count from a start
// begin on a day on which the whole one is due.
std::vector<KeyedSeries> withoutDay(const KeyedSeries& series, int32 day);

// "20241224", and back; 0 for what is no date.
std::string icalDate(int32 day);
int32 dayOfIcalDate(std::string_view text);

}  // namespace tsRtm::appointments
