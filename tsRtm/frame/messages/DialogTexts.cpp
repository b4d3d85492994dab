#include "tsRtm/frame/messages/DialogTexts.hpp"

#include "tsRtm/frame/messages/Dialogs.hpp"

namespace tsRtm {

namespace {

PromptParts splitAtLine(const Text& prompt) {
    const auto end = prompt.find(u'\r');
    if (end == Text::npos) return {prompt, {}};
    const bool lineFeed = end + 1 < prompt.size() && prompt[end + 1] == u'\n';
    return {prompt.substr(0, end), prompt.substr(end + (lineFeed ? 2 : 1))};
}

Text wrapAddresses(TextView body, TextView scheme) {
    Text linked;
    for (auto at = body.find(scheme); at != TextView::npos; at = body.find(scheme)) {
        linked += body.substr(0, at);
        body.remove_prefix(at);
        const TextView address = body.substr(0, body.find(u' '));
        linked.append(u"<A HREF=\"").append(address).append(u"\">").append(address).append(u"</A>");
        body.remove_prefix(address.size());
    }
    return linked.append(body);
}

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
    if (body.find(u"<A HREF") != TextView::npos) return Text(body);
    return wrapAddresses(wrapAddresses(body, u"http:"), u"https:");
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
