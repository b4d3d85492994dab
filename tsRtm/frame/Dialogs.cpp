#include "tsRtm/frame/Dialogs.hpp"

#include <utility>

namespace tsRtm {

namespace {

constexpr int32 buttonSet = 7;
constexpr int32 defaultMask = dlgDefault4;

// The buttons of a set, in order, as a plain box has them.
std::vector<int32> plainButtons(int32 set) {
    switch (set) {
        case dlgOKCancel:
            return {1, 2};
        case dlgAbortRetryIgnore:
            return {3, 4, 5};
        case dlgYesNoCancel:
            return {6, 7, 2};
        case dlgYesNo:
            return {6, 7};
        case dlgRetryCancel:
            return {4, 2};
        case dlgCancelTryContinue:
            return {2, 10, 11};
        default:
            return {1};
    }
}

// A task dialog has no Abort of its own: Cancel takes its place.
std::vector<int32> richButtons(int32 set) {
    return set == dlgAbortRetryIgnore ? std::vector<int32>{4, 2, 5} : plainButtons(set);
}

int32 defaultButton(const std::vector<int32>& offered, int32 buttons) {
    const auto place = static_cast<std::size_t>((buttons & defaultMask) / dlgDefault2);
    return place < offered.size() ? offered[place] : offered.front();
}

Text checkBoxText(int32 set) {
    switch (set) {
        case dlgOKOnly:
            return u"Diese Meldung nicht wieder anzeigen";
        case dlgYesNoCancel:
        case dlgYesNo:
            return u"Diese Frage nicht wieder stellen";
        default:
            return u"Diesen Dialog nicht wieder anzeigen";
    }
}

struct Parts {
    Text headline, body;
};

Parts splitAtLine(const Text& prompt) {
    const auto end = prompt.find(u'\r');
    if (end == Text::npos) return {prompt, {}};
    const bool lineFeed = end + 1 < prompt.size() && prompt[end + 1] == u'\n';
    return {prompt.substr(0, end), prompt.substr(end + (lineFeed ? 2 : 1))};
}

// "\@" is a sign of the text; the first other "@" ends the headline, but for one at the very beginning.
Parts split(TextView prompt) {
    Text text;
    auto end = Text::npos;
    for (const char16_t c : prompt) {
        if (c == u'@' && !text.empty() && text.back() == u'\\')
            text.pop_back();
        else if (c == u'@' && !text.empty() && end == Text::npos)
            end = text.size();
        text += c;
    }
    return end == Text::npos ? splitAtLine(text) : Parts{text.substr(0, end), text.substr(end + 1)};
}

void wrapAddresses(Text& body, TextView scheme) {
    for (auto at = body.find(scheme); at != Text::npos;) {
        const auto blank = body.find(u' ', at);
        const auto length = (blank == Text::npos ? body.size() : blank) - at;
        const Text address = body.substr(at, length);
        Text link = u"<A HREF=\"";
        link.append(address).append(u"\">").append(address).append(u"</A>");
        body.replace(at, length, link);
        at = body.find(scheme, at + link.size());
    }
}

}  // namespace

Text withLinks(TextView body) {
    Text linked(body);
    if (linked.find(u"<A HREF") != Text::npos) return linked;
    wrapAddresses(linked, u"http:");
    wrapAddresses(linked, u"https:");
    return linked;
}

platform::MessageBox richBox(TextView prompt, int32 buttons) {
    auto [headline, body] = split(prompt);
    platform::MessageBox box;
    box.headline = std::move(headline);
    box.body = withLinks(body);
    box.buttons = buttons;
    box.answers = richButtons(buttons & buttonSet);
    box.defaultAnswer =
        defaultButton(box.answers, (buttons & buttonSet) == dlgCancelTryContinue ? 0 : buttons);
    if (buttons & dlgDontShowAgain) box.checkBox = checkBoxText(buttons & buttonSet);
    return box;
}

platform::MessageBox plainBox(TextView prompt, int32 buttons) {
    platform::MessageBox box;
    box.body = prompt;
    // Any first "@", also one behind "\": only a task dialog knows that sign.
    if (const auto at = box.body.find(u'@'); at != Text::npos) box.body.replace(at, 1, u"\r\r");
    box.buttons = buttons & ~dlgDontShowAgain;
    box.answers = plainButtons(buttons & buttonSet);
    box.defaultAnswer = defaultButton(box.answers, buttons);
    return box;
}

}  // namespace tsRtm
