#include "desktop/paper/PdfContent.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>

#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm::desktop {
namespace {

using namespace platform;

constexpr float64 kPointsPerInch = 72, kTwipsPerPoint = 20;

}  // namespace

std::size_t PdfFontUses::of(const Font& font) {
    const auto found = std::ranges::find_if(all_, [&](const Use& one) { return one.font->isOf(font); });
    if (found != all_.end()) return static_cast<std::size_t>(found - all_.begin());
    all_.push_back({fonts_->of(font), {}});
    return all_.size() - 1;
}

PdfContent::PdfContent(PdfFontUses& fonts, int32 height, int32 pixelsPerInch)
    : fonts_(fonts), pageHeight_(height / kTwipsPerPoint), pointsPerPixel_(kPointsPerInch / pixelsPerInch) {
    bytes_.reserve(16384);
    bytes_ += "1 J 1 j\n";
}

void PdfContent::map(const PageMapping& mapping) {
    const auto scale = [&](int32 device, int32 page) {
        return pointsPerPixel_ * device / std::max(page, 1) * mapping.factor;
    };
    left_ = mapping.originX * pointsPerPixel_;
    top_ = mapping.originY * pointsPerPixel_;
    scaleX_ = scale(mapping.deviceWidth, mapping.width);
    scaleY_ = scale(mapping.deviceHeight, mapping.height);
    pen_ = {};
    brush_ = {1, 0, 0};
    textColour_ = 0;
    penTold_ = false;
}

bool PdfContent::draw(const DrawingCommand& command) {
    return std::visit([this](const auto& one) { return tell(one); }, command);
}

bool PdfContent::tell(const Pen& pen) {
    constexpr int32 none = 5;
    pen_ = pen;
    penTold_ = false;
    return pen.style <= 0 || pen.style >= none;
}

bool PdfContent::tell(const Brush& brush) {
    constexpr int32 hatched = 2;
    brush_ = brush;
    return brush.style != hatched;
}

bool PdfContent::tell(const Font& font) {
    font_ = font;
    fontTold_ = false;
    fontPlace_ = fonts_.of(font);
    return fonts_.use(fontPlace_).font->usable();
}

bool PdfContent::tell(const TextColour& colour) {
    textColour_ = colour.colour;
    return true;
}

bool PdfContent::tell(const TextBackground& background) { return background.mode != 2; }

bool PdfContent::tell(const TextOut& text) {
    const Bytes letters = toAnsi(text.text);
    if (font_.name.empty() || fromAnsi(letters) != text.text) return false;
    auto& use = fonts_.use(fontPlace_);
    for (const char c : letters) {
        if (!use.font->has(static_cast<uint8>(c))) return false;
        use.letters.set(static_cast<uint8>(c));
    }
    const float64 size = std::max(font_.height, 1) * scaleY_;
    fill(textColour_);
    bytes_ += "BT ";
    if (!fontTold_) {
        bytes_ += "/F" + QByteArray::number(static_cast<qulonglong>(fontPlace_)) + ' ';
        number(size);
        bytes_ += "Tf ";
        fontTold_ = true;
    }
    const float64 angle = font_.escapement * std::numbers::pi / 1800;
    const float64 sine = font_.escapement == 0 ? 0 : std::sin(angle);
    const float64 cosine = font_.escapement == 0 ? 1 : std::cos(angle);
    if (font_.escapement != 0) {
        for (const float64 part : {cosine, sine, -sine, cosine})
            bytes_ += QByteArray::number(part, 'f', 6) + ' ';
        place(text.from);
        bytes_ += "Tm ";
    } else {
        place(text.from);
        bytes_ += "Td ";
    }
    showText(use, letters);
    bytes_ += "ET\n";
    if (!font_.underlined) return true;
    // A bar below, turned with the text.
    const float64 per = size / 1000, length = width(letters) * per;
    const float64 thickness = use.font->underlineThickness() * per;
    const float64 below = -use.font->underlinePosition() * per - thickness / 2;
    bytes_ += "q ";
    for (const float64 part : {cosine, sine, -sine, cosine}) bytes_ += QByteArray::number(part, 'f', 6) + ' ';
    place(text.from);
    bytes_ += "cm 0 ";
    for (const float64 part : {below, length, thickness}) number(part);
    bytes_ += "re f Q\n";
    return true;
}

float64 PdfContent::width(BytesView letters) {
    auto& font = *fonts_.use(fontPlace_).font;
    float64 sum = 0;
    for (std::size_t i = 0; i < letters.size(); ++i) {
        const auto letter = static_cast<uint8>(letters[i]);
        sum += font.width(letter) + (i > 0 ? font.kerning(static_cast<uint8>(letters[i - 1]), letter) : 0);
    }
    return sum;
}

// Runs of letters, and between them by how much the next one is moved.
void PdfContent::showText(PdfFontUses::Use& use, BytesView letters) {
    bytes_ += "[(";
    for (std::size_t i = 0; i < letters.size(); ++i) {
        const char letter = letters[i];
        if (i > 0) {
            const auto kerning =
                use.font->kerning(static_cast<uint8>(letters[i - 1]), static_cast<uint8>(letter));
            if (kerning != 0) {
                bytes_ += ')';
                number(-kerning);
                bytes_ += '(';
            }
        }
        if (letter == '(' || letter == ')' || letter == '\\') bytes_ += '\\';
        bytes_ += letter;
    }
    bytes_ += ")]TJ ";
}

bool PdfContent::tell(const Line& line) {
    if (pen_.style >= 5) return true;
    pen();
    place(line.from);
    bytes_ += "m ";
    place(line.to);
    bytes_ += "l S\n";
    return true;
}

bool PdfContent::tell(const Shape& shape) {
    if (shape.kind != ShapeKind::polygon || shape.places.empty()) return false;
    const bool outlined = pen_.style < 5, filled = brush_.style != 1;
    if (outlined) pen();
    if (filled) fill(brush_.colour);
    for (std::size_t i = 0; i < shape.places.size(); ++i) {
        place(shape.places[i]);
        bytes_ += i == 0 ? "m " : "l ";
    }
    bytes_ += outlined && filled ? "b*\n" : outlined ? "s\n" : filled ? "f*\n" : "n\n";
    return true;
}

void PdfContent::place(Place place) {
    number(left_ + place.x * scaleX_);
    number(pageHeight_ - top_ - place.y * scaleY_);
}

// With two decimals, which is a three hundredth of a millimetre, and a blank behind it.
void PdfContent::number(float64 value) {
    const auto hundredths = std::llround(value * 100);
    char room[32];
    const auto whole = std::abs(hundredths);
    char* at = room;
    if (hundredths < 0) *at++ = '-';
    at = std::to_chars(at, room + sizeof room, whole / 100).ptr;
    if (const auto rest = whole % 100; rest != 0) {
        *at++ = '.';
        *at++ = static_cast<char>('0' + rest / 10);
        if (rest % 10 != 0) *at++ = static_cast<char>('0' + rest % 10);
    }
    *at++ = ' ';
    bytes_.append(room, at - room);
}

void PdfContent::colour(int32 bgr, const char* operation) {
    for (const int shift : {0, 8, 16})
        bytes_ += QByteArray::number(((bgr >> shift) & 255) / 255.0, 'g', 3) + ' ';
    bytes_ += operation;
}

void PdfContent::fill(int32 bgr) {
    if (told_ == bgr) return;
    colour(bgr, "rg\n");
    told_ = bgr;
}

void PdfContent::pen() {
    if (penTold_) return;
    colour(pen_.colour, "RG ");
    number(std::max(pen_.width, 0) * scaleX_);
    bytes_ += "w\n";
    penTold_ = true;
}

}  // namespace tsRtm::desktop
