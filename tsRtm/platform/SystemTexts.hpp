#pragma once
// The system's own words for buttons and keys.
#include "tsRtm/types/Text.hpp"

namespace tsRtm::platform {

class SystemTexts {
 public:
    virtual ~SystemTexts() = default;
    // Whether the system has captions of its own at all.
    virtual bool hasSystemCaptions() = 0;
    // A system caption by its number (0 OK .. 10 Continue), empty where the system has none.
    virtual Text systemCaption(int32 number) = 0;
    // Name of a key by its virtual key number (256 added for an extended key), empty where unknown.
    virtual Text keyName(int32 virtualKey) = 0;
};

}  // namespace tsRtm::platform
