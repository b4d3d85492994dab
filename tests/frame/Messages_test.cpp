// Texts by number: messages, key names, captions, places in texts, status text.
#include <gtest/gtest.h>

#include "tests/support/TestGround.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/iStatusControl.hpp"
#include "tsRtm/frame/messages/TextTables.hpp"

namespace tsRtm::test {
namespace {

using rtmMain::state;

struct Numbered {
    int32 langId, number;
    TextView text;
};

class Messages : public ::testing::Test {
 protected:
    StartedLibrary library;
    TestGround& ground = library.ground;
    MessagesTopic messages;
};

TEST_F(Messages, ByNumberFlagsAndLanguage) {
    for (const auto& [langId, number, text] : std::initializer_list<Numbered>{
             {1031, 1, u"Fehler"},
             {1031, 2049, u"Fehler "},
             {1031, 1056, u" nicht bereit"},
             {1031, 207 + 1024 + 2048 + 4096, u" Ich hole Daten ..."},
             {1031, 25, u"Vorgang unterbrechen mit Esc"},
             {1031, 25 + 8192, u"Vorgang unterbrechen mit #00"},
             {1031, 71 + 3072, u""},
             {3079, 1, u"Fehler"},  // Austria
             {1033, 1, u""},
             {1033, 122 + 2048, u"December "},
         }) {
        state().langId = langId;
        EXPECT_EQ(toUtf8(messages.RtmMsg(number)), toUtf8(text)) << langId << " " << number;
    }
    state().langId = 1036;
    EXPECT_EQ(messages.LangNr(1), 30001);
    EXPECT_EQ(messages.LangNr(2147453647), 2147483647);
    EXPECT_THROW(messages.LangNr(2147453648), Failure);
}

TEST_F(Messages, InsertReplacesTwoCharactersAtEachPlace) {
    for (const auto& [message, position, insert, result] :
         {std::tuple{u"Seite %1/%2", 2, u"9", u"Seite %1/9"},
          {u"%1 und %1", 1, u"x", u"x und x"},
          {u"%2 und %2", 2, u"<%2>", u"<%2> und %2"},
          {u"%10.", 10, u"x", u"x0."},
          {u"ohne", 1, u"x", u"ohne"},
          {u"a%1", 1, u"", u"a"}}) {
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
    using Row = std::pair<TextView, TextView>;
    for (const auto& [text, expanded] :
         {Row{u"#00=Abbruch", u"Esc=Abbruch"}, Row{u"Preis #", u"Preis #"}, Row{u"#x1", u"#x1"},
          Row{u"Taste #1", u"Taste Enter Taste"},
          Row{u"#1x#17", u"Enter TasteRück"},  // "x" goes with the key
          Row{u"#99#20", u"??"}, Row{u"«c»«C»", u"€€"}, Row{u"am «d».", u"am 31.12.2024."},
          Row{u"«CC» «ABCD» «» « C»", u"«CC» «ABCD» «» « C»"}, Row{u"«C", u"«C"}}) {
        Text line(text);
        messages.ExpandSpecial(line);
        EXPECT_EQ(toUtf8(line), toUtf8(expanded)) << toUtf8(text);
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
    using Row = std::pair<int32, TextView>;
    for (const auto& [key, name] :
         {Row{kidPause, u"Num-feststell"}, Row{kidEsc, u"Esc"}, Row{kidPage, u"Bild"},
          Row{kidAltGr, u"AltGr"}, Row{kidCaps, u"Umschalt"}, Row{20, u"?"}, Row{-1, u"?"}})
        EXPECT_EQ(messages.KeyNames(key), name) << key;
    ground.ui.keyNames[27] = u"anders";
    EXPECT_EQ(messages.KeyNames(kidEsc), u"Esc") << "kept for the life of the object";
}

TEST_F(Messages, CaptionsOfTheTable) {
    for (const auto& [langId, id, text] :
         {Numbered{1031, sidCancel, u"A&bbrechen"}, Numbered{1049, sidYes, u"&Yes"},  // no Russian column
          Numbered{1043, sidExtended, u"&Geanvanceerd"}, Numbered{1031, 11, u""}, Numbered{1031, 134, u""},
          Numbered{1031, -1, u""}}) {
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
