#include "tsRtm/frame/FilesTopic.hpp"

#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/runtime/Lifetime.hpp"

namespace tsRtm {

FilesTopic::FilesTopic(MessagesTopic& messages) : messages_(messages) { rtmMain::ensureStarted(); }

FilesTopic::~FilesTopic() = default;

void FilesTopic::record(const Failure& failure, TextView Source) {
    setCurrentFailure(failure.Number(), failure.Description());
    messages_.ErrorHandler(-2, Source);
}

}  // namespace tsRtm
