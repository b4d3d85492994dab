#pragma once
#include <QByteArray>
#include <utility>
#include <vector>

#include "desktop/paper/PdfContent.hpp"
#include "tsRtm/platform/PdfFiles.hpp"

namespace tsRtm::desktop {

// A page of a file.
struct PdfPage {
    int32 width, height;  // twips
    std::string content;  // as deflated() gives it
    bool painted;         // the next one of those that Qt has painted; has no content here
};

// The finished file with its properties, which stand in its information entries and, for PDF/A, in its XMP
// packet alike, with its password, and with its pages as large as they were asked for: Qt rounds them to
// points. `painted` is the file that Qt has made, empty where there is none. Throws std::exception for what
// is no sound PDF.
QByteArray completed(const QByteArray& painted, const platform::PdfSettings& settings,
                     const std::vector<PdfPage>& pages, const std::vector<PdfFontUses::Use>& fonts);

}  // namespace tsRtm::desktop
