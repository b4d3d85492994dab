#include "desktop/Desktop.hpp"

#include <QApplication>

#include "desktop/paper/FontMeasure.hpp"
#include "desktop/paper/PdfWriting.hpp"
#include "desktop/paper/RichText.hpp"
#include "desktop/preview/PreviewWindows.hpp"
#include "tsRtm/frame/rtmMain.hpp"

namespace tsRtm::desktop {

struct Desktop::Parts {
    FontMeasure measure;
    RichText texts;
    PdfWriting pdf;
    PreviewWindows previews;
    // Without widgets nobody looks at windows.
    platform::Paper paper{measure, texts, pdf, nullptr,
                          qobject_cast<QApplication*>(QCoreApplication::instance()) ? &previews : nullptr};
};

Desktop::Desktop() : parts_(std::make_unique<Parts>()) { rtmMain::usePaper(&parts_->paper); }
Desktop::~Desktop() { rtmMain::usePaper(nullptr); }

}  // namespace tsRtm::desktop
