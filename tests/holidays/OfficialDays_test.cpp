// Holidays as the laws of the states have them, written down by hand, and the working days between them.
#include "tests/holidays/HolidaysTest.hpp"

namespace tsRtm::test {
namespace {

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
    EXPECT_NE(days.Gesetz(63).find(u"10.7.2024"), Text::npos);
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

}  // namespace
}  // namespace tsRtm::test
