// The forms of a date and the way from one to another.
#include <gtest/gtest.h>

#include "tests/calendar/CalendarTest.hpp"
#include "tsRtm/calendar/days/DateText.hpp"

namespace tsRtm::test {
namespace {

using DateForms = CalendarTest;

TEST_F(DateForms, FollowTheOrderOfTheLocale) {
    struct Row {
        int32 form;
        TextView separator, local, shortLocal, kalenderDay;
    };
    // KalenderDay brings its result to local form twice: true only where the day comes first.
    const Row rows[] = {
        {0, u"/", u"12302024", u"123024", u"30122024"},
        {1, u".", u"30122024", u"301224", u"30122024"},
        {2, u"-", u"20241230", u"241230", u"12302420"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.form);
        dateForm(row.form, row.separator);
        EXPECT_EQ(datum.NormDatum(row.local), u"30122024");
        EXPECT_EQ(datum.NormDatum(row.shortLocal), u"301224");
        EXPECT_EQ(datum.LokalDatum(u"30122024"), row.local);
        EXPECT_EQ(datum.LokalDatum(u"301224"), row.shortLocal);
        EXPECT_EQ(datum.DateSort(row.local), u"20241230");
        EXPECT_EQ(datum.DtoC(30, 12, 2024), row.local);
        EXPECT_EQ(datum.DtoC(30, 12, 24), row.shortLocal);
        EXPECT_EQ(datum.JulianDay(row.local), 2460675);
        EXPECT_EQ(datum.KalenderDay(2460675), row.kalenderDay);
        EXPECT_TRUE(datum.DateOK(row.local));
        const auto separated = Text(u"30") + Text(row.separator) + u"12" + Text(row.separator) + u"2024";
        EXPECT_EQ(datum.DateTo6(separated), row.local) << "day first in every locale";
        EXPECT_EQ(datum.DateTo8(row.local), separated);
    }
    dateForm(0, u"/");
    EXPECT_EQ(datum.AddDayC(u"12312024", 2), u"01022025") << "the third turn makes it local again";
}

TEST_F(DateForms, DateTo6TidiesWhatIsTyped) {
    const std::pair<TextView, TextView> rows[] = {
        {u"31.12.2024", u"31122024"}, {u"1.2.2024", u"01022024"},
        {u"31.2.2023", u"28022023"},                                // cut to the month's end
        {u"1.13.2024", u"01012025"},  {u"31.122024", u"31122024"},  // one separator only: taken away
        {u"0.12.2024", u"00122024"},  // no day: the separators go, and seven digits get their zero
        {u"x.12.2024", u"0x122024"},  {u"0031122024", u"31122024"},  // the last eight
        {u"1022024", u"01022024"},                                   // the day's zero is missing
        {u"9991299", u"991299"},                                     // a digit too many in front
        {u"9999999", u"9999999"},
    };
    for (const auto& [typed, digits] : rows) EXPECT_EQ(datum.DateTo6(typed), digits) << toUtf8(typed);
}

TEST_F(DateForms, SortFormLeavesStoredDayNumbersOut) {
    EXPECT_EQ(DateSort(u"31.12.2024"), u"20241231");
    EXPECT_EQ(DateSort(u""), u"");
    EXPECT_EQ(DateSort(u"J2460676"), u"");
    EXPECT_EQ(datum.DateSort(u"311224"), u"241231");
    EXPECT_EQ(datum.DateCheck(u"31.12.2024"), u"20241231");
    EXPECT_EQ(datum.DateCheck(u"31022024"), u"");
}

TEST_F(DateForms, DateOKTestsDayAndMonthOfTheYearAsItStands) {
    const std::pair<TextView, bool> rows[] = {
        {u"", false},          {u"112", false},      {u"29022024", true},  {u"29022023", false},
        {u"31042024", false},  {u"00012024", false}, {u"01002024", false}, {u"01132024", false},
        {u"290224", true},     {u"290223", false},   {u"290200", true},  // the year 0, not 2000
        {u"10.10.1582", true},                                           // a day that never was
        {u"29021900", false},  {u"29021500", true},  {u"abcdefgh", false},
    };
    for (const auto& [date, ok] : rows) EXPECT_EQ(datum.DateOK(date), ok) << toUtf8(date);
}

TEST_F(DateForms, CtoDWidensSixDigits) {
    struct Row {
        TextView date;
        int32 day, month, year;
    };
    for (const auto& row : {Row{u"31.12.2024", 31, 12, 2024}, Row{u"311224", 31, 12, 2024},
                            Row{u"010136", 1, 1, 1936}, Row{u"", 0, 0, 0}}) {
        int32 day = -1, month = -1, year = -1;
        datum.CtoD(row.date, day, month, year);
        EXPECT_EQ(std::tuple(day, month, year), std::tuple(row.day, row.month, row.year)) << toUtf8(row.date);
    }
}

TEST_F(DateForms, DtoCBringsPartsIntoRange) {
    struct Row {
        int32 day, month, year;
        TextView date;
    };
    const Row rows[] = {
        {0, 3, 2024, u"29022024"},   {31, 2, 2023, u"28022023"},
        {-5, 1, 2023, u"01012023"},  {1, 0, 2024, u"01122023"},
        {1, -12, 2024, u"01122022"}, {1, 25, 2024, u"01012026"},
        {99, 4, 2024, u"30042024"},  {1, 1, 100, u"010100"},
        {1, 1, 101, u"01010101"},    {2147483647, 2147483647, 2147483647, u"31070617"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(datum.DtoC(row.day, row.month, row.year), row.date)
            << row.day << '.' << row.month << '.' << row.year;
}

TEST_F(DateForms, WordsAndIsoForms) {
    EXPECT_EQ(datum.WordDate(u"01.01.2024"), u"1. Januar 2024");
    EXPECT_EQ(datum.WordDate(u"010124"), u"1. Januar 2024");
    EXPECT_EQ(datum.MonthName(u"01.05.2024"), u"Mai");
    EXPECT_EQ(datum.MonthName(u"01992024"), u"Falscher Monat");
    EXPECT_EQ(datum.DayName(u"05.05.2024"), u"Sonntag");
    rtmMain::state().locale.firstDayOfWeek = 6;
    EXPECT_EQ(datum.DayName(u"05.05.2024"), u"Samstag") << "counted from the system's first weekday";

    EXPECT_EQ(datum.DateIso8601(u"31.12.2024"), u"2024-12-31");
    EXPECT_EQ(datum.DateIso8601(u"311224"), u"2024-12-31");
    EXPECT_EQ(datum.DateIso8601(), u"2026-06-15");
    EXPECT_EQ(datum.DateTimeIso8601(), u"2026-06-15T08:30:05");
    EXPECT_EQ(datum.DateTimeIso8601(u"31.12.2024"), u"2024-12-31");
    EXPECT_EQ(datum.DateTimeIso8601(u"31.12.2024", u"8:15"), u"2024-12-31T08:15:00");
    EXPECT_EQ(datum.DateTimeIso8601(u"31.12.2024", u"23.59.58"), u"2024-12-31T23:59:58");
    EXPECT_EQ(datum.DateTimeIso8601(u"", u"7:05"), u"2026-06-15T07:05:00");
    for (const TextView unreadable : {u"25:00", u"8", u"acht", u"8:60", u"1:2:3:4", u":"})
        EXPECT_EQ(datum.DateTimeIso8601(u"31.12.2024", unreadable), u"2024-12-31") << toUtf8(unreadable);
}

TEST_F(DateForms, MinutesAndTimes) {
    const std::pair<TextView, int32> minutes[] = {
        {u"", 0},      {u"8:30", 510}, {u"8.30", 510},  {u"8,30", 510},   {u"8", 480},
        {u"8.5", 485}, {u"acht", 0},   {u"8:30:15", 0}, {u"25:00", 1500}, {u"-1:30", -30},
    };
    for (const auto& [time, expected] : minutes) EXPECT_EQ(datum.ToMinutes(time), expected) << toUtf8(time);
    const std::pair<int32, TextView> times[] = {
        {0, u"00:00"}, {90, u"01:30"}, {1500, u"25:00"}, {6000, u"00:00"}, {-90, u"99:70"}};
    for (const auto& [value, expected] : times) EXPECT_EQ(datum.ToTime(value), expected) << value;
}

// Whatever is typed ends in an answer: no failure, no endless loop, no overflow.
TEST_F(DateForms, NonsenseStaysHarmless) {
    for (const TextView date :
         {u"abc", u"...", u"1..", u"-1.-1.-1", u"01011e99", u"0101-9e9", u"€€€", u"00000000", u"01010001",
          u"31120100", u"99999999", u"1.1.-10005", u"1.1.-999999999999", u"1.1.999999999999",
          u"1.99999999999.2024", u"99999999999999999999.1.1"})
        for (int32 form = 0; form <= 3; ++form)
            for (const TextView separator : {u".", u"-", u"", u"1", u". "}) {
                dateForm(form, separator);
                EXPECT_LE(datum.NormDatum(date).size(), 8u);
                EXPECT_LE(datum.DateSort(date).size(), 8u);
                EXPECT_LE(datum.KalenderDay(datum.JulianDay(date)).size(), 8u);
                std::ignore = std::tuple(datum.WeekNr(date), datum.DayOfYear(date), datum.WordDate(date),
                                         datum.DateTimeIso8601(date, date), datum.DayName(date),
                                         datum.LastOfMonth(date), datum.TwiceMonth(date),
                                         datum.MonthFloat(date), datum.DifDateB(date, u"01.01.2000"),
                                         datum.AddMonth(date, 2147483647), datum.AddDayB(date, -2147483647),
                                         datum.AddDayC(date, 2147483647), datum.ToMinutes(date));
            }
}

}  // namespace
}  // namespace tsRtm::test
