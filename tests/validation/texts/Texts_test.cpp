// Patterns with wildcards, and options in a text.
#include <gtest/gtest.h>

#include "tests/support/Table.hpp"
#include "tsRtm/validation/texts/Likeness.hpp"
#include "tsRtm/validation/texts/OptionScan.hpp"

namespace tsRtm {
namespace {

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
         table<3>(u"/Min:1 /Max:10=max=10;-MIN:1,5=Min=1,5;/Min /Max:=Min=;/Min "
                  u"/Max:=Max=;x/Min:1=Min=1;/Pattern:^[0-9]+/Min:1$ "
                  u"/Min:2=Min=2;/Pattern:^[0-9]+$=Pattern=^[0-9]+$;"
                  u"\"/Pattern:a b\" /Min:3=Pattern=a b;\"/Pattern:a b\" /Min:3=Min=3;/X \"/Pattern:a "
                  u"\"b\"=Pattern=a \"b;\"/Pattern:a b=Pattern=a b",
                  u";"))
        EXPECT_EQ(optionValue(text, key), value) << toUtf8(text) << " " << toUtf8(key);
    for (const auto& [text, key] : table<2>(u"/Minimum:1=Min Min:1=Min \"/=Pattern =Min"))
        EXPECT_EQ(optionValue(text, key), std::nullopt) << toUtf8(text) << " " << toUtf8(key);
}

}  // namespace
}  // namespace tsRtm
