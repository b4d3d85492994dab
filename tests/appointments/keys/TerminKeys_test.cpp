// Keys of appointments: made from what is typed, found for a date, told in words; and their times.
#include "tsRtm/appointments/keys/TerminKeys.hpp"

#include "tests/calendar/CalendarTest.hpp"
#include "tests/support/Table.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/appointments/keys/DueRule.hpp"
#include "tsRtm/appointments/keys/TerminTimes.hpp"

namespace tsRtm::test {
namespace {

using namespace appointments;
using TerminKeys = CalendarTest;

std::vector<Text> keysOf(TextView date) {
    const Text all = dateKeys(date);
    EXPECT_EQ(all.size() % kKeyLength, 0u);
    std::vector<Text> keys;
    for (std::size_t at = 0; at < all.size(); at += kKeyLength) keys.push_back(all.substr(at, kKeyLength));
    return keys;
}

bool has(TextView date, TextView key) {
    const auto keys = keysOf(date);
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

TEST_F(TerminKeys, OfADateAreAllThatAreDueOnIt) {
    EXPECT_TOLD(
        "20240229,++++0229,++++++29,++++++30,++++++31,+++++DO5,+++++DO+,+++++DO9,++++++++,2024++++,202402++,+"
        "+++02++",
        keysOf(u"29.02.2024"));
    EXPECT_EQ(dateKeys(u"29.2.24"), dateKeys(u"29022024")) << "a short year is widened";
    EXPECT_EQ(dateKeys(u""), u"");
    for (const auto& [date, lacking] :
         table<2>(u"28.02.2023=ja 28.02.2024= 30.04.2024=ja 30.05.2024= 31.05.2024=ja"))
        EXPECT_EQ(has(date, u"++++++31"), !lacking.empty()) << toUtf8(date);
    for (const auto& [date, last] : table<2>(u"24.06.2024=ja 23.06.2024= 17.06.2024="))
        EXPECT_EQ(has(date, keysOf(date)[3].substr(0, 7) + u"9"), !last.empty()) << toUtf8(date);
}

// What one types says the same day as the day says itself. ".20" is not tested, and never due.
TEST_F(TerminKeys, AreMadeFromWhatIsTyped) {
    for (const auto& [typed, key] :
         table<2>(u"=++++++++ 24.12.2024=20241224 1.1.2024=20240101 241224=20241224 24.12.24=20241224 "
                  u"24122024=20241224 31.02.2024= 310224= 24.12.=++++1224 1.2.=++++0201 2412=++++1224 "
                  u"2913= 2900= 0012= 31=++++++31 5.=++++++05 32= 5= .12=++++12++ .20=++++20++ "
                  u".2024=2024++++ .122024=202412++ .12.2024=202412++ .1.2024= .1a= .= mo=+++++MO+ "
                  u"So1=+++++SO1 mo.2=+++++MO2 MO5=+++++MO5 "
                  u"MO6=+++++MO9 MO9=+++++MO9 MO0= OD= XX2= *2W=*T000014 *W2=*T000014 *1j=*M000012 "
                  u"*T000014=*T000014 *14t=*T000014 *W=*T000000 *0T=*T000000 *999999M=*M999999 *83334J= "
                  u"*1000000T= *-2W= *2X= *= Weihnachten= 1234567="))
        EXPECT_EQ(toUtf8(createKey(typed)), toUtf8(key)) << toUtf8(typed);
    for (const auto& typed : split(u"24.12.2024 24.12. 24 .12 .2024 .122024 DI DI4 ", u" "))
        EXPECT_TRUE(has(u"24.12.2024", createKey(typed))) << toUtf8(typed);
    EXPECT_TRUE(has(u"31.12.2024", createKey(u"DI7")));
}

TEST_F(TerminKeys, HaveAKindAndWords) {
    const std::pair<eTerminTypen, TextView> kinds[] = {
        {ttEinzel, u"20241224=;=;2024011+=;*X000012="},
        {ttTaeglich, u"++++++++=jeden Tag"},
        {ttMonatlich, u"++++++05=jeden Monat am 5."},
        {ttWoechentlich, u"+++++MO+=jeden Montag;+++++XX+=jeden "},
        {ttMonatlichWoche, u"+++++SO2=jeden 2. Sonntag im Monat;+++++FR9=jeden letzten Freitag im Monat"},
        {ttJaehrlichGanzeWoche, u"+++++W12=jeden 2. "},
        {ttJaehrlich, u"++++0308=jedes Jahr am 8. März;++++1308=jedes Jahr am 8. "},
        {ttJaehrlichGanzerMonat, u"++++03++=jedes Jahr an jedem Tag des Monats März;++++="},
        {ttGanzesJahr, u"2024++++=jeden Tag des Jahres 2024"},
        {ttGanzerMonat, u"202403++=jeder Tag im März des Jahres 2024"},
        {ttGanzeWoche, u"2024+308="},
        {ttTagesAbstand, u"*T000001=alle 1 Tage;*T001005=alle 5 Tage"},
        {ttMonatsAbstand, u"*M000012=alle 12 Monate"}};
    for (const auto& [kind, rows] : kinds)
        for (const auto& [key, words] : table<2>(rows, u";")) {
            EXPECT_EQ(kindOf(key), kind) << toUtf8(key);
            EXPECT_EQ(toUtf8(wordsOf(key)), toUtf8(words)) << toUtf8(key);
        }
}

TEST_F(TerminKeys, ComeRoundFromTheirStart) {
    // Key, day, start; the 29.2. cut to the 28th is not due.
    for (const auto& [key, day, start, due] :
         table<4>(u"*T000014=15.01.2024=01.01.2024=ja *T000014=01.01.2024=01.01.2024=ja "
                  u"*M000001=29.02.2024=29.01.2024=ja *M000001=31.05.2024=31.03.2024=ja "
                  u"*T000014=14.01.2024=01.01.2024= *T000014=15.01.2024== *T000000=15.01.2024=15.01.2024= "
                  u"*T00001x=15.01.2024=15.01.2024= *M000001=30.04.2024=31.03.2024= "
                  u"*M000012=29.02.2025=29.02.2024= *M000003=01.03.2024=01.01.2024= "
                  u"*J000001=01.01.2025=01.01.2024= *T000007=25.12.2023=01.01.2024="))
        EXPECT_EQ(DueRule(key, start, u"").on(dayOf(clsDatum().JulianDay(day))), !due.empty())
            << toUtf8(key) << ' ' << toUtf8(day);
}

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

// By numbers a key is due on the same days as by the keys of each day.
TEST_F(TerminKeys, AreDueAlikeByNumbers) {
    const std::vector<Text> keys = {u"20240229", u"++++++++", u"++++++01", u"++++++28", u"++++++29",
                                    u"++++++30", u"++++++31", u"+++++MO+", u"+++++SO1", u"+++++FR5",
                                    u"+++++mi9", u"++++0229", u"++++1224", u"++++02++", u"2024++++",
                                    u"202402++", u"++++++00", u"++++++32", u"+++++XX+", u"2024++15",
                                    u"+++++MO7", u"20241+++", u"2024",     u"",         u"++++13++"};
    const std::pair<TextView, TextView> validities[] = {
        {u"", u""}, {u"31012023", u"30062024"}, {u"29022024", u""}, {u"", u"01032024"}};
    const int32 first = clsDatum().JulianDay(u"01012023"), last = clsDatum().JulianDay(u"31122024");
    for (int32 number = first; number <= last; ++number) {
        const Text date = clsDatum().KalenderDay(number);
        const auto today = keysOf(date);
        const Day day = dayOf(number);
        const auto within = [&](TextView from, TextView to) {
            return (from.empty() || clsDatum().JulianDay(from) <= number) &&
                   (to.empty() || clsDatum().JulianDay(to) >= number);
        };
        for (const auto& key : keys)
            for (const auto& [from, to] : validities) {
                const bool found = std::find(today.begin(), today.end(), upper(key)) != today.end();
                ASSERT_EQ(DueRule(key, from, to).on(day), found && within(from, to))
                    << toUtf8(key) << ' ' << toUtf8(date) << " from " << toUtf8(from);
            }
    }
}

}  // namespace
}  // namespace tsRtm::test
