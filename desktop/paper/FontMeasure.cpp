#include "desktop/paper/FontMeasure.hpp"

#include <QFontMetricsF>

#include "desktop/paper/Qt.hpp"

namespace tsRtm::desktop {

platform::TextExtent FontMeasure::measure(const platform::Font& font, TextView text) {
    constexpr float64 pixelsPerTwip = 1200.0 / 1440;
    // At the size of twips, as pages are drawn.
    const QFontMetricsF metrics(fontOf(font));
    return {roundToInt32(metrics.horizontalAdvance(qt(text)) * pixelsPerTwip),
            roundToInt32(metrics.height() * pixelsPerTwip)};
}

}  // namespace tsRtm::desktop
