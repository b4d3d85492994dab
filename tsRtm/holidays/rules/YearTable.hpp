#pragma once
// The rules with the days on which they fall in one year.
#include <optional>
#include <vector>

#include "tsRtm/calendar/days/DateForms.hpp"
#include "tsRtm/holidays/rules/HolidayRule.hpp"

namespace tsRtm::holidays {

// Rows count from 1, those of the rule table first. Keeps one year; another one is built when it is asked
// for.
class YearTable {
 public:
    // Amendments in force up to this day, JJJJMMTT, follow the rule table: 0 none, 99999999 all.
    explicit YearTable(int32 lawAsOf);

    // The year of a date of any local form, with the orthodox Easter and no Advent or by the Western
    // calendar.
    void build(TextView date, bool orthodox);
    bool orthodox() const noexcept { return orthodox_; }

    int32 rows() const noexcept { return static_cast<int32>(rules_.size()) - 1; }
    const HolidayRule& rule(int32 row) const { return rules_[static_cast<std::size_t>(row)]; }
    // TTMM as a number; 0 for a day that moves in a table that was never built.
    int32 day(int32 row) const { return days_[static_cast<std::size_t>(row)]; }
    // The law that an amendment stands in; empty for a row of the rule table.
    TextView law(int32 row) const;
    int32 lawAsOf() const noexcept { return lawAsOf_; }

    // The first row that makes this day a holiday of some state in this year; nullptr for none.
    const HolidayRule* holidayOn(int32 day, int32 year) const noexcept;

 private:
    void add(const HolidayRule& rule);

    int32 lawAsOf_;
    int32 year_ = 0;
    bool orthodox_ = false;
    std::vector<HolidayRule> rules_;
    std::vector<int32> days_;
    std::vector<TextView> laws_;  // of the rows behind the rule table
};

// A date of any local form as the table has it; the year as it stands, not widened.
struct TableDay {
    int32 day;  // TTMM in a locale that has the day first
    int32 year;
};
TableDay tableDay(TextView date);

}  // namespace tsRtm::holidays
