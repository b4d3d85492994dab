#pragma once
// What an RTF text says about its characters and paragraphs. Lengths are twips (1/1440 inch) unless said
// otherwise.
#include <array>
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::rtf {

// No page of the format is larger: lengths beyond are limited to it, so that a layout need not fear overflow.
constexpr int32 kLargestLength = 31680;
// A paragraph has no more tabulators; those beyond are left out.
constexpr std::size_t kMostTabs = 64;

enum class FontFamily { unknown, roman, swiss, modern, script, decorative, technical, bidirectional };

struct Font {
    Text name;  // empty where the text names none
    FontFamily family = FontFamily::unknown;
    int32 charset = 1;  // 0 western, 1 the document's, 2 symbols, 204 Russian ...
    bool fixedPitch = false;
};

struct Colour {
    bool automatic = true;  // text in the colour of text, background not painted
    uint8 red = 0, green = 0, blue = 0;
    bool operator==(const Colour&) const = default;
};

enum class Script { normal, superscript, subscript };

constexpr int32 kNoNumber = -1;  // the default font; no background

struct CharacterFormat {
    int32 font = kNoNumber;  // by its number in the table of fonts
    int32 halfPoints = 24;   // size, 1 and more
    bool bold = false, italic = false, underline = false, strike = false;
    bool hidden = false, capitals = false, smallCapitals = false;
    Script script = Script::normal;
    int32 raised = 0;              // half points above the line
    int32 colour = 0;              // by its number in the table of colours, from 0
    int32 background = kNoNumber;  // likewise
    bool operator==(const CharacterFormat&) const = default;
};

enum class Alignment { left, right, centred, justified };

struct Tab {
    int32 position = 0;  // from the left margin
    enum class Kind { left, right, centred, decimal } kind = Kind::left;
    char16_t leader = u' ';
    bool operator==(const Tab&) const = default;
};

enum Side : uint8 { kTop, kLeft, kBottom, kRight, kSides };

// Lines and colour around a paragraph. Neighbours with the same box, and the same indents, stand in one.
struct Box {
    std::array<int32, kSides> borders{};  // how thick; 0: none
    std::array<int32, kSides> spaces{};   // between these and the text
    Colour borderColour, background;
    bool operator==(const Box&) const = default;
};

struct ParagraphFormat {
    Alignment alignment = Alignment::left;
    int32 left = 0, right = 0, first = 0;  // indents; that of the first line counts from the left one
    int32 before = 0, after = 0;           // space above and below
    int32 lineSpacing = 0;                 // 0 by the font, over 0 at least, below 0 exactly so much
    bool lineMultiple = false;             // lineSpacing is a multiple of one line: 240 single, 480 double
    bool pageBreakBefore = false;  // by its own word, or that of a page or section that ended before it
    bool inTable = false;
    Box box;
    std::vector<Tab> tabs;   // ascending by position
    int32 defaultTab = 720;  // distance of the tabulators behind the last of these
    bool operator==(const ParagraphFormat&) const = default;
};

// A row of a table has no more cells; those beyond are left out.
constexpr std::size_t kMostCells = 64;

// A table may be wider than any page: writers that do not know the width of theirs count in shares of this.
constexpr int32 kWidestTable = 65535;

struct CellFormat {
    int32 edge = 0;                       // the right one, from the left margin
    std::array<int32, kSides> borders{};  // how thick; 0: none
    std::array<int32, kSides> padding{};
    Colour borderColour, background;
    enum class Place { top, middle, bottom } place = Place::top;
    bool merged = false;  // part of the cell before it
};

struct RowFormat {
    int32 left = 0;  // of the first cell, from the left margin
    Alignment alignment = Alignment::left;
    std::vector<CellFormat> cells;  // their edges ascend
};

enum class PictureKind { other, png, jpeg };

// A picture as it lies in the text.
struct Picture {
    PictureKind kind = PictureKind::other;
    int32 width = 0, height = 0;  // 0: as the picture itself has it
    Bytes bytes;
};

}  // namespace tsRtm::rtf
