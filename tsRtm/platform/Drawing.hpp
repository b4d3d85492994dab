#pragma once
// What stands on a page: drawing commands, and the surface that they are played on.
#include <memory>
#include <variant>
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::platform {

// Sizes on paper are twips, 1440 an inch.
inline constexpr float64 kTwipsPerMM = 56.69291338582678;
inline int32 mmToTwips(float64 mm) noexcept { return roundToInt32(mm * kTwipsPerMM); }

// A place on a page, Y downward.
struct Place {
    int32 x = 0, y = 0;
    bool operator==(const Place&) const = default;
};

// Colours are 0xBBGGRR.
struct Pen {
    int32 style = 0;  // 0 solid, 1 dashed, 2 dotted, 3 and 4 dashed and dotted, 5 none
    int32 width = 0;  // 0: the finest line of the device
    int32 colour = 0;
    bool operator==(const Pen&) const = default;
};

struct Brush {
    int32 style = 0;  // 0 solid, 1 hollow, 2 hatched
    int32 colour = 0;
    int32 hatch = 0;  // 0 horizontal, 1 vertical, 2 and 3 diagonal, 4 cross, 5 diagonal cross
    bool operator==(const Brush&) const = default;
};

struct Font {
    Text name;
    int32 height = 0;      // of a letter without the leading, as a font's size is told
    int32 escapement = 0;  // tenths of a degree, turning left
    bool bold = false, italic = false, underlined = false;
    bool operator==(const Font&) const = default;
};

struct TextColour {
    int32 colour = 0;
    bool operator==(const TextColour&) const = default;
};

struct TextBackground {
    int32 mode = 1;  // 1 transparent, 2 opaque
    bool operator==(const TextBackground&) const = default;
};

// `from` is the left end of the base line.
struct TextOut {
    Place from;
    Text text;
    bool operator==(const TextOut&) const = default;
};

struct Line {
    Place from, to;
    bool operator==(const Line&) const = default;
};

// Drawn by the pen and filled by the brush. A polygon has its corners in `places`; of the others these are
// two opposite corners, and of a rounded rectangle the size of the ellipse of its corners comes third.
enum class ShapeKind { polygon, ellipse, rounded };
struct Shape {
    ShapeKind kind = ShapeKind::polygon;
    std::vector<Place> places;
    bool operator==(const Shape&) const = default;
};

// A picture, PNG or JPEG, stretched between two corners.
struct Picture {
    Place from, to;
    Bytes bytes;
    bool operator==(const Picture&) const = default;
};

using DrawingCommand =
    std::variant<Pen, Brush, Font, TextColour, TextBackground, TextOut, Line, Shape, Picture>;

// How places of commands become places of the device, which has square or other pixels:
// origin + place * factor * device / page, in each direction.
struct PageMapping {
    int32 width = 0, height = 0;              // of the page, twips
    int32 deviceWidth = 0, deviceHeight = 0;  // of the page, pixels
    int32 originX = 0, originY = 0;           // of the page's corner, pixels
    int32 factor = 1;                         // twips for one unit of the commands
    bool operator==(const PageMapping&) const = default;
};

struct DeviceResolution {
    int32 pixelsPerInchX = 0, pixelsPerInchY = 0;
    int32 offsetX = 0, offsetY = 0;  // of the printable area from the paper's corner, pixels
};

// Formatted text, read once for all the pages that it needs.
class FormattedText {
 public:
    virtual ~FormattedText() = default;
    // Its characters; 0 where it holds none or is no RTF.
    virtual int32 length() const = 0;
};

// Formatted text in its rectangle, twips.
struct PlacedText {
    std::shared_ptr<const FormattedText> text;
    int32 from = 0;  // its first character, 0-based
    int32 left = 0, top = 0, width = 0, height = 0;
    int32 backColour = 0xFFFFFF;
    bool operator==(const PlacedText&) const = default;
};

// A surface that a page is played on: a sheet of a printer, a page of a file, a part of a window.
class PageDevice {
 public:
    virtual ~PageDevice() = default;
    virtual DeviceResolution resolution() = 0;
    // Holds for all that follows. Pens, brushes, fonts and colours start anew.
    virtual void map(const PageMapping& mapping) = 0;
    virtual void draw(const DrawingCommand& command) = 0;
    // Formatted text by the mapping, in twips whatever its factor.
    virtual void draw(const PlacedText& text) = 0;
};

}  // namespace tsRtm::platform
