// RTF read as plain text, as runs and paragraphs, and made of the markup of older texts.
#include "tsRtm/frame/rtf/Reader.hpp"

#include <random>

#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/RtfTopic.hpp"
#include "tsRtm/frame/rtf/Markup.hpp"
#include "tsRtm/frame/rtf/PlainText.hpp"

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
        {"halves of a character, one of them bare", u"{\\rtf1\\ansicpg932\\'83A\\'83\\'41A\\'b1A\\'83{A}}",
         u"アアAｱA\uFFFDA"},
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
        {"both faces of a text", u"{\\rtf1{\\upr{\\title a}{\\*\\ud{b}}}{\\*\\ud c}}", u"b"},
        {"both faces of what is no text",
         u"{\\rtf1{\\info{\\upr{\\title a}{\\*\\ud{\\title b}}}{\\author c}}d}", u"d"},
        {"a western font in another document",
         u"{\\rtf1\\ansicpg1250{\\fonttbl{\\f0\\fcharset0 A;}{\\f1\\fcharset1 B;}{\\f2\\fcharset2 "
         u"C;}}\\'f1\\f1\\'f1\\f2\\'f1\\f9\\'f1}",
         u"ñńñń"},
        {"labels of a list", u"{\\rtf1{\\listtext\\pard\\plain \\tab}a{\\listtext  1.\\tab}b}", u"a1.\tb"},
        {"shapes for new and old readers",
         u"{\\rtf1 a{\\shp{\\*\\shpinst\\shpleft0{\\sp{\\sn wzName}{\\sv x}}{\\shptxt b}}{\\shprslt "
         u"c}}d{\\shp"
         u"{\\*\\shpinst}{\\shprslt e}}}",
         u"abde"},
        {"binary data", u"{\\rtf1 a\\bin3 }{\\b}", u"ab"},
        {"tables", u"{\\rtf1\\trowd a\\cell b\\cell\\row}", u"a\tb\t\r\n"},
        {"inner tables",
         u"{\\rtf1 "
         u"a\\nestcell{\\nonesttables\\par}b\\nestcell{\\*\\nesttableprops\\trowd\\nestrow}{\\nonesttables"
         u"\\par}c\\cell\\row}",
         u"a\tb\t\r\nc\t\r\n"},
        {"columns", u"{\\rtf1 a\\column b}", u"a\r\nb"},
        {"line ends as characters", u"{\\rtf1 a\\u10?b\\'0d\\'0ac\\u0?d}", u"a\r\nb\r\ncd"},
        {"bullets of a list", u"{\\rtf1{\\pntext\\f1\\'B7\\tab}{\\*\\pn\\pnlvlblt x}a}", u"·\ta"},
        {"typographic words", u"{\\rtf1 \\ldblquote a\\rdblquote\\endash\\emdash\\bullet}",
         u"\u201Ca\u201D\u2013\u2014\u2022"},
        {"nothing behind the outermost group", u"{\\rtf1 a}b{c}", u"a"},
        {"cut off anywhere", u"{\\rtf1 {\\b a\\", u"a"},
        {"characters beyond the code page stay", u"{\\rtf1 日\\par}", u"日\r\n"},
        {"a piece without a head", u"{\\pard\\plain\\fs20 a}", u"a"}};
    for (const auto& one : cases) EXPECT_EQ(toUtf8(rtfToPlainText(one.rtf)), toUtf8(one.text)) << one.what;

    const RtfTopic topic;
    for (const TextView plain : {u"no \\par RTF", u"{a} note}", u"{", u"{\\pard a}", u" {\\rtf1 a}"})
        EXPECT_EQ(topic.ConvertRTFToText(plain), plain);
    EXPECT_EQ(topic.ConvertRTFToText(u"{\\rtf1 a}"), u"a");
}

// What a text says, in short: "[what differs from the default]text", and the breaks with what differs there.
class Told final : public rtf::Visitor {
 public:
    explicit Told(TextView rtf) { rtf::read(rtf, *this); }
    void onRun(const rtf::Run& run) override {
        const auto& f = run.format;
        std::string how;
        const bool super = f.script == rtf::Script::superscript, sub = f.script == rtf::Script::subscript;
        for (const auto& [on, name] :
             {std::pair{f.bold, "b "}, std::pair{f.italic, "i "}, std::pair{f.underline, "ul "},
              std::pair{f.strike, "strike "}, std::pair{f.hidden, "v "}, std::pair{f.capitals, "caps "},
              std::pair{f.smallCapitals, "scaps "}, std::pair{super, "super "}, std::pair{sub, "sub "}})
            how += on ? name : "";
        if (f.raised != 0) how += "up" + std::to_string(f.raised) + " ";
        if (f.halfPoints != 24) how += std::to_string(f.halfPoints) + " ";
        if (!run.font.name.empty()) how += toUtf8(run.font.name) + (run.font.fixedPitch ? "! " : " ");
        colour("", run.colour, how);
        colour("on", run.background, how);
        out += "[" + how.substr(0, how.empty() ? 0 : how.size() - 1) + "]" + toUtf8(run.text);
    }
    void onBreak(rtf::Break kind, const rtf::ParagraphFormat& p) override {
        static constexpr const char* kKinds[] = {"par", "line", "page", "cell", "row", "end"};
        std::string how = kKinds[static_cast<int>(kind)];
        const auto number = [&](const char* name, int32 value, int32 usual = 0) {
            if (value != usual) how += std::string(" ") + name + std::to_string(value);
        };
        number("q", static_cast<int32>(p.alignment));
        number("li", p.left), number("ri", p.right), number("fi", p.first), number("sb", p.before),
            number("sa", p.after);
        number(p.lineMultiple ? "slmult" : "sl", p.lineSpacing);
        number("pagebb", p.pageBreakBefore ? 1 : 0);
        number("deftab", p.defaultTab, 720);
        for (const auto& tab : p.tabs)
            how += " tab" + std::to_string(tab.position) + "lrcd"[static_cast<int>(tab.kind)] +
                   (tab.leader == u' ' ? "" : toUtf8({&tab.leader, 1}));
        if (kind != rtf::Break::end || how != "end") out += "<" + how + ">";
    }
    std::string out;

 private:
    static void colour(const char* name, rtf::Colour c, std::string& how) {
        if (!c.automatic)
            how += name + std::to_string(c.red) + "," + std::to_string(c.green) + "," +
                   std::to_string(c.blue) + " ";
    }
};

TEST(RtfReader, RunsAndParagraphs) {
    struct Case {
        const char* what;
        Text rtf;
        std::string told;
    };
    const Case cases[] = {
        {"equal formats are one run", u"{\\rtf1 a\\'e4\\u8364?{b}\\b\\b0 c\\tab d}", "[]aä€bc\td"},
        {"styles, inherited and taken back",
         u"{\\rtf1\\b a{\\i b\\ul c}d\\b0\\ulw e\\ulnone\\strike f\\plain g\\v\\caps\\scaps h}",
         "[b]a[b i]b[b i ul]c[b]d[ul]e[strike]f[]g[v caps scaps]h"},
        {"size and place",
         u"{\\rtf1\\fs20 a\\super b\\nosupersub\\sub c\\sub0\\up4 d\\dn e\\up0\\fs0 f\\fs99999 g}",
         "[20]a[super 20]b[sub 20]c[up4 20]d[up-6 20]e[20]f[3276]g"},
        {"fonts by their table",
         u"{\\rtf1\\deff1{\\fonttbl{\\f0\\fswiss{\\*\\panose 02}Arial{\\*\\falt Helv};}{\\f1\\fmodern\\fprq1 "
         u"Courier "
         u"New;}\\f2\\fcharset204 \\'c0\\'e1;x}a\\f0 b\\f2 c\\f7 d}",
         "[Courier New!]a[Arial]b[Аб]c[]d"},
        {"colours by their table",
         u"{\\rtf1{\\colortbl;\\red255\\green0\\blue999;\\red1;}\\cf1 a\\cf2\\cb1 b\\cf9\\highlight2 "
         u"c\\highlight0\\cf-4 d}",
         "[255,0,255]a[1,0,0 on255,0,255]b[on1,0,0]c[]d"},
        {"paragraphs",
         u"{\\rtf1\\deftab567 a\\qc\\li100\\fi-50\\ri7 b\\par "
         u"c\\sb1\\sa2\\sl480\\slmult1\\pagebb\\par\\pard\\qj d\\qr}",
         "[]ab<par q2 li100 ri7 fi-50 deftab567>[]c<par q2 li100 ri7 fi-50 sb1 sa2 slmult480 pagebb1 "
         "deftab567>[]d<end q1 deftab567>"},
        {"tabulators ascend, the second at a place counts",
         u"{\\rtf1\\tqr\\tldot\\tx900\\tx100\\tqdec\\tx500\\tqc\\tx100 a{\\tx200 b\\par}c\\par\\pard}",
         "[]ab<par tab100c tab200l tab500d tab900r.>[]c<par tab100c tab500d tab900r.>"},
        {"lengths have bounds", u"{\\rtf1\\li99999999\\ri-99999999\\deftab-1 a}",
         "[]a<end li31680 ri-31680>"},
        {"other breaks", u"{\\rtf1 a\\line b\\page c\\cell d\\row e\\\ne}",
         "[]a<line>[]b<page>[]c<cell pagebb1>[]d<row>[]e<par>[]e"},
        {"the library's own head", markupToRtf(u".LR1.ZE\r~Ffett~F ~C5rot~B\r"),
         "[b 20 Arial 0,0,0]fett[20 Arial 0,0,0] [20 Arial 255,0,0]rot<par q2 li144><end q2 li144>"}};
    for (const auto& one : cases) EXPECT_EQ(Told(one.rtf).out, one.told) << one.what;
}

TEST(RtfReader, HostileTexts) {
    Text deep(200000, u'{');
    deep += u"a" + Text(200000, u'}') + u"b";
    EXPECT_EQ(rtfToPlainText(deep), u"a");

    EXPECT_TOLD("A|Ab|ab", rtfToPlainText(u"{\\uc99999999999\\u65 abc"),
                rtfToPlainText(u"{\\uc-5\\u65 b\\bin99999999999 x"), rtfToPlainText(u"{a\\bin-1 b}"));

    // Tables and tabulators without end: no group carries more than it may.
    Text tabs = u"{{\\fonttbl";
    for (int i = 0; i < 2000; ++i) tabs += u"{\\f" + toText(i) + u" x;}";
    tabs += u"}{\\colortbl" + Text(10000, u';') + u"}";
    for (int i = 0; i < 2000; ++i) tabs += u"\\tx" + toText(i);
    for (int i = 0; i < 20000; ++i) tabs += u"{";
    EXPECT_EQ(rtfToPlainText(tabs + u"a"), u"a");

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
    const std::tuple<Text, Text> cases[] = {
        {u"~Ffett~F", u"\\b fett\\b0 "},
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
    for (const auto& [text, rtf] : cases) EXPECT_EQ(toUtf8(body(text)), toUtf8(rtf)) << toUtf8(text);
}

TEST_F(Markup, ReadsBackAsPlainText) {
    EXPECT_EQ(rtfToPlainText(markupToRtf(u".ZE\r\n~FÜberschrift~F\r\n\r\n{a\\b}\t€ 5\r\n")),
              u"Überschrift\r\n\r\n{a\\b}\t€ 5\r\n");
}

}  // namespace
}  // namespace tsRtm
