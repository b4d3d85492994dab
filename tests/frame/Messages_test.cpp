// Texts by number: messages, key names, captions, places in texts, status text; failures and their handler.
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/iStatusControl.hpp"
#include "tsRtm/frame/messages/TextTables.hpp"

namespace tsRtm::test {
namespace {

using rtmMain::state;

using Numbered = std::tuple<int32, int32, const char*>;

class Messages : public ::testing::Test {
 protected:
    StartedLibrary library;
    TestGround& ground = library.ground;
    MessagesTopic messages;
};

TEST_F(Messages, ByNumberFlagsAndLanguage) {
    for (const auto& [langId, number, text] :
         {Numbered{1031, 1, "Fehler"}, Numbered{1031, 2049, "Fehler "}, Numbered{1031, 1056, " nicht bereit"},
          Numbered{1031, 207 + 1024 + 2048 + 4096, " Ich hole Daten ..."},
          Numbered{1031, 25, "Vorgang unterbrechen mit Esc"},
          Numbered{1031, 25 + 8192, "Vorgang unterbrechen mit #00"}, Numbered{1031, 71 + 3072, ""},
          Numbered{3079, 1, "Fehler"}, Numbered{1033, 1, ""}, Numbered{1033, 122 + 2048, "December "}}) {
        state().langId = langId;
        EXPECT_TOLD(text, messages.RtmMsg(number)) << langId << " " << number;
    }
    state().langId = 1036;
    EXPECT_TOLD("30001|2147483647", messages.LangNr(1), messages.LangNr(2147453647));
    EXPECT_THROW(messages.LangNr(2147453648), Failure);
}

TEST_F(Messages, InsertReplacesTwoCharactersAtEachPlace) {
    for (const auto& [message, position, insert, result] :
         {std::tuple{u"Seite %1/%2", 2, u"9", u"Seite %1/9"}, std::tuple{u"%1 und %1", 1, u"x", u"x und x"},
          std::tuple{u"%2 und %2", 2, u"<%2>", u"<%2> und %2"}, std::tuple{u"%10.", 10, u"x", u"x0."},
          std::tuple{u"ohne", 1, u"x", u"ohne"}, std::tuple{u"a%1", 1, u"", u"a"}}) {
        Text text(message);
        messages.InsertMsg(text, position, insert);
        EXPECT_EQ(toUtf8(text), toUtf8(result)) << toUtf8(message);
    }
    Text text = u"Schon %1 Positionen";
    messages.InsertMsgNr(text, 1, -3);
    EXPECT_EQ(text, u"Schon -3 Positionen");
    Text endless = u"%%1";
    messages.InsertMsg(endless, 1, u"11%%");  // forms new places for ever
    EXPECT_LT(endless.size(), 20u);
}

TEST_F(Messages, ExpansionOfKeysAndMarks) {
    ground.clock.set(Date::of(2024, 12, 31));
    ground.ui.keyNames = {{13, u"ENTER TASTE"}};
    for (const auto& [text, expanded] :
         {std::pair{u"#00=Abbruch, #x1, Preis #", "Esc=Abbruch, #x1, Preis #"},
          {u"Taste #1", "Taste Enter Taste"},
          {u"#1x#17#99#20", "Enter TasteRück??"},  // "x" goes with the key
          {u"«c»«C», am «d». «CC» «ABCD» «» « C» «C", "€€, am 31.12.2024. «CC» «ABCD» «» « C» «C"}}) {
        Text line(text);
        messages.ExpandSpecial(line);
        EXPECT_EQ(toUtf8(line), expanded);
    }
}

// Each sign is looked at once: else this takes minutes.
TEST_F(Messages, ExpansionBearsAMillionSigns) {
    for (const TextView one : {u"«", u"«C»"}) {
        Text line;
        for (int32 i = 0; i < 1'000'000; ++i) line += one;
        const auto length = line.size();
        messages.ExpandSpecial(line += u"»");
        EXPECT_EQ(line.size(), one == u"«C»" ? length / 3 + 1 : length + 1);
    }
}

TEST_F(Messages, KeyNamesOfTheSystemAndWhereItHasNone) {
    ground.ui.keyNames = {{144, u"NUM-FESTSTELL"}, {27, u"esc"}, {0, u"falsch"}};
    Text names;
    for (const int32 key :
         {int32{kidPause}, int32{kidEsc}, int32{kidPage}, int32{kidAltGr}, int32{kidCaps}, 20, -1})
        names += messages.KeyNames(key) + u" ";
    EXPECT_EQ(toUtf8(names), "Num-feststell Esc Bild AltGr Umschalt ? ? ");
    ground.ui.keyNames[27] = u"anders";
    EXPECT_EQ(messages.KeyNames(kidEsc), u"Esc") << "kept for the life of the object";
}

TEST_F(Messages, CaptionsOfTheTable) {
    for (const auto& [langId, id, text] :
         {Numbered{1031, sidCancel, "A&bbrechen"}, Numbered{1049, sidYes, "&Yes"},  // no Russian column
          Numbered{1043, sidExtended, "&Geanvanceerd"}, Numbered{1031, 11, ""}, Numbered{1031, 134, ""},
          Numbered{1031, -1, ""}}) {
        state().langId = langId;
        EXPECT_TOLD(text, messages.StandardText(id)) << langId << " " << id;
    }
    EXPECT_TRUE(ground.settings.names(platform::HKeys::currentUser, u"Software\\Tessarol").empty())
        << "without captions of the system nothing is tried and written";
}

TEST_F(Messages, CaptionsOfTheSystemAreTriedOnce) {
    const auto option = [&] {
        return ground.settings.get(platform::HKeys::currentUser, u"Software\\Tessarol", u"NoMBString");
    };
    ground.ui.ownCaptions = true;
    ground.ui.captions = {{0, u"Oke"}, {1, u"Weg\0rest"}, {10, u"Voran"}};
    MessagesTopic fresh;
    // Caption 0 comes from the system only before version 6, the table serves where it has none.
    EXPECT_TOLD("Voran|&OK|Wieder&holen|0", fresh.StandardText(sidContinue), fresh.StandardText(sidOK),
                fresh.StandardText(sidRetry), option());
    ground.settings.user(u"NoMBString", u"-1");
    ground.ui.captionsAsked.clear();
    EXPECT_TOLD("&Weiter|yes", MessagesTopic().StandardText(sidContinue), ground.ui.captionsAsked.empty());
    ground.settings.user(u"NoMBString", u"");
    ground.ui.captions.clear();
    EXPECT_TOLD("&Weiter|-1", MessagesTopic().StandardText(sidContinue), option());
}

// A control of which some properties are there.
class Control final : public iStatusControl {
 public:
    explicit Control(tsRtm::Text type) : type_(std::move(type)) {}
    tsRtm::Text TypeName() const override { return type_; }
    bool IsLabel() const override { return label; }
    std::optional<int32> Style() const override { return style; }
    bool PanelText(TextView text) override { return take("panel", text); }
    bool SimpleText(TextView text) override { return take("simple", text); }
    bool Caption(TextView text) override { return take("caption", text); }
    bool Text(TextView text) override { return take("text", text); }
    bool DefaultProperty(TextView text) override { return take("default", text); }
    void Refresh() override {
        ++refreshed;
        raise(5, u"Control", u"Refresh");
    }

    bool label = false;
    std::optional<int32> style;
    std::string has, taken;  // names of the properties that are there, and what was written
    int32 refreshed = 0;

 private:
    bool take(std::string name, TextView text) {
        if (has.find(name) == std::string::npos) raise(445, u"Control", u"fehlt");
        taken = name + "=" + toUtf8(text);
        return true;
    }
    tsRtm::Text type_;
};

TEST_F(Messages, StatusTextGoesToThePropertyThatTheControlHas) {
    for (const auto& [type, label, style, has, taken] :
         {std::tuple{u"StatusBar", false, std::optional(0), "panel simple text", "panel=x"},
          {u"STATUSBAR", false, 1, "panel simple text", "simple=x"},
          {u"StatusBar", false, 0, "text caption", ""},
          {u"Label", true, std::nullopt, "text caption", "caption=x"},
          {u"TextBox", false, std::nullopt, "text caption", "text=x"},
          {u"Frame", false, std::nullopt, "caption default", "caption=x"},
          {u"Other", false, std::nullopt, "default", "default=x"},
          {u"Other", false, std::nullopt, "", ""}}) {
        const auto control = std::make_shared<Control>(type);
        control->label = label;
        control->style = style;
        control->has = has;
        EXPECT_EQ(messages.SetMessage(u"x", control), *taken != 0) << has;
        EXPECT_EQ(control->taken, taken);
        EXPECT_EQ(control->refreshed, 1) << "refreshed in any case, failures ignored";
    }
    EXPECT_FALSE(messages.SetMessage(u"x", nullptr));
    EXPECT_FALSE(messages.SetMessage(u"x", std::make_shared<Object>()));

    const auto line = std::make_shared<Control>(u"TextBox");
    line->has = "text";
    state().messageLine = line;
    messages.Nachricht(u"Größe");
    EXPECT_EQ(line->taken, "text=Größe");
    messages.ClearMsg();
    EXPECT_EQ(line->taken, "text=");
}

using Failures = Messages;

TEST_F(Failures, Descriptions) {
    const Failure failure(9, u"clsListe", u"Falscher Index"), foreign(-2147221504, u"x", u"y");
    EXPECT_TOLD("Fehler 53: Datei nicht gefunden||Fehler &h80040000", messages.ErrorMsg(53),
                messages.ErrorMsg(-1), messages.ErrorMsg(-2147221504).substr(0, 17));
    EXPECT_TOLD(
        "Fehler 9: Falscher Index|Fehler 9: Falscher Index in Zeile 12|Fehler 9: Falscher Index|Fehler "
        "&h80040000: y",
        messages.ErrorMessage(failure), messages.ErrorMessage(failure, 12),
        messages.ErrorMessage(failure, -1), messages.ErrorMessage(foreign));
    EXPECT_TOLD("Der Zugriff ist verweigert|Unbekannter Fehler: &hFACE|Unbekannter Fehler: &hFFFFFFFF",
                messages.SystemMsg(5), messages.SystemMsg(64206), messages.SystemMsg(-1));
}

TEST_F(Failures, HandlerAbsorbsRecordsShowsOrRaises) {
    struct Case {
        const char* what;
        int32 pending;
        TextView description;
        int32 param;
        int32 answer;   // of the user, 0: nothing is shown
        TextView says;  // the beginning of what is shown
        int32 raised;   // 0: nothing
        int32 FE_, F;   // afterwards; F was 7
    };
    for (const auto& c :
         {Case{"nothing pending", 0, u"", 0, 0, u"", 0, 0, 0},
          Case{"expected", 53, u"x", 53, 0, u"", 0, 0, 53},
          Case{"another than expected", 55, u"x", 53, 1, u"Fehler 55: x in Prozedur Quelle", 0, 55, 55},
          Case{"moved to F", 70, u"x", -1, 0, u"", 0, 0, 70},
          Case{"shown without description", 70, u"", 0, 1, u"Fehler 70:  in Prozedur", 0, 70, 70},
          Case{"negative, in decimal", -5, u"x", 0, 1, u"Fehler -5: x in", 0, -5, -5},
          Case{"negative and bare: raised", -5, u"", 0, 0, u"", -5, -5, -5},
          Case{"device, go on", 25, u"x", 0, 6, u"Fehler 25: x. Weiter", 0, 0, 7},
          Case{"device, stop", 27, u"x", -1, 7, u"Fehler 27: x. Weiter", 0, 27, 7},
          Case{"inner, described: shown", 6, u"x", -1, 1, u"Fehler 6: x in", 0, 6, 7},
          Case{"inner, above 19: shown", 28, u"", 28, 1, u"Fehler 28: ", 0, 28, 7},
          Case{"inner, bare: raised", 5, u"", 0, 0, u"", 5, 5, 7},
          Case{"inner and expected: raised all the same", 9, u"", 9, 0, u"", 9, 9, 7}}) {
        SCOPED_TRACE(c.what);
        state().FE_ = c.pending;
        state().pendingText = c.description;
        state().F = 7;
        ground.ui.boxes.clear();
        ground.ui.answers.clear();
        if (c.answer) ground.ui.answers = {c.answer};
        int32 raised = 0;
        try {
            messages.ErrorHandler(c.param, u"Quelle");
        } catch (const Failure& failure) {
            raised = failure.Number();
            EXPECT_EQ(failure.Source(), u"Quelle");
        }
        EXPECT_EQ(raised, c.raised);
        EXPECT_EQ(ground.ui.boxes.size(), c.answer ? 1u : 0u);
        if (!ground.ui.boxes.empty()) {
            const Text& said = ground.ui.boxes[0].headline;
            EXPECT_TRUE(said.starts_with(c.says)) << toUtf8(said);
            EXPECT_EQ(said.ends_with(u" in Programm Anwendung.exe"), c.answer == 1);
            EXPECT_EQ(ground.ui.boxes[0].title, c.answer == 1 ? u"Hinweis" : u"Frage");
        }
        EXPECT_EQ(std::pair(state().FE_, state().F), std::pair(c.FE_, c.F));
    }
}

TEST_F(Failures, CurrentFailureIsTakenOnce) {
    const auto handled = [&](int32 param) {
        messages.ErrorHandler(param);
        return std::pair(state().FE_, state().F);
    };
    setCurrentFailure(53);
    EXPECT_EQ(handled(-2), std::pair(53, 0));
    EXPECT_EQ(handled(-1), std::pair(0, 53));
    EXPECT_EQ(state().pendingText, u"Datei nicht gefunden") << "the description outlives the number";
    EXPECT_EQ(handled(-2).first, 0) << "a failure is not taken twice";
    setCurrentFailure(25, u"Gerät aus");
    ground.ui.answers = {7};
    EXPECT_EQ(handled(-2).first, 25);
    EXPECT_EQ(ground.ui.boxes.size(), 1u) << "asked at once";
}

}  // namespace
}  // namespace tsRtm::test
