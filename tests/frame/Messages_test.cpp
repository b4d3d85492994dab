// Texts by number: messages, key names, captions, places in texts, status text.
#include <gtest/gtest.h>

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
    EXPECT_EQ(MessagesTopic().StandardText(sidContinue), u"&Weiter");
    EXPECT_TRUE(ground.ui.captionsAsked.empty());
    ground.settings.user(u"NoMBString", u"");
    ground.ui.captions.clear();
    EXPECT_EQ(MessagesTopic().StandardText(sidContinue), u"&Weiter");
    EXPECT_EQ(option(), u"-1");
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

}  // namespace
}  // namespace tsRtm::test
