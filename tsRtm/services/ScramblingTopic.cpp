#include "tsRtm/services/ScramblingTopic.hpp"

#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/services/bytes/Scrambler.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

ScramblingTopic::ScramblingTopic(MessagesTopic& messages)
    : scrambler_(std::make_unique<Scrambler>(messages)) {}

ScramblingTopic::~ScramblingTopic() = default;

void ScramblingTopic::Schluessel(Text& text, int32 Start) {
    Bytes bytes = toAnsi(text);
    scrambler_->scramble(bytes, Start);
    fromAnsi(bytes, text);
}

void ScramblingTopic::SchlAlt(Text&, int32) const {
    raise(445, u"clsRtm.SchlAlt", u"Diese Methode ist obsolet");
}

}  // namespace tsRtm
