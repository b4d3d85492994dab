#include "tsRtm/frame/messages/DialogTexts.hpp"

#include <algorithm>

#include "tsRtm/frame/messages/Dialogs.hpp"

namespace tsRtm {

namespace {

PromptParts splitAtLine(const Text& prompt) {
    const auto end = prompt.find(u'\r');
    if (end == Text::npos) return {prompt, {}};
    const bool lineFeed = end + 1 < prompt.size() && prompt[end + 1] == u'\n';
    return {prompt.substr(0, end), prompt.substr(end + (lineFeed ? 2 : 1))};
}

// Where the next address begins; npos for none.
std::size_t addressIn(TextView body) noexcept { return std::min(body.find(u"http:"), body.find(u"https:")); }

}  // namespace

PromptParts splitPrompt(TextView prompt) {
    Text text;
    auto end = Text::npos;
    for (const char16_t c : prompt) {
        if (c == u'@' && !text.empty() && text.back() == u'\\')
            text.pop_back();
        else if (c == u'@' && !text.empty() && end == Text::npos)
            end = text.size();
        text += c;
    }
    return end == Text::npos ? splitAtLine(text) : PromptParts{text.substr(0, end), text.substr(end + 1)};
}

Text withLinks(TextView body) {
    if (upper(body).find(u"<A HREF") != Text::npos) return Text(body);
    Text linked;
    for (auto at = addressIn(body); at != TextView::npos; at = addressIn(body)) {
        linked += body.substr(0, at);
        body.remove_prefix(at);
        // To the next blank or line end: an address within it is part of it.
        const TextView address = body.substr(0, body.find_first_of(u" \t\r\n\u00A0"));
        linked.append(u"<A HREF=\"").append(address).append(u"\">").append(address).append(u"</A>");
        body.remove_prefix(address.size());
    }
    return linked.append(body);
}

TextView dontShowAgainText(int32 buttonSet) noexcept {
    switch (buttonSet) {
        case dlgOKOnly:
            return u"Diese Meldung nicht wieder anzeigen";
        case dlgYesNoCancel:
        case dlgYesNo:
            return u"Diese Frage nicht wieder stellen";
        default:
            return u"Diesen Dialog nicht wieder anzeigen";
    }
}

BytesView RtmIcon() noexcept {
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 32 32\">"
           "<circle cx=\"16\" cy=\"16\" r=\"15\" fill=\"#2a6db5\"/>"
           "<path d=\"M11 12a5 5 0 1 1 7 4.6c-1.4.7-2 1.6-2 3.4\" fill=\"none\" stroke=\"#fff\" "
           "stroke-width=\"3\" "
           "stroke-linecap=\"round\"/><circle cx=\"16\" cy=\"25\" r=\"2\" fill=\"#fff\"/></svg>";
}

}  // namespace tsRtm
