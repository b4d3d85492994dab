// The words all rooms use.
#include <gtest/gtest.h>

#include "tsRtm/types/Date.hpp"
#include "tsRtm/types/Event.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

TEST(Text, ReadsNumbersFromTheStart) {
    const std::pair<TextView, float64> rows[] = {
        {u"12", 12},     {u"  -1.5x", -1.5},
        {u"1.2.3", 1.2}, {u"abc", 0},
        {u"", 0},        {u"+7", 7},
        {u"1e3", 1000},  {u"1e", 1},
        {u"2E-1", 0.2},  {u"1,5", 1},
        {u".5", 0.5},    {u"-", 0},
        {u".", 0},       {u"12345678901234567890123456789012345678901234567890", 1.2345678901234567e49}};
    for (const auto& [text, value] : rows) EXPECT_DOUBLE_EQ(Val(text), value) << toUtf8(text);
}

TEST(Text, TellsNumbersFromOthers) {
    const std::pair<TextView, bool> rows[] = {{u"1.234,50", true}, {u" -5 ", true},  {u"1,2,3", false},
                                              {u"", false},        {u"1e3", false},  {u",5", true},
                                              {u"-", false},       {u"1,2.3", false}};
    for (const auto& [text, numeric] : rows)
        EXPECT_EQ(IstNumerisch(text, u",", u"."), numeric) << toUtf8(text);
}

TEST(Text, SurvivesMalformedUtf8) {
    EXPECT_EQ(fromUtf8("aä€😀"), u"aä€😀");
    EXPECT_EQ(fromUtf8("\xC3"), u"\uFFFD");
    EXPECT_EQ(fromUtf8("\xC0\xAFx"), u"\uFFFD\uFFFDx");
    EXPECT_EQ(fromUtf8("\xED\xA0\x80"), u"\uFFFD");
    EXPECT_EQ(fromUtf8("\xE2\x82z"), u"\uFFFDz");
    EXPECT_EQ(toUtf8(Text(1, char16_t{0xD800})), "\xEF\xBF\xBD");
    EXPECT_EQ(fromUtf8(toUtf8(u"ß😀Ω")), u"ß😀Ω");
}

TEST(Text, RoundsHalvesToEven) {
    for (const auto& [number, rounded] : {std::pair{2.5, 2}, {3.5, 4}, {-2.5, -2}, {1e300, 0x7FFFFFFF}})
        EXPECT_EQ(roundToInt32(number), rounded);
}

TEST(Date, GoesBothWays) {
    EXPECT_EQ(Date::of(1899, 12, 30).serial(), 0);
    EXPECT_EQ(Date::of(2024, 2, 29).day(), 45351);
    const auto parts = Date::of(1580, 3, 1, 23, 59, 59).parts();
    EXPECT_EQ(std::tuple(parts.year, parts.day, parts.second), std::tuple(1580, 1, 59));
}

TEST(Event, ListenersMayEndEachOther) {
    Event<int> event;
    int calls = 0;
    Subscription second;
    const auto first = event.connect([&](int) {
        ++calls;
        second.end();
    });
    second = event.connect([&](int) { calls += 100; });
    event(1);
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(event.connected());
}

}  // namespace
}  // namespace tsRtm
