#include "tsRtm/printing/text/TextWriter.hpp"

#include <cmath>

#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/printing/pages/Scale.hpp"

namespace tsRtm {
namespace {

constexpr int32 kTwipsPerPoint = 20;
constexpr float64 kTwipsPerPixel = 1440.0 / 1200;
constexpr float64 kPi = 3.14159265358979;

}  // namespace

void TextWriter::attribute(int32 value) {
    if (value < 0) return;
    font.styles = value & kStyles;
    alignment = value & kCentred ? kCentred : value & kRight;
}

void TextWriter::forgetFont() noexcept {
    selected_.reset();
    sine_ = 0;
    cosine_ = 1;
}

void TextWriter::selectFont() {
    auto* page = pages_.current();
    if (!page || selected_ == font) return;
    const float64 angle = font.angle * kPi / 180;
    sine_ = font.angle == 0 ? 0 : std::sin(angle);
    cosine_ = font.angle == 0 ? 1 : std::cos(angle);
    page->commands.add(platform::Font{font.name, font.size * kTwipsPerPoint / page->factor, font.angle * 10,
                                      (font.styles & kBold) != 0, (font.styles & kItalic) != 0,
                                      (font.styles & kUnderlined) != 0});
    selected_ = font;
}

bool TextWriter::write(int32 row, int32 column, int32 size, int32 attr, int32 lineAdvance, TextView text,
                       int32 angle) {
    if (font.name.empty()) font.name = u"Arial";
    if (size > 0) font.size = size;
    attribute(attr);
    if (row >= 0) y = dotsToTwips(row);
    if (column >= 0) x = dotsToTwips(column);
    if (lineAdvance >= 0) advance = dotsToTwips(lineAdvance);
    if (angle != -1) font.angle = angle;
    selectFont();
    if (text.empty()) return false;
    auto* page = pages_.current();
    const bool shows = text != u" " && page;
    if (shows) {
        align(text);
        page->commands.add({x / page->factor, y / page->factor}, text);
    }
    // The column stays where the text began.
    y += advance;
    return shows;
}

void TextWriter::align(TextView text) {
    if (alignment == 0) return;
    const int32 width = extent(text).width;
    const int32 offset = alignment == kCentred ? width / 2 : width;
    switch (font.angle) {
        case 0:
            x -= offset;
            break;
        case 180:
            x += offset;
            break;
        case 90:
            y += offset;
            break;
        case 270:
            y -= offset;
            break;
        default:
            x = roundToInt32(x - offset * cosine_);
            y = roundToInt32(offset * sine_ + y);
    }
}

platform::TextExtent TextWriter::extent(TextView text) {
    const platform::Font measured{
        font.name, font.size * kTwipsPerPoint, 0, (font.styles & kBold) != 0, (font.styles & kItalic) != 0,
        false};
    const auto pixels = measure_.measure(measured, fromAnsi(toAnsi(text)));
    return {roundToInt32(kTwipsPerPixel * pixels.width), roundToInt32(kTwipsPerPixel * pixels.height)};
}

}  // namespace tsRtm
