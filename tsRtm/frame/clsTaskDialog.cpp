#include "tsRtm/frame/clsTaskDialog.hpp"

#include <utility>

#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/messages/Messages.hpp"

namespace tsRtm {

namespace {

using platform::DialogNotice;

// Forgets the window when the dialog ends, also by a listener that throws.
struct WindowGone {
    int32& window;
    ~WindowGone() { window = 0; }
};

}  // namespace

clsTaskDialog::clsTaskDialog(MessagesTopic& messages) : messages_(*messages.messages_) {}

void clsTaskDialog::Prompt(TextView Prompt, int32 Buttons, const Variant& Titel) {
    messages_.setPrompt(dialog_, Prompt, Buttons, Titel);
}

int32 clsTaskDialog::Show() {
    clicked_ = 0;
    const WindowGone gone{window_};
    const auto answer = showDialog(dialog_, [this](DialogNotice notice, int32 value, TextView link) {
        return hear(notice, value, link);
    });
    if (answer) {
        option_ = answer->option;
        checked_ = answer->checked;
    }
    return answerNumber(dialog_, answer);
}

int32 clsTaskDialog::hear(DialogNotice notice, int32 value, TextView link) {
    tell(notice, value, link);
    return std::exchange(clicked_, 0);
}

void clsTaskDialog::tell(DialogNotice notice, int32 value, TextView link) {
    switch (notice) {
        case DialogNotice::created:
            return Created();
        case DialogNotice::navigated:
            return Navigated();
        case DialogNotice::buttonClick:
            return ButtonClick(value);
        case DialogNotice::hyperlink:
            return Hyperlink(Text(link));
        case DialogNotice::timer:
            return Timer(value);
        case DialogNotice::destroyed:
            window_ = 0;
            return Destroyed();
        case DialogNotice::optionClick:
            return OptionClick(value);
        case DialogNotice::constructed:
            window_ = value;
            return Constructed();
        case DialogNotice::verify:
            return Verify(value != 0);
        case DialogNotice::help:
            return Help();
        case DialogNotice::expand:
            return Expand(value != 0);
    }
}

}  // namespace tsRtm
