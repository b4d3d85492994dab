#pragma once
// How a record lies in Data.tsd, and how a field's text becomes its columns and back.
//
// Data.tsd is an array of records without a header; record n (from 1) starts at (n - 1) times the record's
// length.
//
//   offset (characters)  size     content
//   0                    1        deleted mark: blank = live, "*" = deleted
//   1 + Position         Laenge   the field's text; twice the bytes for a field in UTF-16
//
// A Unicode database takes two bytes (UTF-16, little-endian) for every character of all that.
//
//   field                         stored form
//   alpha                         left-aligned, blanks behind
//   number, date                  right-aligned
//   date of 8, NachKomma AND 7=7  "J" and the day number, right-aligned
//   memo, blob                    pointer text (rtmMain::EncodeNumber), right-aligned in 5 columns
//   chain                         pointers, written by the chain store alone
//   UTF-8 field                   "~" and the UTF-8 form where that is longer than the text, else the text
//
// The fields of a chain's row lie in the same way behind its pointers (ChainFormat), but all of them
// left-aligned that are no numbers, and dates as they were given.
#include <bit>
#include <cstring>
#include <span>
#include <vector>

#include "tsRtm/control/clsControl.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm {

// One field as the record sees it.
struct FieldLayout {
    uint32 offset = 0;  // bytes from the start of the record
    uint32 bytes = 0;   // bytes in the record
    int32 length = 0;   // characters
    int32 typ = 0;
    int32 nachKomma = 0;
    bool special = false;  // Typ is 254 or 255
    bool alpha = false;
    bool pointer = false;  // memo or blob
    bool chain = false;
    bool wide = false;  // UTF-16 in the file
    bool utf8 = false;
    bool julian = false;   // a date stored as "J" and its day number
    bool date = false;     // Typ AND 7 = 7
    bool number = false;   // Typ AND 7 = 5
    bool left = false;     // its text begins in the first column
    bool inPlace = false;  // its text is its trimmed bytes in code page 1252, and it has at most 64 of them
    uint64 bits = 0;       // then a bit for each of them
    // A key takes the sortable form of the date.
    bool sortsAsDate() const noexcept { return date && nachKomma < 2; }
    // The bytes of the field are its text, but for blanks at its end or before it, and for a date told as a
    // day number.
    bool plain() const noexcept { return !wide && !utf8 && !julian; }
    bool tellsDayNumber(BytesView text) const noexcept { return date && text.starts_with('J'); }
    // Its columns name a place in a side file: they never go from a record in memory to the file.
    bool namesPlace() const noexcept { return pointer || chain; }
    // The bytes of an 8-bit field without the blanks that fill it up.
    BytesView trimmed(BytesView columns) const noexcept;
};

// Made once at the opening; a value, independent of the control file's object.
class RecordLayout {
 public:
    RecordLayout() = default;
    // Of a database's records, or of a chain's rows. `wide`: two bytes a character; `dos`: 8-bit text is in
    // the DOS code page.
    RecordLayout(const clsControl& control, bool wide, bool dos);

    int32 fields() const noexcept { return count_; }
    // 1..fields().
    const FieldLayout& field(int32 number) const noexcept {
        return fields_[static_cast<std::size_t>(number)];
    }
    bool has(int32 number) const noexcept { return number >= 1 && number <= fields(); }
    // Bytes of a record.
    uint32 bytes() const noexcept { return bytes_; }
    uint32 unit() const noexcept { return wide_ ? 2 : 1; }
    uint64 offsetOf(int32 record) const noexcept { return uint64{bytes_} * static_cast<uint64>(record - 1); }
    bool wide() const noexcept { return wide_; }
    bool dos() const noexcept { return dos_; }
    // Some field is declared to lie in UTF-16 by itself: only single fields can be read and written.
    bool mixed() const noexcept { return mixed_; }
    bool namesPlaces() const noexcept { return namesPlaces_; }

    static bool isDeleted(BytesView record) noexcept { return !record.empty() && record[0] == '*'; }
    void setDeleted(std::span<char> record, bool deleted) const noexcept;
    // A record of blanks; one that was allocated but not filled: "*" and the greatest character.
    const Bytes& blank() const noexcept { return blank_; }
    Bytes unfilled() const;
    // Lays the columns that name places in side files over a record: those of `stored`, blanks where that is
    // empty.
    void keepPlaces(BytesView stored, std::span<char> record) const noexcept;
    BytesView bytesOf(const FieldLayout& field, BytesView record) const noexcept {
        return field.offset >= record.size() ? BytesView() : record.substr(field.offset, field.bytes);
    }

    enum class Decode {
        value,  // the field's text
        whole,  // memo, blob and chain fields with their blanks, as a record keeps them in memory
    };
    // The text of a field from its bytes, into a Text whose room is kept.
    void decode(const FieldLayout& field, BytesView bytes, Decode how, Text& into) const;
    // The columns of a field, all of them, from its text; too long a text is cut.
    void encode(const FieldLayout& field, TextView text, std::span<char> into) const;
    // The characters of columns as they are, blanks and all, and back: what a change of the code page takes
    // over. What the file has no character for becomes "?".
    Text characters(BytesView bytes, bool wide) const {
        return wide ? fromUtf16Le(bytes) : fromRecordCode(bytes);
    }
    void putCharacters(TextView text, bool wide, std::span<char> into) const {
        fill(into, text, false, wide);
    }
    // The whole record in memory text, as it stands in the file.
    Text text(BytesView record) const;
    // 8-bit text between memory and the record's code page.
    Text fromRecordCode(BytesView bytes) const;
    Bytes toRecordCode(TextView text) const;

 private:
    void fill(std::span<char> into, TextView text, bool right, bool wide) const;

    std::vector<FieldLayout> fields_{1};  // from 1
    int32 count_ = 0;
    uint32 bytes_ = 1;
    Bytes blank_ = " ";
    bool wide_ = false;
    bool dos_ = false;
    bool mixed_ = false;
    bool namesPlaces_ = false;
};

inline BytesView FieldLayout::trimmed(BytesView columns) const noexcept {
    // Fields are mostly blanks at one end; eight of them are looked at in one step. A byte that is none is a
    // byte that is not 0 in what this gives, the first one lowest.
    const auto eight = [](const char* at) {
        uint64 word = 0;
        std::memcpy(&word, at, sizeof word);
        if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
        return word ^ 0x2020202020202020;
    };
    constexpr auto step = static_cast<std::ptrdiff_t>(sizeof(uint64));
    const char* from = columns.data();
    const char* to = from + columns.size();
    if (left) {
        for (; to - from >= step; to -= step)
            if (const uint64 other = eight(to - step); other != 0) {
                to -= std::countl_zero(other) / 8;
                return {from, static_cast<std::size_t>(to - from)};
            }
        while (to != from && to[-1] == ' ') --to;
    } else {
        for (; to - from >= step; from += step)
            if (const uint64 other = eight(from); other != 0) {
                from += std::countr_zero(other) / 8;
                return {from, static_cast<std::size_t>(to - from)};
            }
        while (to != from && *from == ' ') ++from;
    }
    return {from, static_cast<std::size_t>(to - from)};
}

}  // namespace tsRtm
