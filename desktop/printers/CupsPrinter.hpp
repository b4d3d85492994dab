#pragma once
#include <optional>

#include "desktop/paper/PdfPages.hpp"
#include "desktop/printers/Queue.hpp"
#include "tsRtm/platform/Printers.hpp"

namespace tsRtm::desktop {

// A print queue as a job uses it. Pages are gathered and reach the queue, as PDF, when the document ends;
// where the paper, the bin or the like changes between two pages, the queue gets them as jobs of one name,
// one behind the other. Settings are those of the queue again once the document has ended.
class CupsPrinter final : public platform::Printer, public platform::PaperForms {
 public:
    explicit CupsPrinter(std::unique_ptr<Queue> queue);

    int32 value(platform::PrinterFeature feature) override;
    bool set(platform::PrinterFeature feature, int32 value) override;
    platform::PageDevice* page(TextView document) override;
    platform::SystemError endDocument() override;
    void killDocument() override;
    std::vector<platform::PaperBin> bins() override;
    platform::PaperForms& forms() override { return *this; }
    std::vector<platform::PaperForm> all() override { return forms_; }
    platform::SystemError add(const platform::PaperForm& form) override;

 private:
    struct Settings {
        int32 copies = 1, bin = 0, duplex = 1, quality = 0, form = 0, orientation = 1;
        bool operator==(const Settings&) const = default;
    };
    struct Bin {
        int32 number;
        std::string keyword;
    };
    // What goes to the queue as one job.
    struct Part {
        Settings settings;
        std::unique_ptr<PdfPages> pages;
    };

    void readBins();
    void readForms();
    Settings standard() const;
    const Bin* bin(int32 number) const;
    bool has(const platform::PaperForm& form) const;
    bool qualityKnown(int32 value) const;
    std::vector<Option> options(const Settings& settings) const;

    std::unique_ptr<Queue> queue_;
    std::vector<Bin> bins_;
    std::vector<PaperRange> papers_;
    std::vector<platform::PaperForm> forms_;
    Settings now_;
    Text document_;
    std::vector<Part> parts_;
};

}  // namespace tsRtm::desktop
