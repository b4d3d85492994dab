// Boxes: buttons, headline, links, and the short questions and notices.
#include <gtest/gtest.h>

#include "tests/support/TestGround.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"

namespace tsRtm::test {
namespace {

TEST(RichBox, HeadlineAndBody) {
    struct Case {
        TextView prompt, headline, body;
    };
    for (const auto& [prompt, headline, body] : {
             Case{u"Speichern?@Die Datei wurde geändert.", u"Speichern?", u"Die Datei wurde geändert."},
             Case{u"a\\@b", u"a@b", u""},
             Case{u"a\\@b@c\\@d@e", u"a@b", u"c@d@e"},
             Case{u"@vorn", u"@vorn", u""},
             Case{u"\\@@x", u"@", u"x"},
             Case{u"Kopf\r\nRumpf\rmehr", u"Kopf", u"Rumpf\rmehr"},
             Case{u"Kopf\rRumpf", u"Kopf", u"Rumpf"},
             Case{u"Kopf\rnoch@Rumpf", u"Kopf\rnoch", u"Rumpf"},
             Case{u"nur Kopf", u"nur Kopf", u""},
             Case{u"", u"", u""},
         }) {
        const auto box = richBox(prompt, 0);
        EXPECT_EQ(toUtf8(box.headline), toUtf8(headline)) << toUtf8(prompt);
        EXPECT_EQ(toUtf8(box.body), toUtf8(body)) << toUtf8(prompt);
    }
}

TEST(RichBox, AddressesBecomeLinks) {
    EXPECT_EQ(withLinks(u"siehe http://x.y/z dort"), u"siehe <A HREF=\"http://x.y/z\">http://x.y/z</A> dort");
    EXPECT_EQ(withLinks(u"https://a und http://b"),
              u"<A HREF=\"https://a\">https://a</A> und <A HREF=\"http://b\">http://b</A>");
    EXPECT_EQ(withLinks(u"<A HREF=\"http://x\">hier</A> http://y"),
              u"<A HREF=\"http://x\">hier</A> http://y");
    EXPECT_EQ(richBox(u"http://x@kein Link oben", 0).headline, u"http://x");
}

TEST(Boxes, ButtonsAndDefaultsOfEachSet) {
    using Answers = std::vector<int32>;
    struct Case {
        int32 buttons;
        Answers plain;
        int32 plainDefault;
        Answers rich;
        int32 richDefault;
    };
    for (const auto& c : {
             Case{dlgOKOnly | dlgDefault2, {1}, 1, {1}, 1},
             Case{dlgOKCancel | dlgDefault2, {1, 2}, 2, {1, 2}, 2},
             Case{dlgAbortRetryIgnore, {3, 4, 5}, 3, {4, 2, 5}, 4},
             Case{dlgAbortRetryIgnore | dlgDefault2, {3, 4, 5}, 4, {4, 2, 5}, 2},
             Case{dlgAbortRetryIgnore | dlgDefault3, {3, 4, 5}, 5, {4, 2, 5}, 5},
             Case{dlgYesNoCancel | dlgDefault3, {6, 7, 2}, 2, {6, 7, 2}, 2},
             Case{dlgYesNo | dlgDefault2, {6, 7}, 7, {6, 7}, 7},
             Case{dlgYesNo | dlgDefault4, {6, 7}, 6, {6, 7}, 6},
             Case{dlgRetryCancel | dlgDefault2, {4, 2}, 2, {4, 2}, 2},
             Case{dlgCancelTryContinue | dlgDefault2, {2, 10, 11}, 10, {2, 10, 11}, 2},
         }) {
        SCOPED_TRACE(c.buttons);
        const auto plain = plainBox(u"x", c.buttons);
        const auto rich = richBox(u"x", c.buttons);
        EXPECT_EQ(plain.answers, c.plain);
        EXPECT_EQ(plain.defaultAnswer, c.plainDefault);
        EXPECT_EQ(rich.answers, c.rich);
        EXPECT_EQ(rich.defaultAnswer, c.richDefault);
    }
}

class Notices : public ::testing::Test {
 protected:
    StartedLibrary library;
    ScriptedUi& ui = library.ground.ui;
    MessagesTopic messages;
};

TEST_F(Notices, VersionOfTheControlsDecidesTheForm) {
    ui.answers = {6 + 2048, 7};
    const Text prompt = u"Speichern?@Die Datei wurde geändert.\\@";
    EXPECT_EQ(messages.TSMsgBox(prompt, dlgYesNo | dlgDontShowAgain, u"Titel", u"hilfe.hlp", 12), 2054);
    EXPECT_EQ(ui.boxes[0].headline, u"Speichern?");
    EXPECT_EQ(ui.boxes[0].body, u"Die Datei wurde geändert.@");
    EXPECT_EQ(ui.boxes[0].checkBox, u"Diese Frage nicht wieder stellen");
    EXPECT_EQ(ui.boxes[0].title, u"Titel");
    EXPECT_EQ(ui.boxes[0].helpContext, 12);

    ui.controls = 580;
    EXPECT_EQ(messages.TSMsgBox(prompt, dlgYesNo | dlgDontShowAgain), 7);
    EXPECT_EQ(ui.boxes[1].headline, u"");
    EXPECT_EQ(ui.boxes[1].body, u"Speichern?\r\rDie Datei wurde geändert.\\@");
    EXPECT_EQ(ui.boxes[1].checkBox, u"");
    EXPECT_EQ(ui.boxes[1].buttons, dlgYesNo);
}

TEST_F(Notices, ShortFormsSayWhatTheyAre) {
    ui.answers = {1, 6, 7, 1, 1, 1};
    messages.Fehler(u"kaputt");
    EXPECT_TRUE(messages.Frage(u"wirklich"));
    bool answer = true;
    messages.Frage(u"wirklich", answer);
    EXPECT_FALSE(answer);
    messages.WaitForReturn(u"gut");
    messages.NotAktiv();
    messages.NotAktivExt();
    const auto shown = [&](std::size_t i) { return std::pair{ui.boxes[i].title, ui.boxes[i].buttons}; };
    EXPECT_EQ(shown(0), std::pair(Text(u"Fehler"), 16));
    EXPECT_EQ(shown(1), std::pair(Text(u"Frage"), 36));
    EXPECT_EQ(shown(3), std::pair(Text(u"Hinweis"), 0));
    EXPECT_EQ(ui.boxes[4].headline, u"Modul ist nicht aktiv!");
    EXPECT_EQ(shown(5), std::pair(Text(u"Hinweis"), 64));
}

TEST_F(Notices, AbortInTheMessageWindowStopsTheLoop) {
    messages.HaltNachricht(u"Ich suche");
    EXPECT_TRUE(ui.windowOpen);
    EXPECT_EQ(ui.windowTexts.back(), u"Ich suche");
    ui.clickAbort();
    EXPECT_TRUE(rtmMain::state().stopped);
    EXPECT_FALSE(ui.windowOpen);
    messages.HaltNachricht(u"noch einmal");
    messages.ClearHaltNachricht();
    EXPECT_FALSE(ui.windowOpen);
}

}  // namespace
}  // namespace tsRtm::test
