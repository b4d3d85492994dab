// Numbered messages, places in texts, key names and captions.
#include "tsRtm/frame/messages/Messages.hpp"

#include <algorithm>
#include <limits>
#include <optional>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/messages/TextTables.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/runtime/LocaleForms.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/state/SystemKinds.hpp"
#include "tsRtm/types/Digits.hpp"

namespace tsRtm {

namespace {

constexpr int32 numberMask = 511;  // bit 9 is no flag, and dropped
constexpr int32 blankInFront = 1024;
constexpr int32 blankBehind = 2048;
constexpr int32 dotsBehind = 4096;
constexpr int32 asItStands = 8192;

constexpr int32 german = 7;
constexpr int32 english = 9;

constexpr int32 vista = 600;
constexpr int32 systemCaptions = 11;  // 0 .. 10
constexpr int32 lastCaption = 133;

constexpr TextView rootKey = u"Software\\Tessarol";
constexpr TextView captionOption = u"NoMBString";

int32 language() noexcept { return rtmMain::state().langId & 0xFF; }

int32 osVersion() noexcept { return rtmMain::state().os.major * 100 + rtmMain::state().os.minor; }

// First letter of each word in upper case, the others in lower case.
Text properCase(TextView name) {
    Text proper;
    for (const char16_t c : name) proper += proper.empty() || proper.back() == u' ' ? upper(c) : lower(c);
    return proper;
}

Text systemCaption(int32 number) noexcept {
    try {
        return rtmMain::CutAtNul(rtmMain::system().texts.systemCaption(number));
    } catch (...) {
        return {};
    }
}

void writeCaptionOption(bool banned) {
    // A store that refuses it leaves the captions as they were found.
    static_cast<void>(rtmMain::system().settings.set(platform::HKeys::currentUser, rootKey, captionOption,
                                                     banned ? u"-1" : u"0"));
}

// What stands for "«C»" and "«D»", in either case; nothing for any other text between the marks.
std::optional<Text> markText(TextView text) {
    if (text.size() < 3 || text[2] != u'»') return std::nullopt;
    const char16_t name = upper(text[1]);
    return name == u'C'   ? std::optional(rtmMain::CurrName())
           : name == u'D' ? std::optional(rtmMain::DA8())
                          : std::nullopt;
}

// Puts in place of a sign and the two characters behind it what `textOf` gives for the text from the sign on;
// where that is nothing, the sign stays.
template <class TextOf>
void expand(Text& line, char16_t sign, TextOf textOf) {
    constexpr std::size_t length = 3;
    Text expanded;
    TextView rest = line;
    for (auto at = rest.find(sign); at != TextView::npos; at = rest.find(sign)) {
        expanded += rest.substr(0, at);
        rest.remove_prefix(at);
        if (const auto text = textOf(rest)) {
            expanded += *text;
            rest.remove_prefix(std::min(length, rest.size()));
        } else {
            expanded += sign;
            rest.remove_prefix(1);
        }
    }
    line = expanded += rest;
}

}  // namespace

int32 Messages::LangNr(int32 Nr) {
    const int32 range = language() == german ? 1000 : language() == english ? 2000 : 30000;
    if (Nr > std::numeric_limits<int32>::max() - range) raise(6, u"clsRtm:LangNr", u"Überlauf");
    return Nr + range;
}

Text Messages::RtmMsg(int32 MsgNumber) {
    Text text(messageText(LangNr(MsgNumber & numberMask)));
    if (text.empty()) return text;
    if (!(MsgNumber & asItStands)) ExpandSpecial(text);
    if (MsgNumber & blankInFront) text.insert(0, 1, u' ');
    if (MsgNumber & blankBehind) text += u' ';
    if (MsgNumber & dotsBehind) text += u"...";
    return text;
}

// Replaces exactly two characters at each place, so that a position from 10 on leaves its second digit
// standing, and stops after the first where the insert holds the place itself.
void Messages::InsertMsg(Text& Message, int32 Position, TextView Insert) {
    const Text token = u"%" + toText(Position);
    const Text insert(Insert);
    const bool once = insert.find(token) != Text::npos;
    // An insert may form new places with what stands beside it; no message has more of its own than
    // characters.
    for (auto rounds = Message.size(); rounds > 0; --rounds) {
        const auto at = Message.find(token);
        if (at == Text::npos) return;
        Message.replace(at, 2, insert);
        if (once) return;
    }
}

// A key takes "#" and two characters, whatever the second one is: "#1x" loses its "x".
void Messages::ExpandSpecial(Text& Line) {
    if (Line.find(u'#') != Text::npos)
        expand(Line, u'#', [this](TextView text) -> std::optional<Text> {
            if (text.size() < 2 || !isDigit(text[1])) return std::nullopt;
            const bool twoDigits = text.size() > 2 && isDigit(text[2]);
            return KeyNames(twoDigits ? (text[1] - u'0') * 10 + (text[2] - u'0') : text[1] - u'0');
        });
    if (Line.find(u'«') != Text::npos) expand(Line, u'«', markText);
}

void Messages::fillKeyNames() {
    auto& names = keyNames_.emplace();
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto& row = keyTable()[i];
        if (row.virtualKey != noVirtualKey)
            names[i] = properCase(rtmMain::system().texts.keyName(row.virtualKey));
        if (names[i].empty()) names[i] = row.name;
    }
}

Text Messages::KeyNames(int32 KeyNumber) {
    if (KeyNumber < 0 || KeyNumber >= static_cast<int32>(keyTable().size())) return u"?";
    if (!keyNames_) fillKeyNames();
    return (*keyNames_)[static_cast<std::size_t>(KeyNumber)];
}

// Tries the system's captions once per user: a crash inside leaves the option set, so that the next start
// keeps away.
bool Messages::systemCaptionsAllowed() {
    if (systemCaptions_) return *systemCaptions_;
    auto& allowed = systemCaptions_.emplace(false);
    if (!rtmMain::system().texts.hasSystemCaptions()) return allowed;
    const Text option = rtmMain::RegRaw(platform::HKeys::currentUser, rootKey, captionOption);
    allowed = rtmMain::SwitchValue(option) == 0;
    if (allowed && option.empty() && rtmMain::state().os.platformId == systemKind::ntFamily &&
        osVersion() >= vista) {
        writeCaptionOption(true);
        if (!systemCaption(sidCancel).empty()) writeCaptionOption(false);
    }
    return allowed;
}

Text Messages::StandardText(int32 Nr) {
    const bool allowed = systemCaptionsAllowed();
    if (Nr < 0 || Nr > lastCaption) return {};
    // Caption 0 of the system is right only on its older versions.
    const bool fromSystem = allowed && Nr < systemCaptions &&
                            rtmMain::state().os.platformId == systemKind::ntFamily &&
                            (osVersion() < vista || Nr >= 1);
    if (fromSystem)
        if (Text caption = systemCaption(Nr); !caption.empty()) return caption;
    return Text(captionText(Nr, language()));
}

}  // namespace tsRtm
