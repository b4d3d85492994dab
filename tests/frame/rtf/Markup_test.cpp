#include "tsRtm/frame/rtf/Markup.hpp"

#include <gtest/gtest.h>

#include "tests/support/TestGround.hpp"
#include "tsRtm/frame/rtf/PlainText.hpp"

namespace tsRtm {
namespace {

class Markup : public testing::Test {
    test::StartedLibrary library;
};

// What stands between the fixed opening and the closing brace.
Text body(const Text& text) {
    const Text rtf = markupToRtf(text, true);
    const Text opening = u"{\\pard\\plain\\fs20 ";
    EXPECT_TRUE(rtf.starts_with(opening) && rtf.ends_with(u"}"));
    return rtf.substr(opening.size(), rtf.size() - opening.size() - 1);
}

TEST_F(Markup, HeaderAndWhatIsRtfAlready) {
    EXPECT_EQ(
        markupToRtf(u""),
        u"{\\rtf1\\ansi\\deff0\\deftab720\\deflang1031{\\fonttbl{\\f0\\fswiss Arial;}{\\f1\\fswiss MS Sans "
        u"Serif;}{\\f2\\froman\\fcharset2 Symbol;}{\\f3\\fmodern Courier New;}{\\f4\\froman Times New "
        u"Roman;}}{\\colortbl\\red0\\green0\\blue0;\\red255\\green0\\blue255;\\red0\\green255\\blue255;"
        u"\\red128"
        u"\\green0\\blue128;\\red255\\green255\\blue0;\\red255\\green0\\blue0;\\red0\\green255\\blue0;}"
        u"\\pard\\plain\\fs20 }");
    EXPECT_EQ(markupToRtf(u"{\\rtf1 ~F}"), u"{\\rtf1 ~F}");
}

TEST_F(Markup, CommandsAndStyles) {
    struct Case {
        Text text, body;
    };
    const Case cases[] = {{u"~Ffett~F", u"\\b fett\\b0 "},
                          {u".LR1.ZE", u"\\li144 \\qc "},
                          {u".LR1.ZE\r\nText\r\n", u"\\li144 \\qc Text\\par "},
                          {u"a~", u"a"},
                          {u"a\rb\r\nc", u"a\\par b\\par c"},
                          {u"   eingerückt", u"eingerückt"},
                          {u"a\\b{c}\td", u"a\\\\b\\{c\\}\\tab d"},
                          {u"~da~D~hb~H", u"ab"},
                          {u"~ux~U~kx~Ix", u"\\ul x\\ul0 \\i x\\i0 x"},
                          {u"~Fa\r~Fb", u"\\b a\\par \\b0 b"},  // styles last over lines
                          {u"~?x~\u00E4y", u"xy"},
                          {u"~B~Bx", u"\\fs40 \\fs20 x"},
                          {u"~Sx~Bx~S~B", u"x\\fs28 x\\fs24 "},
                          {u"~E~B~E~B", u"\\fs48 \\fs20 "},
                          {u"~P12x~P0x~P60x", u"\\fs20 x\\fs20 x\\fs20 x"},
                          {u"~P123", u"\\fs20 3"},
                          {u"~P9,~P", u"\\fs27 \\fs27 "},
                          {u"~C5x~Cx", u"\\cf5 x\\cf0 x"},
                          {u".rr 2 . RA3.LB.RB.BS.TL2.PD.XX.",
                           u"\\lr288 \\fi-432 \\ql \\qr \\ql\\qj \\tx288 \\pard\\plain\\fs20 "},
                          {u".LR1,5.LR0,01.TL1,6.LR", u"\\li216 \\li1 \\tx288 \\li0 "},
                          {u".LR99999999999.TL9999999999", u"\\li2147483647 \\tx309237645168 "}};
    for (const auto& one : cases) EXPECT_EQ(toUtf8(body(one.text)), toUtf8(one.body)) << toUtf8(one.text);
}

TEST_F(Markup, ReadsBackAsPlainText) {
    EXPECT_EQ(rtfToPlainText(markupToRtf(u".ZE\r\n~FÜberschrift~F\r\n\r\n{a\\b}\t€ 5\r\n")),
              u"Überschrift\r\n\r\n{a\\b}\t€ 5\r\n");
}

}  // namespace
}  // namespace tsRtm
