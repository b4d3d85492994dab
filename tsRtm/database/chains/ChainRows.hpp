#pragma once
// The fields of a chain's row between their bytes and their texts.
#include "tsRtm/database/records/RecordLayout.hpp"

namespace tsRtm {

// By the control of the chain. A memo's or blob's cell is its pointer text. Not thread-safe.
class ChainRows {
 public:
    ChainRows() = default;
    explicit ChainRows(const RecordLayout& layout) : layout_(layout) {}

    const RecordLayout& layout() const noexcept { return layout_; }
    int32 fields() const noexcept { return layout_.fields(); }
    // A whole row: cells that are missing are empty, those behind the last field are passed over. Its
    // pointers are blank.
    Bytes encode(std::span<const Text> cells) const;
    // Rows one behind the other.
    Bytes encode(const std::vector<std::vector<Text>>& rows) const;
    // The cells of a whole row, without blanks at either end.
    void decode(BytesView row, std::vector<Text>& cells) const;
    // Whole rows, one behind the other, with blanks in the place of their pointers.
    Bytes withoutPointers(BytesView rows) const;
    // Two rows say the same, whatever blanks they have.
    bool sameCells(BytesView a, BytesView b) const;

 private:
    RecordLayout layout_;
    mutable std::vector<Text> one_, other_;
};

}  // namespace tsRtm
