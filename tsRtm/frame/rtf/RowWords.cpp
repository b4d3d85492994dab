#include "tsRtm/frame/rtf/RowWords.hpp"

#include <algorithm>
#include <utility>

#include "tsRtm/frame/rtf/BorderWords.hpp"

namespace tsRtm::rtf {
namespace {

int32 extent(const Token& word) noexcept { return std::clamp(word.number, 0, kLargestLength); }

}  // namespace

bool RowWords::take(const Token& word, const ColourTable& colours) {
    const auto name = word.name;
    if (name == u"trowd")
        *this = {};
    else if (name == u"trleft")
        row_.left = std::clamp(word.number, -kLargestLength, kLargestLength);
    else if (name == u"trgaph")
        padding_ = {0, extent(word), 0, extent(word)};
    else if (name == u"trqc")
        row_.alignment = Alignment::centred;
    else if (name == u"trqr")
        row_.alignment = Alignment::right;
    else if (name == u"clcbpat")
        cell_.background = colours.colour(word.number);
    else if (name == u"clvertalc")
        cell_.place = CellFormat::Place::middle;
    else if (name == u"clvertalb")
        cell_.place = CellFormat::Place::bottom;
    else if (name == u"clmrg")
        cell_.merged = true;
    else if (name == u"cellx")
        endCell(word);
    else
        return takeBorder(word, colours) || takePadding(word);
    return true;
}

// A row as a whole has no borders here; those of paragraphs are not for this class.
bool RowWords::takeBorder(const Token& word, const ColourTable& colours) {
    const auto name = word.name;
    if (name.starts_with(u"clbrdr") || name.starts_with(u"trbrdr")) {
        side_ = name.starts_with(u"cl") ? sideOf(name.substr(6)) : kOfRow;
        return true;
    }
    if (!name.starts_with(u"brdr") && name != u"brsp" && name != u"box") return false;
    if (name == u"box" || name == u"brdrbtw" || name == u"brdrbar" || sideOf(name.substr(4)) != kSides)
        side_ = kSides;
    if (side_ < kSides && name != u"brsp")
        describeBorder(word, colours, cell_.borders[static_cast<std::size_t>(side_)], cell_.borderColour);
    return side_ != kSides;
}

bool RowWords::takePadding(const Token& word) {
    // Of cells the words for top and left have changed places: so did the first writers, and all readers
    // follow.
    constexpr std::array swapped = {kLeft, kTop, kBottom, kRight};
    const bool ofRow = word.name.starts_with(u"trpadd");
    if (!ofRow && !word.name.starts_with(u"clpad")) return false;
    const auto side = static_cast<std::size_t>(sideOf(word.name.substr(ofRow ? 6 : 5)));
    if (side == kSides) return true;  // their units: all writers count in twips
    if (ofRow) {
        padding_[side] = extent(word);
    } else {
        cell_.padding[swapped[side]] = extent(word);
        padded_[swapped[side]] = true;
    }
    return true;
}

void RowWords::endCell(const Token& word) {
    CellFormat cell = std::exchange(cell_, {});
    const auto padded = std::exchange(padded_, {});
    side_ = kSides;
    cell.edge = std::clamp(word.number, 0, kWidestTable);
    if (row_.cells.size() == kMostCells || (!row_.cells.empty() && cell.edge <= row_.cells.back().edge))
        return;
    for (std::size_t side = 0; side < kSides; ++side)
        if (!padded[side]) cell.padding[side] = padding_[side];
    row_.cells.push_back(cell);
}

}  // namespace tsRtm::rtf
