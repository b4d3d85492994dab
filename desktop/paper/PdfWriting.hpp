#pragma once
#include "tsRtm/platform/PdfFiles.hpp"

namespace tsRtm::desktop {

class PdfFonts;

// Makes PDF files: plain ones with their properties, PDF/A-1b, or protected by a password.
class PdfWriting final : public platform::PdfFiles {
 public:
    PdfWriting();
    std::unique_ptr<platform::PdfDocument> begin(const platform::PdfSettings& settings) override;

 private:
    std::shared_ptr<PdfFonts> fonts_;
};

}  // namespace tsRtm::desktop
