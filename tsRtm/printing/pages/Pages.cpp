#include "tsRtm/printing/pages/Pages.hpp"

#include "tsRtm/printing/pages/Scale.hpp"

namespace tsRtm {

const Page* Pages::page(int32 number) const noexcept {
    return number < 1 || number > count() ? nullptr : &pages_[static_cast<std::size_t>(number) - 1];
}

Page* Pages::current() noexcept { return pages_.empty() || !pages_.back().open ? nullptr : &pages_.back(); }

Page& Pages::begin(const PageTraits& traits) {
    close();
    auto& page = pages_.emplace_back();
    page.traits = traits;
    page.factor = pageFactor(traits.width, traits.height);
    return page;
}

void Pages::close() noexcept {
    if (auto* page = current()) {
        page->open = false;
        page->commands.close();
    }
}

void play(const Page& page, platform::PageDevice& device, platform::PageMapping mapping) {
    const auto texts = [&](bool background) {
        for (const auto& entry : page.texts)
            if (entry.background == background) device.draw(entry.text);
    };
    device.map(mapping);
    texts(true);
    // Formatted text leaves pens and colours of its own behind.
    device.map(mapping);
    page.commands.play(device);
    texts(false);
}

platform::PageMapping mappingInto(const Page& page, int32 width, int32 height) noexcept {
    return {page.traits.width, page.traits.height, width, height, 0, 0, page.factor};
}

platform::PageMapping mappingOnPaper(const Page& page, const platform::DeviceResolution& resolution,
                                     int32 offsetX, int32 offsetY) noexcept {
    constexpr int32 twipsPerInch = 1440;
    const auto pixels = [](int32 twips, int32 perInch) { return mulDiv(twips, perInch, twipsPerInch); };
    const auto& [width, height] = std::pair(page.traits.width, page.traits.height);
    return {width,
            height,
            pixels(width, resolution.pixelsPerInchX),
            pixels(height, resolution.pixelsPerInchY),
            pixels(offsetX, resolution.pixelsPerInchX) - resolution.offsetX,
            pixels(offsetY, resolution.pixelsPerInchY) - resolution.offsetY,
            page.factor};
}

}  // namespace tsRtm
