// The next working day, and so many of them.
#include "tests/holidays/HolidaysTest.hpp"

namespace tsRtm::test {
namespace {

using Workdays = HolidaysTest;

TEST_F(Workdays, AreFoundOnBothSides) {
    in(NRW);
    struct Row {
        TextView date;
        int32 distance;
        TextView workday;
    };
    constexpr Row kRows[] = {
        {u"25.11.2026", 0, u"25112026"},   // a Wednesday
        {u"28.11.2026", 0, u"30112026"},   // Saturday
        {u"28.11.2026", -1, u"27112026"},  // to the Friday
        {u"29.11.2026", -1, u"27112026"},  // from Sunday, too
        {u"24.12.2026", 1, u"28122026"},   // over Christmas and the weekend
        {u"27.12.2026", -1, u"24122026"},  // and back
        {u"02.04.2026", 1, u"07042026"},   // over Easter
        {u"06.04.2026", -1, u"02042026"},
        {u"20.12.2026", 14, u"04012027"},  // into the next year
        {u"01.01.2027", -2, u"30122026"},
        {u"241226", 1, u"28122026"},  // a short year is widened
        {u"abc", 0, u"03012000"},     // no date: as dates are read, 1.1.2000
        {u"", 0, u""},
        {u"01.01.2026", 2147483647, u""},  // past the end of the calendar
        {u"01.01.2026", -2147483647, u""},
        {u"31.12.9999", 0, u"31129999"},
        {u"31.12.9999", 1, u""},
    };
    for (const auto& row : kRows)
        EXPECT_EQ(days.NextWorkday(row.date, row.distance), row.workday)
            << toUtf8(row.date) << ' ' << row.distance;
}

TEST_F(Workdays, DependOnTheState) {
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
    EXPECT_EQ(days.AddBankWorkDays(u"26.12.26", -5), u"26.12.26");
    EXPECT_EQ(days.AddBankWorkDays(u"", 5), u"");
    EXPECT_EQ(days.AddBankWorkDays(u"27.12.9999", 2147483647), u"");
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
