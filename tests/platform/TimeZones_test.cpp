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
    std::ostringstream out;
    out << year->bias << ' ' << year->standardBias << ' ' << year->daylightBias;
    for (const auto& rule : {year->daylight, year->standard})
        out << ' ' << rule.month << '/' << rule.dayOfWeek << '/' << rule.occurrence;
    return out.str();
}

TEST(PosixTimeZones, YearsHaveTheirOwnRulesOrThoseOfToday) {
    posix::PosixTimeZones zones;
    // Years without a summer time of their own: none at all, two hours ahead for a while, or not back.
    for (const int32 year : {2024, 9999, 1979, 1954, 1947, 1945, 1940, 1892, 1, 0})
        EXPECT_EQ(shown(zones.year(u"Europe/Berlin", year)), "-60 0 -60 3/0/5 10/0/5") << year;
    const std::tuple<TextView, int32, std::string> rows[] = {
        {u"Europe/Berlin", 1995, "-60 0 -60 3/0/5 9/0/5"},
        {u"Europe/Berlin", 1980, "-60 0 -60 4/0/1 9/0/5"},
        {u"Europe/Berlin", 1943, "-60 0 -60 3/1/5 10/1/1"},
        {u"Europe/Berlin", 1916, "-60 0 -60 4/0/5 10/0/1"},
        {u"Europe/London", 2024, "0 0 -60 3/0/5 10/0/5"},
        {u"America/New_York", 2024, "300 0 -60 3/0/2 11/0/1"},
        {u"Australia/Sydney", 2024, "-600 0 -60 10/0/1 4/0/1"},
        {u"Asia/Kolkata", 2024, "-330 0 0 0/0/0 0/0/0"},
        {u"Europe/Moscow", 2005, "-180 0 -60 3/0/5 10/0/5"},
        {u"Europe/Moscow", 2024, "-180 0 0 0/0/0 0/0/0"},
        {u"UTC", 2024, "0 0 0 0/0/0 0/0/0"},
        {u"Europe/Bonn", 2024, "none"}};
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
