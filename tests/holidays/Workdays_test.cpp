// The next working day, and so many of them.
#include "tests/holidays/HolidaysTest.hpp"

namespace tsRtm::test {
namespace {

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
