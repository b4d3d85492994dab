// Summer time of real zones.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <sstream>

#include "tsRtm/platform/posix/PosixTimeZones.hpp"

namespace tsRtm::test {
namespace {

using namespace platform;

std::string shown(const std::optional<ZoneYear>& year) {
    if (!year) return "none";
    const auto change = [](const ClockChange& rule) {
        return std::to_string(rule.month) + "/" + std::to_string(rule.dayOfWeek) + "/" +
               std::to_string(rule.occurrence);
    };
    std::ostringstream out;
    out << year->bias << ' ' << year->standardBias << ' ' << year->daylightBias << ' '
        << change(year->daylight) << ' ' << change(year->standard);
    return out.str();
}

TEST(PosixTimeZones, YearsHaveTheirOwnRulesOrThoseOfToday) {
    const std::string today = "-60 0 -60 3/0/5 10/0/5";
    const std::tuple<TextView, int32, std::string> rows[] = {
        {u"Europe/Berlin", 2024, today},
        {u"Europe/Berlin", 9999, today},
        {u"Europe/Berlin", 1995, "-60 0 -60 3/0/5 9/0/5"},
        {u"Europe/Berlin", 1980, "-60 0 -60 4/0/1 9/0/5"},
        {u"Europe/Berlin", 1979, today},  // none
        {u"Europe/Berlin", 1954, today},
        {u"Europe/Berlin", 1947, today},  // two hours ahead for a while
        {u"Europe/Berlin", 1945, today},
        {u"Europe/Berlin", 1943, "-60 0 -60 3/1/5 10/1/1"},
        {u"Europe/Berlin", 1940, today},  // and not back
        {u"Europe/Berlin", 1916, "-60 0 -60 4/0/5 10/0/1"},
        {u"Europe/Berlin", 1892, today},
        {u"Europe/Berlin", 1, today},
        {u"Europe/Berlin", 0, today},
        {u"Europe/London", 2024, "0 0 -60 3/0/5 10/0/5"},
        {u"America/New_York", 2024, "300 0 -60 3/0/2 11/0/1"},
        {u"Australia/Sydney", 2024, "-600 0 -60 10/0/1 4/0/1"},
        {u"Asia/Kolkata", 2024, "-330 0 0 0/0/0 0/0/0"},
        {u"Europe/Moscow", 2005, "-180 0 -60 3/0/5 10/0/5"},
        {u"Europe/Moscow", 2024, "-180 0 0 0/0/0 0/0/0"},
        {u"UTC", 2024, "0 0 0 0/0/0 0/0/0"},
        {u"Europe/Bonn", 2024, "none"},
    };
    posix::PosixTimeZones zones;
    for (const auto& [zone, year, rules] : rows)
        EXPECT_EQ(shown(zones.year(zone, year)), rules) << toUtf8(zone) << ' ' << year;
}

TEST(PosixTimeZones, TheMachinesZoneIsThatOfTheMoment) {
    const char* before = ::getenv("TZ");
    const std::string kept = before ? before : "";
    posix::PosixTimeZones zones;
    for (const auto& [name, bias] :
         {std::pair{"Europe/Berlin", -60}, {"UTC", 0}, {"America/New_York", 300}}) {
        ::setenv("TZ", name, 1);
        EXPECT_EQ(zones.year(u"", 2024)->bias, bias) << name;
    }
    before ? ::setenv("TZ", kept.c_str(), 1) : ::unsetenv("TZ");
    ::tzset();
}

}  // namespace
}  // namespace tsRtm::test
