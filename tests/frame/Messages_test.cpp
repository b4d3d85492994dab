// Texts by number: messages, key names, captions, places in texts, status text.
#include <gtest/gtest.h>

#include "tests/support/TestGround.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/TextTables.hpp"

namespace tsRtm::test {
namespace {

using rtmMain::state;

class Messages : public ::testing::Test {
 protected:
    StartedLibrary library;
    TestGround& ground = library.ground;
    MessagesTopic messages;
};

TEST_F(Messages, ByNumberFlagsAndLanguage) {
    struct Case {
        int32 langId, number;
        TextView text;
    };
    for (const auto& [langId, number, text] : {
             Case{1031, 1, u"Fehler"},
             Case{1031, 2049, u"Fehler "},
             Case{1031, 3079, u" in Programm "},
             Case{1031, 1056, u" nicht bereit"},
             Case{1031, 207 + 4096, u"Ich hole Daten..."},
             Case{1031, 207 + 1024 + 2048 + 4096, u" Ich hole Daten ..."},
             Case{1031, 513, u"Fehler"},
             Case{1031, 25, u"Vorgang unterbrechen mit Esc"},
             Case{1031, 25 + 8192, u"Vorgang unterbrechen mit #00"},
             Case{1031, 220, u"Strg/- Bild-"},
             Case{1031, 15, u"Bitte benutzen Sie das Straßenverzeichnis der Pos"},
             Case{1031, 251, u"Bitte \"%1\" einlegen"},
             Case{1031, 113, u"März"},
             Case{1031, 436, u"Tabelle|&Abbruch|&Ende|&Finden ...  Strg+F|&Gehe zu ...  Strg+G"},
             Case{1031, 71 + 3072, u""},
             Case{1031, 511, u""},
             Case{1031, 0, u""},
             Case{3079, 1, u"Fehler"},  // Austria
             Case{1033, 1, u""},
             Case{1033, 101, u"Monday"},
             Case{1033, 122 + 2048, u"December "},
             Case{1036, 1, u""},
         }) {
        state().langId = langId;
        EXPECT_EQ(toUtf8(messages.RtmMsg(number)), toUtf8(text)) << langId << " " << number;
    }
    state().langId = 1036;
    EXPECT_EQ(messages.LangNr(1), 30001);
}

TEST_F(Messages, InsertReplacesTwoCharactersAtEachPlace) {
    struct Case {
        TextView message;
        int32 position;
        TextView insert, result;
    };
    for (const auto& [message, position, insert, result] : {
             Case{u"Seite %1/%2", 2, u"9", u"Seite %1/9"},
             Case{u"%1 und %1", 1, u"x", u"x und x"},
             Case{u"%2 und %2", 2, u"%2", u"%2 und %2"},
             Case{u"%2 und %2", 2, u"<%2>", u"<%2> und %2"},
             Case{u"%10.", 10, u"x", u"x0."},
             Case{u"ohne", 1, u"x", u"ohne"},
             Case{u"a%1", 1, u"", u"a"},
         }) {
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
    struct Case {
        TextView text, expanded;
    };
    for (const auto& [text, expanded] : {
             Case{u"#00=Abbruch", u"Esc=Abbruch"},
             Case{u"Preis #", u"Preis #"},
             Case{u"#x1", u"#x1"},
             Case{u"Taste #1", u"Taste Enter Taste"},
             Case{u"#1x#17", u"Enter TasteRück"},  // "x" goes with the key
             Case{u"#99#20", u"??"},
             Case{u"«c»«C»", u"€€"},
             Case{u"am «d».", u"am 31.12.2024."},
             Case{u"«CC» «ABCD» «» « C»", u"«CC» «ABCD» «» « C»"},
             Case{u"«C", u"«C"},
         }) {
        Text line(text);
        messages.ExpandSpecial(line);
        EXPECT_EQ(toUtf8(line), toUtf8(expanded)) << toUtf8(text);
    }
}

TEST_F(Messages, KeyNamesOfTheSystemAndWhereItHasNone) {
    ground.ui.keyNames = {{144, u"NUM-FESTSTELL"}, {27, u"esc"}, {0, u"falsch"}};
    MessagesTopic fresh;
    EXPECT_EQ(fresh.KeyNames(kidPause), u"Num-feststell");
    EXPECT_EQ(fresh.KeyNames(kidEsc), u"Esc");
    EXPECT_EQ(fresh.KeyNames(kidPage), u"Bild");
    EXPECT_EQ(fresh.KeyNames(kidAltGr), u"AltGr");
    EXPECT_EQ(fresh.KeyNames(kidCaps), u"Umschalt");
    EXPECT_EQ(fresh.KeyNames(20), u"?");
    EXPECT_EQ(fresh.KeyNames(-1), u"?");
    ground.ui.keyNames[27] = u"anders";
    EXPECT_EQ(fresh.KeyNames(kidEsc), u"Esc") << "kept for the life of the object";
}

TEST_F(Messages, CaptionsOfTheTable) {
    struct Case {
        int32 langId, id;
        TextView text;
    };
    for (const auto& [langId, id, text] : {
             Case{1031, sidCancel, u"A&bbrechen"},
             Case{1033, sidPreview, u"Pre&view"},
             Case{1049, sidYes, u"&Yes"},  // no Russian column
             Case{3082, sidBack, u"< &Espalda"},
             Case{1036, sidAbort, u"A&vorter"},
             Case{1040, sidSearch, u"&Ricerda"},
             Case{1043, sidExtended, u"&Geanvanceerd"},
             Case{1031, sidRename, u"&Umbenennen"},
             Case{1031, 11, u""},
             Case{1031, 99, u""},
             Case{1031, 134, u""},
             Case{1031, -1, u""},
         }) {
        state().langId = langId;
        EXPECT_EQ(toUtf8(messages.StandardText(id)), toUtf8(text)) << langId << " " << id;
    }
    EXPECT_TRUE(ground.settings.names(platform::HKeys::currentUser, u"Software\\Tessarol").empty())
        << "without captions of the system nothing is tried and written";
}

TEST_F(Messages, CaptionsOfTheSystemAreTriedOnce) {
    ground.ui.ownCaptions = true;
    ground.ui.captions = {{0, u"Oke"}, {1, u"Weg\0rest"}, {10, u"Voran"}};
    MessagesTopic fresh;
    EXPECT_EQ(fresh.StandardText(sidContinue), u"Voran");
    EXPECT_EQ(fresh.StandardText(sidOK), u"&OK") << "caption 0 comes from the system only before version 6";
    EXPECT_EQ(fresh.StandardText(sidRetry), u"Wieder&holen") << "the table where the system has none";
    const auto option =
        ground.settings.get(platform::HKeys::currentUser, u"Software\\Tessarol", u"NoMBString");
    EXPECT_EQ(option, Text(u"0"));

    ground.settings.user(u"NoMBString", u"-1");
    ground.ui.captionsAsked.clear();
    MessagesTopic banned;
    EXPECT_EQ(banned.StandardText(sidContinue), u"&Weiter");
    EXPECT_TRUE(ground.ui.captionsAsked.empty());

    ground.settings.user(u"NoMBString", u"");
    ground.ui.captions.clear();
    MessagesTopic silent;
    EXPECT_EQ(silent.StandardText(sidContinue), u"&Weiter");
    EXPECT_EQ(ground.settings.get(platform::HKeys::currentUser, u"Software\\Tessarol", u"NoMBString"),
              Text(u"-1"));
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
    std::string has;  // names of the properties that are there
    std::string taken;
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
    struct Case {
        TextView type;
        bool label;
        std::optional<int32> style;
        const char* has;
        const char* taken;
    };
    for (const auto& c : {
             Case{u"StatusBar", false, 0, "panel simple text", "panel=x"},
             Case{u"STATUSBAR", false, 1, "panel simple text", "simple=x"},
             Case{u"StatusBar", false, 0, "text caption", ""},
             Case{u"Label", true, {}, "text caption", "caption=x"},
             Case{u"TextBox", false, {}, "text caption", "text=x"},
             Case{u"Frame", false, {}, "caption default", "caption=x"},
             Case{u"Other", false, {}, "default", "default=x"},
             Case{u"Other", false, {}, "", ""},
         }) {
        const auto control = std::make_shared<Control>(Text(c.type));
        control->label = c.label;
        control->style = c.style;
        control->has = c.has;
        EXPECT_EQ(messages.SetMessage(u"x", control), *c.taken != 0) << c.has;
        EXPECT_EQ(control->taken, c.taken);
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

}  // namespace
}  // namespace tsRtm::test
