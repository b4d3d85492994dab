// Questions and notices as windows: what they say, and what each way out of them answers.
#include "tsRtm/frame/messages/Dialogs.hpp"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QCommandLinkButton>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QRadioButton>
#include <QScrollArea>
#include <QTableView>
#include <QTimer>
#include <QtTest/QTest>

#include "desktop/Desktop.hpp"
#include "desktop/dialogs/GermanTexts.hpp"
#include "desktop/dialogs/TaskWindow.hpp"
#include "tests/desktop/Seen.hpp"
#include "tests/support/Raised.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/clsTaskDialog.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm::test {
namespace {

using namespace desktop;

class Windows : public ::testing::Test {
 protected:
    static constexpr TextView kPrompt = u"Speichern?@Die Datei wurde geändert.";

    // What the user does with the next dialog, once it is open.
    template <class Window = TaskWindow, class User>
    static void next(User user) {
        QTimer::singleShot(0, [user] {
            auto* window = qobject_cast<Window*>(QApplication::activeModalWidget());
            ASSERT_TRUE(window && inFront(*window));
            user(*window);
        });
    }
    static QAbstractButton* button(QWidget& window, const char* caption) {
        for (auto* found : window.findChildren<QAbstractButton*>())
            if (found->text().remove(u'&') == QString::fromUtf8(caption)) return found;
        ADD_FAILURE() << caption;
        return nullptr;
    }
    static QPushButton* answer(QWidget& window, int32 number) {
        return window.findChild<QPushButton*>(QStringLiteral("answer%1").arg(number));
    }
    static void click(QAbstractButton* button) {
        ASSERT_TRUE(button);
        QTest::mouseClick(button, Qt::LeftButton);
    }
    static void tick(QObject* window) {
        QTimerEvent tick(1);
        QApplication::sendEvent(window, &tick);
    }
    static void key(QWidget& window, Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier) {
        QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, key, with);
    }
    static std::string texts(const QWidget& window) {
        QString all;
        for (auto* label : window.findChildren<QLabel*>())
            if (label->isVisible()) all += label->text() + u'|';
        return all.toStdString();
    }
    // What the user is asked, and how he answers.
    platform::MessageBox asked(bool rich, int32 buttons) {
        clsTaskDialog dialog(messages);
        dialog.Prompt(kPrompt, buttons);
        return rich ? dialog.Configuration() : plainBox(kPrompt, buttons);
    }
    int32 box(bool rich, int32 buttons) {
        return rich ? messages.TSMsgBox(kPrompt, buttons)
                    : rtmMain::system().dialogs.show(plainBox(kPrompt, buttons));
    }

    StartedLibrary library;
    Desktop desk;
    MessagesTopic messages;
};

TEST_F(Windows, AnswerInEachWay) {
    for (const bool rich : {true, false})
        for (int32 set = dlgOKOnly; set <= dlgCancelTryContinue + 1; ++set) {
            SCOPED_TRACE(Told(rich ? "rich" : "plain", set).out);
            const auto offered = asked(rich, set).answers;
            const bool cancels = std::count(offered.begin(), offered.end(), 2) > 0;
            const int32 escape = cancels ? 2 : offered.size() == 1 ? offered[0] : 0;  // 0: the dialog stays
            for (const bool byKey : {true, false}) {
                next([&](TaskWindow& window) {
                    if (byKey)
                        key(window, Qt::Key_Escape);
                    else
                        window.close();
                    EXPECT_EQ(window.isVisible(), escape == 0);
                    if (escape == 0) click(answer(window, offered.back()));
                });
                EXPECT_EQ(box(rich, set), escape == 0 ? offered.back() : escape);
            }
            for (const int32 usual : {dlgDefault1, dlgDefault2, dlgDefault3, dlgDefault4}) {
                next([&](TaskWindow& window) { key(window, Qt::Key_Return); });
                EXPECT_EQ(box(rich, set + usual), asked(rich, set + usual).defaultAnswer) << usual;
            }
            std::vector<int32> seen;
            next([&](TaskWindow& window) {
                keepPicture(window, (std::string(rich ? "task" : "plain") + char('0' + set)).c_str());
                for (auto* found : window.findChildren<QPushButton*>())
                    seen.push_back(found->objectName().mid(6).toInt());
                click(answer(window, offered.front()));
            });
            EXPECT_EQ(box(rich, set), offered.front());
            EXPECT_EQ(seen, offered);
            for (const int32 number : offered) {
                next([&](TaskWindow& window) {
                    const auto mnemonic = answer(window, number)->shortcut();
                    ASSERT_FALSE(mnemonic.isEmpty());
                    key(window, mnemonic[0].key());
                });
                EXPECT_EQ(box(rich, set), number);
            }
        }
}

TEST_F(Windows, ShowWhatTheyAreGiven) {
    next([&](TaskWindow& window) {
        const auto shown = texts(window);
        EXPECT_HOLDS(shown, "Speichern?|",
                     "a&lt;b siehe <a href=\"http://x.y/z\">http://x.y/z</a> dort<br>zwei|");
        EXPECT_EQ(window.windowTitle(), QStringLiteral("Titel"));
        EXPECT_EQ(window.accessibleDescription().left(10), QStringLiteral("Speichern?"));
        key(window, Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
                  "Speichern?\na<b siehe http://x.y/z dort\nzwei\n");
        keepPicture(window, "question");
        window.findChild<QCheckBox*>()->click();
        click(answer(window, 6));
    });
    EXPECT_EQ(messages.TSMsgBox(u"Speichern?@a<b siehe http://x.y/z dort\rzwei",
                                dlgYesNo + dlgQuestion + dlgDontShowAgain, u"Titel"),
              6 + 2048);
    // A text higher than the screen scrolls, and the buttons can be reached.
    Text text = u"Kopf@";
    for (int32 i = 0; i < 500; ++i) text += u"Zeile " + toText(i) + u"\r";
    next([&](TaskWindow& window) {
        EXPECT_LE(window.height(), window.screen()->availableGeometry().height());
        EXPECT_TRUE(window.findChild<QScrollArea*>());
        keepPicture(window, "long");
        key(window, Qt::Key_Return);
    });
    EXPECT_EQ(messages.TSMsgBox(text, dlgOKOnly | dlgInformation), 1);
}

TEST_F(Windows, TellAllThatHappens) {
    clsTaskDialog dialog(messages);
    dialog.Prompt(u"Wie soll gedruckt werden?@Der Drucker http://drucker ist langsam.",
                  dlgOKCancel | dlgCommandLinks | dlgExclamation | dlgDontShowAgain);
    auto& set = dialog.Configuration();
    set.ownButtons = {{100, u"&Sofort drucken"}, {101, u"&In der Nacht"}};
    set.answers = {100, 101, 2};
    set.defaultAnswer = 100;
    set.options = {{7, u"&einseitig"}, {8, u"&beidseitig"}};
    set.defaultOption = 7;
    set.expanded = u"Es warten 12 Aufträge.";
    set.footer = u"Angemeldet als <A HREF=\"x:wer\">tester</A>";
    set.helpFile = u"hilfe";
    set.timer = true;
    std::string told;
    const auto tell = [&](const char* what, auto... value) {
        told += std::string(what) + Told(value...).out + ", ";
    };
    std::vector<Subscription> heard;
    const auto hear = [&](auto& event, const char* name) {
        heard.push_back(event.connect([&tell, name](const auto&... values) { tell(name, values...); }));
    };
    hear(dialog.Constructed, "Constructed"), hear(dialog.Created, "Created"),
        hear(dialog.Destroyed, "Destroyed"), hear(dialog.Help, "Help"),
        hear(dialog.ButtonClick, "ButtonClick "), hear(dialog.OptionClick, "OptionClick "),
        hear(dialog.Expand, "Expand "), hear(dialog.Verify, "Verify "), hear(dialog.Hyperlink, "Hyperlink ");
    heard.push_back(dialog.Timer.connect([&](int32 ms) {
        if (told.find("Timer") == std::string::npos) tell("Timer ", ms >= 0);
    }));
    next([&](TaskWindow& window) {
        EXPECT_EQ(window.findChildren<QCommandLinkButton*>().size(), 2);
        EXPECT_EQ(window.focusWidget(), answer(window, 100));
        keepPicture(window, "links");
        tick(&window);
        key(window, Qt::Key_M);
        EXPECT_HOLDS(texts(window), "12 Auftr");
        keepPicture(window, "links-expanded");
        click(button(window, "Weniger zeigen"));
        EXPECT_EQ(texts(window).find("12 Auftr"), std::string::npos);
        button(window, "beidseitig")->click();
        key(window, Qt::Key_F1);  // which the toolkit shows as a click that lasts
        EXPECT_TRUE(QTest::qWaitFor([&] { return told.ends_with("Help, "); }));
        click(button(window, "Diesen Dialog nicht wieder anzeigen"));
        for (auto* label : window.findChildren<QLabel*>())
            if (label->text().contains(QStringLiteral("x:wer")))
                emit label->linkActivated(QStringLiteral("x:wer"));
        key(window, Qt::Key_I);
    });
    EXPECT_EQ(dialog.Show(), 101 + 2048);
    EXPECT_TOLD("8|yes|0", dialog.Option(), dialog.Checked(), dialog.hWnd());
    EXPECT_EQ(told,
              "Constructed, Created, Timer yes, Expand yes, Expand no, OptionClick 8, Help, Verify yes, "
              "Hyperlink x:wer, ButtonClick 101, Destroyed, ");
    // A listener may close it, and what it throws comes out of Show.
    heard.push_back(dialog.Expand.connect([&](bool) { dialog.ClickButton(2); }));
    next([&](TaskWindow& window) { click(button(window, "Mehr zeigen")); });
    EXPECT_EQ(dialog.Show(), 2);
    heard.push_back(dialog.Help.connect([&] { raise(5, u"Hilfe", u""); }));
    next([&](TaskWindow& window) { key(window, Qt::Key_F1); });
    EXPECT_EQ(raisedNumber([&] { dialog.Show(); }), 5);
    EXPECT_FALSE(QApplication::activeModalWidget());
}

// A listener asks something itself: time goes on behind its dialog, but is not told.
TEST_F(Windows, OpenFromOneAnother) {
    clsTaskDialog dialog(messages);
    dialog.Prompt(u"Warten?", dlgOKCancel);
    dialog.Configuration().timer = true;
    int32 ticks = 0;
    QWidget* outer = nullptr;
    const auto timer = dialog.Timer.connect([&](int32) {
        ++ticks;
        outer = QApplication::activeModalWidget();
        next([&](TaskWindow& inner) {
            EXPECT_NE(&inner, outer);
            tick(outer);
            key(inner, Qt::Key_Escape);
        });
        EXPECT_EQ(messages.TSMsgBox(u"Abbrechen?", dlgYesNoCancel), 2);
        dialog.ClickButton(2);
    });
    const auto answered = dialog.ButtonClick.connect([&](int32) { tick(outer); });
    next([](TaskWindow& window) { tick(&window); });
    EXPECT_TOLD("2|1", dialog.Show(), ticks);
}

// The window before which they stand goes: nothing is lost, and nothing is touched that is gone.
TEST_F(Windows, OutliveTheirHost) {
    platform::ChoiceList list;
    list.count = 3;
    list.cells = [](int32 line) { return std::vector<Text>{toText(line)}; };
    const auto goes = [](auto ask) {
        auto* host = new QWidget;
        host->show();
        EXPECT_TRUE(inFront(*host));
        QTimer::singleShot(0, [host] {
            EXPECT_EQ(QApplication::activeModalWidget()->parentWidget(), host);
            delete host;
        });
        return ask();
    };
    EXPECT_EQ(goes([&] { return messages.TSMsgBox(u"Speichern?", dlgYesNoCancel | dlgQuestion); }), 7);
    EXPECT_EQ(goes([&] { return messages.TSMsgBox(u"Fertig", dlgOKOnly | dlgDontShowAgain); }), 1);
    EXPECT_EQ(goes([&] { return rtmMain::system().choices.choose(list); }), 0);
    EXPECT_FALSE(goes([&] { return rtmMain::system().dialogs.ask(u"Name", u"Eingabe", u"x"); }));
    EXPECT_FALSE(QApplication::activeModalWidget());
}

TEST_F(Windows, AskForALine) {
    const auto ask = [](const std::function<void(QInputDialog&)>& user) {
        next<QInputDialog>(user);
        return rtmMain::system().dialogs.ask(u"Name der Datei", u"Speichern", u"alt");
    };
    const auto typed = ask([](QInputDialog& window) {
        keepPicture(window, "input");
        EXPECT_TRUE(button(window, "Abbrechen") && button(window, "OK"));
        QTest::keyClicks(window.focusWidget(), QStringLiteral("neu"));
        key(window, Qt::Key_Return);
    });
    EXPECT_EQ(typed, u"neu");
    EXPECT_EQ(ask([](QInputDialog& window) { click(button(window, "OK")); }), u"alt");
    EXPECT_FALSE(ask([](QInputDialog& window) { key(window, Qt::Key_Escape); }));
}

TEST_F(Windows, LetALineBeChosen) {
    platform::ChoiceList list;
    list.caption = u"Banken";
    list.titles = {u"BLZ", u"Name"};
    list.count = 100'000;
    int32 asked = 0;
    list.cells = [&](int32 line) {
        ++asked;
        return std::vector<Text>{toText(line), u"Bank " + toText(line)};
    };
    list.start = 100'001;  // behind the last
    list.find = [](TextView typed) { return roundToInt32(Val(typed)); };
    const auto chosen = [&](int32 line, const std::function<void(QDialog&)>& user) {
        next<QDialog>(user);
        EXPECT_EQ(rtmMain::system().choices.choose(list), line);
    };
    const auto type = [](QDialog& window, const char* text) {
        QTest::keyClicks(window.focusWidget(), QString::fromUtf8(text));
    };
    chosen(100'000, [](QDialog& window) { key(window, Qt::Key_Return); });
    chosen(77, [&](QDialog& window) {
        type(window, "77");
        keepPicture(window, "list");
        key(window, Qt::Key_Return);
    });
    chosen(79, [&](QDialog& window) {
        type(window, "77");
        key(window, Qt::Key_Down);  // in the list, though the focus is in the text
        window.findChild<QTableView*>()->setFocus();
        key(window, Qt::Key_Down);
        click(button(window, "Auswahl"));
    });
    chosen(5, [&](QDialog& window) {
        window.findChild<QTableView*>()->setFocus();
        type(window, "5");
        key(window, Qt::Key_Return);
    });
    chosen(0, [](QDialog& window) { key(window, Qt::Key_Escape); });
    EXPECT_LT(asked, 5000) << "only what is seen";
    // What the list throws comes out, whether it is asked at once or later.
    int32 bad = 50;
    list.start = 1;
    list.cells = [&](int32 line) {
        if (line == bad) raise(61, u"Liste", u"");
        return std::vector<Text>{toText(line)};
    };
    EXPECT_EQ(raisedNumber([&] { chosen(0, [&](QDialog& window) { type(window, "50"); }); }), 61);
    bad = 2;
    EXPECT_EQ(raisedNumber([&] { rtmMain::system().choices.choose(list); }), 61);
    list.count = 0;
    chosen(0, [](QDialog& window) { window.accept(); });
}

TEST_F(Windows, TellTheWindowOfALongWork) {
    messages.HaltNachricht(u"Es wird sortiert");
    QWidget* shown = nullptr;
    for (auto* widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget->findChild<QPushButton*>()) shown = widget;
    ASSERT_TRUE(shown);
    EXPECT_EQ(texts(*shown), "Es wird sortiert|");
    keepPicture(*shown, "abort");
    rtmMain::state().stoppedEnabled = true;
    click(button(*shown, "Abbrechen"));
    EXPECT_FALSE(shown->isVisible());
    EXPECT_TRUE(rtmMain::state().stopped);
    messages.HaltNachricht(u"noch einmal");
    EXPECT_TRUE(shown->isVisible());
    messages.ClearHaltNachricht();
    EXPECT_FALSE(shown->isVisible());
}

// Whether Qt's translation is installed or not; one that the application has brought stays.
TEST(GermanMenus, OfFieldsAndOfTextsThatCanBeSelected) {
    const auto menuOf = [](auto& field) {
        const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
        std::string all;
        for (const auto* action : menu->actions())
            all += action->text().section(u'\t', 0, 0).remove(u'&').toStdString() + "|";
        return all;
    };
    for (const QString& folder :
         {QLibraryInfo::path(QLibraryInfo::TranslationsPath), QStringLiteral("/nowhere")}) {
        const GermanTexts german(folder);
        QLineEdit field;
        EXPECT_EQ(menuOf(field),
                  "Rückgängig|Wiederherstellen||Ausschneiden|Kopieren|Einfügen|Löschen||Alles auswählen|");
        const GermanTexts second(QStringLiteral("/nowhere"));
    }
    QLineEdit field;
    EXPECT_EQ(menuOf(field).substr(0, 4), "Undo");
}

}  // namespace
}  // namespace tsRtm::test
