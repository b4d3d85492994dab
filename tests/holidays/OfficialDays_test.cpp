// Holidays as the laws of the states have them, written down by hand.
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

TEST_F(OfficialDays, FollowTheLawOfTheirTime) {
    struct Row {
        TextView date;
        TextView states;  // those where it is a holiday, two digits each; "*" everywhere
    };
    constexpr Row kRows[] = {
        {u"31.10.2016", u"12 13 14 15 16"},
        {u"31.10.2017", u"*"},
        {u"31.10.2018", u"04 05 07 11 12 13 14 15 16"},
        {u"16.11.1994", u"*"},  // Buß- und Bettag, given up for the care insurance
        {u"22.11.1995", u"14"},
        {u"17.06.1990", u"*"},
        {u"17.06.1991", u""},
        {u"03.10.1989", u""},
        {u"03.10.1990", u"*"},
        {u"17.06.1976", u"01 02 06 08 09 10"},  // Fronleichnam stands before the day of the uprising
        {u"01.05.2008", u"*"},                  // and Himmelfahrt, too
        {u"08.03.2018", u""},
        {u"08.03.2020", u"03"},
        {u"08.05.2020", u"03"},
        {u"08.05.2021", u""},
        {u"20.09.2018", u""},
        {u"20.09.2019", u"16"},
        {u"25.03.1500", u"*"},  // the year began there
        {u"01.01.1500", u""},
        {u"24.12.2026", u""},
        {u"31.12.2026", u""},
        {u"03.04.2200", u""},  // no Easter is known after 2199
    };
    const auto isIn = [](const Row& row, int32 state) {
        return row.states == u"*" || row.states.find(digits(state, 2)) != TextView::npos;
    };
    for (const auto& row : kRows) {
        for (int32 state = 1; state <= 16; ++state) {
            in(state);
            EXPECT_EQ(days.IstFeierTag(row.date), isIn(row, state)) << toUtf8(row.date) << " in " << state;
        }
        in(0);
        EXPECT_EQ(days.IstFeierTag(row.date), !row.states.empty()) << toUtf8(row.date) << " in any state";
    }
}

// What was made law after the table: none, all, or as far as a day.
TEST_F(OfficialDays, AmendmentsCountWhenTheyAreAskedFor) {
    struct Row {
        int32 law;
        TextView date;
        bool inBerlin, inMeckPomm;
    };
    constexpr Row kRows[] = {
        {0, u"08.03.2023", true, false},         {20220712, u"08.03.2023", true, false},
        {20220713, u"08.03.2023", true, true},   {20220713, u"08.03.2022", true, false},
        {20220713, u"08.05.2025", false, false}, {99999999, u"08.03.2023", true, true},
        {0, u"08.05.2025", false, false},        {20240721, u"08.05.2025", true, false},
        {99999999, u"08.05.2026", false, false}, {99999999, u"17.06.2028", true, false},
        {0, u"17.06.2028", false, false},
    };
    for (const auto& row : kRows) {
        days.Rechtsstand(row.law);
        in(BERLIN);
        EXPECT_EQ(days.IstFeierTag(row.date), row.inBerlin) << row.law << ' ' << toUtf8(row.date);
        in(MECKPOMM);
        EXPECT_EQ(days.IstFeierTag(row.date), row.inMeckPomm) << row.law << ' ' << toUtf8(row.date);
    }
    days.Rechtsstand(99999999);
    const auto rows = days.FeierTage(2025);
    ASSERT_EQ(rows.size(), 65u);
    EXPECT_EQ(days.TagNamen(u"08.03.2025"), (std::vector<Text>{u"", u"internationaler Frauentag"}));
    EXPECT_EQ(rows[63], (std::array<Text, 4>{u"80 Jahre Befreiung", u"0805", u"2", u"805"}));
    EXPECT_NE(days.Gesetz(63).find(u"10.7.2024"), Text::npos);
    EXPECT_EQ(days.Gesetz(61) + days.Gesetz(0) + days.Gesetz(65), u"");
}

}  // namespace
}  // namespace tsRtm::test
