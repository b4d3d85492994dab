#pragma once
// What composing and printing ask of the world, beside the platform: a desktop brings it.
#include "tsRtm/platform/PdfFiles.hpp"
#include "tsRtm/platform/Previews.hpp"
#include "tsRtm/platform/Printers.hpp"

namespace tsRtm::platform {

struct TextExtent {
    int32 width = 0, height = 0;  // pixels of the reference device
};

// Measures on the reference device, which has 1200 pixels an inch, whatever printer is chosen.
class TextMeasure {
 public:
    virtual ~TextMeasure() = default;
    // Of a font whose height is in twips.
    virtual TextExtent measure(const Font& font, TextView text) = 0;
};

struct TextFit {
    int32 next = -1;  // the first character that did not fit, -1 where all did
    int32 used = 0;   // height, twips
};

// Lays formatted text out, in twips.
class FormattedTexts {
 public:
    virtual ~FormattedTexts() = default;
    virtual std::shared_ptr<const FormattedText> read(TextView rtf) = 0;
    // How far it goes in the text's rectangle of a page of that height. Where not even one line fits, `next`
    // is where it began; what not even the whole page could take counts as placed, cut off.
    virtual TextFit fit(const PlacedText& text, int32 pageHeight) = 0;
    // The system's colours for text and for windows, 0xBBGGRR.
    virtual int32 windowText() = 0;
    virtual int32 window() = 0;
};

// All of it. The referenced objects outlive the library's use of them.
struct Paper {
    TextMeasure& measure;
    FormattedTexts& texts;
    PdfFiles& pdf;
    Printers* printers = nullptr;  // nullptr: there are none
    Previews* previews = nullptr;  // nullptr: nobody looks at one
};

}  // namespace tsRtm::platform
