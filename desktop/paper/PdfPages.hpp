#pragma once
#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>
#include <memory>
#include <optional>
#include <vector>

#include "desktop/paper/PainterDevice.hpp"
#include "desktop/paper/PdfContent.hpp"
#include "desktop/paper/PdfProperties.hpp"
#include "tsRtm/platform/PdfFiles.hpp"

namespace tsRtm::desktop {

// The pages of a PDF in the making, in memory: those of text and lines in words of our own, the others, and
// all of an archive, painted by Qt.
class PdfPages {
 public:
    explicit PdfPages(const platform::PdfSettings& settings,
                      std::shared_ptr<PdfFonts> fonts = std::make_shared<PdfFonts>());
    ~PdfPages();

    // The next page; sizes in twips. Good until the next call.
    platform::PageDevice& page(int32 width, int32 height);
    // The whole file. Nothing more after this. Throws std::exception for what is no sound PDF.
    QByteArray finish();

 private:
    class Device;

    PainterDevice paint(int32 width, int32 height);
    void keepPage();

    platform::PdfSettings settings_;
    PdfFontUses fonts_;
    QBuffer buffer_;
    std::optional<QPdfWriter> writer_;  // from the first page on that is painted
    QPainter painter_;
    std::unique_ptr<Device> device_;
    std::vector<PdfPage> pages_;
};

}  // namespace tsRtm::desktop
