#pragma once
// How text reaches the page that is being composed: the font, the position, and the one primitive on which
// all text operations rest.
#include <optional>

#include "tsRtm/platform/Paper.hpp"
#include "tsRtm/printing/pages/Pages.hpp"

namespace tsRtm {

// Bits of a text's attribute.
inline constexpr int32 kBold = 1, kUnderlined = 2, kItalic = 4, kStyles = 7, kRight = 128, kCentred = 256;

struct FontChoice {
    Text name = u"Arial";
    int32 size = 12;   // points
    int32 angle = 0;   // degrees, turning left
    int32 styles = 0;  // of kBold, kUnderlined, kItalic
    bool operator==(const FontChoice&) const = default;
};

class TextWriter {
 public:
    TextWriter(Pages& pages, platform::TextMeasure& measure) : pages_(pages), measure_(measure) {}

    FontChoice font;
    int32 alignment = 0;  // 0 left, kRight, kCentred
    int32 foreColour = 0;
    int32 x = 0, y = 0;   // twips; y is the base line
    int32 advance = 240;  // to the next line, twips

    // The whole attribute; a negative one changes nothing.
    void attribute(int32 value);
    int32 attribute() const noexcept { return font.styles + alignment; }

    // Sets what is not negative (angle: not -1), places and advance in dots, and writes the text. An empty
    // one leaves the position; one blank only moves on. Whether something was written.
    bool write(int32 row, int32 column, int32 size, int32 attr, int32 lineAdvance, TextView text,
               int32 angle);

    // Puts the font into the open page, if it differs from the one that is there.
    void selectFont();
    // A page begins without a font.
    void forgetFont() noexcept;

    // Of the current font, in twips. Measured as code page 1252, with "?" for what it lacks.
    platform::TextExtent extent(TextView text);

 private:
    void align(TextView text);

    Pages& pages_;
    platform::TextMeasure& measure_;
    std::optional<FontChoice> selected_;
    float64 sine_ = 0, cosine_ = 1;
};

}  // namespace tsRtm
