// The preview as its user sees it: moves, what it says, and how the job ends.
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QListView>
#include <QLocale>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>
#include <QToolBar>
#include <QtTest/QTest>

#include "desktop/preview/Measures.hpp"
#include "desktop/preview/PageView.hpp"
#include "desktop/preview/PreviewWindow.hpp"
#include "tests/desktop/Paper.hpp"
#include "tests/desktop/Seen.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::test {
namespace {

using namespace desktop;

// The separators of a locale, until the end of the object.
class Marks {
 public:
    Marks(TextView decimal, TextView thousands) {
        rtmMain::state().locale.sepDec = decimal;
        rtmMain::state().locale.sep1000 = thousands;
    }
    ~Marks() { rtmMain::state().locale = before_; }
    Marks(const Marks&) = delete;
    Marks& operator=(const Marks&) = delete;

 private:
    const rtmMain::LocaleBlock before_ = rtmMain::state().locale;
};

class Previewing : public PaperTest {
 protected:
    Previewing() {
        begin(job, folder.name(), u"Vorschau");
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
    static QWidget* toolButton(const char* name) {
        auto* bar = window()->findChild<QToolBar*>();
        for (auto* action : bar->actions())
            if (action->text() == QString::fromUtf8(name)) return bar->widgetForAction(action);
        return nullptr;
    }
    // As the user clicks on it.
    static void press(const char* name) {
        auto* button = toolButton(name);
        ASSERT_TRUE(button && button->isVisible()) << name;
        QTest::mouseClick(button, Qt::LeftButton);
    }
    static void key(Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier) {
        ASSERT_TRUE(window() && inFront(*window()));
        QTest::keyClick(window()->findChild<PageView*>(), key, with);
    }
    template <class Widget>
    static std::string textsOf() {
        QString all;
        for (auto* widget : window()->findChildren<Widget*>()) all += widget->text() + u'|';
        return all.toStdString();
    }
    static QPushButton* printButton() {
        for (auto* button : window()->findChildren<QPushButton*>())
            if (button->text().contains(QStringLiteral(" auf "))) return button;
        return nullptr;
    }
    static std::string printAll() { return printButton() ? printButton()->text().toStdString() : ""; }

    Marks german{u",", u"."};
};

TEST_F(Previewing, GrowsWithTheJob) {
    page(u"eins");
    ASSERT_TRUE(window());
    EXPECT_TOLD("Druckvorschau Vorschau|1 Seite auf PDF", window()->windowTitle().toStdString(), printAll());
    auto* view = window()->findChild<PageView*>();
    press("Weiter");  // the second page is still being written
    EXPECT_EQ(view->page(), 1);
    page(u"zwei");
    press("Letzte");
    EXPECT_EQ(view->page(), 2);
    EXPECT_HOLDS(textsOf<QLabel>(), "2/3|", "2 Drucke|");
    EXPECT_EQ(window()->findChild<QListView*>()->model()->rowCount(), 2);
    key(Qt::Key_Home);
    key(Qt::Key_PageUp);
    EXPECT_EQ(view->page(), 1);
    job.Ende();
    job.PreviewButtonsOFF(static_cast<tsButtons>(tsAllesdrucken + tsSeitedrucken));
    key(Qt::Key_P, Qt::ControlModifier);
    ASSERT_TRUE(window());
    key(Qt::Key_PageDown);
    EXPECT_EQ(printAll(), "2 Seiten auf PDF");
    QApplication::processEvents();
    EXPECT_FALSE(printButton()->isVisible() || toolButton("Seite drucken")->isVisible());
    press("Kopieren");
    const auto* copied = QApplication::clipboard()->mimeData();
    const auto image = qvariant_cast<QImage>(copied->imageData());
    EXPECT_TOLD("yes|yes|2480|3507", copied->data("application/pdf").startsWith("%PDF"),
                copied->data("image/svg+xml").contains("<svg"), image.width(), image.height());
    // The list of pages by the arrow keys, the views by theirs.
    auto* list = window()->findChild<QListView*>();
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Up);
    EXPECT_EQ(view->page(), 1);
    for (const auto& [pressed, shown] : {std::pair(Qt::Key_3, 3), {Qt::Key_2, 2}, {Qt::Key_1, 1}}) {
        key(pressed, Qt::ControlModifier);
        EXPECT_EQ(view->view(), shown);
    }
    EXPECT_FALSE(job.Abbruch());
    int32 cancelled = 0;
    const auto c = job.Cancel.connect([&] { ++cancelled; });
    key(Qt::Key_Escape);
    EXPECT_TOLD("no|1|yes", window() != nullptr, cancelled, job.Abbruch());
}

TEST_F(Previewing, PrintsAllWhenItIsModal) {
    job.Modal(true);
    int32 printed = 0;
    const auto p = job.Printed.connect([&] { ++printed; });
    page(u"eins");
    EXPECT_FALSE(window());
    QTimer::singleShot(0, [] { key(Qt::Key_P, Qt::ControlModifier); });
    job.Ende();
    EXPECT_TOLD("1|Vorschau.pdf|no", printed, job.DocFile(), window() != nullptr);
}

// Each pixel of the screen is drawn for itself, and of a large sheet only what is seen.
TEST_F(Previewing, IsSharpInEachView) {
    for (int32 row = 80; row < 290; row += 10) {
        job.mm(row, 30, u"Posten " + toText(row / 10 - 7), 10, 0);
        job.mm(row, 180, toText(row) + u",00 €", 10, tsRechtbuendig);
    }
    page(u"Rechnung");
    window()->resize(1000, 700);
    auto* view = window()->findChild<PageView*>();
    const auto facts = job.Page(1)->page();
    const std::tuple<const char*, const char*, int> views[] = {{"Ganze Seite", "preview-page", 1},
                                                               {"Fensterbreite", "preview-width", 2},
                                                               {"Vergrößert", "preview-large", 3}};
    for (const auto& [name, picture, number] : views) {
        SCOPED_TRACE(picture);
        press(name);
        QApplication::processEvents();
        auto& down = *view->verticalScrollBar();
        EXPECT_EQ(down.maximum() > 0, number > 1);
        EXPECT_EQ(view->horizontalScrollBar()->maximum() > 0, number == 3);
        keepPicture(*window(), picture);
        down.triggerAction(QAbstractSlider::SliderPageStepAdd);
        const QImage seen = view->viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
        const qreal density = view->devicePixelRatioF();
        const QSize sheet = sheetSize(number, {facts.width, facts.height}, view->viewport()->size());
        const QPoint corner(std::max((view->viewport()->width() - sheet.width()) / 2, 0), 0);
        const QPoint from(0, number > 1 ? down.value() : 0);
        const QRect place(corner * density, (sheet.boundedTo(view->viewport()->size())) * density);
        const QImage whole = imageOf(job.Page(1).get(), sheet * density);
        EXPECT_EQ(seen.copy(place), whole.copy({from * density, place.size()}));
        EXPECT_TRUE(pixelsOf(whole, whole.rect(), dark).isValid()) << "a page without ink proves nothing";
    }
    press("Fadenkreuz");
    QMouseEvent moved(QEvent::MouseMove, QPointF(200, 150), QPointF(200, 150), Qt::NoButton, {}, {});
    QApplication::sendEvent(view->viewport(), &moved);
    const QString place =
        QStringLiteral("X: %1 mm")
            .arg(QLocale(QLocale::German)
                     .toString((200 + view->horizontalScrollBar()->value()) * 210.0 /
                                   (view->viewport()->width() + view->horizontalScrollBar()->maximum()),
                               'f', 1));
    EXPECT_HOLDS(textsOf<QPushButton>(), place.toStdString());
    keepPicture(*window(), "preview-crosshair");
}

// A job of so many pages that hold nothing, which counts how often one is drawn.
struct LongJob final : platform::PreviewedJob {
    struct Page final : platform::PageSource {
        explicit Page(int& counter) : drawn(counter) {}
        platform::PreviewedPage page() const override { return {11906, 16838, true}; }
        void draw(platform::PageDevice&, int32, int32) const override { ++drawn; }
        int& drawn;
    };
    platform::PreviewedFacts facts() const override { return {}; }
    int32 pages() const override { return 10'000; }
    std::unique_ptr<platform::PageSource> source(int32 page) const override {
        return page <= pages() ? std::make_unique<Page>(drawn) : nullptr;
    }
    void printPage(int32) override {}
    void copyPage(int32) override {}
    void leave(bool) override { ++left; }
    mutable int drawn = 0;
    int left = 0;
};

TEST_F(Previewing, DrawsOnlyPagesInSight) {
    LongJob many;
    auto* shown = new PreviewWindow(many);
    shown->open({});
    QApplication::processEvents();
    key(Qt::Key_End);
    QApplication::processEvents();
    EXPECT_EQ(shown->findChild<PageView*>()->page(), 10'000);
    EXPECT_LT(many.drawn, 60);
    shown->close();
    EXPECT_EQ(many.left, 1);
    const int before = many.drawn;
    shown->resize(500, 500);
    shown->show();
    QApplication::processEvents();
    EXPECT_EQ(many.drawn, before) << "the job is gone";
    delete shown;
}

TEST(PreviewMeasures, AreToldAsTheLocaleWritesThem) {
    const Marks german(u",", u".");
    const std::tuple<Measure, double, double, const char*> cases[] = {
        {Measure::millimetres, 5669.3, 567, "X: 100,0 mm  Y: 10,0 mm"},
        {Measure::rows24, 1440, 240, "X: 10 Spalten  Y: 4 Zeilen BV90"},
        {Measure::rows6, 216, 240, "X: 1,5 Spalten  Y: 1,000 Zeilen"},
        {Measure::rows6, 144, 270, "X: 1,0 Spalten  Y: 1,125 Zeilen"},
        {Measure::twips, 11906, 5, "X: 11.906 Twips  Y: 5 Twips"},
    };
    for (const auto& [measure, x, y, text] : cases) EXPECT_EQ(placeText(measure, x, y).toStdString(), text);
    {
        const Marks other(u".", u"'");
        EXPECT_EQ(placeText(Measure::rows6, 1.44e6, 270).toStdString(),
                  "X: 10'000.0 Spalten  Y: 1.125 Zeilen");
    }
    EXPECT_EQ(nextMeasure(Measure::twips), Measure::millimetres);
    EXPECT_EQ(sheetSize(1, {100, 200}, {300, 300}), QSize(150, 300));
    EXPECT_EQ(sheetSize(2, {100, 200}, {300, 300}), QSize(300, 600));
    EXPECT_EQ(sheetSize(3, {200, 100}, {300, 300}), QSize(600, 300));
    EXPECT_EQ(within({1000, 500}, {300, 300}), QSize(300, 150));
}

}  // namespace
}  // namespace tsRtm::test
