#pragma once
#include "tsRtm/platform/Paper.hpp"

namespace tsRtm::desktop {

// Measures on the reference device of 1200 pixels an inch, with the fonts of this machine.
class FontMeasure final : public platform::TextMeasure {
 public:
    platform::TextExtent measure(const platform::Font& font, TextView text) override;
};

}  // namespace tsRtm::desktop
