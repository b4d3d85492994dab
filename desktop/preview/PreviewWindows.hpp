#pragma once
#include "tsRtm/platform/Previews.hpp"

namespace tsRtm::desktop {

// Opens previews, and puts pages on the clipboard as PDF, SVG and PNG at once.
class PreviewWindows final : public platform::Previews {
 public:
    std::unique_ptr<platform::Preview> open(platform::PreviewedJob& job) override;
    platform::SystemError copy(const platform::PageSource& page) override;
};

}  // namespace tsRtm::desktop
