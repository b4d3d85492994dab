#pragma once
#include "desktop/paper/PdfFont.hpp"

class QPDF;
class QPDFObjectHandle;

namespace tsRtm::desktop {

// A font with these letters at least, as an object of a file.
QPDFObjectHandle embedded(QPDF& file, PdfFont& font, const PdfLetters& letters);

}  // namespace tsRtm::desktop
