#pragma once
// Whether an appointment is due, by numbers: for many days, or many appointments, at once.
#include <vector>

#include "tsRtm/appointments/keys/TerminKeys.hpp"

namespace tsRtm::appointments {

// A day in its parts, taken apart once for all that is asked of it.
struct Day {
    int32 number = 0;  // Julian day number
    int32 year = 0, month = 0, day = 0;
    int32 weekday = 0;  // from 0, Monday
    int32 length = 0;   // days of the month
};
Day dayOf(int32 number);
std::vector<Day> daysBetween(int32 first, int32 last);

// A key with its validity, which are local dates or empty for an open end. Agrees with dateKeys; a key that
// no date has is never due. *T and *M count from the beginning of the validity, and are never due without
// one.
class DueRule {
 public:
    DueRule(TextView key, TextView from, TextView to);
    bool isValid(const Day& day) const noexcept {
        return (from_ == 0 || day.number >= from_) && (to_ == 0 || day.number <= to_);
    }
    bool on(const Day& day) const noexcept { return isValid(day) && comes(day); }

 private:
    // What the key says.
    enum class Kind { never, pattern, monthly, weekday, nthWeekday, lastWeekday, days, months };

    void readPattern(TextView key);
    void readWeekday(TextView key);
    void readInterval(TextView key);
    bool comes(const Day& day) const noexcept;

    Kind kind_ = Kind::never;
    int32 from_ = 0, to_ = 0;               // day numbers, 0 open
    int32 year_ = 0, month_ = 0, day_ = 0;  // of a pattern, 0 for any
    int32 weekday_ = 0, count_ = 0;         // which weekday, the how manieth; the interval
    int32 startMonth_ = 0, startDay_ = 0;   // of a series by months: month counted from year 0, day in it
};

}  // namespace tsRtm::appointments
