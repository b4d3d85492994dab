// Questions and notices as windows: what they say, and what each way out of them answers.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include "desktop/Desktop.hpp"
#include "desktop/dialogs/TaskWindow.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::test {
namespace {

using namespace desktop;

class Windows : public ::testing::Test {
 protected:
    // What the user does with the next dialog, once it is open.
    void next(std::function<void(TaskWindow&)> user) {
        QTimer::singleShot(0, [user] {
            auto* window = qobject_cast<TaskWindow*>(QApplication::activeModalWidget());
            ASSERT_TRUE(window);
            user(*window);
        });
    }
    static void press(TaskWindow& window, int32 answer) {
        auto* button = window.findChild<QPushButton*>(QStringLiteral("answer%1").arg(answer));
        ASSERT_TRUE(button);
        button->click();
    }
    static void key(TaskWindow& window, Qt::Key key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&window, &event);
    }
    static std::string texts(const TaskWindow& window) {
        QString all;
        for (auto* label : window.findChildren<QLabel*>()) all += label->text() + u'|';
        return all.toStdString();
    }

    Desktop desk;
    MessagesTopic messages;
};

TEST_F(Windows, AnswerByButtonAndByKey) {
    const struct {
        int32 buttons;
        Qt::Key key;
        int32 answer;
    } cases[] = {
        {dlgOKCancel, Qt::Key_Escape, 2},
        {dlgOKOnly, Qt::Key_Escape, 1},
        {dlgYesNo, Qt::Key_Return, 6},
        {dlgYesNo + dlgDefault2, Qt::Key_Return, 7},
        {dlgYesNoCancel, Qt::Key_Escape, 2},
        {dlgRetryCancel, Qt::Key_Return, 4},
        {dlgOKCancel + dlgDefault2, Qt::Key_Return, 2},
    };
    for (const auto& c : cases) {
        next([&](TaskWindow& window) { key(window, c.key); });
        EXPECT_EQ(messages.TSMsgBox(u"Speichern?@Die Datei wurde geändert.", c.buttons), c.answer)
            << c.buttons;
    }
    // Neither Escape nor the close button answers a question that has no Cancel.
    next([&](TaskWindow& window) {
        key(window, Qt::Key_Escape);
        window.close();
        EXPECT_TRUE(window.isVisible());
        press(window, 7);
    });
    EXPECT_EQ(messages.TSMsgBox(u"Speichern?", dlgYesNo + dlgQuestion), 7);
}

TEST_F(Windows, ShowHeadlineBodyLinksAndBox) {
    next([&](TaskWindow& window) {
        const auto shown = texts(window);
        EXPECT_NE(shown.find("Speichern?|"), std::string::npos) << shown;
        EXPECT_NE(shown.find("a&lt;b siehe <a href=\"http://x.y/z\">http://x.y/z</a> dort<br>zwei|"),
                  std::string::npos)
            << shown;
        if (const char* pictures = std::getenv("TSRTM_PICTURES")) {
            EXPECT_TRUE(window.grab().save(QString::fromUtf8(pictures) + QStringLiteral("/dialog.png")));
        }
        window.findChild<QCheckBox*>()->click();
        press(window, 6);
    });
    EXPECT_EQ(messages.TSMsgBox(u"Speichern?@a<b siehe http://x.y/z dort\rzwei",
                                dlgYesNo + dlgQuestion + dlgDontShowAgain, u"Titel"),
              6 + 2048);
}

TEST_F(Windows, LetALineBeChosen) {
    platform::ChoiceList list;
    list.caption = u"Banken";
    list.titles = {u"BLZ", u"Name"};
    list.count = 1000;
    list.cells = [](int32 line) { return std::vector<Text>{toText(line), u"Bank " + toText(line)}; };
    list.start = 1001;  // behind the last
    list.find = [](TextView typed) { return roundToInt32(Val(typed)); };
    const auto choose = [&](std::function<void(QDialog&)> user) {
        QTimer::singleShot(0, [user] { user(*qobject_cast<QDialog*>(QApplication::activeModalWidget())); });
        return rtmMain::system().choices.choose(list);
    };
    EXPECT_EQ(choose([](QDialog& window) { window.accept(); }), 1000);
    EXPECT_EQ(choose([](QDialog& window) {
                  window.findChild<QLineEdit*>()->setText(QStringLiteral("77"));
                  window.accept();
              }),
              77);
    EXPECT_EQ(choose([](QDialog& window) { window.reject(); }), 0);
}

TEST_F(Windows, TellTheWindowOfALongWork) {
    messages.HaltNachricht(u"Es wird sortiert");
    QWidget* shown = nullptr;
    for (auto* widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget->findChild<QPushButton*>()) shown = widget;
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->findChild<QLabel*>()->text().toStdString(), "Es wird sortiert");
    rtmMain::state().stoppedEnabled = true;
    shown->findChild<QPushButton*>()->click();
    EXPECT_FALSE(shown->isVisible());
    EXPECT_TRUE(rtmMain::state().stopped);
    rtmMain::state().stopped = false;
}

}  // namespace
}  // namespace tsRtm::test
