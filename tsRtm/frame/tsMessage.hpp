#pragma once
// The small window that stays up while something long goes on, with a button Abort.
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// There is one such window: each object shows and hides the same. A click on Abort sets Stopped, whether it
// is enabled or not, and closes the window; the loop that asked for the message ends by that.
class tsMessage {
 public:
    // Sets the text, and shows the window where it does not show.
    void Message(TextView value);
    void Hide();
};

}  // namespace tsRtm
