#pragma once
// The pages of a job as they were composed, to be played on any device and any number of times.
#include <optional>

#include "tsRtm/printing/pages/CommandList.hpp"

namespace tsRtm {

// What a page says of its paper.
struct PageTraits {
    int32 paperSize = 0;          // 0: told by width and height
    int32 width = 0, height = 0;  // twips, as the page is read
    int32 orientation = 1;        // 1 portrait, 2 landscape
    int32 copies = 1;
    int32 duplex = 1;  // 1 off, 2, 3
    int32 paperBin = 0;
    bool operator==(const PageTraits&) const = default;
};

struct Page {
    struct Formatted {
        platform::PlacedText text;
        bool background = false;  // drawn before all else
    };

    PageTraits traits;
    int32 factor = 1;  // of the places of its commands
    bool open = true;
    CommandList commands;
    std::vector<Formatted> texts;
};

// Pages are counted from 1; at most the last one is open.
class Pages {
 public:
    int32 count() const noexcept { return static_cast<int32>(pages_.size()); }
    // nullptr where there is none.
    const Page* page(int32 number) const noexcept;
    // The page that is being composed, else nullptr.
    Page* current() noexcept;

    // Closes the current one and starts the next.
    Page& begin(const PageTraits& traits);
    void close() noexcept;
    void dropLast() noexcept { pages_.pop_back(); }
    void clear() noexcept { pages_.clear(); }

 private:
    std::vector<Page> pages_;
};

// Plays a page where `mapping` has it.
void play(const Page& page, platform::PageDevice& device, platform::PageMapping mapping);

// The page in so many pixels from the corner of the device.
platform::PageMapping mappingInto(const Page& page, int32 width, int32 height) noexcept;
// The page in its own size on a device, shifted by twips and measured from the corner of the paper.
platform::PageMapping mappingOnPaper(const Page& page, const platform::DeviceResolution& resolution,
                                     int32 offsetX, int32 offsetY) noexcept;

}  // namespace tsRtm
