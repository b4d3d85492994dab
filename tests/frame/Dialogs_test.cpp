// Boxes and task dialogs: how a prompt becomes one, what is heard of it, and the short questions and notices.
#include "tsRtm/frame/messages/Dialogs.hpp"

#include "tests/support/MemoryFiles.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/clsTaskDialog.hpp"
#include "tsRtm/frame/messages/DialogTexts.hpp"
#include "tsRtm/frame/tsMessage.hpp"

namespace tsRtm::test {
namespace {

using platform::DialogIcon;
using platform::DialogNotice;

TEST(Prompt, HeadlineAndBody) {
    using Row = std::pair<TextView, const char*>;
    for (const auto& [prompt, headlineAndBody] :
         {Row{u"Speichern?@Die Datei wurde geändert.", "Speichern?|Die Datei wurde geändert."},
          Row{u"a\\@b", "a@b|"}, Row{u"a\\@b@c\\@d@e", "a@b|c@d@e"}, Row{u"\\@@x", "@|x"},
          Row{u"Kopf\r\nRumpf\rmehr", "Kopf|Rumpf\rmehr"}, Row{u"Kopf\rRumpf", "Kopf|Rumpf"},
          Row{u"Kopf\rnoch@Rumpf", "Kopf\rnoch|Rumpf"}, Row{u"", "|"}}) {
        const auto parts = splitPrompt(prompt);
        EXPECT_TOLD(headlineAndBody, parts.headline, parts.body);
    }
    for (const auto& [body, linked] :
         {Row{u"siehe http://x.y/z dort", "siehe <A HREF=\"http://x.y/z\">http://x.y/z</A> dort"},
          Row{u"https://a\rhttp://b",
              "<A HREF=\"https://a\">https://a</A>\r<A HREF=\"http://b\">http://b</A>"},
          Row{u"http://a?u=https://b", "<A HREF=\"http://a?u=https://b\">http://a?u=https://b</A>"},
          Row{u"<a href=\"http://x\">hier</a> http://y", "<a href=\"http://x\">hier</a> http://y"}})
        EXPECT_TOLD(linked, withLinks(body));
}

class Dialogs : public ::testing::Test {
 protected:
    StartedLibrary library;
    ScriptedUi& ui = library.ground.ui;
    MessagesTopic messages;
    clsTaskDialog dialog{messages};
};

TEST_F(Dialogs, ButtonsAndDefaultsOfEachSet) {
    // Answers, and the usual one by each of the four flags, of the plain box and of the dialog; captions of
    // its own buttons.
    for (const auto& [set, told] :
         {std::pair{dlgOKOnly + 0, "1|1,1,1,1|1|1,1,1,1|"},
          {dlgOKCancel, "1,2|1,2,1,1|1,2|1,2,1,1|"},
          {dlgAbortRetryIgnore, "3,4,5|3,4,5,3|4,2,5|4,2,5,4|5&Ignorieren"},
          {dlgYesNoCancel, "6,7,2|6,7,2,6|6,7,2|6,7,2,6|"},
          {dlgYesNo, "6,7|6,7,6,6|6,7|6,7,6,6|"},
          {dlgRetryCancel, "4,2|4,2,4,4|4,2|4,2,4,4|"},
          {dlgCancelTryContinue, "2,10,11|2,10,11,2|2,10,11|2,2,2,2|10Wie&derholen11&Weiter"},
          {7, "1|1,1,1,1|1|1,1,1,1|"}}) {
        std::vector<int32> plain, rich;
        for (const int32 flag : {dlgDefault1, dlgDefault2, dlgDefault3, dlgDefault4}) {
            plain.push_back(plainBox(u"x", set | flag).defaultAnswer);
            dialog.Prompt(u"x", set | flag);
            rich.push_back(dialog.Configuration().defaultAnswer);
        }
        Text own;
        for (const auto& button : dialog.Configuration().ownButtons)
            own += toText(button.number) + button.caption;
        EXPECT_TOLD(told, plainBox(u"x", set).answers, plain, dialog.Configuration().answers, rich, own)
            << set;
    }
}

TEST_F(Dialogs, IconsAndFlags) {
    for (const auto& [buttons, icon, checkBox] :
         {std::tuple{dlgDontShowAgain + 0, DialogIcon::none, u"Diese Meldung nicht wieder anzeigen"},
          {dlgDontShowAgain | dlgCritical | dlgYesNo, DialogIcon::stop, u"Diese Frage nicht wieder stellen"},
          {dlgDontShowAgain | dlgYesNoCancel, DialogIcon::none, u"Diese Frage nicht wieder stellen"},
          {dlgDontShowAgain | dlgRetryCancel, DialogIcon::none, u"Diesen Dialog nicht wieder anzeigen"},
          {dlgQuestion | dlgYesNo, DialogIcon::picture, u""},
          {dlgInformation + 0, DialogIcon::information, u""},
          {dlgShield | dlgDefault4, DialogIcon::shield, u""},
          {96, DialogIcon::none, u""}}) {
        dialog.Prompt(u"x", buttons);
        const auto& rich = dialog.Configuration();
        EXPECT_EQ(rich.icon, icon) << buttons;
        EXPECT_EQ(rich.picture.empty(), icon != DialogIcon::picture) << buttons;
        EXPECT_EQ(toUtf8(rich.checkBox), toUtf8(checkBox)) << buttons;
        EXPECT_FALSE(rich.commandLinks || rich.rightToLeft) << buttons;
    }
    dialog.Prompt(u"x", dlgCommandLinks | 0x100000);
    EXPECT_TRUE(dialog.Configuration().commandLinks && dialog.Configuration().rightToLeft);
}

TEST_F(Dialogs, NoticesBecomeEvents) {
    std::string heard;
    std::vector<Subscription> kept;
    const auto hear = [&](auto& event, const std::string& name) {
        kept.push_back(event.connect([&heard, name](const auto&... values) {
            heard += name;
            ((heard += " " + Told::one(values)), ...);
            heard += ", ";
        }));
    };
    hear(dialog.ButtonClick, "ButtonClick"), hear(dialog.Created, "Created"),
        hear(dialog.Destroyed, "Destroyed"), hear(dialog.Expand, "Expand"), hear(dialog.Help, "Help"),
        hear(dialog.Hyperlink, "Hyperlink"), hear(dialog.Navigated, "Navigated"),
        hear(dialog.OptionClick, "OptionClick"), hear(dialog.Timer, "Timer"), hear(dialog.Verify, "Verify");
    int32 window = 0;
    kept.push_back(dialog.Constructed.connect([&] { window = dialog.hWnd(); }));

    ui.play = {{DialogNotice::timer, 200, {}},     {DialogNotice::hyperlink, 0, u"http://a"},
               {DialogNotice::optionClick, 7, {}}, {DialogNotice::verify, 1, {}},
               {DialogNotice::help, 0, {}},        {DialogNotice::expand, 1, {}},
               {DialogNotice::navigated, 0, {}}};
    ui.answers = {6};
    rtmMain::state().appHWnd = 4711;
    dialog.Prompt(u"Weiter?", dlgYesNo | dlgDontShowAgain, u"Titel");
    EXPECT_EQ(dialog.Show(), 6 + 2048);
    EXPECT_EQ(
        heard,
        "Created, Timer 200, Hyperlink http://a, OptionClick 7, Verify yes, Help, Expand yes, Navigated, "
        "ButtonClick 6, Destroyed, ");
    EXPECT_TOLD("http://a|4711|77|7|yes", ui.linksOpened, ui.boxes.back().parent, window, dialog.Option(),
                dialog.Checked());
    EXPECT_EQ(dialog.hWnd(), 0) << "gone with the dialog";
}

TEST_F(Dialogs, AListenerMayCloseAndFailuresAnswerZero) {
    const auto closing = dialog.Timer.connect([&](int32 ms) {
        if (ms > 400) dialog.ClickButton(2);
    });
    ui.play = {{DialogNotice::timer, 200, {}}, {DialogNotice::timer, 600, {}}, {DialogNotice::expand, 1, {}}};
    dialog.ClickButton(9);  // not shown: without effect
    dialog.Prompt(u"Warte", dlgOKCancel);
    EXPECT_EQ(dialog.Show(), 2);

    // A ground without task dialogs asks the same in a plain box.
    ui.answers = {1};
    int32 told = 0;
    const auto answer = platform::showPlainly(
        ui, dialog.Configuration(), [&](DialogNotice, int32 value, TextView) { return told = value; });
    EXPECT_EQ(ui.boxes.back().body, u"Warte\r\r");
    EXPECT_EQ(std::pair(answer.button, told), std::pair(1, 1));

    const auto failing = dialog.Created.connect([] { raise(5, u"Anwendung", u"x"); });
    EXPECT_THROW(dialog.Show(), Failure);
    EXPECT_EQ(dialog.hWnd(), 0);

    ui.dialogFails = true;
    EXPECT_EQ(dialog.Show(), 0);
    EXPECT_EQ(messages.TSMsgBox(u"x"), 0);
}

TEST_F(Dialogs, VersionOfTheControlsDecidesTheForm) {
    ui.answers = {6 + 2048, 7, 10};
    const Text prompt = u"Speichern?@Die Datei wurde geändert.\\@";
    EXPECT_EQ(messages.TSMsgBox(prompt, dlgYesNo | dlgDontShowAgain, u"Titel", u"hilfe.hlp", 12), 2054);
    EXPECT_TOLD("Speichern?|Die Datei wurde geändert.@|Titel|12", ui.boxes[0].headline, ui.boxes[0].body,
                ui.boxes[0].title, ui.boxes[0].helpContext);

    ui.controls = 580;
    rtmMain::state().appHWnd = 4711;
    EXPECT_EQ(messages.TSMsgBox(prompt, dlgYesNo | dlgDontShowAgain, {}, u"hilfe.hlp", 12), 7);
    EXPECT_TOLD("Speichern?\r\rDie Datei wurde geändert.\\@|4|hilfe.hlp|12|4711", ui.boxes[1].body,
                ui.boxes[1].buttons, ui.boxes[1].helpFile, ui.boxes[1].helpContext, ui.boxes[1].parent);
    EXPECT_EQ(messages.TSMsgBox(u"x", dlgCancelTryContinue, {}, u"hilfe.hlp", 12), 10);
    EXPECT_EQ(ui.boxes[2].helpFile, u"") << "a box of this style knows no help";
    for (const int32 version : {580, 610}) {
        ui.controls = version;
        for (const auto& [title, shown] : {std::pair<Variant, TextView>{int32{7}, u"7"},
                                           {2.5, u"2,5"},
                                           {Variant(), u""},
                                           {Date::of(2024, 12, 31, 18, 5, 9), u"31.12.2024 18:05:09"}}) {
            ui.answers = {1};
            messages.TSMsgBox(u"x", dlgOKOnly, title);
            EXPECT_EQ(ui.boxes.back().title, shown);
        }
    }
}

TEST_F(Dialogs, ShortFormsSayWhatTheyAre) {
    ui.answers = {1, 6, 7, 1, 1, 1};
    messages.Fehler(u"kaputt");
    const bool yes = messages.Frage(u"wirklich");
    bool answer = true;
    messages.Frage(u"wirklich", answer);
    EXPECT_TRUE(yes && !answer);
    messages.WaitForReturn(u"gut");
    messages.NotAktiv();
    messages.NotAktivExt();
    std::string shown;
    for (const auto& box : ui.boxes)
        shown += toUtf8(box.title) + " " + std::to_string(box.buttons) + " " +
                 toUtf8(TextView(box.headline).substr(0, 22)) + "\n";
    EXPECT_EQ(shown,
              "Fehler 16 kaputt\nFrage 36 wirklich\nFrage 36 wirklich\nHinweis 0 gut\n"
              "Hinweis 0 Modul ist nicht aktiv!\nHinweis 64 Es wird noch an der Re\n");
}

TEST_F(Dialogs, AbortInTheMessageWindowStopsTheLoop) {
    messages.HaltNachricht(u"Ich suche");
    EXPECT_TRUE(ui.windowOpen);
    tsMessage().Message(u"noch immer");
    EXPECT_EQ(ui.windowTexts, (std::vector<Text>{u"Ich suche", u"noch immer"}));
    ui.onAbort();
    EXPECT_TRUE(rtmMain::state().stopped);
    EXPECT_FALSE(ui.windowOpen);
    messages.HaltNachricht(u"noch einmal");
    messages.ClearHaltNachricht();
    EXPECT_FALSE(ui.windowOpen);
}

TEST(Unattended, BoxesGoToTheLogWithTheirAnswer) {
    TestGround ground;
    MemoryFiles files;
    ground.system.folders = {{platform::FolderId::applicationData, u"/h"}};
    files.putFolder(u"/h/Tessarol");
    StartedLibrary library(ground, files);
    rtmMain::state().debugging = true;
    ground.ui.somebody = false;
    ground.ui.answers = {7, 7};
    MessagesTopic messages;
    messages.Frage(u"Kopf\rRumpf");
    ground.ui.controls = 580;
    messages.Frage(u"eins\r\nzwei");
    const std::string log = files.dump(u"/h/Tessarol/RTMDebug.txt");
    EXPECT_HOLDS(log, " - TSMsgBox: Kopf Rumpf = 7\r\n", " - TSMsgBox: eins  zwei = 7\r\n");
}

}  // namespace
}  // namespace tsRtm::test
