// Holidays as the laws of the states have them, written down by hand, and the working days between them; the
// rules year by year: Easter by another rule, what must hold in every year, and what is odd and stays.
#include <chrono>
#include <cmath>

#include "tests/calendar/CalendarTest.hpp"
#include "tsRtm/frame/Bundeslaender.hpp"
#include "tsRtm/holidays/clsFeierTage.hpp"

namespace tsRtm::test {
namespace {

// A German ground in June 2026, whose zone has the summer time of today.
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

using OfficialDays = HolidaysTest;

// TTMM of the days.
struct OfficialYear {
    int32 year;
    TextView everywhere;             // and the Sundays that the table counts as holidays
    std::array<TextView, 16> state;  // beside those, by the number of the state
};

// clang-format off
constexpr OfficialYear kYears[] = {
    {2017, u"0101 1404 1604 1704 0105 2505 0406 0506 0310 3110 0312 1012 1712 2412 2512 2612",
     {u"0601 1506 0111", u"0601 1506 0808 1508 0111", u"", u"", u"", u"1506", u"", u"1506 0111",
      u"1506 0111", u"1506 1508 0111", u"", u"", u"", u"2211", u"0601", u""}},
    {2025, u"0101 1804 2004 2104 0105 2905 0806 0906 0310 3011 0712 1412 2112 2512 2612",
     {u"0601 1906 0111", u"0601 1906 0808 1508 0111", u"0803 0805", u"3110", u"3110", u"1906", u"3110", u"1906 0111",
      u"1906 0111", u"1906 1508 0111", u"3110", u"3110", u"0803 3110", u"3110 1911", u"0601 3110", u"2009 3110"}},
};
// clang-format on

TEST_F(OfficialDays, OfEveryStateAreTheHolidaysOfTheYear) {
    days.Rechtsstand(99999999);
    for (const auto& official : kYears)
        for (int32 state = BADENW; state <= THUERINGEN; ++state) {
            in(state);
            const Text all =
                Text(official.everywhere) + u" " + Text(official.state[static_cast<std::size_t>(state) - 1]);
            const Text year = digits(official.year, 4);
            for (Text date = u"0101" + year; date.ends_with(year); date = datum.AddDayC(date, 1))
                EXPECT_EQ(days.IstFeierTag(date), all.find(date.substr(0, 4)) != Text::npos)
                    << "state " << state << ", " << toUtf8(date);
        }
}

// The states where a day is a holiday, "*" for all. Buß- und Bettag was given up for the care insurance;
// Fronleichnam stands before the day of the uprising, Himmelfahrt before that of work; the year began
// on 25.3.; no Easter is known after 2199.
TEST_F(OfficialDays, FollowTheLawOfTheirTime) {
    for (const auto& [date, states] : table<2>(
             u"31.10.2016=12 13 14 15 16; 31.10.2017=*; 31.10.2018=04 05 07 11 12 13 14 15 16; 16.11.1994=*; "
             u"22.11.1995=14; 17.06.1990=*; 17.06.1991=; 03.10.1989=; 03.10.1990=*; 17.06.1976=01 02 06 08 "
             u"09 10; 01.05.2008=*; 08.03.2018=; 08.03.2020=03; 08.05.2020=03; 08.05.2021=; 20.09.2018=; "
             u"20.09.2019=16; 25.03.1500=*; 01.01.1500=; 24.12.2026=; 31.12.2026=; 03.04.2200=",
             u"; "))
        for (int32 state = 0; state <= 16; ++state) {  // 0: in any
            in(state);
            const bool holiday = states == u"*" ||
                                 (state == 0 ? !states.empty() : states.find(digits(state, 2)) != Text::npos);
            EXPECT_EQ(days.IstFeierTag(date), holiday) << toUtf8(date) << " in " << state;
        }
}

// What was made law after the table: none, all, or as far as a day.
TEST_F(OfficialDays, AmendmentsCountWhenTheyAreAskedFor) {
    for (const auto& [law, date, where] :
         table<3>(u"0=08.03.2023=B 20220712=08.03.2023=B 20220713=08.03.2023=BM 20220713=08.03.2022=B "
                  u"20220713=08.05.2025= 99999999=08.03.2023=BM 0=08.05.2025= 20240721=08.05.2025=B "
                  u"99999999=08.05.2026= 99999999=17.06.2028=B 0=17.06.2028=")) {
        days.Rechtsstand(number(law));
        for (const auto& [state, letter] : {std::pair{BERLIN, u'B'}, {MECKPOMM, u'M'}}) {
            in(state);
            EXPECT_EQ(days.IstFeierTag(date), where.find(letter) != Text::npos)
                << toUtf8(law + u" " + date) << " in " << state;
        }
    }
    days.Rechtsstand(99999999);
    const auto rows = days.FeierTage(2025);
    ASSERT_EQ(rows.size(), 65u);
    EXPECT_EQ(days.TagNamen(u"08.03.2025"), (std::vector<Text>{u"", u"internationaler Frauentag"}));
    EXPECT_EQ(rows[63], (std::array<Text, 4>{u"80 Jahre Befreiung", u"0805", u"2", u"805"}));
    EXPECT_HOLDS(days.Gesetz(63), u"10.7.2024");
    EXPECT_EQ(days.Gesetz(61) + days.Gesetz(0) + days.Gesetz(65), u"");
}

using Workdays = HolidaysTest;

// From weekdays, Saturdays, over Christmas and Easter and back, into the next year, from a short year; what
// is no date is 1.1.2000, as dates are read; past the end of the calendar there is none.
TEST_F(Workdays, AreFoundOnBothSides) {
    in(NRW);
    for (const auto& [date, distance, workday] : table<3>(
             u"25.11.2026=0=25112026 28.11.2026=0=30112026 28.11.2026=-1=27112026 29.11.2026=-1=27112026 "
             u"24.12.2026=1=28122026 27.12.2026=-1=24122026 02.04.2026=1=07042026 06.04.2026=-1=02042026 "
             u"20.12.2026=14=04012027 01.01.2027=-2=30122026 241226=1=28122026 abc=0=03012000 =0= "
             u"01.01.2026=2147483647= 01.01.2026=-2147483647= 31.12.9999=0=31129999 31.12.9999=1="))
        EXPECT_EQ(days.NextWorkday(date, number(distance)), workday) << toUtf8(date + u" " + distance);
    for (const auto& [state, workday] :
         {std::pair{int32{NRW}, u"05062026"}, {BERLIN, u"04062026"}, {0, u"05062026"}}) {
        in(state);
        EXPECT_EQ(days.NextWorkday(u"04.06.2026", 0), workday) << state;
    }
}

TEST_F(Workdays, AreCountedOneByOne) {
    in(NRW);
    EXPECT_EQ(days.AddBankWorkDays(u"23.12.2026", 3), u"29122026");
    EXPECT_EQ(days.AddBankWorkDays(u"27.11.2026", 250), u"24112027");
    EXPECT_EQ(days.AddBankWorkDays(u"26.12.2026", 0), u"26.12.2026") << "as it came";
    EXPECT_TOLD("26.12.26||", days.AddBankWorkDays(u"26.12.26", -5), days.AddBankWorkDays(u"", 5),
                days.AddBankWorkDays(u"27.12.9999", 2147483647));
}

// Every working day is one step from the one before, in both directions.
TEST_F(Workdays, GoForthAndBackAlike) {
    in(BAYERN);
    Text date = u"02011990";
    int32 count = 0;
    for (; date.substr(4) < u"2031"; ++count) {
        const Text next = days.NextWorkday(date, 1);
        ASSERT_LT(datum.DifDateC(date, next), 8) << toUtf8(date);
        ASSERT_EQ(days.NextWorkday(next, -1), date) << toUtf8(next);
        date = next;
    }
    EXPECT_GT(count, 41 * 245);
}

using Rules = HolidaysTest;
namespace chrono = std::chrono;

struct DayMonth {
    int32 day, month;
};

// The rule of Meeus, Jones and Butcher, which needs no exceptions.
DayMonth westernEaster(int32 year) {
    const int32 a = year % 19, b = year / 100, c = year % 100;
    const int32 h = (19 * a + b - b / 4 - (b - (b + 8) / 25 + 1) / 3 + 15) % 30;
    const int32 l = (32 + 2 * (b % 4) + 2 * (c / 4) - h - c % 4) % 7;
    const int32 sum = h + l - 7 * ((a + 11 * h + 22 * l) / 451) + 114;
    return {sum % 31 + 1, sum / 31};
}

// Meeus's rule for the Julian calendar.
DayMonth julianEaster(int32 year) {
    const int32 d = (19 * (year % 19) + 15) % 30;
    const int32 sum = d + (2 * (year % 4) + 4 * (year % 7) - d + 34) % 7 + 114;
    return {sum % 31 + 1, sum / 31};
}

int32 weekday(TextView ttmm, int32 year) {
    const auto day = static_cast<unsigned>(Val(ttmm.substr(0, 2)));
    const auto month = static_cast<unsigned>(Val(ttmm.substr(2)));
    const auto date = chrono::year(year) / chrono::month(month) / chrono::day(day);
    EXPECT_TRUE(date.ok()) << toUtf8(ttmm) << ' ' << year;
    return static_cast<int32>(chrono::weekday(chrono::sys_days(date)).iso_encoding()) - 1;
}

TEST_F(Rules, EasterAgreesWithOtherRules) {
    for (int32 year = 1583; year <= 9999; ++year) {
        const auto [day, month] = westernEaster(year);
        ASSERT_EQ(days.Ostern(u"0107" + digits(year, 4)),
                  digits(day, 2) + digits(month, 2) + digits(year, 4));
    }
    for (int32 year = 1600; year <= 2300; ++year) {
        const auto [day, month] = julianEaster(year);
        // From the Julian calendar's date to that of today, by the days that the two are apart.
        const int32 apart = year / 100 - year / 400 - 2;
        const int32 sunday = datum.JulianDay(datum.DtoC(day, month, year)) + apart;
        const int32 late = year % 4 == 0 ? 0 : 2;  // odd, and it stays
        ASSERT_EQ(days.OsternOrthodox(u"0107" + digits(year, 4)), sunday + late) << year;
    }
    EXPECT_EQ(days.Ostern(u"1.1.24"), u"31032024") << "a short year is widened";
    EXPECT_EQ(days.OsternGregorianisch(u"1.1.2024"), datum.JulianDay(u"31.03.2024"));
    EXPECT_EQ(days.OsternOrthodox(u"1.1.2023"), 2460053);
}

// No rule leaves its weekday or its part of the year, and none has a day that there is not.
TEST_F(Rules, HoldInEveryYear) {
    struct Row {
        int32 row;
        int32 weekday;
        TextView first, last;  // MMTT
    };
    constexpr Row kRows[] = {{3, Montag, u"0202", u"0309"},    {5, Mittwoch, u"0204", u"0311"},
                             {8, Freitag, u"0320", u"0423"},   {11, Montag, u"0323", u"0426"},
                             {15, Sonntag, u"0508", u"0521"},  {16, Donnerstag, u"0430", u"0603"},
                             {18, Montag, u"0511", u"0614"},   {19, Donnerstag, u"0521", u"0624"},
                             {23, Sonntag, u"0929", u"1005"},  {30, Sonntag, u"1113", u"1119"},
                             {32, Mittwoch, u"1116", u"1122"}, {33, Sonntag, u"1120", u"1126"},
                             {34, Sonntag, u"1127", u"1203"},  {37, Sonntag, u"1218", u"1224"},
                             {47, Sonntag, u"0325", u"0331"},  {48, Sonntag, u"0924", u"0930"},
                             {49, Sonntag, u"1025", u"1031"}};
    for (int32 year = 1583; year <= 9999; ++year) {
        const auto rows = days.FeierTage(year);
        ASSERT_EQ(rows.size(), 62u);
        for (const auto& row : rows)
            if (!row[1].empty()) weekday(row[1], year);
        for (const auto& rule : kRows) {
            const Text& day = rows[static_cast<std::size_t>(rule.row)][1];
            if (day.empty()) continue;
            const Text sorted = day.substr(2) + day.substr(0, 2);
            ASSERT_EQ(weekday(day, year), rule.weekday) << year << " row " << rule.row;
            ASSERT_TRUE(rule.first <= sorted && sorted <= rule.last) << year << ' ' << toUtf8(day);
        }
        // Mothers' Day gives way to Whit Sunday.
        if (year >= 1933 && year <= 2199) {
            ASSERT_NE(rows[15][1], rows[17][1]) << year;
        }
    }
}

TEST_F(Rules, NamesFollowTheTable) {
    EXPECT_TOLD(",4. Advent,Heiligabend|,Reformationstag|", days.TagNamen(u"24.12.2023"),
                days.TagNamen(u"31.10.2026"), days.TagNamen(u"02.12.2026"));
    const auto rows = days.FeierTage(2008);
    EXPECT_TOLD(
        ",,,|Dreikönige,0601,2,601|Muttertag,1805,0,0|Tag der deutschen Einheit,,1,1706|Neujahr,0101,1,101",
        rows[0], rows[1], rows[15], rows[20], rows[50]);
    const auto late = days.FeierTage(2200);
    for (const std::size_t row : {3U, 4U, 5U, 6U, 7U, 8U, 9U, 10U, 11U, 12U, 16U, 17U, 18U, 19U})
        EXPECT_EQ(late[row][1], u"");
    EXPECT_TOLD("03122023|01122024", days.Advent(u"1.5.2023"), days.Advent(u"1.5.24"));
    // Years that no date has: rows without bounds show the year of the last four digits.
    EXPECT_TOLD("3112|", dayOf(days.FeierTage(12024), u"Silvester"),
                dayOf(days.FeierTage(12024), u"Himmelfahrt"));
    EXPECT_EQ(clsFeierTage().FeierTage(10000)[3][1], u"") << "nothing is built for the year 0";
}

TEST_F(Rules, SeasonsBeginOnTheDaysOfTheAlmanac) {
    for (const auto& [year, begin] :
         table<2>(u"2000=2003|2106|2209|2112 2020=2003|2006|2209|2112 2023=2003|2106|2309|2212 "
                  u"2024=2003|2006|2209|2112 2025=2003|2106|2209|2112 2026=2003|2106|2309|2112 "
                  u"2027=2003|2106|2309|2212 1954=2103|2206|2309|2212")) {
        const auto rows = days.FeierTage(number(year));
        EXPECT_TOLD(toUtf8(begin), rows[43][1], rows[44][1], rows[45][1], rows[46][1]) << toUtf8(year);
    }
    // 20.6.2024 at 22:51 by the clocks of Germany.
    const float64 summer = datum.JulianDay(u"20.06.2024") + (22 + 51 / 60.0) / 24;
    EXPECT_NEAR(days.Jahreszeitbeginn(2024, Sommer), summer, 20 / 1440.0);
    for (const int32 none : {4, -1})
        EXPECT_EQ(days.Jahreszeitbeginn(2024, static_cast<eJahreszeit>(none)), 0);
}

TEST_F(Rules, SummerTimeIsThatOfTheZone) {
    const auto zones = [this](TextView dates) {
        std::string all;
        for (const auto& date : split(dates, u" ")) all += Told::one(days.TimeZone(date)) + " ";
        return all;
    };
    EXPECT_EQ(zones(u"30.03.2024 31.03.2024 26.10.24 27.10.2024 "), "1 2 2 1 2 ") << "today is a day in June";
    const auto ofYear = [this](int32 year) {
        const auto rows = days.FeierTage(year);
        return dayOf(rows, u"Beginn Sommerzeit") + u" " + dayOf(rows, u"Ende Sommerzeit");
    };
    EXPECT_TOLD(" 2809|2603 2409|3103 2710", ofYear(1980), ofYear(1995), ofYear(2024));

    // Sydney: the year begins and ends in summer time.
    library.ground.zones.zone = platform::ZoneYear{-600, 0, -60, {10, 0, 1}, {4, 0, 1}};
    EXPECT_EQ(zones(u"01.01.2024 01.07.2024 01.12.2024"), "11 10 11 ");
    // No summer time: the rows behind move up, so the last Sunday of September seems to begin it.
    library.ground.zones.zone = platform::ZoneYear{};
    EXPECT_EQ(days.TimeZone(u"01.07.2024"), 0);
    EXPECT_EQ(dayOf(clsFeierTage().FeierTage(2024), u"Beginn Sommerzeit"), u"2909");
}

TEST_F(Rules, AnOrthodoxYearOverwritesFixedDaysOfItsObject) {
    EXPECT_TRUE(days.IstFeierTag(u"25.12.2024"));
    const auto rows = days.FeierTageOrthodox(2024, true);
    EXPECT_EQ(rows[10][1], u"0505");
    EXPECT_EQ(rows[34][1], u"") << "no Advent";
    EXPECT_EQ(rows[33][1], u"2411") << "Totensonntag, as the year before was built";
    EXPECT_FALSE(days.IstFeierTag(u"25.12.2024"))
        << "the summer time of the orthodox year stands there, and stays";
    EXPECT_EQ(days.Ostern(u"1.1.2024"), u"31032024");
    EXPECT_TRUE(days.IstFeierTag(u"01.04.2024")) << "Easter is the Western one again";
    EXPECT_EQ(clsFeierTage().FeierTageOrthodox(2024, false)[33][1], u"0000") << "never built";
    EXPECT_TRUE(clsFeierTage().IstFeierTag(u"25.12.2024"));
}

TEST_F(Rules, ShortYearsAndEmptyDates) {
    // 251226 is in the year 26.
    EXPECT_TOLD("no|yes|no|1|||0|0", days.IstFeierTag(u"251226"), days.IstFeierTag(u"25122026"),
                days.IstFeierTag(u""), days.TagNamen(u"").size(), days.Ostern(u""), days.Advent(u""),
                days.OsternGregorianisch(u""), days.OsternOrthodox(u""));
}

// Whatever text comes: an answer, and the table is right afterwards.
TEST_F(Rules, TextsThatAreNoDatesAreAnswered) {
    auto texts = split(
        u" |x|-1.-1.-1|99.99.9999|-999-999|00000000|99999999|1.1.-500|\xD800.|..|31.12.99999999999", u"|");
    texts.insert(texts.end(), {Text(1000000, u'9'), Text(1000, u'.')});
    for (const auto& text : texts) {
        EXPECT_EQ(days.IstFeierTag(text), days.IstFeierTag(text)) << toUtf8(text.substr(0, 20));
        EXPECT_GE(days.TagNamen(text).size(), 1u);
        const Text next = days.NextWorkday(text, -1);
        EXPECT_TRUE(next.empty() || datum.DayOfWeek(next) <= Freitag) << toUtf8(text.substr(0, 20));
        EXPECT_LE(std::abs(days.TimeZone(text)), 2);
    }
    constexpr int32 most = 2147483647;
    for (const int32 year : {most, -most - 1, -1, 0, 10000}) {
        EXPECT_EQ(days.FeierTage(year).size(), 62u);
        EXPECT_NE(days.Jahreszeitbeginn(year, Winter), 0) << year;
    }
    EXPECT_TRUE(days.IstFeierTag(u"25.12.2026"));
}

}  // namespace
}  // namespace tsRtm::test
