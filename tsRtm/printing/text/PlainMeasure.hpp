#pragma once
#include "tsRtm/platform/Paper.hpp"

namespace tsRtm {

// Measures texts where no desktop does: by the widths of "Arial", or of a typewriter. A job can then be
// composed as on a desktop that has this font.
class PlainMeasure final : public platform::TextMeasure {
 public:
    platform::TextExtent measure(const platform::Font& font, TextView text) override;
};

}  // namespace tsRtm
