// Times of appointments, and the way from a duration to an end and back.
#include "tsRtm/appointments/keys/TerminTimes.hpp"

#include "tests/calendar/CalendarTest.hpp"
#include "tests/support/Table.hpp"

namespace tsRtm::test {
namespace {

using namespace appointments;
using TerminTimes = CalendarTest;

TEST_F(TerminTimes, AreMinutesOfTheDayAndGoOverMidnight) {
    for (const auto& [time, minutes] :
         table<2>(u"10:30=630 10.30=630 1,5=65 10:30:15=630 10=0 =0 :15=15 x:y=0"))
        EXPECT_EQ(minutesOf(time), number(minutes)) << toUtf8(time);
    for (const auto& [from, to, between] :
         table<3>(u"10:00=10:30=00:30 22:00=01:00=03:00 9.05=9,05=00:00 0:00=23:59=23:59")) {
        EXPECT_EQ(timeBetween(from, to), between);
        EXPECT_EQ(timeBetween(from, timeAfter(from, between)), between);
    }
    EXPECT_EQ(timeAfter(u"22:00", u"03:00"), u"01:00");
    for (const auto& none : split(u"24:00 10 10:60 10:3 10:30:00 -1:00  halb", u" ")) {
        EXPECT_EQ(timeBetween(none, u"10:00") + timeBetween(u"10:00", none), u"") << toUtf8(none);
        EXPECT_EQ(timeAfter(none, u"10:00") + timeAfter(u"10:00", none), u"") << toUtf8(none);
    }
    rtmMain::state().locale.sepTime = u".";
    EXPECT_EQ(timeBetween(u"10:00", u"12.15"), u"02.15") << "both marks are read, the locale's is written";
}

}  // namespace
}  // namespace tsRtm::test
