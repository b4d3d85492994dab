#include "tsRtm/frame/ConversionsTopic.hpp"

#include <gtest/gtest.h>

#include <array>
#include <limits>

#include "tests/support/TestGround.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm {
namespace {

class Conversions : public testing::Test {
 protected:
    test::StartedLibrary library;
    ConversionsTopic topic;
};

TEST_F(Conversions, ByteStrings) {
    for (const int32 value : {0, 1, -1, 255, 256, 0x12345678, std::numeric_limits<int32>::min(),
                              std::numeric_limits<int32>::max(), static_cast<int32>(0x9D8F8D81)})
        EXPECT_EQ(topic.LongVal(topic.MKL(value), 1), value);
    EXPECT_EQ(topic.MKL(-1), Text(4, u'ÿ'));
    EXPECT_EQ(topic.MKI(65536), Text(2, u'\0'));
    EXPECT_EQ(topic.WordVal(topic.MKI(-2), 1), 65534);

    EXPECT_EQ(topic.ByteVal(u"", 1), -1);
    EXPECT_EQ(topic.ByteVal(u"A", 0), -1);
    EXPECT_EQ(topic.ByteVal(u"€", 1), 0x80);
    EXPECT_EQ(topic.WordVal(u"AB", 1), 0x4241);
    EXPECT_EQ(topic.WordVal(u"AB", 2), 0);
    EXPECT_EQ(topic.LongVal(u"ABCD", 2), 0);
    EXPECT_EQ(topic.LongVal(u"ABCD", std::numeric_limits<int32>::min()), 0);

    EXPECT_DOUBLE_EQ(topic.ConvertEuro(100, false), 195.583);
    EXPECT_EQ(topic.HiWord(-1), 65535);
    EXPECT_EQ(topic.LoWord(-2), 65534);
    EXPECT_EQ(topic.HiByte(0x12345678), 0x56);
    EXPECT_EQ(topic.LoByte(0x12345678), 0x78);
}

TEST_F(Conversions, MarksOfValuesChangeWithTheCodePage) {
    const Text dos = fromAnsi("\x84.1.2");
    EXPECT_EQ(topic.ConvertToWin(dos, typALLES), u"ä.1.2");
    EXPECT_EQ(topic.ConvertToWin(dos, typWERT), u"ä,1.2");
    EXPECT_EQ(topic.ConvertToWin(dos, typDATUM), u"ä:1.2");
    EXPECT_EQ(topic.ConvertToDos(u"ä:1:2", typDATUM), fromAnsi("\x84.1:2"));
    EXPECT_EQ(topic.ConvertToDos(u"ä,1,2", typWERT), fromAnsi("\x84.1,2"));
    EXPECT_EQ(topic.ConvertToDos(u"ä,1", typNN), fromAnsi("\x84,1"));
}

TEST_F(Conversions, Utf8) {
    EXPECT_EQ(topic.AnsiToUTF8(u"ä€"), u"Ã¤â‚¬");
    EXPECT_EQ(topic.UTF8ToAnsi(u"Ã¤â‚¬"), u"ä€");
    EXPECT_EQ(topic.UTF8ToAnsi(topic.AnsiToUTF8(u"日本 \U0001F600")), u"日本 \U0001F600");
    EXPECT_EQ(topic.UTF8ToAnsi(u""), u"");
}

TEST_F(Conversions, Searching) {
    EXPECT_EQ(topic.Tally(u"aaa", u"aa"), 1);
    EXPECT_EQ(topic.Tally(u"abc", u"ax", true), 1);
    EXPECT_EQ(topic.Tally(u"aXbX", u"XX", true), 4);
    EXPECT_EQ(topic.Tally(u"abc", u""), 0);

    for (const auto& [text, characters, start, at] : {std::tuple{u"a;b,c", u",;", 1, 2},
                                                      {u"a;b,c", u",;", 3, 4},
                                                      {u"a;b,c", u",;", -7, 2},
                                                      {u"a;b", u";", 9, 0},
                                                      {u"a;b", u"", 1, 0}})
        EXPECT_EQ(topic.InstrAny(text, characters, start), at) << toUtf8(text) << start;

    EXPECT_EQ(topic.InstrNext(u"a.b.c", u"."), 2);
    EXPECT_EQ(topic.InstrNext(u"a.b.c", u".", 3), 4);
    for (const auto& [start, at] : {std::pair{0, 4}, {99, 4}, {3, 2}, {1, 0}})
        EXPECT_EQ(topic.InstrNext(u"a.b.c", u".", start, false), at) << start;
    EXPECT_EQ(topic.InstrNext(u"", u".", 0, false), 0);

    Text text = u"x|y|";
    topic.ChangeChar(text, u'|', static_cast<int16>(0xFFFD));
    EXPECT_EQ(text, u"x\uFFFDy\uFFFD");
    EXPECT_EQ(topic.LPSTRToVB(Text(u"ab\0c", 4)), u"ab");
    EXPECT_EQ(topic.LPSTRToVB(u"ab"), u"ab");
}

TEST_F(Conversions, ToBool) {
    for (const TextView yes : {u"-1", u"0.9", u"1", u" 1", u"yes", u"Ja", u"w", u"Wahr", u"true", u"100"})
        EXPECT_TRUE(topic.ToBool(yes)) << toUtf8(yes);
    for (const TextView no : {u"", u"0", u"Nein", u"0001", u"0.01", u"ja ", u"on"})
        EXPECT_FALSE(topic.ToBool(no)) << toUtf8(no);
}

}  // namespace
}  // namespace tsRtm
