#pragma once
#include <QByteArray>

#include "tsRtm/platform/PdfFiles.hpp"

namespace tsRtm::desktop {

// The finished file with its properties, which stand in its information entries and, for PDF/A, in its XMP
// packet alike, and with its password. Throws std::exception for what is no sound PDF.
QByteArray completed(const QByteArray& pdf, const platform::PdfSettings& settings);

}  // namespace tsRtm::desktop
