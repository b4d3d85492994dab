#include "tsRtm/frame/text/RtfReader.hpp"

#include <gtest/gtest.h>

#include <random>

#include "tsRtm/frame/text/ConversionsTopic.hpp"

namespace tsRtm {
namespace {

TEST(RtfReader, PlainText) {
    struct Case {
        const char* what;
        Text rtf, text;
    };
    const Case cases[] = {
        {"paragraphs, lines, tabs", u"{\\rtf1\\ansi a\\par b\\line c\\tab d\\par\r\n}",
         u"a\r\nb\r\nc\td\r\n"},
        {"line ends of the file are none", u"{\\rtf1 a\r\nb\nc}", u"abc"},
        {"one blank ends a word", u"{\\rtf1 \\b  x\\b0 y\\i1z}", u" xyz"},
        {"escapes", u"{\\rtf1 \\{\\\\\\}\\~\\-\\_x}", u"{\\}\u00A0\u00AD\u2011x"},
        {"bytes of the document's page", u"{\\rtf1\\ansi\\'e4\\'80\\'zz!}", u"ä€zz!"},
        {"other document pages", u"{\\rtf1\\ansi\\ansicpg1251\\'c0}", u"А"},
        {"the DOS pages", u"{\\rtf1\\pca\\'84\\'e1}", u"äß"},
        {"a page of no meaning", u"{\\rtf1\\ansicpg-7\\'e4}", u"ä"},
        {"a font's character set",
         u"{\\rtf1{\\fonttbl{\\f0 A;}{\\f1\\fcharset238 B;}{\\f2\\fcharset128 "
         u"C;}}\\'b3\\f1\\'b3{\\f0\\'b3}\\'b3"
         u"\\plain\\'b3\\f2\\'93\\'fa}",
         u"³ł³ł³日"},
        {"the default font", u"{\\rtf1\\deff1{\\fonttbl{\\f1\\fcharset161 B;}}\\'e1}", u"α"},
        {"unicode and its stand-ins",
         u"{\\rtf1 \\u8364?x\\u-10179?\\u-8704?{\\uc2\\u26085\\'93\\'fa}\\uc0\\u228y}", u"€x\U0001F600日äy"},
        {"stand-ins end with the group", u"{\\rtf1 {\\uc5\\u228 a}b\\u228\\b c}", u"äbäc"},
        {"destinations that are no text",
         u"{\\rtf1{\\colortbl;\\red1;}{\\stylesheet{\\s1 Normal;}}{\\info{\\title T}}{\\*\\generator G;}"
         u"{\\header H\\par}{\\pict 0102}{\\*\\nobody {\\b knows}} x}",
         u" x"},
        {"a field's result", u"{\\rtf1{\\field{\\*\\fldinst HYPERLINK \"u\"}{\\fldrslt{\\ul link}}}}",
         u"link"},
        {"both faces of a text", u"{\\rtf1{\\upr{\\title a}{\\*\\ud{b}}}}", u"b"},
        {"binary data", u"{\\rtf1 a\\bin3 }{\\b}", u"ab"},
        {"tables", u"{\\rtf1\\trowd a\\cell b\\cell\\row}", u"a\tb\t\r\n"},
        {"typographic words", u"{\\rtf1 \\ldblquote a\\rdblquote\\endash\\emdash\\bullet}",
         u"\u201Ca\u201D\u2013\u2014\u2022"},
        {"nothing behind the outermost group", u"{\\rtf1 a}b{c}", u"a"},
        {"cut off anywhere", u"{\\rtf1 {\\b a\\", u"a"},
        {"characters beyond the code page stay", u"{\\rtf1 日\\par}", u"日\r\n"},
        {"a piece without a head", u"{\\pard\\plain\\fs20 a}", u"a"},
    };
    for (const auto& one : cases) EXPECT_EQ(toUtf8(rtfToPlainText(one.rtf)), toUtf8(one.text)) << one.what;

    const ConversionsTopic topic;
    EXPECT_EQ(topic.ConvertRTFToText(u"no \\par RTF"), u"no \\par RTF");
    EXPECT_EQ(topic.ConvertRTFToText(u"{\\rtf1 a}"), u"a");
}

TEST(RtfReader, HostileTexts) {
    Text deep(200000, u'{');
    deep += u"a" + Text(200000, u'}') + u"b";
    EXPECT_EQ(rtfToPlainText(deep), u"a");

    EXPECT_EQ(rtfToPlainText(u"{\\uc99999999999\\u65 abc"), u"A");
    EXPECT_EQ(rtfToPlainText(u"{\\uc-5\\u65 b\\bin99999999999 x"), u"Ab");
    EXPECT_EQ(rtfToPlainText(u"{a\\bin-1 b}"), u"ab");

    Text pages = u"{";
    for (int i = 0; i < 500; ++i) pages += u"\\ansicpg" + toText(i) + u"\\'41";
    EXPECT_EQ(rtfToPlainText(pages).size(), 500u);

    // Any mixture of tokens has some reading and gives no more than went in.
    static constexpr TextView kPieces[] = {u"{",       u"}",    u"\\",         u"\\'",           u"e4",
                                           u"\\u",     u"-1",   u"\\uc3 ",     u"\\bin5 ",       u"*",
                                           u"\\*\\ud", u"\\f1", u"{\\fonttbl", u"\\fcharset128", u"\\par",
                                           u" ",       u"ß"};
    std::mt19937 random{7};
    for (int round = 0; round < 3000; ++round) {
        Text rtf = u"{";
        for (int i = 0; i < 40; ++i) rtf += kPieces[random() % std::size(kPieces)];
        EXPECT_LE(rtfToPlainText(rtf).size(), rtf.size());
    }
}

}  // namespace
}  // namespace tsRtm
