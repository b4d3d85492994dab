// Pages as files: what was set can be read again, and the forms of PDF are what they claim to be.
#include <unistd.h>

#include <QApplication>
#include <QBuffer>
#include <QPainter>
#include <filesystem>

#include "desktop/paper/PainterDevice.hpp"
#include "tests/desktop/Paper.hpp"
#include "tests/support/ChildProcess.hpp"

namespace tsRtm::test {
namespace {

class OnPaper : public PaperTest {
 protected:
    void SetUp() override {
        if (!has("pdftotext")) GTEST_SKIP() << "poppler-utils is not installed";
    }
    void start() { begin(job, folder.name(), u"Ladung & Größe"); }
};

TEST_F(OnPaper, CanBeReadAgain) {
    start();
    job.mm(30, 25, u"Grüße aus Köln – Straße 7 €", 14, tsFett);
    job.mm(35, 25, u"„Ähren“ ‚ö‘ — 5\u00A0% …", 12, 0);
    job.mm(40, 190, u"rechts", 12, tsRechtbuendig);
    int32 height = 4000;
    EXPECT_EQ(job.PrintRTFTextNeu(
                  u"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\fs24 Erster \\b Absatz\\b0\\par Zweiter\\par}",
                  1440, 4000, 6000, height),
              -1);
    job.Ausgabe();
    job.Orientation(poLandscape);
    job.mm(20, 20, u"quer", 12, 0);
    job.Ausgabe();
    job.mm(20, 20, u"Łódź", 12, 0);  // letters beyond code page 1252
    job.Ausgabe();
    job.FontName(u"Gibt es nicht");
    job.mm(20, 20, u"ersetzt (\\)", 12, tsKursiv);
    job.Ende();
    const auto text = this->text("-layout");
    std::size_t at = 0;  // in the order of the pages
    for (const char* piece : {"Grüße aus Köln – Straße 7 €", "„Ähren“ ‚ö‘ — 5 % …", "rechts", "Erster Absatz",
                              "Zweiter", "quer", "Łódź", "ersetzt (\\)"}) {
        EXPECT_NE(text.find(piece, at), std::string::npos) << piece << "\n" << text;
        at = std::min(text.find(piece, at), text.size());
    }
    const auto info = run("pdfinfo -f 1 -l 2 '" + file() + "'").second;
    EXPECT_HOLDS(info, "Title:           Ladung & Größe", "Page    1 size:  595.3 x 841.9");
    const auto fonts = run("pdffonts '" + file() + "'").second;
    EXPECT_EQ(fonts.find(" no  no "), std::string::npos) << fonts;     // all are embedded
    EXPECT_EQ(fonts.find("yes yes no "), std::string::npos) << fonts;  // and tell their characters
    EXPECT_LT(std::filesystem::file_size(file()), 40000u);             // as far as they are used
    // Letters that no document had before this one.
    start();
    job.mm(30, 25, u"Zwölf Boxkämpfer, ½ quer", 14, 0);
    job.Ende();
    EXPECT_HOLDS(this->text(), "Zwölf Boxkämpfer, ½ quer");
}

TEST_F(OnPaper, LaysOutIndentsTablesAndPictures) {
    QImage red(20, 10, QImage::Format_RGB32);
    red.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    red.save(&buffer, "PNG");
    Text rtf =
        u"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\fs20\\pard Rand\\par\\pard\\li1440 "
        u"Einzug\\par\\pard\\tx2880\\tab "
        u"Tabulator\\par\\pard{\\*\\shppict{\\pict\\pngblip\\picwgoal1440\\pichgoal720 " +
        fromUtf8(bytes.toHex().toStdString()) + u"}}Bild\\par";
    for (int row = 1; row <= 40; ++row)
        rtf += u"\\trowd\\clbrdrt\\brdrs\\cellx2880\\cellx7200\\pard\\intbl L" + toText(row) + u"\\cell R" +
               toText(row) + u"\\par noch\\cell\\row";
    rtf += u"\\pard Schluss\\par}";
    start();
    int32 pages = 0;
    for (int32 next = 0; next >= 0 && pages < 10; ++pages) {
        if (pages > 0) job.Ausgabe();
        int32 height = 10000;
        next = job.PrintRTFTextNeu(rtf, 1440, 1440, 8000, height, next);
    }
    job.Ende();
    EXPECT_EQ(pages, 3);
    const auto at = wordsOf(file());
    for (const auto& [word, points] : {std::pair{"Rand", 72.0},
                                       {"Einzug", 144.0},
                                       {"Tabulator", 216.0},
                                       {"Bild", 144.0},
                                       {"L1", 75.5},
                                       {"R1", 219.5}})
        EXPECT_NEAR(at.at(word).left, points, 1.5) << word;
    EXPECT_NEAR(at.at("L1").top, at.at("R1").top, 0.5);
    EXPECT_GT(at.at("Bild").top - at.at("Tabulator").top, 30);  // below 36 points of picture
    // Each row on one page, and none twice.
    const auto text = this->text("-layout");
    for (int row = 1; row <= 40; ++row) {
        const std::regex cells("L" + std::to_string(row) + " +R" + std::to_string(row) + "\n");
        EXPECT_EQ(
            std::distance(std::sregex_iterator(text.begin(), text.end(), cells), std::sregex_iterator()), 1)
            << row;
    }
    EXPECT_HOLDS(text, "Schluss");
}

// One paragraph over pages of two widths: each word once and in its place, whatever page is drawn first.
TEST_F(OnPaper, DividesATextAmongPages) {
    Text rtf = u"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\fs20\\pard\\fi720\\sb200 ";
    std::string expected;
    for (int32 n = 1; n <= 4000; ++n) {
        rtf += u"w" + toText(n) + u" ";
        expected += "w" + std::to_string(n) + " ";
    }
    start();
    int32 next = 0;
    for (int32 page = 0; next >= 0 && page < 20; ++page) {
        if (page > 0) job.Ausgabe();
        int32 height = 10000;
        next = job.PrintRTFTextNeu(rtf + u"}", 1440, 1440, page % 2 == 0 ? 8000 : 5000, height, next);
    }
    job.Duplex(true);
    job.Ausgabe();
    const int32 pages = job.PageCount() - 1;
    EXPECT_GT(pages, 4);
    for (int32 page = pages; page > 0; --page) {
        QImage image(210, 297, QImage::Format_Grayscale8);
        QPainter painter(&image);
        desktop::PainterDevice device(painter, {96, 96, 0, 0});
        job.Page(page)->draw(device, 210, 297);
    }
    job.Ende();
    EXPECT_EQ(std::regex_replace(text(), std::regex("[ \n\f]+"), " "), expected);
}

TEST_F(OnPaper, IsAnArchiveThatPassesPreflight) {
    const std::string jars = "/usr/share/java/";
    std::string path;
    for (const char* jar :
         {"commons-logging", "fontbox2", "javax.activation", "jaxb-api", "pdfbox2", "preflight", "xmpbox"})
        path += jars + jar + ".jar:";
    if (!has("java") || !std::filesystem::exists(jars + "preflight.jar"))
        GTEST_SKIP() << "the validator is not installed";
    start();
    job.PDFA(true);
    job.Protected(true);  // which an archive cannot be
    job.DocumentProperties(u"Büro <1>", u"Erika Müßig", u"Betreff \"A\"", u"eins, zwei");
    job.mm(30, 25, u"Für die Akten", 14, tsFett + tsUnterstrichen);
    job.LinieMM(10, 10, 20, 100, true, bsNone, 10);
    job.Ende();
    const auto [status, text] =
        run("java -cp " + path + " org.apache.pdfbox.preflight.Validator_A1b '" + file() + "'");
    EXPECT_EQ(status, 0) << text;
    EXPECT_HOLDS(text, "is a valid PDF/A-1b file");
}

TEST_F(OnPaper, IsProtectedAgainstChanges) {
    start();
    job.Protected(true);
    job.mm(30, 25, u"geheim", 14, 0);
    job.Ende();
    const auto info = run("pdfinfo '" + file() + "'").second;
    EXPECT_HOLDS(info, "Encrypted:       yes (print:yes copy:no change:no addNotes:no algorithm:AES-256)");
}

// Programs that write documents of one name at once: each gets a name of its own, and none is lost or torn.
TEST_F(OnPaper, IsWrittenBesideOthers) {
    constexpr int kPrograms = 3, kJobs = 12;
    std::vector<std::unique_ptr<ChildProcess>> programs;
    for (int program = 0; program < kPrograms; ++program)
        programs.push_back(std::make_unique<ChildProcess>([&](ChildProcess::Line&) {
            alarm(60);  // a question nobody answers fails the test
            for (int i = 0; i < kJobs; ++i)
                if (!writeLetter(job, folder.name()) || !std::filesystem::exists(file())) return 1;
            return 0;
        }));
    for (const auto& program : programs) EXPECT_EQ(program->wait(), 0);
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(toUtf8(folder.name()))) {
        EXPECT_TRUE(whole(contentOf(entry.path()))) << entry.path();
        ++files;
    }
    EXPECT_EQ(files, kPrograms * kJobs);
}

}  // namespace
}  // namespace tsRtm::test

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
