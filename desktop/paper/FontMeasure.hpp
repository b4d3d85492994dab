#pragma once
#include <QFontMetricsF>
#include <list>
#include <vector>

#include "tsRtm/platform/Paper.hpp"

namespace tsRtm::desktop {

// Measures on the reference device of 1200 pixels an inch, with the fonts of this machine. Keeps what it has
// learnt of the fonts used last.
class FontMeasure final : public platform::TextMeasure {
 public:
    platform::TextExtent measure(const platform::Font& font, TextView text) override;

 private:
    struct Known {
        explicit Known(const platform::Font& theFont);
        float64 width(TextView text);

        platform::Font font;
        QFontMetricsF metrics;
        int32 height;
        // Of letters of code page 1252 below 256: how far each goes on behind another one, row by row;
        // negative: not asked yet. The first row is that of a text's beginning.
        std::vector<float> steps;
    };

    std::list<Known> known_;  // the one used last in front
};

}  // namespace tsRtm::desktop
