#include "desktop/paper/FontMeasure.hpp"

#include <algorithm>

#include "desktop/paper/Qt.hpp"

namespace tsRtm::desktop {
namespace {

constexpr std::size_t kLetters = 256;
constexpr std::size_t kMostFonts = 16;
constexpr float kUnknown = -1e9F;
constexpr float64 kPixelsPerTwip = 1200.0 / 1440;

}  // namespace

// At the size of twips, as pages are drawn.
FontMeasure::Known::Known(const platform::Font& theFont)
    : font(theFont),
      metrics(fontOf(theFont)),
      height(roundToInt32(metrics.height() * kPixelsPerTwip)),
      steps(kLetters * kLetters, kUnknown) {}

float64 FontMeasure::Known::width(TextView text) {
    float64 sum = 0;
    std::size_t before = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t letter = text[i];
        // What joins into one letter or is drawn in another way is measured as a whole.
        if (letter >= kLetters || letter == 0 || letter == 0xAD) return metrics.horizontalAdvance(qt(text));
        float& step = steps[before * kLetters + letter];
        if (step == kUnknown) {
            const QString pair = qt(text.substr(i == 0 ? 0 : i - 1, i == 0 ? 1 : 2));
            const float64 alone = i == 0 ? 0 : metrics.horizontalAdvance(pair.left(1));
            step = static_cast<float>(metrics.horizontalAdvance(pair) - alone);
        }
        sum += step;
        before = letter;
    }
    return sum;
}

platform::TextExtent FontMeasure::measure(const platform::Font& font, TextView text) {
    auto found =
        std::find_if(known_.begin(), known_.end(), [&](const Known& one) { return one.font == font; });
    if (found == known_.end()) {
        if (known_.size() >= kMostFonts) known_.pop_back();
        known_.emplace_front(font);
    } else if (found != known_.begin()) {
        known_.splice(known_.begin(), known_, found);
    }
    auto& known = known_.front();
    return {roundToInt32(known.width(text) * kPixelsPerTwip), known.height};
}

}  // namespace tsRtm::desktop
