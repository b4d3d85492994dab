#include "desktop/Desktop.hpp"

#include "desktop/paper/FontMeasure.hpp"
#include "desktop/paper/PdfWriting.hpp"
#include "desktop/paper/RichText.hpp"
#include "tsRtm/frame/rtmMain.hpp"

namespace tsRtm::desktop {

struct Desktop::Parts {
    FontMeasure measure;
    RichText texts;
    PdfWriting pdf;
    platform::Paper paper{measure, texts, pdf};
};

Desktop::Desktop() : parts_(std::make_unique<Parts>()) { rtmMain::usePaper(&parts_->paper); }
Desktop::~Desktop() { rtmMain::usePaper(nullptr); }

}  // namespace tsRtm::desktop
