#include "tsRtm/frame/tsMessage.hpp"

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {

namespace {

void abortByUser() {
    rtmMain::state().stopped = true;
    rtmMain::system().ui.hideMessageWindow();
}

}  // namespace

void tsMessage::Message(TextView value) {
    auto& ui = rtmMain::system().ui;
    ui.onAbort = abortByUser;
    ui.showMessageWindow(value);
}

void tsMessage::Hide() { rtmMain::system().ui.hideMessageWindow(); }

}  // namespace tsRtm
