// Keys and recurrence rules say the same days: by our own rules, and by libical where it is installed.
#include "tsRtm/appointments/ical/Recurrence.hpp"

#ifdef TSRTM_LIBICAL
#include <libical/ical.h>
#endif

#include <set>

#include "tests/calendar/CalendarTest.hpp"
#include "tsRtm/appointments/keys/DueRule.hpp"
#include "tsRtm/calendar/clsDatum.hpp"

namespace tsRtm::test {
namespace {

using namespace appointments;
using Recurrences = CalendarTest;

int32 dayNumber(TextView date) { return clsDatum().JulianDay(date); }
const int32& firstDay() {
    static const int32 day = dayNumber(u"01012023");
    return day;
}
constexpr int32 kDays = 5 * 366;

std::set<int32> dueBy(TextView key, TextView from, TextView to, int32 start) {
    const DueRule rule(key, from, to);
    std::set<int32> days;
    for (int32 number = start; number < firstDay() + kDays; ++number)
        if (rule.on(dayOf(number))) days.insert(number);
    return days;
}

std::set<int32> dueBy(const std::vector<KeyedSeries>& series) {
    std::set<int32> days;
    for (const auto& [key, from, to] : series)
        days.merge(dueBy(key, from ? clsDatum().KalenderDay(from) : Text(),
                         to ? clsDatum().KalenderDay(to) : Text(), firstDay()));
    return days;
}

#ifdef TSRTM_LIBICAL
std::set<int32> dueByLibical(const Recurrence& recurrence) {
    const auto start = icaltime_from_string(icalDate(recurrence.first).c_str());
    if (recurrence.rule.empty()) return {recurrence.first};
    const auto rule = icalrecurrencetype_from_string(recurrence.rule.c_str());
    auto* iterator = icalrecur_iterator_new(rule, start);
    std::set<int32> days;
    for (auto next = icalrecur_iterator_next(iterator); !icaltime_is_null_time(next);
         next = icalrecur_iterator_next(iterator)) {
        const int32 day = dayOfIcalDate(std::string(icaltime_as_ical_string(next)).substr(0, 8));
        if (day >= firstDay() + kDays) break;
        days.insert(day);
    }
    icalrecur_iterator_free(iterator);
    return days;
}
#endif

TEST_F(Recurrences, SayTheDaysOfTheirKeys) {
    const std::pair<TextView, TextView> validities[] = {
        {u"", u""}, {u"31012023", u"30062026"}, {u"29022024", u""}};
    for (const TextView key :
         {u"20240229", u"++++++++", u"++++++01", u"++++++28", u"++++++29", u"++++++30", u"++++++31",
          u"+++++MO+", u"+++++SO1", u"+++++FR5", u"+++++MI9", u"++++0229", u"++++1224", u"++++02++",
          u"2024++++", u"202402++", u"*T000010", u"*T000001", u"*M000002", u"*M000001", u"*M000012"})
        for (const auto& [from, to] : validities) {
            const auto recurrence = recurrenceOf(key, from, to, firstDay(), false);
            const auto days = dueBy(key, from, to, firstDay());
            ASSERT_EQ(recurrence.has_value(), !days.empty()) << toUtf8(key) << toUtf8(from);
            if (!recurrence) continue;
            EXPECT_EQ(recurrence->first, *days.begin());
#ifdef TSRTM_LIBICAL
            EXPECT_EQ(dueByLibical(*recurrence), days) << toUtf8(key) << ' ' << recurrence->rule;
#endif
            EXPECT_EQ(dueBy(seriesOf(*recurrence)), days) << toUtf8(key) << ' ' << recurrence->rule;
        }
    EXPECT_FALSE(recurrenceOf(u"++++++32", u"", u"", firstDay(), false));
    EXPECT_EQ(recurrenceOf(u"+++++MO+", u"", u"31122024", firstDay(), true)->rule,
              "FREQ=WEEKLY;BYDAY=MO;UNTIL=20241231T235959");
}

// Rules as other programs write them.
TEST_F(Recurrences, BecomeKeysOrAreRefused) {
    const auto first = dayNumber(u"31012024");  // a Wednesday
    for (const char* rule :
         {"FREQ=WEEKLY", "FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,WE,FR", "FREQ=WEEKLY;COUNT=5;BYDAY=WE,TH",
          "FREQ=MONTHLY", "FREQ=MONTHLY;INTERVAL=3;COUNT=4", "FREQ=MONTHLY;BYDAY=-1WE;COUNT=7",
          "FREQ=MONTHLY;BYDAY=WE;BYSETPOS=-1", "FREQ=MONTHLY;BYMONTHDAY=28,29,30,31;BYSETPOS=-1",
          "FREQ=YEARLY", "FREQ=YEARLY;INTERVAL=2", "FREQ=DAILY;INTERVAL=45;UNTIL=20250101T120000Z",
          "FREQ=DAILY;COUNT=3;WKST=SU"}) {
        const Recurrence recurrence{first, rule};
        const auto days = dueBy(seriesOf(recurrence));
        EXPECT_TRUE(days.contains(first)) << rule;
#ifdef TSRTM_LIBICAL
        EXPECT_EQ(days, dueByLibical(recurrence)) << rule;
#endif
    }
    for (const char* rule :
         {"FREQ=HOURLY", "FREQ=DAILY;BYHOUR=8", "FREQ=MONTHLY;BYMONTHDAY=1,15", "FREQ=YEARLY;BYDAY=MO",
          "FREQ=MONTHLY;INTERVAL=2;BYDAY=1MO", "FREQ=WEEKLY;BYDAY=XX", "FREQ=DAILY;INTERVAL=x", "x"})
        EXPECT_THROW(seriesOf({first, rule}), std::invalid_argument) << rule;
    EXPECT_EQ(seriesOf({first, ""}).front().key, u"20240131");
    EXPECT_EQ(dayOfIcalDate("20240230") + dayOfIcalDate("2024"), 0);
}

TEST_F(Recurrences, LoseDays) {
    const auto first = dayNumber(u"31012024");
    for (const char* rule :
         {"", "FREQ=WEEKLY;COUNT=5;BYDAY=WE,TH", "FREQ=MONTHLY", "FREQ=MONTHLY;BYDAY=-1WE",
          "FREQ=DAILY;INTERVAL=45;UNTIL=20260101", "FREQ=YEARLY;INTERVAL=2", "FREQ=DAILY"}) {
        auto series = seriesOf({first, rule});
        auto days = dueBy(series);
        for (int32 n = 0; n < 3 && !days.empty(); ++n) {
            const int32 day = *std::next(days.begin(), n % static_cast<int32>(days.size()));
            std::vector<KeyedSeries> rest;
            for (const auto& one : series)
                for (auto& part : withoutDay(one, day)) rest.push_back(std::move(part));
            days.erase(day);
            ASSERT_EQ(dueBy(rest), days) << rule << ", without " << icalDate(day);
            series = std::move(rest);
        }
    }
}

}  // namespace
}  // namespace tsRtm::test
