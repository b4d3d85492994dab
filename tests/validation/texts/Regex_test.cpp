// Regular expressions, held against those of the standard library, and against their own bound; patterns with
// wildcards; options in a text.
#include "tsRtm/validation/texts/Regex.hpp"

#include <gtest/gtest.h>

#include <random>
#include <regex>

#include "tests/support/Table.hpp"
#include "tsRtm/validation/texts/Likeness.hpp"
#include "tsRtm/validation/texts/OptionScan.hpp"

namespace tsRtm {
namespace {

TEST(Regex, FindsWhatThePatternSays) {
    const std::tuple<TextView, std::vector<TextView>, std::vector<TextView>> cases[] = {
        {u"", {u"", u"x"}, {}},
        {u"^abc$", {u"abc"}, {u"abc\n", u"\nabc", u"xabc", u"ABC"}},
        {u"a|^b$|c", {u"xax", u"b", u"c"}, {u"bb", u""}},
        {u"^(ab?)+$", {u"a", u"ab", u"aab", u"abab"}, {u"abb", u""}},
        {u"^a{2,3}$", {u"aa", u"aaa"}, {u"a", u"aaaa"}},
        {u"^a{2}b{1,}c{0}$", {u"aab", u"aabb"}, {u"aabc", u"aa"}},
        {u"a{,2}|x{", {u"a{,2}", u"x{"}, {u"aa"}},
        {u"^[a-c\\d_-]+$", {u"a1_-c"}, {u"d", u""}},
        {u"^[^a-c]$", {u"d", u"ä"}, {u"a", u""}},
        {u"^[]a]", {}, {u"]a]", u"a"}},
        {u"^[^]$", {u"x", u"\n"}, {u""}},
        {u"^[\\]\\\\^-]+$", {u"]\\^-"}, {u"["}},
        {u"^[a-\\d]+$", {u"a-7"}, {u"b"}},
        {u"^.$", {u"x", u"€"}, {u"\n", u"\r", u"\u2028", u"", u"xx"}},
        {u"\\bab\\b",
         {u"ab", u"x ab.",
          u"ä"
          u"ab"},
         {u"xab", u"abc"}},
        {u"a\\Bb", {u"ab"}, {u"a b"}},
        {u"^\\w+\\s\\S\\W$", {u"a_1 x-", u"A\u00A0ä!"}, {u"a1x-", u"ä  -"}},
        {u"^\\x41\\u00e4\\t\\.\\/\\-\\cA$", {u"Aä\t./-\u0001"}, {u"Aa\t./-\u0001"}},
        {u"^(a)(b)?\\1\\2$", {u"aa", u"abab"}, {u"aba", u"ab"}},
        {u"^(a*)\\1$", {u"", u"aa", u"aaaa"}, {u"aaa"}},
        {u"^(?=.*\\d)(?!.*x)[a-z\\d]+$", {u"ab1"}, {u"ab", u"ax1", u"1-"}},
        {u"^(?:(?=(a+))\\1)b$", {u"aab"}, {u"aac"}},
        {u"^(a*)*$", {u"", u"aaa"}, {u"b"}},
        {u"^(a*?|b)*?c+?$", {u"c", u"aabbcc"}, {u"ad"}},
        {u"(^a|b$)", {u"ax", u"xb"}, {u"xa", u"bx"}}};
    for (const auto& [pattern, fits, others] : cases) {
        const Regex regex(pattern);
        for (const TextView text : fits)
            EXPECT_TRUE(regex.test(text)) << toUtf8(pattern) << " " << toUtf8(text);
        for (const TextView text : others)
            EXPECT_FALSE(regex.test(text)) << toUtf8(pattern) << " " << toUtf8(text);
    }
    const Regex anyCase(u"^Ä[b-d](X)\\1[^e]$", true);
    EXPECT_TRUE(anyCase.test(u"äCxXf"));
    EXPECT_FALSE(anyCase.test(u"äCxXE"));
}

TEST(Regex, APatternThatIsNoneFitsNothing) {
    for (const TextView pattern :
         {u"(",       u")",       u"a)",      u"[a",     u"[b-a]",    u"*",
          u"+a",      u"a**",     u"a{2}{3}", u"^*",     u"a{3,2}",   u"\\",
          u"(?<a>b)", u"(?",      u"\\1",     u"(a)\\2", u"(?:a)\\1", u"((a{1000}){1000}){1000}",
          u"[\\",     u"(){3}{3}"})
        for (const TextView text : {u"", u"a", u"(", u"b"})
            EXPECT_FALSE(Regex(pattern).test(text)) << toUtf8(pattern);
    EXPECT_FALSE(Regex(Text(1000, u'(') + Text(1000, u')')).test(u""));
    EXPECT_TRUE(Regex(u"(){1000000}").test(u""));
}

// Groups are repeated at the outside only: the peer takes exponential time otherwise.
Text randomPattern(std::mt19937& random, bool outside) {
    const auto pick = [&](uint32 n) { return static_cast<uint32>(random() % n); };
    constexpr TextView kRepeats[] = {u"", u"", u"*", u"+", u"?", u"{2}", u"{1,2}", u"*?"};
    Text out;
    for (uint32 parts = 1 + pick(3); parts > 0; --parts) {
        const uint32 kind = pick(outside ? 7 : 4);
        if (kind < 4) {
            constexpr TextView kAtoms[] = {u"a", u"b", u"[ab]", u"."};
            out.append(kAtoms[kind]).append(kRepeats[pick(outside ? 8 : 2)]);
        } else {
            constexpr TextView kOpen[] = {u"(", u"(?:", u"(?="};
            out += kOpen[kind - 4];
            out += randomPattern(random, false) + u"|" + randomPattern(random, false) + u")";
            if (kind < 6) out += kRepeats[pick(8)];
        }
    }
    if (outside && pick(2) == 0) out = u"^" + out;
    if (outside && pick(2) == 0) out += u"$";
    return out;
}

TEST(Regex, AgreesWithTheStandardLibrary) {
    std::mt19937 random(11);
    for (int i = 0; i < 1500; ++i) {
        const Text pattern = randomPattern(random, true);
        const std::regex peer(toUtf8(pattern));
        const Regex regex(pattern);
        for (int j = 0; j < 12; ++j) {
            Text text;
            for (auto length = random() % 9; length > 0; --length) text += u"aabc"[random() % 4];
            ASSERT_EQ(regex.test(text), std::regex_search(toUtf8(text), peer))
                << toUtf8(pattern) << " " << toUtf8(text);
        }
    }
}

TEST(Regex, EndsSoonWhateverItIsGiven) {
    const Text run(4096, u'a');
    // Decided: what led nowhere from a place is not tried again.
    for (const auto& [pattern, fits] : {std::pair<TextView, bool>{u"^(a+)+$", true},
                                        {u"^(a+)+b$", false},
                                        {u"(a|aa|a*)*b$", false},
                                        {u"[ab]*[cd]", false},
                                        {u"^(.*)*$", true}})
        EXPECT_EQ(Regex(pattern).test(run), fits) << toUtf8(pattern);
    // Given up: patterns that look back or ahead have no such bound, and long texts have more places.
    EXPECT_FALSE(Regex(u"^(a+)+\\1b$").test(run));
    EXPECT_FALSE(Regex(u"^(?=(a+)+b)").test(run));
    EXPECT_FALSE(Regex(u"^(a+)+b$").test(Text(1 << 20, u'a')));
    EXPECT_TRUE(Regex(u"^a").test(Text(1 << 20, u'a')));
}

TEST(Likeness, WildcardsStandForCharacters) {
    using test::table;
    for (const auto& [text, pattern] : table<2>(u"= =* Müller=mÜ*R abc=a?c a7=a# abcbc=*bc x=[a-cx] d=[!a-c] "
                                                u"ü=[Ü] -=[a-] !=[!] ab=a[]b *?#=[*][?][#] ]=] ab\n=ab?"))
        EXPECT_TRUE(isLike(text, pattern)) << toUtf8(text) << " " << toUtf8(pattern);
    for (const auto& [text, pattern] :
         table<2>(u"=? abc=a??c ab=a# abab=*a*b*c D=[a-c] B=[!a-c] [=[ a=a[ b=[c-a]"))
        EXPECT_FALSE(isLike(text, pattern)) << toUtf8(text) << " " << toUtf8(pattern);
    EXPECT_FALSE(isLike(Text(1 << 20, u'a'), u"*" + Text(1 << 19, u'a') + u"b"));
}

TEST(OptionScan, ValuesAreCutOutAsTheyStand) {
    using test::table;
    for (const auto& [text, key, value] :
         table<3>(u"/Min:1 /Max:10=max=10; -MIN:1,5=Min=1,5; /Min /Max:=Min=; /Min /Max:=Max=; "
                  u"x/Min:1=Min=1; /Pattern:^[0-9]+/Min:1$ /Min:2=Min=2; /Pattern:^[0-9]+$=Pattern=^[0-9]+$; "
                  u"\"/Pattern:a b\" /Min:3=Pattern=a b; \"/Pattern:a b\" /Min:3=Min=3; /X \"/Pattern:a "
                  u"\"b\"=Pattern=a \"b; \"/Pattern:a b=Pattern=a b",
                  u"; "))
        EXPECT_EQ(optionValue(text, key), value) << toUtf8(text) << " " << toUtf8(key);
    for (const auto& [text, key] : table<2>(u"/Minimum:1=Min Min:1=Min \"/=Pattern =Min"))
        EXPECT_EQ(optionValue(text, key), std::nullopt) << toUtf8(text) << " " << toUtf8(key);
}

}  // namespace
}  // namespace tsRtm
