#pragma once
#include "tsRtm/frame/rtf/HeadTables.hpp"

namespace tsRtm::rtf {

// The words that tell of a row of a table and of its cells. They stand before its text, or behind it.
class RowWords {
 public:
    // Whether the word was one of theirs.
    bool take(const Token& word, const ColourTable& colours);
    const RowFormat& row() const noexcept { return row_; }

 private:
    bool takeBorder(const Token& word, const ColourTable& colours);
    bool takePadding(const Token& word);
    void endCell(const Token& word);

    // Of a row that tells nothing of it.
    static constexpr int32 kUsualPadding = 70;

    RowFormat row_;
    std::array<int32, kSides> padding_{kUsualPadding, kUsualPadding, kUsualPadding,
                                       kUsualPadding};  // of a cell that has none of its own
    CellFormat cell_;                                   // the one that its \\cellx will end
    std::array<bool, kSides> padded_{};
    static constexpr int kOfRow = kSides + 1;
    int side_ = kSides;  // of whose border the words tell; kSides: of a paragraph's
};

}  // namespace tsRtm::rtf
