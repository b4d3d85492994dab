#include "tsRtm/frame/rtf/BorderWords.hpp"

#include <algorithm>

namespace tsRtm::rtf {
namespace {

constexpr int32 kThinnest = 10, kThickest = 75, kUsual = 15, kWidestSpace = 620;
constexpr uint8 kAll = (1 << kSides) - 1;

// Of the sides that the words tell of now.
template <class Change>
void eachSide(const ParagraphState& paragraph, Change change) {
    for (std::size_t side = 0; side < kSides; ++side)
        if ((paragraph.boxSides >> side & 1) != 0) change(side);
}

}  // namespace

int sideOf(TextView letter) noexcept {
    constexpr TextView letters = u"tlbr";
    const auto place = letter.size() == 1 ? letters.find(letter.front()) : TextView::npos;
    return place == TextView::npos ? kSides : static_cast<int>(place);
}

void describeBorder(const Token& word, const ColourTable& colours, int32& width, Colour& colour) {
    if (word.name == u"brdrw")
        width = width > 0 ? std::clamp(word.number, kThinnest, kThickest) : 0;
    else if (word.name == u"brdrcf")
        colour = colours.colour(word.number);
    else
        width = word.name == u"brdrnone" || word.name == u"brdrnil" ? 0 : std::max(width, kUsual);
}

bool applyBoxWord(ParagraphState& paragraph, const Token& word, const ColourTable& colours) {
    const auto name = word.name;
    auto& box = paragraph.format.box;
    if (name == u"box") {
        paragraph.boxSides = kAll;
    } else if (name == u"cbpat") {
        box.background = colours.colour(word.number);
    } else if (name == u"brsp") {
        const int32 space = std::clamp(word.number, 0, kWidestSpace);
        eachSide(paragraph, [&](std::size_t side) { box.spaces[side] = space; });
    } else if (name == u"brdrbtw" || name == u"brdrbar") {
        paragraph.boxSides = 0;  // lines between paragraphs and beside them
    } else if (!name.starts_with(u"brdr")) {
        return false;
    } else if (const int side = sideOf(name.substr(4)); side != kSides) {
        paragraph.boxSides = static_cast<uint8>(1 << side);
    } else {
        eachSide(paragraph,
                 [&](std::size_t one) { describeBorder(word, colours, box.borders[one], box.borderColour); });
    }
    return true;
}

}  // namespace tsRtm::rtf
