// A form as its user meets it: what is typed, what the fields show and tell, and who may go first.
#include <QAbstractButton>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <QtTest/QTest>

#include "desktop/Desktop.hpp"
#include "desktop/FormChecks.hpp"
#include "desktop/StatusControl.hpp"
#include "tests/desktop/Seen.hpp"
#include "tests/support/Table.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tests/support/ValidationForm.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/clsCommon.hpp"

namespace tsRtm::test {
namespace {

using desktop::FormChecks;

class Form : public ::testing::Test {
 protected:
    Form() : window(std::make_unique<QWidget>()), layout(new QFormLayout(window.get())) {}

    template <class Widget = QLineEdit>
    Widget& field(const char* name) {
        auto* made = new Widget;
        made->setObjectName(QString::fromUtf8(name));
        layout->addRow(QString::fromUtf8(name), made);
        return *made;
    }
    void show() {
        window->show();
        ASSERT_TRUE(inFront(*window));
    }
    // What the user types into a field before leaving it.
    static void type(QWidget& into, const char* text) {
        into.setFocus();
        if (auto* edit = qobject_cast<QLineEdit*>(&into)) edit->selectAll();
        QTest::keyClick(&into, Qt::Key_Delete);
        QTest::keyClicks(&into, QString::fromUtf8(text));
    }
    // Of the field's picture; empty where there is none to see.
    QAbstractButton* picture() const {
        for (auto* button : window->findChildren<QAbstractButton*>())
            if (button->isVisible() && !button->toolTip().isEmpty()) return button;
        return nullptr;
    }

    StartedLibrary library;  // 15.6.2024
    desktop::Desktop desk;
    std::unique_ptr<QWidget> window;
    QFormLayout* layout;
    FormChecks checks;
};

TEST_F(Form, ShowsValuesInFullWhereAFieldIsLeft) {
    auto& edit = field("Feld");
    auto& next = field("danach");
    show();
    // By type: typed, shown, the value, and the grades while it is typed and behind it, "." good, "!" an
    // error.
    const std::pair<eValidatorType, TextView> cases[] = {
        {IBAN,
         u"de68210501700012345678=DE68 2105 0170 0012 3456 78=DE68210501700012345678=!.;"
         u"DE68 2105 0170 0012 3456 78=DE68 2105 0170 0012 3456 78=DE68210501700012345678=..;"
         u"GB82WEST12345698765432=GB82 WEST 1234 5698 7654 32=GB82WEST12345698765432=..;"
         u"DE69210501700012345678=DE69 2105 0170 0012 3456 78=DE69210501700012345678=!!;"
         u"kein Konto, gar keines=kein Konto, gar keines=keinKonto,garkeines=!!"},
        {KontoOrIBAN, u"1234 567=1234 567=1234 567=!!;1234567=1234567=1234567=.."},
        {Datum,
         u"31122026=31.12.2026=31122026=..;311226=31.12.2026=31122026=..;010499=01.04.1999=01041999=..;"
         u"3112=31.12.2024=31122024=!.;512=05.12.2024=05122024=!.;7=07.06.2024=07062024=!.;"
         u"5.1.=05.01.2024=05012024=!.;5.1.26=05.01.2026=05012026=..;5/1-2026=05.01.2026=05012026=..;"
         u"2026-01-05=05.01.2026=05012026=..;29.2.2023=29.2.2023=29022023=!!;1.2.3.4=1.2.3.4=1234=!!;"
         u"morgen=morgen=morgen=!!;===.."},
        {PLZundOrt, u"52062 Aachen=52062 Aachen=52062 Aachen=.."},
        {BLZ, u"10000000=10000000=10000000=.."}};
    const auto grade = [](char16_t sign) { return sign == u'!' ? validError : validOK; };
    for (const auto& [kind, rows] : cases)
        for (const auto& [typed, shown, value, grades] : table<4>(rows, u";")) {
            SCOPED_TRACE(toUtf8(typed));
            ASSERT_TRUE(checks.add(edit, kind, voError));
            type(edit, toUtf8(typed).c_str());
            EXPECT_EQ(checks.status(edit), grade(grades[0]));
            QTest::keyClick(&edit, Qt::Key_Tab);
            EXPECT_TRUE(next.hasFocus());
            EXPECT_EQ(edit.text().toStdString(), toUtf8(shown));
            EXPECT_EQ(toUtf8(checks.value(edit)), toUtf8(value));
            EXPECT_EQ(checks.status(), grade(grades[1]));
        }
    // In a country where the month comes first.
    library.ground.locale.items[platform::LocaleItem::dateForm] = u"0";
    library.restart();
    ASSERT_TRUE(checks.add(edit, Datum));
    type(edit, "1231");
    QTest::keyClick(&edit, Qt::Key_Return);
    EXPECT_EQ(edit.text().toStdString(), "31.12.2024");
    EXPECT_EQ(checks.value(edit), u"12312024");
}

TEST_F(Form, TellsAndExplainsByThePicture) {
    auto& edit = field("Betrag");
    show();
    const auto validator = checks.add(edit, Numeric, 0, {}, u"Nur Zahlen < 5 & > 1.", u"/Min:1 /Max:5");
    type(edit, "7");
    auto* shown = picture();
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->accessibleName().toStdString(), "Nur Werte von 1 bis 5");
    EXPECT_EQ(edit.accessibleDescription(), shown->accessibleName());
    // Right of the field, in its middle, and within the window.
    EXPECT_EQ(shown->x(), edit.geometry().right() + 1 + 4);
    EXPECT_NEAR(shown->geometry().center().y(), edit.geometry().center().y(), 1);
    EXPECT_LT(shown->geometry().right(), window->width());
    keepPicture(*window, "field");
    window->resize(window->width() + 100, window->height() + 50);
    QApplication::processEvents();
    EXPECT_EQ(shown->x(), edit.geometry().right() + 1 + 4);
    for (const bool usable : {false, true}) {
        edit.setReadOnly(!usable);
        EXPECT_EQ(shown->isVisible(), usable);
        edit.setEnabled(usable);
        edit.setReadOnly(false);
        EXPECT_EQ(shown->isVisible(), usable);
        edit.setEnabled(true);
        edit.setVisible(usable);
        EXPECT_EQ(shown->isVisible(), usable);
        edit.show();
    }
    QTimer::singleShot(0, [&] {
        auto* box = QApplication::activeModalWidget();
        ASSERT_TRUE(box);
        EXPECT_EQ(box->windowTitle(), QStringLiteral("Validator"));
        QStringList texts;
        for (auto* label : box->findChildren<QLabel*>()) texts << label->text();
        EXPECT_TRUE(texts.contains(QStringLiteral("Nur Zahlen &lt; 5 &amp; &gt; 1.")))
            << texts.join(u'|').toStdString();
        keepPicture(*box, "explanation");
        QTest::keyClick(box, Qt::Key_Escape);
    });
    QTest::mouseClick(shown, Qt::LeftButton);
    EXPECT_EQ(window->focusWidget(), &edit);
    type(edit, "3");
    EXPECT_FALSE(picture());
    EXPECT_EQ(edit.accessibleDescription(), QString());
    // Out of the window's way where the validator is told to stand at the left.
    validator->Alignment(TopLeft);
    type(edit, "9");
    EXPECT_LT(picture()->x(), edit.x());
}

TEST_F(Form, HearsCombosAndReadsLabels) {
    auto& free = field<QComboBox>("frei");
    free.setEditable(true);
    auto& fixed = field<QComboBox>("fest");
    fixed.addItems({QStringLiteral("1"), QStringLiteral("8")});
    auto& label = field<QLabel>("Summe");
    auto& other = field<QPushButton>("Knopf");
    show();
    EXPECT_FALSE(checks.add(other, Numeric));
    EXPECT_FALSE(checks.add(free, static_cast<eValidatorType>(99)));
    ASSERT_TRUE(checks.add(free, Datum, voError));
    ASSERT_TRUE(checks.add(fixed, Numeric, voError, {}, {}, u"/Max:5"));
    ASSERT_TRUE(checks.add(label, Numeric, voError, {}, {}, u"/Max:5"));
    free.setFocus();
    QTest::keyClicks(free.lineEdit(), QStringLiteral("3113"));
    EXPECT_EQ(checks.status(free), validError);
    free.lineEdit()->selectAll();
    QTest::keyClicks(free.lineEdit(), QStringLiteral("3112"));
    QTest::keyClick(&free, Qt::Key_Tab);
    EXPECT_EQ(free.currentText().toStdString(), "31.12.2024");
    EXPECT_EQ(checks.status(), validOK);
    QTest::keyClick(&fixed, Qt::Key_Down);
    EXPECT_EQ(checks.status(), validError);
    QTest::keyClick(&fixed, Qt::Key_Up);
    label.setText(QStringLiteral("6"));
    EXPECT_EQ(checks.status(), validOK);
    checks.check(label);
    EXPECT_EQ(checks.status(), validError);
    checks.remove(label);
    EXPECT_EQ(checks.status(), validOK);
}

// The checker writes in capitals: that is checked again, once, and the caret stays where it was.
TEST_F(Form, LetsACheckerChangeTheText) {
    auto& edit = field("Kennung");
    show();
    const auto checker = std::make_shared<OwnChecker>();
    checks.add(edit, IsLike, 0, {}, {}, {}, checker);
    checker->onCheck = [&] { edit.setText(edit.text().toUpper()); };
    type(edit, "ac");
    QTest::keyClick(&edit, Qt::Key_Left);
    checker->checked = 0;
    QTest::keyClicks(&edit, QStringLiteral("b"));
    EXPECT_TOLD("ABC|2|2", edit.text().toStdString(), edit.cursorPosition(), checker->checked);
    checker->checked = 0;
    checker->onCheck = [&] { edit.setText(edit.text() + u'x'); };
    QTest::keyClicks(&edit, QStringLiteral("b"));
    EXPECT_EQ(checker->checked, 2) << "it would go on for ever";
}

// Every order in which they may go, the middle of a check included.
TEST_F(Form, SurvivesWhoeverGoesFirst) {
    show();
    const auto start = [&](const std::shared_ptr<OwnChecker>& checker) {
        auto* edit = &field("Feld");
        QApplication::processEvents();
        EXPECT_TRUE(checks.add(*edit, IsLike, 0, {}, {}, {}, checker));
        type(*edit, "x");
        EXPECT_EQ(checks.status(), validWarning);
        return edit;
    };
    const auto checker = std::make_shared<OwnChecker>();
    checker->grade = validWarning;
    delete start(checker);  // the widget
    EXPECT_EQ(checks.status(), validOK);
    auto* edit = start(checker);
    checks.remove(*edit);
    EXPECT_FALSE(picture());
    delete edit;
    edit = start(checker);
    checker->onCheck = [&] { checks.remove(*edit); };
    type(*edit, "y");
    EXPECT_TOLD("yes|no|y", checks.status() == validOK, picture() != nullptr, edit->text().toStdString());
    checker->onCheck = {};
    edit = start(checker);
    checker->onCheck = [&] { edit->deleteLater(); };
    type(*edit, "y");
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(checks.status(), validOK);
    checker->onCheck = {};
    // In place of the validator before, in the check of that.
    edit = start(checker);
    checker->onCheck = [&] {
        checker->onCheck = {};
        checks.add(*edit, Numeric, voError, {}, {}, u"/Max:5");
    };
    type(*edit, "7");
    EXPECT_EQ(checks.status(), validError);
    // The form goes while it explains.
    QPointer<QAbstractButton> shown = picture();
    ASSERT_TRUE(shown);
    QTimer::singleShot(0, [&] {
        auto* box = QApplication::activeModalWidget();
        ASSERT_TRUE(box);
        checks.clear();
        QTest::keyClick(box, Qt::Key_Return);
    });
    QTest::mouseClick(shown, Qt::LeftButton);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(shown);
    start(checker);
    window.reset();
    EXPECT_EQ(checks.status(), validOK);
}

TEST_F(Form, TellsItsStatus) {
    MessagesTopic messages;
    auto& label = field<QLabel>("Zeile");
    auto& edit = field("Feld");
    auto& area = field<QWidget>("nichts");
    auto* bar = new QStatusBar;
    layout->addRow(bar);
    show();
    const auto put = [&](QWidget& widget) {
        return messages.SetMessage(u"<b>Datei</b> & Co", desktop::statusControl(widget));
    };
    EXPECT_TRUE(put(label) && put(edit) && put(*bar));
    EXPECT_FALSE(put(area));
    EXPECT_TOLD("<b>Datei</b> & Co|0|<b>Datei</b> & Co|<b>Datei</b> & Co", label.text().toStdString(),
                static_cast<int>(label.textFormat()), edit.text().toStdString(),
                bar->currentMessage().toStdString());
    bar->clearMessage();
    auto* panel = new QLabel;
    bar->addWidget(panel);
    clsCommon().MessageLine(desktop::statusControl(*bar));
    messages.Nachricht(u"Satz 5");
    EXPECT_TOLD("Satz 5|", panel->text().toStdString(), bar->currentMessage().toStdString());
    messages.Nachricht(u"");
    EXPECT_EQ(panel->text(), QString());
    window.reset();
    messages.Nachricht(u"niemand sieht es");
    EXPECT_FALSE(messages.SetMessage(u"x", clsCommon().MessageLine()));
}

}  // namespace
}  // namespace tsRtm::test
