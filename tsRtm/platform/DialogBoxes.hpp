#pragma once
// What is put before the person at the desk: plain boxes, and task dialogs, which tell what happens in them.
#include <functional>
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::platform {

// One question or notice. Answers by number: 1 OK, 2 Cancel, 3 Abort, 4 Retry, 5 Ignore, 6 Yes, 7 No, 10 Try
// again, 11 Continue; others are the application's.
struct MessageBox {
    Text title;         // empty: the ground's choice
    Text body;          // lines end in CR or CR LF
    int32 buttons = 0;  // low three bits: the button set; 16..80: the icon; 256..768: the default button
    std::vector<int32> answers;  // the button numbers offered, in order
    int32 defaultAnswer = 1;
    Text helpFile;
    int32 helpContext = 0;
    int32 parent = 0;  // the application's window, 0 none
};

// The answer that loses nothing: No, Cancel, OK, Abort in this order, else the default answer.
inline int32 safeAnswer(const MessageBox& box) noexcept {
    for (const int32 answer : {7, 2, 1, 3})
        for (const int32 offered : box.answers)
            if (offered == answer) return answer;
    return box.defaultAnswer;
}

// What stands on the button of an answer.
inline TextView usualCaption(int32 answer) noexcept {
    switch (answer) {
        case 1:
            return u"OK";
        case 2:
            return u"Abbrechen";
        case 3:
            return u"Beenden";
        case 4:
            return u"Wiederholen";
        case 5:
            return u"Ignorieren";
        case 6:
            return u"Ja";
        case 7:
            return u"Nein";
        case 10:
            return u"Wiederholen";
        case 11:
            return u"Weiter";
        default:
            return u"Antwort";
    }
}

// By the system's numbers; `picture` is one that the dialog brings itself.
enum class DialogIcon : int32 {
    none = 0,
    picture = 1,
    information = -3,
    shield = -4,
    warning = -6,
    stop = -7
};

struct DialogButton {
    int32 number = 0;
    Text caption;  // "&" marks the access key
};

// A box with more to it. In all its texts but the title links stand as <A HREF="address">text</A>.
struct TaskDialog : MessageBox {
    Text headline;  // empty: the body alone
    Text expanded;  // shown on demand
    Text footer;
    Text checkBox;  // empty: none
    bool checked = false;
    DialogIcon icon = DialogIcon::none;
    BytesView picture;                     // SVG
    std::vector<DialogButton> ownButtons;  // those of `answers` that have a caption of their own
    std::vector<DialogButton> options;     // one of them is chosen
    int32 defaultOption = 0;
    bool commandLinks = false;  // own buttons are shown as a list of links
    bool rightToLeft = false;
    bool timer = false;  // tells of the time about five times a second
};

// What happens in a task dialog, by the system's numbers, and the value told with it.
enum class DialogNotice : int32 {
    created = 0,
    navigated = 1,    // shows new content
    buttonClick = 2,  // number of the button
    hyperlink = 3,    // the link's address
    timer = 4,        // milliseconds since the dialog was created
    destroyed = 5,
    optionClick = 6,  // number of the option
    constructed = 7,  // the dialog's window
    verify = 8,       // whether the check box is ticked
    help = 9,
    expand = 10,  // whether the expanded text shows
};

// Answers 0 to go on, or the number of the button that closes the dialog as if it had been clicked.
using DialogListener = std::function<int32(DialogNotice notice, int32 value, TextView link)>;

struct DialogAnswer {
    int32 button = 0;
    int32 option = 0;
    bool checked = false;
};

}  // namespace tsRtm::platform
