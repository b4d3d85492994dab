// The forms of a date and the way from one to another.
#include "tests/calendar/CalendarTest.hpp"
#include "tsRtm/calendar/days/DateText.hpp"

namespace tsRtm::test {
namespace {

using DateForms = CalendarTest;

TEST_F(DateForms, FollowTheOrderOfTheLocale) {
    // KalenderDay brings its result to local form twice: true only where the day comes first.
    const std::tuple<int32, TextView, TextView, TextView, TextView> rows[] = {
        {0, u"/", u"12302024", u"123024", u"30122024"},
        {1, u".", u"30122024", u"301224", u"30122024"},
        {2, u"-", u"20241230", u"241230", u"12302420"}};
    for (const auto& [form, separator, local, shortLocal, kalenderDay] : rows) {
        SCOPED_TRACE(form);
        dateForm(form, separator);
        EXPECT_EQ(datum.NormDatum(local), u"30122024");
        EXPECT_EQ(datum.NormDatum(shortLocal), u"301224");
        EXPECT_EQ(datum.LokalDatum(u"30122024"), local);
        EXPECT_EQ(datum.LokalDatum(u"301224"), shortLocal);
        EXPECT_EQ(datum.DateSort(local), u"20241230");
        EXPECT_EQ(datum.DtoC(30, 12, 2024), local);
        EXPECT_EQ(datum.DtoC(30, 12, 24), shortLocal);
        EXPECT_EQ(datum.JulianDay(local), 2460675);
        EXPECT_EQ(datum.KalenderDay(2460675), kalenderDay);
        EXPECT_TRUE(datum.DateOK(local));
        const auto separated = Text(u"30") + Text(separator) + u"12" + Text(separator) + u"2024";
        EXPECT_EQ(datum.DateTo6(separated), local) << "day first in every locale";
        EXPECT_EQ(datum.DateTo8(local), separated);
    }
    dateForm(0, u"/");
    EXPECT_EQ(datum.AddDayC(u"12312024", 2), u"01022025") << "the third turn makes it local again";
}

// Cut to the month's end; one separator only is taken away; without a day the separators go, and seven digits
// get their zero; of more digits the last eight, or six behind one too many.
TEST_F(DateForms, DateTo6TidiesWhatIsTyped) {
    for (const auto& [typed, digits] :
         table<2>(u"31.12.2024=31122024 1.2.2024=01022024 31.2.2023=28022023 1.13.2024=01012025 "
                  u"31.122024=31122024 0.12.2024=00122024 x.12.2024=0x122024 0031122024=31122024 "
                  u"1022024=01022024 9991299=991299 9999999=9999999"))
        EXPECT_EQ(datum.DateTo6(typed), digits) << toUtf8(typed);
}

TEST_F(DateForms, SortFormLeavesStoredDayNumbersOut) {
    EXPECT_TOLD("20241231|||241231|20241231|", DateSort(u"31.12.2024"), DateSort(u""), DateSort(u"J2460676"),
                datum.DateSort(u"311224"), datum.DateCheck(u"31.12.2024"), datum.DateCheck(u"31022024"));
}

TEST_F(DateForms, DateOKTestsDayAndMonthOfTheYearAsItStands) {
    const std::pair<TextView, bool> rows[] = {
        {u"", false},          {u"112", false},      {u"29022024", true},  {u"29022023", false},
        {u"31042024", false},  {u"00012024", false}, {u"01002024", false}, {u"01132024", false},
        {u"290224", true},     {u"290223", false},   {u"290200", true},  // the year 0, not 2000
        {u"10.10.1582", true},                                           // a day that never was
        {u"29021900", false},  {u"29021500", true},  {u"abcdefgh", false}};
    for (const auto& [date, ok] : rows) EXPECT_EQ(datum.DateOK(date), ok) << toUtf8(date);
}

TEST_F(DateForms, CtoDWidensSixDigits) {
    for (const auto& [date, parts] :
         table<2>(u"31.12.2024=31|12|2024 311224=31|12|2024 010136=1|1|1936 =0|0|0")) {
        int32 day = -1, month = -1, year = -1;
        datum.CtoD(date, day, month, year);
        EXPECT_TOLD(toUtf8(parts), day, month, year) << toUtf8(date);
    }
}

TEST_F(DateForms, DtoCBringsPartsIntoRange) {
    const std::tuple<int32, int32, int32, TextView> rows[] = {
        {0, 3, 2024, u"29022024"},   {31, 2, 2023, u"28022023"},
        {-5, 1, 2023, u"01012023"},  {1, 0, 2024, u"01122023"},
        {1, -12, 2024, u"01122022"}, {1, 25, 2024, u"01012026"},
        {99, 4, 2024, u"30042024"},  {1, 1, 100, u"010100"},
        {1, 1, 101, u"01010101"},    {2147483647, 2147483647, 2147483647, u"31070617"}};
    for (const auto& [day, month, year, date] : rows)
        EXPECT_EQ(datum.DtoC(day, month, year), date) << day << '.' << month << '.' << year;
}

TEST_F(DateForms, WordsAndIsoForms) {
    EXPECT_TOLD("1. Januar 2024|1. Januar 2024", datum.WordDate(u"01.01.2024"), datum.WordDate(u"010124"));
    EXPECT_TOLD("Mai|Falscher Monat|Sonntag", datum.MonthName(u"01.05.2024"), datum.MonthName(u"01992024"),
                datum.DayName(u"05.05.2024"));
    rtmMain::state().locale.firstDayOfWeek = 6;
    EXPECT_EQ(datum.DayName(u"05.05.2024"), u"Samstag") << "counted from the system's first weekday";
    EXPECT_TOLD("2024-12-31|2024-12-31|2026-06-15", datum.DateIso8601(u"31.12.2024"),
                datum.DateIso8601(u"311224"), datum.DateIso8601());
    EXPECT_EQ(datum.DateTimeIso8601(), u"2026-06-15T08:30:05");
    for (const auto& [date, time, iso] :
         table<3>(u"31.12.2024==2024-12-31 31.12.2024=8:15=2024-12-31T08:15:00 "
                  u"31.12.2024=23.59.58=2024-12-31T23:59:58 =7:05=2026-06-15T07:05:00"))
        EXPECT_EQ(datum.DateTimeIso8601(date, time), iso);
    for (const auto& unreadable : split(u"25:00 8 acht 8:60 1:2:3:4 :", u" "))
        EXPECT_EQ(datum.DateTimeIso8601(u"31.12.2024", unreadable), u"2024-12-31") << toUtf8(unreadable);
}

TEST_F(DateForms, MinutesAndTimes) {
    for (const auto& [time, minutes] :
         table<2>(u"=0 8:30=510 8.30=510 8,30=510 8=480 8.5=485 acht=0 8:30:15=0 25:00=1500 -1:30=-30"))
        EXPECT_EQ(datum.ToMinutes(time), number(minutes)) << toUtf8(time);
    for (const auto& [minutes, time] : table<2>(u"0=00:00 90=01:30 1500=25:00 6000=00:00 -90=99:70"))
        EXPECT_EQ(datum.ToTime(number(minutes)), time);
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
