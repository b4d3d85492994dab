#include "tsRtm/frame/RtfTopic.hpp"

#include "tsRtm/frame/rtf/Markup.hpp"
#include "tsRtm/frame/rtf/PlainText.hpp"

namespace tsRtm {

Text RtfTopic::ConvertToRTF(TextView OriginalText, bool OhneHeader) const {
    return markupToRtf(OriginalText, OhneHeader);
}

Text RtfTopic::ConvertRTFToText(TextView RTFText) const {
    return RTFText.starts_with(u"{\\rtf") ? rtfToPlainText(RTFText) : Text(RTFText);
}

}  // namespace tsRtm
