// Ink where it is told to be: every grid, alignment and direction, in a PDF as others show it, in an archive,
// which is made in another way, and on a picture.
#include <QTransform>
#include <functional>

#include "desktop/preview/PageView.hpp"
#include "tests/desktop/Paper.hpp"

namespace tsRtm::test {
namespace {

constexpr double kInch = 25.4, kSheet = 210;  // millimetres
constexpr double kCell = 32;                  // millimetres: each thing has so much room to itself

// Where the ink of "HHHH" is: an H fills its box, and has as much room before it as behind. Alignment 0 left,
// 0.5 centred, 1 right; millimetres.
QRectF letters(double x, double y, double points, double angle = 0, double alignment = 0) {
    constexpr double em = 2048, width = 1479, before = 161, capital = 1409;
    const double unit = points * kInch / 72 / em;
    const QRectF upright((before - 4 * width * alignment) * unit, -capital * unit,
                         (4 * width - 2 * before) * unit, capital * unit);
    return QTransform().translate(x, y).rotate(-angle).mapRect(upright);
}

struct Thing {
    const char* name;
    std::function<void(Druck&)> draw;
    QRectF ink;
};

std::vector<Thing> things() {
    constexpr TextView text = u"HHHH";
    std::vector<Thing> all;
    const auto cell = [&] {
        const auto number = static_cast<int>(all.size());
        const int column = number % 6, row = number / 6;
        return QPointF(20 + kCell * column, 20 + kCell * row);
    };
    for (const int32 angle : {0, 90, 180, 270, 45})
        for (const int32 attribute : {0, int32{tsZentriert}, int32{tsRechtbuendig}}) {
            const auto at = cell();
            all.push_back({"direction",
                           [=](Druck& job) { job.mm(at.y(), at.x(), text, 10, attribute, angle); },
                           letters(at.x(), at.y(), 10, angle,
                                   attribute == 0             ? 0
                                   : attribute == tsZentriert ? 0.5
                                                              : 1)});
        }
    const auto onGrid = [&](const char* name, double row, double column, double points, auto draw) {
        const auto at = cell();
        const auto line = static_cast<int32>(at.y() / row), place = static_cast<int32>(at.x() / column);
        all.push_back(
            {name, [=](Druck& job) { draw(job, line, place); }, letters(place * column, line * row, points)});
    };
    onGrid("ZS", kInch / 6, kInch / 10, 12,
           [=](Druck& job, int32 row, int32 column) { job.ZS(row, column, 10, 0, text, 0); });
    onGrid("BV90", kInch / 24, kInch / 10, 10,
           [=](Druck& job, int32 row, int32 column) { job.BV90(row, column, bvCPI12, text, 0); });
    onGrid("SetzText", kInch / 24, kInch / 10, 7,
           [=](Druck& job, int32 row, int32 column) { job.SetzText(text, row, column, 40, 3); });
    onGrid("Locate", kInch / 6, kInch / 10, 7, [=](Druck& job, int32 row, int32 column) {
        job.Locate(row, column);
        job.Naechst(text);
    });
    onGrid("Setzen", kInch / 1200, kInch / 1200, 11,
           [=](Druck& job, int32 row, int32 column) { job.Setzen(row, column, 11, 0, 0, text, 0); });
    onGrid("underlined", 1, 1, 10,
           [=](Druck& job, int32 row, int32 column) { job.mm(row, column, text, 10, tsUnterstrichen, 0); });
    all.back().ink.adjust(-0.28, 0, 0.28, 0.25);  // as long as the text, and below it
    const auto at = cell();
    all.push_back({"SetzTextMM",
                   [=](Druck& job) {
                       float64 row = at.y();
                       job.SetzTextMM(text, row, at.x(), 50, 10, 0);
                   },
                   letters(at.x(), at.y(), 10)});
    const auto line = cell();
    all.push_back(
        {"line",
         [=](Druck& job) { job.LinieMM(line.y(), line.x(), line.y(), line.x() + 10, false, bsNone, 57); },
         QRectF(line.x() - 0.5, line.y() - 0.5, 11, 1)});
    const auto box = cell();
    all.push_back(
        {"box",
         [=](Druck& job) { job.LinieMM(box.y(), box.x(), box.y() + 8, box.x() + 12, true, bsSolid, 0); },
         QRectF(box.x(), box.y(), 12, 8)});
    return all;
}

// The dark part of an image in the cell around a thing, millimetres.
QRectF inkOf(const QImage& image, const Thing& thing) {
    const auto middle = thing.ink.center();
    const double dot = kSheet / image.width();
    const auto dots = [&](double mm) { return static_cast<int>(std::lround(mm / dot)); };
    const QRect around =
        QRect(dots(middle.x() - kCell / 2), dots(middle.y() - kCell / 2), dots(kCell), dots(kCell)) &
        image.rect();
    const QRect ink = pixelsOf(image, around, dark);
    return {ink.left() * dot, ink.top() * dot, ink.width() * dot, ink.height() * dot};
}

double apart(const QRectF& a, const QRectF& b) {
    return std::max({std::abs(a.left() - b.left()), std::abs(a.right() - b.right()),
                     std::abs(a.top() - b.top()), std::abs(a.bottom() - b.bottom())});
}

using Places = PaperTest;

TEST_F(Places, AreThoseThatWereTold) {
    if (!has("pdftoppm")) GTEST_SKIP() << "poppler-utils is not installed";
    const auto all = things();
    for (const bool archive : {false, true}) {
        begin(job, folder.name(), archive ? u"archive" : u"plain");
        job.PDFA(archive);
        for (const auto& thing : all) thing.draw(job);
        job.Ende();
        const auto picture = desktop::imageOf(job.Page(1).get(), {2480, 3508});
        const auto small = desktop::imageOf(job.Page(1).get(), {620, 877});
        ASSERT_EQ(run("pdftoppm -r 300 -gray -singlefile '" + file() + "' '" + file() + "'").first, 0);
        const QImage shown(QString::fromStdString(file() + ".pgm"));
        ASSERT_FALSE(shown.isNull());
        for (const auto& thing : all) {
            SCOPED_TRACE(std::string(thing.name) + " " + std::to_string(&thing - all.data()) +
                         (archive ? " archive" : ""));
            const auto onPicture = inkOf(picture, thing), inFile = inkOf(shown, thing);
            EXPECT_LT(apart(onPicture, thing.ink), 0.2);
            EXPECT_LT(apart(inFile, thing.ink), 0.2);
            EXPECT_LT(apart(inkOf(small, thing), thing.ink), 0.5);
            EXPECT_LT(apart(onPicture, inFile), 0.3);
        }
    }
    // The measure is that of the paper: 25.4 mm are 1440 twips.
    job.Init(72, 1, 1, u"A4");
    job.Setz(0, 0, 12, 0, 0);
    EXPECT_NEAR(job.TextWidth(u"Musterwort"), 1187, 3);
}

}  // namespace
}  // namespace tsRtm::test
