#pragma once
#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>
#include <memory>
#include <vector>

#include "desktop/paper/PainterDevice.hpp"
#include "tsRtm/platform/PdfFiles.hpp"

namespace tsRtm::desktop {

// The pages of a PDF in the making, in memory.
class PdfPages {
 public:
    explicit PdfPages(const platform::PdfSettings& settings);

    // The next page; sizes in twips. Good until the next call.
    platform::PageDevice& page(int32 width, int32 height);
    // The whole file. Nothing more after this. Throws std::exception for what is no sound PDF.
    QByteArray finish();

 private:
    platform::PdfSettings settings_;
    QBuffer buffer_;
    QPdfWriter writer_;
    QPainter painter_;
    std::unique_ptr<PainterDevice> device_;
    std::vector<std::pair<int32, int32>> sizes_;
};

}  // namespace tsRtm::desktop
