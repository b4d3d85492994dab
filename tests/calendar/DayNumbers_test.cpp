// Day numbers, the reform of 1582, and all that is counted in days.
#include "tsRtm/calendar/days/DayNumbers.hpp"

#include <chrono>

#include "tests/calendar/CalendarTest.hpp"
#include "tests/support/Raised.hpp"
#include "tsRtm/calendar/days/DateText.hpp"

namespace tsRtm::test {
namespace {

using DayNumbers = CalendarTest;
namespace chrono = std::chrono;

// The proleptic Gregorian calendar of the standard library as the independent rule.
constexpr int32 kUnixEpoch = 2440588;

chrono::year_month_day gregorian(int32 dayNumber) {
    return chrono::sys_days{chrono::days{dayNumber - kUnixEpoch}};
}

int32 dayNumber(int year, unsigned month, unsigned day) {
    const chrono::sys_days date = chrono::year{year} / chrono::month{month} / chrono::day{day};
    return static_cast<int32>(date.time_since_epoch().count()) + kUnixEpoch;
}

Text digits(const chrono::year_month_day& date) {
    const auto padded = [](int64 value, std::size_t width) {
        const auto text = toText(value + 10000);
        return text.substr(text.size() - width);
    };
    return padded(unsigned{date.day()}, 2) + padded(unsigned{date.month()}, 2) + padded(int{date.year()}, 4);
}

TEST_F(DayNumbers, AgreeWithTheGregorianCalendarBothWays) {
    std::vector<Text> drifting;
    const auto end = dayNumber(2600, 12, 31);
    for (int32 day = dates::kFirstGregorianDay; day <= end; ++day) {
        const auto text = digits(gregorian(day));
        ASSERT_EQ(JulianDay(text), day) << toUtf8(text);
        if (KalenderDay(day) != text) drifting.push_back(text + u">" + KalenderDay(day));
    }
    // The century step runs ahead of the true rule on these days, and stays so.
    EXPECT_EQ(drifting,
              (std::vector<Text>{u"28022400>29022400", u"27022500>28022500", u"27022600>28022600"}));
}

TEST_F(DayNumbers, TheReformLeavesTenDaysOut) {
    // 1.1.101 is one of the Julian calendar; day and month below 1 count as 1.
    for (const auto& [date, day] :
         table<2>(u"=0 30.12.1899=2415019 01.01.2000=2451545 01.01.0101=1757949 04.10.1582=2299160 "
                  u"05.10.1582=2299161 10.10.1582=2299161 15.10.1582=2299161 16.10.1582=2299162 "
                  u"28.02.1700=2342031 01.03.1700=2342032 00002024=2460311"))
        EXPECT_EQ(JulianDay(date), number(day)) << toUtf8(date);
    EXPECT_TOLD("04101582|15101582|05101582|19121999", KalenderDay(2299160), KalenderDay(2299161),
                datum.KalenderDayJulian(2299161), datum.KalenderDayJulian(2451545));
    for (const auto below : {1720995, 0, -2147483647}) {
        EXPECT_EQ(KalenderDay(below), u"");
        EXPECT_EQ(datum.KalenderDayJulian(below), u"");
    }
}

TEST_F(DayNumbers, TwoDigitYearsReachTenYearsAhead) {
    EXPECT_EQ(JulianDay(u"010135"), dayNumber(2035, 1, 1));
    EXPECT_EQ(JulianDay(u"010136"), dayNumber(1936, 1, 1));
    library.ground.clock.set(Date::of(2080, 1, 1));
    EXPECT_EQ(JulianDay(u"010135"), dayNumber(2035, 1, 1)) << "the year is asked for once in a process";

    struct Row {
        int32 present;
        int64 year, widened;
    };
    for (const auto& row : {Row{2026, 0, 2000}, Row{2026, 35, 2035}, Row{2026, 36, 1936}, Row{2026, 99, 1999},
                            Row{1995, 4, 2004}, Row{1995, 5, 1905}, Row{1995, 99, 1999}, Row{2089, 98, 2098},
                            Row{2089, 99, 1999}, Row{2090, 99, 2099}, Row{2090, 0, 2000}})
        EXPECT_EQ(dates::widenYear(row.year, row.present), row.widened) << row.present << ": " << row.year;
}

TEST_F(DayNumbers, WeeksFollowIso8601InEveryDateForm) {
    using namespace std::chrono;
    for (const int32 form : {0, 1, 2}) {
        dateForm(form, u".");
        for (const auto& [from, to] : {std::pair(1583, 1584), {1896, 1930}, {1995, 2030}, {9990, 9999}})
            for (int32 day = dayNumber(from, 1, 3); day <= dayNumber(to, 12, 31); ++day) {
                // The week belongs to the year of its Thursday, which may be the year 10000.
                const auto thursday = day - day % 7 + 3;
                const auto week = (thursday - dayNumber(int{gregorian(thursday).year()}, 1, 1)) / 7 + 1;
                const auto text = datum.LokalDatum(digits(gregorian(day)));
                ASSERT_EQ(datum.WeekNr(text), week) << toUtf8(text);
                ASSERT_EQ(datum.DayOfWeek(text),
                          static_cast<int32>(weekday{sys_days{gregorian(day)}}.iso_encoding()) - 1);
                ASSERT_EQ(datum.DayOfYear(text), day - dayNumber(int{gregorian(day).year()}, 1, 1) + 1);
            }
        EXPECT_EQ(datum.WeekNr(datum.LokalDatum(u"010121")), 53) << "six digits are widened";
        EXPECT_EQ(datum.WeekNr(datum.LokalDatum(u"15101582")), 40) << "one below ISO until the year's end";
        EXPECT_EQ(datum.WeekNr(datum.LokalDatum(u"04010050")), 1) << "a year below 101 is not widened";
    }
}

TEST_F(DayNumbers, MonthsHaveTheirLengths) {
    for (const auto& [month, year, length] :
         table<3>(u"1=2024=31 4=2024=30 6=2024=30 9=2024=30 11=2024=30 12=2024=31 13=2000=31 0=2000=31 "
                  u"2=2023=28 2=2024=29 2=1500=29 2=1600=29 2=1700=28 2=2000=29 2=2100=28"))
        EXPECT_EQ(datum.DaysInMonth(number(month), number(year)), number(length))
            << toUtf8(month + u"/" + year);
    EXPECT_TOLD("29|29022024|24279", datum.MonthLen(u"01.02.2024"), datum.LastOfMonth(u"01.02.2024"),
                datum.MonthFloat(u"01.03.2024"));
}

TEST_F(DayNumbers, BankDaysCountThirtyToTheMonth) {
    EXPECT_EQ(datum.BankDay(u"31.01.2024"), datum.BankDay(u"30.01.2024"));
    // -390: the formula without any date.
    EXPECT_TOLD("1|-390|3|1|-1", datum.BankDay(u"01.01.0001"), datum.BankDay(u""),
                datum.DifDateB(u"28.02.2023", u"01.03.2023"), datum.DifDateC(u"28.02.2023", u"01.03.2023"),
                datum.DifDateC(u"01.03.2023", u"28.02.2023"));
    for (const auto& [from, days, to] :
         table<3>(u"30.01.2023=30=28022023 30.01.2024=30=29022024 30.03.2024=30=30042024 "
                  u"15.12.2024=20=05012025 01.01.2024=-1=30122023"))
        EXPECT_EQ(datum.AddDayB(from, number(days)), to) << toUtf8(from + u" + " + days);
}

TEST_F(DayNumbers, DatesMoveByDaysAndMonths) {
    EXPECT_EQ(datum.AddDayC(u"28.02.2024", 2), u"01032024");
    EXPECT_TOLD("31122023|15101582||28022023|30112023|15012026|15052024", datum.AddDayC(u"01.01.2024", -1),
                datum.AddDayC(u"04.10.1582", 1), datum.AddDayC(u"", 5), datum.AddMonth(u"31.01.2023", 1),
                datum.AddMonth(u"31.01.2024", -2), datum.AddMonth(u"15.12.2024", 13),
                datum.TwiceMonth(u"01.05.2024"));
    EXPECT_EQ(datum.TwiceMonth(u"15.05.2024"), u"15052024") << "30.5. in bank days: its half is the 15th";
    EXPECT_EQ(datum.TwiceMonth(u"20.05.2024"), u"01062024");
    EXPECT_EQ(datum.DatumThai(u"29.02.2024"), u"28022567");
}

TEST_F(DayNumbers, FindDateCountsWeekdaysOfAMonth) {
    const std::tuple<int32, int32, Wochentage, int32, TextView> rows[] = {
        {2024, 3, Sonntag, 5, u"31032024"}, {2024, 2, Sonntag, 5, u"25022024"},
        {2024, 3, Freitag, 1, u"01032024"}, {2024, 3, Montag, 0, u"04032024"},
        {2024, 3, Montag, 99, u"25032024"}, {0, 3, Montag, 1, u""},
        {2024, 13, Montag, 1, u""},         {2024, 3, static_cast<Wochentage>(7), 1, u""}};
    for (const auto& [year, month, weekday, count, date] : rows)
        EXPECT_EQ(datum.FindDate(year, month, weekday, count), date) << toUtf8(date);
}

TEST_F(DayNumbers, TheDateBridgeRaisesOutsideTheGregorianCalendar) {
    EXPECT_EQ(datum.DateToJulian(Date(0.75)), 2415019);
    EXPECT_EQ(datum.DateToJulian(datum.JulianToDate(2299161)), 2299161);
    EXPECT_EQ(datum.JulianToDate(2415019 + 2958465).serial(), 2958465);

    EXPECT_EQ(raised([&] { datum.DateToJulian(Date(2299160 - 2415019)); }),
              "5|clsDatum.DateToJulian|Datum nicht im Bereich des gregorianischen Kalenders");
    EXPECT_EQ(raised([&] { datum.JulianToDate(2299160); }),
              "5|clsDatum.JulianToDate|Tageszahl zu klein für DATE-Typ");
    EXPECT_EQ(raised([&] { datum.JulianToDate(2415019 + 2958466); }),
              "5|clsDatum.JulianToDate|Tageszahl zu groß für DATE-Typ");
}

}  // namespace
}  // namespace tsRtm::test
