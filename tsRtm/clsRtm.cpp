#include "tsRtm/clsRtm.hpp"

#include "tsRtm/frame/runtime/Lifetime.hpp"

namespace tsRtm {

clsRtm::clsRtm()
    : ScramblingTopic(static_cast<MessagesTopic&>(*this)),
      FilesTopic((rtmMain::ensureStarted(), static_cast<MessagesTopic&>(*this))),
      StreamsTopic(static_cast<FilesTopic&>(*this)),
      DatabasesTopic(static_cast<FilesTopic&>(*this)) {}

}  // namespace tsRtm
