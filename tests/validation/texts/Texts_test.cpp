// Patterns with wildcards, and options in a text.
#include <gtest/gtest.h>

#include "tsRtm/validation/texts/Likeness.hpp"
#include "tsRtm/validation/texts/OptionScan.hpp"

namespace tsRtm {
namespace {

TEST(Likeness, WildcardsStandForCharacters) {
    const std::tuple<TextView, TextView, bool> cases[] = {
        {u"", u"", true},
        {u"", u"*", true},
        {u"", u"?", false},
        {u"Müller", u"mÜ*R", true},
        {u"abc", u"a?c", true},
        {u"abc", u"a??c", false},
        {u"a7", u"a#", true},
        {u"ab", u"a#", false},
        {u"abcbc", u"*bc", true},
        {u"abab", u"*a*b*c", false},
        {u"x", u"[a-cx]", true},
        {u"D", u"[a-c]", false},
        {u"B", u"[!a-c]", false},
        {u"d", u"[!a-c]", true},
        {u"ü", u"[Ü]", true},
        {u"-", u"[a-]", true},
        {u"!", u"[!]", true},
        {u"ab", u"a[]b", true},
        {u"*?#", u"[*][?][#]", true},
        {u"]", u"]", true},
        {u"[", u"[", false},
        {u"a", u"a[", false},
        {u"b", u"[c-a]", false},
        {u"ab\n", u"ab?", true},
    };
    for (const auto& [text, pattern, like] : cases)
        EXPECT_EQ(isLike(text, pattern), like) << toUtf8(text) << " " << toUtf8(pattern);
    EXPECT_FALSE(isLike(Text(1 << 20, u'a'), u"*" + Text(1 << 19, u'a') + u"b"));
}

TEST(OptionScan, ValuesAreCutOutAsTheyStand) {
    const std::tuple<TextView, TextView, std::optional<Text>> cases[] = {
        {u"/Min:1 /Max:10", u"max", u"10"},
        {u"-MIN:1,5", u"Min", u"1,5"},
        {u"/Min /Max:", u"Min", u""},
        {u"/Min /Max:", u"Max", u""},
        {u"/Minimum:1", u"Min", std::nullopt},
        {u"Min:1", u"Min", std::nullopt},
        {u"x/Min:1", u"Min", u"1"},
        {u"/Pattern:^[0-9]+/Min:1$ /Min:2", u"Min", u"2"},
        {u"/Pattern:^[0-9]+$", u"Pattern", u"^[0-9]+$"},
        {u"\"/Pattern:a b\" /Min:3", u"Pattern", u"a b"},
        {u"\"/Pattern:a b\" /Min:3", u"Min", u"3"},
        {u"/X \"/Pattern:a \"b\"", u"Pattern", u"a \"b"},
        {u"\"/Pattern:a b", u"Pattern", u"a b"},
        {u"\"/", u"Pattern", std::nullopt},
        {u"", u"Min", std::nullopt},
    };
    for (const auto& [text, key, value] : cases)
        EXPECT_EQ(optionValue(text, key), value) << toUtf8(text) << " " << toUtf8(key);
}

}  // namespace
}  // namespace tsRtm
