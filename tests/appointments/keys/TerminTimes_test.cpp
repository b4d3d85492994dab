// Times of appointments, and the way from a duration to an end and back.
#include "tsRtm/appointments/keys/TerminTimes.hpp"

#include "tests/calendar/CalendarTest.hpp"

namespace tsRtm::test {
namespace {

using namespace appointments;
using TerminTimes = CalendarTest;

TEST_F(TerminTimes, AreMinutesOfTheDay) {
    for (const auto& [time, minutes] : {std::pair{u"10:30", 630},
                                        {u"10.30", 630},
                                        {u"1,5", 65},
                                        {u"10:30:15", 630},
                                        {u"10", 0},
                                        {u"", 0},
                                        {u":15", 15},
                                        {u"x:y", 0}})
        EXPECT_EQ(minutesOf(time), minutes) << toUtf8(time);
}

TEST_F(TerminTimes, GoOverMidnight) {
    struct Row {
        TextView from, to, between;
    };
    for (const auto& row : {Row{u"10:00", u"10:30", u"00:30"}, Row{u"22:00", u"01:00", u"03:00"},
                            Row{u"9.05", u"9,05", u"00:00"}, Row{u"0:00", u"23:59", u"23:59"}}) {
        EXPECT_EQ(timeBetween(row.from, row.to), row.between);
        EXPECT_EQ(timeBetween(row.from, timeAfter(row.from, row.between)), row.between);
    }
    EXPECT_EQ(timeAfter(u"22:00", u"03:00"), u"01:00");
    for (const auto none : {u"24:00", u"10", u"10:60", u"10:3", u"10:30:00", u"-1:00", u"", u"halb"}) {
        EXPECT_EQ(timeBetween(none, u"10:00") + timeBetween(u"10:00", none), u"") << toUtf8(none);
        EXPECT_EQ(timeAfter(none, u"10:00") + timeAfter(u"10:00", none), u"") << toUtf8(none);
    }
    rtmMain::state().locale.sepTime = u".";
    EXPECT_EQ(timeBetween(u"10:00", u"12.15"), u"02.15") << "both marks are read, the locale's is written";
}

}  // namespace
}  // namespace tsRtm::test
