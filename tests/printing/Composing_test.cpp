// What reaches a page: units, grids, fonts, alignment, wrapping, drawing. A letter of 12 points is 720 twips
// wide.
#include <gtest/gtest.h>

#include "tests/printing/PaperDouble.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/printing/Druck.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm::test {
namespace {

class Composing : public ::testing::Test {
 protected:
    std::vector<std::string> lines(int32 page = 1) {
        job.Ausgabe();
        return drawnOn(job.Page(page));
    }
    void start(int32 anzahl = 1) { job.Init(72, anzahl, 1, u"A4"); }

    StartedLibrary library;
    PaperDouble paper;
    MessagesTopic messages;
    Druck job{messages};
};

using Lines = std::vector<std::string>;

TEST_F(Composing, StartsWithThePaperThatIsAskedFor) {
    // Size, width, height, orientation, copies, sides and bin; what is read of the sides is not what was
    // given.
    const std::tuple<int32, int32, int32, const char*> cases[] = {
        {72, 1, 1, "9|11906|16838|1|1|0|1"},          {72, 1, 0, "40|12240|17280|1|1|0|8"},
        {36, 1, 2, "0|12240|8640|1|1|0|3"},           {72, 256 + 2, 1, "9|16838|11906|2|2|0|1"},
        {72, 512 + 1, 3, "9|11906|16838|1|1|1024|2"}, {72, 256 + 1024 + 1, 4, "9|16838|11906|2|1|512|5"},
        {72, 1, -3, "9|11906|16838|1|1|0|3"}};
    for (const auto& [rows, anzahl, type, told] : cases) {
        SCOPED_TRACE(anzahl * 100 + type);
        job.Init(rows, anzahl, type, u"A4");
        EXPECT_TOLD(told, job.PaperSize(), job.Width(), job.Height(), job.Orientation(), job.Copies(),
                    job.DuplexTyp(), job.PaperBin());
    }
    library.ground.ui.line = u"7";
    job.Init(72, 32767, 1, u"A4");
    EXPECT_TOLD("7|Test: Anzahl Drucke", job.Copies(), library.ground.ui.asked);
}

TEST_F(Composing, PutsTextsOnItsGrids) {
    start();
    job.Locate(2, 3);
    EXPECT_TOLD("480|432|240", job.CurrentY(), job.CurrentX(), job.Vorschub());
    job.Setzen(-1, -1, -1, -1, -1, u"x");
    EXPECT_EQ(job.CurrentY(), 720);
    job.Setzen(100, 200, 10, tsFett, 50, u"");  // sets, and stays there
    EXPECT_TOLD("120|240", job.CurrentY(), job.CurrentX());
    job.Naechst(u"");
    EXPECT_EQ(job.CurrentY(), 180);
    job.ZS(0, 0, 10, 0, u"Ecke");
    job.ZS(3, 5, 17, tsKursiv, u"zs");
    job.BV90(1, 1, 3 + bvZentriert + bvUnterstrichen, u"bv");
    job.mm(10, 20, u"mm", 12, 0);
    EXPECT_EQ(lines(), (Lines{"font Arial 240", "432,480 x", "font Arial 200 bold", "font Arial 240",
                              "0,0 Ecke", "font Arial 140 italic", "720,720 zs", "font Arial 160 underlined",
                              "144,60 bv", "font Arial 240", "1134,566 mm"}));
}

TEST_F(Composing, AlignsAlongTheDirectionOfTheText) {
    const std::tuple<int32, int32, const char*> cases[] = {
        {tsRechtbuendig, 0, "5280,6000"},
        {tsZentriert, 0, "6000,6000"},
        {tsRechtbuendig, 180, "8160,6000"},
        {tsRechtbuendig, 90, "6720,7440"},
        {tsZentriert, 270, "6720,5280"},
        {tsRechtbuendig, 45, "5702,7018"},
        {tsRechtbuendig + tsZentriert, 0, "6000,6000"},
    };
    for (const auto& [attribute, angle, place] : cases) {
        start();
        job.Setzen(5000, 5600, 12, attribute, 0, u"ab", angle);
        EXPECT_EQ(lines().back(), std::string(place) + " ab") << attribute << " " << angle;
    }
    start();
    job.Setzen(0, 1200, 12, tsRechtbuendig, -1, u"a");
    EXPECT_EQ(job.CurrentX(), 720);  // it stays there
}

TEST_F(Composing, DividesWhatIsTooLarge) {
    start();
    job.Height(40000);
    job.Ausgabe();
    job.Setzen(1000, 1000, 12, 0, 0, u"x");
    job.Linie(100, 100, 201, 301, false, bsNone, 1);
    EXPECT_EQ(lines(2), (Lines{"font Arial 120", "600,600 x", "line 50,50 150,100"}));
    RecordingDevice device;
    job.Page(2)->draw(device, 400, 300);
    EXPECT_EQ(device.mappings.front(), (platform::PageMapping{11906, 40000, 400, 300, 0, 0, 2}));
    EXPECT_NE(std::find(device.lines.begin(), device.lines.end(), "pen 1"), device.lines.end());
}

TEST_F(Composing, BreaksParagraphs) {
    const struct {
        TextView text;
        int32 letters;  // of the width, 10 points
        Lines lines;
    } cases[] = {
        {u"aaa bbb cc", 7, {"aaa bbb", "cc"}},
        {u"a-b", 2, {"a-", "b"}},
        {u"x\r\n\r\ny", 9, {"x", "y"}},
        {u"eins zweiundzwanzig drei", 5, {"eins", "zweiundzwanzig", "drei"}},
        {u"a b", 0, {"a", "b"}},
        {u"(a) b:c", 4, {"(a)", "b:c"}},
        {u"eins   ", 9, {"eins"}},
    };
    for (const auto& c : cases) {
        start();
        int32 row = 24;
        // 600 twips a letter of 10 points; columns have 144.
        job.SetzTextMM(c.text, *std::make_unique<float64>(10.0), 0,
                       c.letters * 600 / 56.69291338582678 + 0.01, 10, 0);
        Lines found;
        for (const auto& line : lines())
            if (const auto blank = line.find(' '); !line.starts_with("font"))
                found.push_back(line.substr(blank + 1));
        EXPECT_EQ(found, c.lines) << toUtf8(c.text);
        row = 24;
        start();
        EXPECT_EQ(job.SetzText(c.text, row, 0, 1000, 10, 4, true), c.text.find(u"\r") == Text::npos ? 4 : 12);
        EXPECT_EQ(row, 24);  // only measured
    }
    start();
    int32 row = 10;
    EXPECT_EQ(job.SetzText(u"", row, 0, 10), 4);
    EXPECT_EQ(row, 14);
    EXPECT_EQ(job.SetzText(u"a", row, 0, 10, 10, 4, true, true), 4);
    EXPECT_EQ(row, 18);  // measured, and moved
    job.SetzText(u"r", row, 10, 10, 3 + bvRechtsbuendig);
    EXPECT_EQ(lines().back(), "2460,1080 r");  // 420 twips of 7 points before the right edge
    start();
    Text text = u"abcdef";
    job.MMExt(0, 0, text, 12, 0, -1, 40.0);
    EXPECT_EQ(text, u"abc");
}

TEST_F(Composing, DrawsAndFolds) {
    start();
    job.LinieMM(10, 10, 20, 30, true, bsSolid, 10);
    job.Ellipse(0, 0, 100, 200);
    job.Linie24(2, 5, 4, 5);
    job.FaltMarken();
    job.FaltMarkenA();
    EXPECT_EQ(lines(), (Lines{"shape 567,567 1701,567 1701,1134 567,1134", "shape 0,0 200,100",
                              "line 5,120 5,240", "line 144,5953 432,5953", "line 144,11906 432,11906",
                              "line 144,10885 432,10885", "line 144,4932 432,4932"}));
    start(256 + 1);
    job.FaltMarken();  // the second one would lie on the edge
    EXPECT_EQ(lines(), Lines{"line 144,5953 432,5953"});
    EXPECT_THROW(job.BkMode(3), Failure);
    job.Width(0);
    EXPECT_EQ(job.Width(), 16838);
}

TEST_F(Composing, PlacesFormattedText) {
    start();
    int32 height = 5000;
    paper.nextFit = {-1, 300};
    EXPECT_EQ(job.PrintRTFTextNeu(u"{\\rtf1 x}", 100, 100, 2000, height, 0, true, false), -1);
    EXPECT_EQ(height, 301);
    paper.nextFit = {4, 300};
    EXPECT_EQ(job.PrintRTFTextNeu(u"{\\rtf1 x}", 100, 100, 2000, height), 4);
    paper.nextFit = {2, 0};  // not even one line
    EXPECT_EQ(job.PrintRTFTextNeu(u"{\\rtf1 y}", 100, 100, 2000, height, 2), 2);
    paper.whiteText = true;
    paper.nextFit = {};
    job.PrintRTFTextNeu(u"{\\rtf1{\\fonttbl{\\f0 A;}}z\\cf0}", 0, 0, 0, height, 0, true);
    job.PrintRTFTextNeu(u"{\\rtf1{\\colortbl ;\\red9\\green0\\blue0;}z\\cf0 a}", 0, 0, 0, height);
    EXPECT_EQ(
        lines(),
        (Lines{"rtf {\\rtf1{\\fonttbl{\\f0 A;}}{\\colortbl ;\\red0\\green0\\blue0;}\\cf1 z\\cf0}",
               "rtf {\\rtf1 x}",
               "rtf {\\rtf1{\\colortbl ;\\red9\\green0\\blue0;\\red0\\green0\\blue0;}\\cf2 z\\cf2 a}"}));
    EXPECT_THROW(job.PrintRTFNeu(nullptr, 0, 0, 0, height), Failure);
}

}  // namespace
}  // namespace tsRtm::test
