#pragma once
#include <QByteArray>
#include <utility>
#include <vector>

#include "tsRtm/platform/PdfFiles.hpp"

namespace tsRtm::desktop {

// The finished file with its properties, which stand in its information entries and, for PDF/A, in its XMP
// packet alike, with its password, and with its pages as large as they were asked for, in twips: Qt rounds
// them to points. Throws std::exception for what is no sound PDF.
QByteArray completed(const QByteArray& pdf, const platform::PdfSettings& settings,
                     const std::vector<std::pair<int32, int32>>& sizes);

}  // namespace tsRtm::desktop
