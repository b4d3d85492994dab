// The preview as its user sees it: moves, what it says, and how the job ends.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QTimer>

#include "desktop/Desktop.hpp"
#include "desktop/preview/Measures.hpp"
#include "desktop/preview/PageView.hpp"
#include "desktop/preview/PreviewWindow.hpp"
#include "tests/desktop/Seen.hpp"
#include "tests/support/TempFolder.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/printing/Druck.hpp"

namespace tsRtm::test {
namespace {

using namespace desktop;

class Previewing : public ::testing::Test {
 protected:
    Previewing() {
        job.Device(u"PDF");
        job.JobName(u"Vorschau");
        job.DocPath(folder.name());
        job.Init(72, 2, 1, u"A4", true);
    }
    void page(TextView text) {
        job.mm(50, 30, text, 40, tsFett);
        job.Ausgabe();
    }
    static PreviewWindow* window() {
        for (auto* widget : QApplication::topLevelWidgets())
            if (auto* found = qobject_cast<PreviewWindow*>(widget); found && found->isVisible()) return found;
        return nullptr;
    }
    static void press(const char* name) {
        for (auto* action : window()->findChildren<QAction*>())
            if (action->text() == QString::fromUtf8(name)) return action->trigger();
        FAIL() << name;
    }
    static std::string labels() {
        QString all;
        for (auto* label : window()->findChildren<QLabel*>()) all += label->text() + u'|';
        return all.toStdString();
    }
    static std::string printAll() {
        for (auto* button : window()->findChildren<QPushButton*>())
            if (button->text().contains(QStringLiteral(" auf "))) return button->text().toStdString();
        return {};
    }

    TempFolder folder;
    MessagesTopic messages;
    Desktop paper;
    Druck job{messages};
};

TEST_F(Previewing, GrowsWithTheJob) {
    page(u"eins");
    ASSERT_TRUE(window());
    EXPECT_EQ(window()->windowTitle().toStdString(), "Druckvorschau Vorschau");
    EXPECT_EQ(printAll(), "1 Seite auf PDF");
    auto* view = window()->findChild<PageView*>();
    press("Weiter");  // the second page is still being written
    EXPECT_EQ(view->page(), 1);
    page(u"zwei");
    press("Letzte");
    EXPECT_EQ(view->page(), 2);
    EXPECT_NE(labels().find("2/3|"), std::string::npos) << labels();
    EXPECT_NE(labels().find("2 Drucke|"), std::string::npos) << labels();
    EXPECT_EQ(window()->findChild<QListWidget*>()->count(), 2);
    press("Erste");
    press("Zurück");
    EXPECT_EQ(view->page(), 1);
    job.Ende();
    job.PreviewButtonsOFF(static_cast<tsButtons>(tsAllesdrucken + tsSeitedrucken));
    press("Weiter");
    EXPECT_EQ(printAll(), "2 Seiten auf PDF");
    press("Kopieren");
    const auto* copied = QApplication::clipboard()->mimeData();
    EXPECT_TRUE(copied->hasImage() && copied->hasFormat("application/pdf") &&
                copied->hasFormat("image/svg+xml"));
    press("Vergrößert");
    EXPECT_GT(view->grab().toImage().size().width(), 100);
    EXPECT_FALSE(job.Abbruch());
    int32 cancelled = 0;
    const auto c = job.Cancel.connect([&] { ++cancelled; });
    window()->close();
    EXPECT_EQ(std::pair(cancelled, job.Abbruch()), std::pair(1, true));
}

TEST_F(Previewing, PrintsAllWhenItIsModal) {
    job.Modal(true);
    int32 printed = 0;
    const auto p = job.Printed.connect([&] { ++printed; });
    page(u"eins");
    EXPECT_FALSE(window());
    QTimer::singleShot(0, [] {
        for (auto* button : window()->findChildren<QPushButton*>())
            if (button->text().contains(QStringLiteral("1 Seite auf PDF"))) button->click();
    });
    job.Ende();
    EXPECT_EQ(printed, 1);
    EXPECT_EQ(job.DocFile(), u"Vorschau.pdf");
    EXPECT_FALSE(window());
}

TEST_F(Previewing, ShowsInkWhereThePageHasIt) {
    page(u"Tinte");
    auto* view = window()->findChild<PageView*>();
    const auto image = imageOf(job.Page(1).get(), {400, 566});
    int dark = 0;
    for (int y = 60; y < 110; ++y)
        for (int x = 50; x < 250; ++x) dark += qGray(image.pixel(x, y)) < 128;
    EXPECT_GT(dark, 300);
    window()->resize(900, 700);
    QApplication::processEvents();
    const auto shown = view->grab().toImage();
    EXPECT_EQ(qGray(shown.pixel(shown.width() / 2, shown.height() - 20)), 255);
    keepPicture(*window(), "preview");
}

TEST(PreviewMeasures, AreToldAsGermansWriteThem) {
    const struct {
        Measure measure;
        double x, y;
        const char* text;
    } cases[] = {
        {Measure::millimetres, 5669.3, 567, "X: 100,0 mm  Y: 10,0 mm"},
        {Measure::rows24, 1440, 240, "X: 10 Spalten  Y: 4 Zeilen BV90"},
        {Measure::rows6, 216, 240, "X: 1,5 Spalten  Y: 1,000 Zeilen"},
        {Measure::rows6, 144, 270, "X: 1,0 Spalten  Y: 1,125 Zeilen"},
        {Measure::twips, 11906, 5, "X: 11.906 Twips  Y: 5 Twips"},
    };
    for (const auto& c : cases) EXPECT_EQ(placeText(c.measure, c.x, c.y).toStdString(), c.text);
    EXPECT_EQ(nextMeasure(Measure::twips), Measure::millimetres);
    EXPECT_EQ(sheetSize(1, {100, 200}, {300, 300}), QSize(150, 300));
    EXPECT_EQ(sheetSize(2, {100, 200}, {300, 300}), QSize(300, 600));
    EXPECT_EQ(sheetSize(3, {200, 100}, {300, 300}), QSize(600, 300));
    EXPECT_EQ(within({1000, 500}, {300, 300}), QSize(300, 150));
}

}  // namespace
}  // namespace tsRtm::test
