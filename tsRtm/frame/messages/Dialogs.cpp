#include "tsRtm/frame/messages/Dialogs.hpp"

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"

namespace tsRtm {

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

int32 defaultButton(const std::vector<int32>& offered, int32 buttons) {
    const auto place = static_cast<std::size_t>((buttons & dlgDefault4) / dlgDefault2);
    return place < offered.size() ? offered[place] : offered.front();
}

void logUnattended(TextView text, int32 answer) {
    if (rtmMain::system().dialogs.attended()) return;
    Text line(text);
    for (char16_t& c : line)
        if (c == u'\r' || c == u'\n') c = u' ';
    rtmMain::DebugLog(u"TSMsgBox: " + line + u" = " + toText(answer));
}

platform::MessageBox plainBox(TextView prompt, int32 buttons) {
    platform::MessageBox box;
    box.body = prompt;
    // Any first "@", also one behind "\": only a task dialog knows that sign.
    if (const auto at = box.body.find(u'@'); at != Text::npos) box.body.replace(at, 1, u"\r\r");
    box.buttons = buttons & ~dlgDontShowAgain;
    box.answers = plainButtons(buttons & dlgButtonSet);
    box.defaultAnswer = defaultButton(box.answers, buttons);
    return box;
}

}  // namespace tsRtm
