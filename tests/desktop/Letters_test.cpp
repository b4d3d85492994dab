// Letters as a word processor writes them: nothing of their text is lost, and it stands where it belongs.
#include <functional>

#include "desktop/preview/PageView.hpp"
#include "tests/desktop/Paper.hpp"

namespace tsRtm::test {
namespace {

constexpr int32 kLeft = 1417, kWidth = 9355;  // twips
constexpr double kMargin = kLeft / 20.0, kRight = (kLeft + kWidth) / 20.0;

class Letters : public PaperTest {
 protected:
    void SetUp() override {
        if (!has("pdftotext")) GTEST_SKIP() << "poppler-utils is not installed";
    }
    // Prints a text; its file.
    std::string print(TextView rtf) {
        begin(job, folder.name(), u"letter");
        int32 next = 0;
        for (int32 page = 0; next >= 0 && page < 10; ++page) {
            if (page > 0) job.Ausgabe();
            int32 height = 14500;
            next = job.PrintRTFTextNeu(rtf, kLeft, 1134, kWidth, height, next);
        }
        job.Ende();
        return file();
    }
    static Text letter(const std::string& name) {
        return fromUtf8(contentOf(TSRTM_TEST_DATA "/letters/" + name + ".rtf"));
    }
    // Points from the page's left and upper edge to what has a colour.
    QRectF coloured(const std::function<bool(QRgb)>& is) {
        const QImage page = desktop::imageOf(job.Page(1).get(), {1190, 1683});
        const QRect found = pixelsOf(page, page.rect(), is);
        return {found.x() / 2.0, found.y() / 2.0, found.width() / 2.0, found.height() / 2.0};
    }
};

TEST_F(Letters, KeepTheirTextInItsOrder) {
    const std::tuple<const char*, int, std::vector<std::string>> cases[] = {
        {"offer",
         1,
         {"Müller & Söhne OHG", "Große Straße 7", "50667 Köln", "Köln, den 22. November", "Angebot Nr. 4711",
          "Sehr geehrte Damen und Herren,", "1.234,50 € zuzüglich 19 % Umsatzsteuer", "Pos.", "Betrag",
          "Schreibtisch „Ärmel“", "899,00 €", "Stuhl, drehbar", "335,50 €", "mit Armlehnen", "Summe",
          "1.234,50 €", "Mit freundlichen Grüßen", "Jürgen Weiß"}},
        {"formats",
         1,
         {"Überschrift in Blau", "fett, kursiv", "Groteske in 16 Punkt", "• Erster Punkt", "• Zweiter Punkt",
          "– Unterpunkt eins", "1. Nummer eins", "b)", "Buchstabe b", "die Preisliste", "899,00", "104",
          "„deutsch“, ‚einfach‘, »französisch«", "– und — lang", "Łódź, Москва, Αθήνα", "Ende",
          "Rechtsbündig"}},
        {"contract",
         3,
         {"Vertrag über die Nutzung", "§ 1 Absatz 1.", "§ 8 Absatz", "§ 15", "\fAnlage auf eigener"}},
        {"accounts",
         2,
         {"Liste der Konten", "Nr.", "Kunde Nr. 1 in", "Kunde Nr. 44 in", "765,00 €", "Schluß der Liste"}},
        {"bill",
         1,
         {"Rechnung 2026/0815", "Stück", "Ware", "Ordner, rot", "breit", "grün", "zusammen", "außen",
          "innen eins", "daneben", "1. Zahlbar sofort", "Vielen Dank!", "Zeile 1", "unserem Büro"}}};
    for (const auto& [name, pages, pieces] : cases) {
        SCOPED_TRACE(name);
        const auto file = print(letter(name));
        EXPECT_EQ(job.PageCount(), pages);
        // Blanks in any number are one.
        const auto text = std::regex_replace(run("pdftotext -layout '" + file + "' -").second,
                                             std::regex("(\u00A0|[ \n])+"), " ");
        std::size_t at = 0;
        for (const auto& piece : pieces) {
            const auto found = text.find(piece, at);
            EXPECT_NE(found, std::string::npos) << piece << "\n" << text;
            at = found == std::string::npos ? at : found + piece.size();
        }
    }
}

TEST_F(Letters, HavePicturesAndTablesInTheirPlace) {
    const auto words = wordsOf(print(letter("offer")));
    const auto picture = coloured([](QRgb c) { return qBlue(c) > 140 && qRed(c) < 60; });
    EXPECT_NEAR(picture.right(), kRight, 1);  // 3 cm by 1.5 cm, of which the blue fields reach all edges
    EXPECT_NEAR(picture.width(), 85, 1.5);
    EXPECT_NEAR(picture.height(), 42.5, 1.5);
    EXPECT_NEAR(words.at("Bezeichnung").left, kMargin + 1134 / 20.0 + 57 / 20.0, 1);
    EXPECT_NEAR(words.at("335,50").top, words.at("Stuhl,").top, 0.5);
    EXPECT_NEAR(words.at("November").right, kRight, 0.5);
    // An empty line stands between the table and what follows, and the space below the text before it.
    constexpr double line = 13.8, border = 0.5, padding = 57 / 20.0;
    EXPECT_NEAR(words.at("freundlichen").top - words.at("Summe").top, 2 * line + padding + border, 0.5);
    EXPECT_NEAR(words.at("Pos.").top - words.at("vollzählig").top, line + 8.5 + border + padding, 0.5);
    const QImage page = desktop::imageOf(job.Page(1).get(), {1190, 1683});
    const auto pixel = [&](const char* word, double right) {
        return page.pixel(static_cast<int>(2 * (words.at(word).right + right)),
                          static_cast<int>(2 * words.at(word).top) + 14);
    };
    EXPECT_EQ(pixel("Bezeichnung", 20), qRgb(0xDD, 0xDD, 0xDD));
    EXPECT_EQ(pixel("Schreibtisch", 80), qRgb(255, 255, 255));
    // The frame of the last row is whole.
    int dark = 0;
    const int below = static_cast<int>(2 * words.at("Summe").top) + 26;
    for (int y = below; y < below + 16; ++y) dark += qGray(page.pixel(400, y)) < 160 ? 1 : 0;
    EXPECT_GE(dark, 1);
}

TEST_F(Letters, KeepTabulatorsAndListsInColumns) {
    const auto words = wordsOf(print(letter("formats")));
    EXPECT_NEAR(words.at("Überschrift").left, kMargin, 0.5);
    EXPECT_NEAR(words.at("Erster").left, kMargin + 34, 0.5);
    EXPECT_NEAR(words.at("einer").left, kMargin + 34 + 12, 2);  // the second line of a paragraph, behind "in"
    EXPECT_NEAR(words.at("a)").left, kMargin + (1587 - 454) / 20.0, 0.5);
    EXPECT_NEAR(words.at("899,00").left, kMargin + 2268 / 20.0, 0.5);
    EXPECT_NEAR(words.at("104").right, kMargin + 5669 / 20.0, 0.5);  // whole numbers end at the decimal place
    EXPECT_NEAR(words.at("Seite").right, words.at("12").right, 0.5);

    // Texts beyond the last cell come one after the other in it.
    const auto cells =
        wordsOf(print(u"{\\rtf1\\trowd\\cellx2000\\cellx5000 one\\cell two\\cell three\\cell "
                      u"four\\cell\\row}"));
    EXPECT_NEAR(cells.at("three").left, cells.at("two").left, 0.5);
    EXPECT_LT(cells.at("two").top, cells.at("three").top);
    EXPECT_LT(cells.at("three").top, cells.at("four").top);

    // Symbols of lists; multiples of the usual distance count from the margin, whatever the indent.
    const auto marks = wordsOf(print(
        u"{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset2 Symbol;}{\\f2\\fcharset2 "
        u"Wingdings;}}\\f0\\fi-360\\li720"
        u"{\\listtext\\f1\\'b7\\tab}a\\par{\\pntext\\f2\\u-3929?\\tab}b\\par\\pard\\li1000 c\\tab d\\par}"));
    EXPECT_NEAR(marks.at("•").left, kMargin + 18, 1);
    EXPECT_NEAR(marks.at("▪").left, kMargin + 18, 3);
    EXPECT_NEAR(marks.at("b").left, kMargin + 36, 0.5);
    EXPECT_NEAR(marks.at("d").left, kMargin + 72, 0.5);
}

TEST_F(Letters, HaveBoxesAroundParagraphs) {
    const auto words =
        wordsOf(print(u"{\\rtf1{\\fonttbl{\\f0 Arial;}}{\\colortbl "
                      u";\\red0\\green0\\blue255;\\red255\\green255\\blue0;}\\f0\\fs20 oben\\par"
                      u"\\pard\\sb200\\box\\brdrs\\brdrw40\\brdrcf1\\brsp100\\cbpat2 eins\\par zwei\\par"
                      u"\\pard\\li2000\\brdrb\\brdrs\\brdrw40\\brdrcf1 Strich\\par\\pard unten\\par}"));
    constexpr double frame = (40 + 100) / 20.0, line = 11.5;
    // The two in one box have no border between them; it takes room above and below.
    EXPECT_NEAR(words.at("eins").top - words.at("oben").top, line + 10 + frame, 0.6);
    EXPECT_NEAR(words.at("zwei").top - words.at("eins").top, line + 10, 0.6);
    EXPECT_NEAR(words.at("Strich").top - words.at("zwei").top, line + frame, 0.6);
    EXPECT_NEAR(words.at("unten").top - words.at("Strich").top, line + 2, 0.6);
    const auto ground = coloured([](QRgb c) { return qRed(c) > 240 && qBlue(c) < 20; });
    EXPECT_NEAR(ground.left(), kMargin - 100 / 20.0, 0.6);
    EXPECT_NEAR(ground.width(), kWidth / 20.0 + 200 / 20.0, 1.1);
    EXPECT_NEAR(ground.height(), 2 * line + 10 + 200 / 20.0, 1.1);
    const auto borders = coloured([](QRgb c) { return qBlue(c) > 240 && qRed(c) < 20; });
    EXPECT_NEAR(borders.left(), kMargin - frame, 0.6);
    EXPECT_NEAR(borders.right(), kRight + frame, 1.1);
    EXPECT_NEAR(borders.bottom() - ground.bottom(), 2 + line + 2, 1.1);
    const QImage page = desktop::imageOf(job.Page(1).get(), {1190, 1683});
    const auto below = static_cast<int>(2 * borders.bottom()) - 1;
    EXPECT_NE(page.pixel(static_cast<int>(2 * kMargin) + 190, below), qRgb(0, 0, 255));
    EXPECT_EQ(page.pixel(static_cast<int>(2 * kMargin) + 210, below), qRgb(0, 0, 255));
}

}  // namespace
}  // namespace tsRtm::test
