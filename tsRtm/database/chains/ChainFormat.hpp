#pragma once
// How the rows of a chain field lie in KetteDat.nnn, and how the field's columns in a record lead to them.
//
// KetteDat.nnn is an array of rows without a header; row n (from 1) starts at (n - 1) times R. L is the
// length of the chain field in the record, R is L and the fields of the chain (KetteCtl.nnn). A pointer is a
// row number, right-aligned in w characters: w = L where L is below 8, and a row has one pointer; else w = L
// / 2, and it has two. Five characters hold the text of rtmMain::EncodeNumber, other widths decimal digits. 0
// and blanks lead nowhere.
//
//   where (characters)     offset  size   content
//   row 1, the head        0       w      Hoch, the highest row used
//                          w       w      Frei, the next row to give out: a free one, or Hoch + 1
//   any other row          0       w      with two pointers: the row before
//                          0 or w  w      the next row: at 0 where there is one pointer
//                          L       R - L  the fields, as RecordLayout tells
//   a free row             0       w      the next free row
//   the field of a record  0       w      the first row
//                          L - w   w      with two pointers: the last row
//
// Where the control of the chain is in Unicode every character of a row takes two bytes (UTF-16,
// little-endian); the field is as the record. Row 1 is no data: a pointer to it ends a chain.
#include "tsRtm/database/records/RecordLayout.hpp"

namespace tsRtm {

struct ChainHead {
    int32 hoch = 1;
    int32 frei = 2;
    bool operator==(const ChainHead&) const = default;
};

// What the field of a record tells; with one pointer there is no last row.
struct ChainEnds {
    int32 first = 0;
    int32 last = 0;
};

// A value, independent of what it was made from.
class ChainFormat {
 public:
    static constexpr int32 kFirstRow = 2;

    ChainFormat() = default;
    // The chain's field in the record, and the layout of its rows.
    ChainFormat(const FieldLayout& field, const RecordLayout& rows);

    // Row 1 has room for its two numbers; else there can be no chain.
    bool usable() const noexcept { return width_ > 0 && rowBytes_ >= 2 * pointerBytes(); }
    int32 width() const noexcept { return width_; }
    bool paired() const noexcept { return length_ >= kPairedFrom; }
    uint32 rowBytes() const noexcept { return rowBytes_; }
    Bytes blankRow() const;
    uint64 offsetOf(int32 row) const noexcept { return uint64{rowBytes_} * static_cast<uint64>(row - 1); }
    uint32 dataOffset() const noexcept { return static_cast<uint32>(length_) * unit_; }
    // The greatest row number that is given out.
    int32 greatest() const noexcept;

    // A pointer of a row: its bytes, and where it stands.
    uint32 pointerBytes() const noexcept { return static_cast<uint32>(width_) * unit_; }
    Bytes pointer(int32 row) const { return encode(row, unit_); }
    static constexpr uint32 kLinkOffset = 0;
    static constexpr uint32 kPreviousOffset = 0;
    uint32 nextOffset() const noexcept { return paired() ? pointerBytes() : 0; }
    int32 link(BytesView row) const { return at(row, kLinkOffset); }
    int32 next(BytesView row) const { return at(row, nextOffset()); }
    int32 previous(BytesView row) const { return paired() ? at(row, kPreviousOffset) : 0; }
    // Lays both over a row.
    void pointers(int32 previous, int32 next, std::span<char> row) const;

    ChainHead head(BytesView firstRow) const { return {at(firstRow, 0), at(firstRow, pointerBytes())}; }
    // The beginning of row 1.
    Bytes head(ChainHead head) const { return pointer(head.hoch) + pointer(head.frei); }

    ChainEnds ends(BytesView columns) const;
    // All columns of the field; blanks for a chain without rows.
    void ends(ChainEnds ends, std::span<char> columns) const;

 private:
    static constexpr int32 kPairedFrom = 8;

    int32 at(BytesView row, uint32 offset) const { return decode(row.substr(offset, pointerBytes()), unit_); }
    int32 decode(BytesView bytes, uint32 unit) const;
    Bytes encode(int32 row, uint32 unit) const;

    int32 length_ = 0;
    int32 width_ = 0;
    uint32 unit_ = 1;       // bytes of a character in a row
    uint32 fieldUnit_ = 1;  // and in the field
    uint32 rowBytes_ = 0;
};

}  // namespace tsRtm
