#include "tsRtm/clsRtm.hpp"

#include "tsRtm/banking/clsBanken.hpp"
#include "tsRtm/frame/runtime/Lifetime.hpp"
#include "tsRtm/frame/state/Plugged.hpp"

namespace tsRtm {

clsRtm::clsRtm()
    : ScramblingTopic(static_cast<MessagesTopic&>(*this)),
      FilesTopic((rtmMain::ensureStarted(), static_cast<MessagesTopic&>(*this))),
      StreamsTopic(static_cast<FilesTopic&>(*this)),
      DatabasesTopic(static_cast<FilesTopic&>(*this)) {
    auto& plugged = rtmMain::plugged();
    banken_ = std::dynamic_pointer_cast<clsBanken>(plugged.facadeBanks.lock());
    if (!banken_) plugged.facadeBanks = banken_ = std::make_shared<clsBanken>();
    if (!plugged.bankRegister) plugged.bankRegister = banken_;
}

// The last facade takes its register along: nobody would close it.
clsRtm::~clsRtm() {
    auto& plugged = rtmMain::plugged();
    if (plugged.bankRegister == banken_ && banken_.use_count() == 2) plugged.bankRegister.reset();
}

}  // namespace tsRtm
