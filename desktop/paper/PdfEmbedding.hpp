#pragma once
#include "desktop/paper/PdfFont.hpp"

class QPDF;
class QPDFObjectHandle;

namespace tsRtm::desktop {

// A font with these letters, as an object of a file.
QPDFObjectHandle embedded(QPDF& file, const PdfFont& font, const PdfLetters& letters);

}  // namespace tsRtm::desktop
