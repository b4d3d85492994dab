#pragma once
#include <memory>

#include "tsRtm/platform/Paper.hpp"

class QPainter;

namespace tsRtm::desktop {

class RichLayouts;

// Lays RTF out: paragraphs, tabulators, alignment, indents, spacing, fonts and colours. One unit of the
// layout is a twip, so that lines break alike on every device. A text is read once for all its pages, and
// laid out in parts of some pages each, of which those used last are kept.
class RichText final : public platform::FormattedTexts {
 public:
    RichText();

    std::shared_ptr<const platform::FormattedText> read(TextView rtf) override;
    platform::TextFit fit(const platform::PlacedText& text, int32 pageHeight) override;
    int32 windowText() override;
    int32 window() override;

    // The part that fits, on a painter whose units are twips.
    static void draw(QPainter& painter, const platform::PlacedText& text);

 private:
    std::shared_ptr<RichLayouts> layouts_;
};

}  // namespace tsRtm::desktop
