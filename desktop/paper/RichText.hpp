#pragma once
#include "tsRtm/platform/Paper.hpp"

class QPainter;

namespace tsRtm::desktop {

// Lays RTF out: paragraphs, tabulators, alignment, indents, spacing, fonts and colours. One unit of the
// layout is a twip, so that lines break alike on every device.
class RichText final : public platform::FormattedTexts {
 public:
    int32 length(TextView rtf) override;
    platform::TextFit fit(const platform::PlacedText& text, int32 pageHeight) override;
    int32 windowText() override;
    int32 window() override;

    // The part that fits, on a painter whose units are twips.
    static void draw(QPainter& painter, const platform::PlacedText& text);
};

}  // namespace tsRtm::desktop
