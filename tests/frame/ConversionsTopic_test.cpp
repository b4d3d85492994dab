#include "tsRtm/frame/ConversionsTopic.hpp"

#include <limits>

#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm {
namespace {

class Conversions : public testing::Test {
 protected:
    test::StartedLibrary library;
    ConversionsTopic topic;
};

TEST_F(Conversions, ByteStrings) {
    constexpr auto kLeast = std::numeric_limits<int32>::min(), kMost = std::numeric_limits<int32>::max();
    for (const int32 value : {0, 1, -1, 255, 256, 0x12345678, kLeast, kMost, static_cast<int32>(0x9D8F8D81)})
        EXPECT_EQ(topic.LongVal(topic.MKL(value), 1), value);
    EXPECT_EQ(topic.MKL(-1) + topic.MKI(65536), u"ÿÿÿÿ" + Text(2, u'\0'));
    EXPECT_TOLD("-1|-1|128|16961|0|65534", topic.ByteVal(u"", 1), topic.ByteVal(u"A", 0),
                topic.ByteVal(u"€", 1), topic.WordVal(u"AB", 1), topic.WordVal(u"AB", 2),
                topic.WordVal(topic.MKI(-2), 1));
    EXPECT_TOLD("0|0|195.583", topic.LongVal(u"ABCD", 2), topic.LongVal(u"ABCD", kLeast),
                topic.ConvertEuro(100, false));
    EXPECT_TOLD("65535|65534|86|120", topic.HiWord(-1), topic.LoWord(-2), topic.HiByte(0x12345678),
                topic.LoByte(0x12345678));
}

TEST_F(Conversions, MarksOfValuesChangeWithTheCodePage) {
    const Text dos = fromAnsi("\x84.1.2");
    EXPECT_TOLD("ä.1.2|ä,1.2|ä:1.2", topic.ConvertToWin(dos, typALLES), topic.ConvertToWin(dos, typWERT),
                topic.ConvertToWin(dos, typDATUM));
    for (const auto& [text, type, bytes] : {std::tuple{u"ä:1:2", typDATUM, "\x84.1:2"},
                                            {u"ä,1,2", typWERT, "\x84.1,2"},
                                            {u"ä,1", typNN, "\x84,1"}})
        EXPECT_EQ(topic.ConvertToDos(text, type), fromAnsi(bytes));
}

TEST_F(Conversions, Utf8) {
    EXPECT_TOLD("Ã¤â‚¬|ä€|", topic.AnsiToUTF8(u"ä€"), topic.UTF8ToAnsi(u"Ã¤â‚¬"), topic.UTF8ToAnsi(u""));
    EXPECT_EQ(topic.UTF8ToAnsi(topic.AnsiToUTF8(u"日本 \U0001F600")), u"日本 \U0001F600");
}

TEST_F(Conversions, Searching) {
    EXPECT_TOLD("1|1|4|0", topic.Tally(u"aaa", u"aa"), topic.Tally(u"abc", u"ax", true),
                topic.Tally(u"aXbX", u"XX", true), topic.Tally(u"abc", u""));
    for (const auto& [text, characters, start, at] :
         {std::tuple{u"a;b,c", u",;", 1, 2}, std::tuple{u"a;b,c", u",;", 3, 4},
          std::tuple{u"a;b,c", u",;", -7, 2}, std::tuple{u"a;b", u";", 9, 0}, std::tuple{u"a;b", u"", 1, 0}})
        EXPECT_EQ(topic.InstrAny(text, characters, start), at) << toUtf8(text) << start;
    EXPECT_TOLD("2|4|0", topic.InstrNext(u"a.b.c", u"."), topic.InstrNext(u"a.b.c", u".", 3),
                topic.InstrNext(u"", u".", 0, false));
    for (const auto& [start, at] : {std::pair{0, 4}, {99, 4}, {3, 2}, {1, 0}})
        EXPECT_EQ(topic.InstrNext(u"a.b.c", u".", start, false), at) << start;
    Text text = u"x|y|";
    topic.ChangeChar(text, u'|', static_cast<int16>(0xFFFD));
    EXPECT_TOLD("x\uFFFDy\uFFFD|ab|ab", text, topic.LPSTRToVB(Text(u"ab\0c", 4)), topic.LPSTRToVB(u"ab"));
}

TEST_F(Conversions, ToBool) {
    for (const TextView yes : {u"-1", u"0.9", u"1", u" 1", u"yes", u"Ja", u"w", u"Wahr", u"true", u"100"})
        EXPECT_TRUE(topic.ToBool(yes)) << toUtf8(yes);
    for (const TextView no : {u"", u"0", u"Nein", u"0001", u"0.01", u"ja ", u"on"})
        EXPECT_FALSE(topic.ToBool(no)) << toUtf8(no);
}

}  // namespace
}  // namespace tsRtm
