#include "tsRtm/frame/text/CodePages.hpp"

#include <gtest/gtest.h>

namespace tsRtm {
namespace {

TEST(CodePages, EveryByteSurvivesTheWayThroughText) {
    Bytes bytes;
    for (int code = 0; code < 256; ++code) {
        bytes.push_back(static_cast<char>(code));
        EXPECT_EQ(unicodeToAnsi(ansiToUnicode(static_cast<uint8>(code))), code);
    }
    EXPECT_EQ(toAnsi(fromAnsi(bytes)), bytes);
    EXPECT_EQ(fromUtf16Le(toUtf16Le(fromAnsi(bytes))), fromAnsi(bytes));
}

TEST(CodePages, Ansi) {
    EXPECT_EQ(fromAnsi("\x80 \x8A\x8E\x9F \xC4\xDF\xFF"), u"€ ŠŽŸ Äßÿ");
    EXPECT_EQ(fromAnsi("\x81\x8D\x8F\x90\x9D"), u"\u0081\u008D\u008F\u0090\u009D");
    EXPECT_EQ(toAnsi(u"Łóż \u0080"), "?\xF3? ?");
    EXPECT_EQ(unicodeToAnsi(u'Ł'), -1);
    Text text = u"longer than what comes";
    fromAnsi("ab", text);
    EXPECT_EQ(text, u"ab");
}

TEST(CodePages, OemBothWays) {
    const Text oem = fromAnsi("\x84\x94\x81\x8E\x99\x9A\xE1\xF5");
    EXPECT_EQ(OemToChar(oem), u"äöüÄÖÜß§");
    EXPECT_EQ(CharToOem(u"äöüÄÖÜß§"), oem);
    EXPECT_EQ(ansiToOem("\x80\x93\x94"), "?\"\"");  // best fit where the other page has no equal
    EXPECT_EQ(oemToAnsi("\xC9\xCD\xBB"), "+-+");
    for (int code = 0; code < 128; ++code) {
        const Bytes one(1, static_cast<char>(code));
        EXPECT_EQ(oemToAnsi(one), one) << code;
        EXPECT_EQ(ansiToOem(one), one) << code;
    }
}

TEST(CodePages, Utf16) {
    EXPECT_EQ(toUtf16Le(u"Aß€"), Bytes("A\0\xDF\0\xAC\x20", 6));
    EXPECT_EQ(fromUtf16Le(Bytes("A\0B", 3)), u"A");  // half a character at the end
}

}  // namespace
}  // namespace tsRtm
