#pragma once
#include <QString>

#include "tsRtm/types/Captions.hpp"

namespace tsRtm::desktop {

// The library's captions in the user's language, "&" before the mnemonic.
QString caption(eStringIDs which);
// Of the button with this answer.
QString captionOfAnswer(int32 answer);

}  // namespace tsRtm::desktop
