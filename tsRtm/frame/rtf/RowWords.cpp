#include "tsRtm/frame/rtf/RowWords.hpp"

#include <algorithm>
#include <utility>

namespace tsRtm::rtf {
namespace {

constexpr int32 kThinnest = 10, kThickest = 75, kUsual = 15;

int32 extent(const Token& word) noexcept { return std::clamp(word.number, 0, kLargestLength); }

// The side of a word that ends in its letter.
int sideOf(TextView letter) noexcept {
    constexpr TextView letters = u"tlbr";
    const auto place = letter.size() == 1 ? letters.find(letter.front()) : TextView::npos;
    return place == TextView::npos ? kSides : static_cast<int>(place);
}

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

// First the side, then what its border is like. Those of paragraphs and of the row as a whole have other
// words for the side.
bool RowWords::takeBorder(const Token& word, const ColourTable& colours) {
    const auto name = word.name;
    if (name.starts_with(u"clbrdr")) {
        side_ = sideOf(name.substr(6));
        return true;
    }
    if (!name.starts_with(u"brdr") && !name.starts_with(u"trbrdr")) return false;
    if (name.starts_with(u"tr") || sideOf(name.substr(4)) != kSides) side_ = kSides;
    if (side_ == kSides) return true;
    auto& width = cell_.borders[static_cast<std::size_t>(side_)];
    if (name == u"brdrw")
        width = width > 0 ? std::clamp(word.number, kThinnest, kThickest) : 0;
    else if (name == u"brdrcf")
        cell_.borderColour = colours.colour(word.number);
    else
        width = name == u"brdrnone" || name == u"brdrnil" ? 0 : std::max(width, kUsual);
    return true;
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
