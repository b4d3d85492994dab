// The library's texts in the language of the machine, and a failure on its four ways: absorbed, recorded,
// shown, raised.
//
//     messages_show
#include <iostream>

#include "tsRtm/tsRtm.hpp"

using namespace tsRtm;

namespace {

void show(const char* what, TextView text) { std::cout << what << toUtf8(text) << '\n'; }

}  // namespace

int main() {
    clsRtm rtm;

    Text text = rtm.RtmMsg(76);  // "Seite %1/%2"
    rtm.InsertMsgNr(text, 1, 3);
    rtm.InsertMsgNr(text, 2, 9);
    show("a message with places   ", text);
    show("with a blank behind     ", u"\"" + rtm.RtmMsg(1 + 2048) + u"\"");
    show("with the names of keys  ", rtm.RtmMsg(24));
    show("the caption of a button ", rtm.StandardText(sidSaveAs));
    show("of a run-time error     ", rtm.ErrorMsg(53));
    show("of the system           ", rtm.SystemMsg(5));

    auto& common = rtm.Common();
    setCurrentFailure(53);  // whoever catches a failure leaves it here ...
    rtm.ErrorHandler(-2);   // ... and it becomes the pending one
    rtm.ErrorHandler(53);   // expected: absorbed, and told in F
    std::cout << "absorbed: F " << common.F() << ", pending " << common.FE_() << '\n';

    setCurrentFailure(70);
    rtm.ErrorHandler(-2);
    rtm.ErrorHandler(0);  // none was expected: a box tells the person at the desk
    rtm.ErrorHandler(-1);
    std::cout << "shown, then recorded: F " << common.F() << ", pending " << common.FE_() << '\n';

    clsTaskDialog dialog(rtm);
    dialog.Prompt(u"Speichern?@Die Datei wurde geändert.", dlgYesNoCancel | dlgQuestion, u"Brief");
    const auto listening =
        dialog.ButtonClick.connect([](int32 button) { std::cout << "button " << button << '\n'; });
    const int32 answer = dialog.Show();  // with nobody there: the one that loses nothing
    std::cout << "the dialog gave " << answer << '\n';

    try {
        raise(5, u"messages_show", u"So geht es nicht");
    } catch (const Failure& failure) {
        show("raised: ", rtm.ErrorMessage(failure, 12));
    }
}
