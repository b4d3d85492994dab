#pragma once
// The text order of the library: German word order without regard to case, frozen, the same on every machine.
//
// Index files are shared for decades, so the order may not follow the system's. Base letters first, then
// accents, then form; "ß" equals "ss"; hyphen, apostrophe and dashes weigh only when all else is equal;
// control characters least, NUL and the soft hyphen not at all. Three faces that agree on all texts: compare,
// a search key that compares against records where they lie, and a sort key whose bytes compare as the texts
// do.
//
// "Pieces" are the parts of one text that lie apart: the pieces stand for their bytes joined by one blank
// each, as index keys of several fields are made. Nothing here fails; the state is constant, but for the ICU
// collator behind characters outside code page 1252, which serves one thread.
#include <compare>
#include <span>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

using Pieces = std::span<const BytesView>;
void appendJoined(Bytes& text, Pieces pieces);

// Texts of code page 1252 where they lie: below, equal or above.
std::strong_ordering compareAnsi(BytesView a, BytesView b) noexcept;
// Texts in memory; characters outside code page 1252 sort behind all of it, among themselves by ICU.
std::strong_ordering compareText(TextView a, TextView b);
inline int32 TextCompare(TextView a, TextView b) {
    const auto order = compareText(a, b);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

// Appends the sort key; keys compare by memcmp, then length, as their texts do. A key holds no byte 00, and
// is as long as the text where that has no accents, hyphens and the like.
void appendSortKeyAnsi(Bytes& key, BytesView text);
void appendSortKeyAnsi(Bytes& key, Pieces pieces);
void appendSortKey(Bytes& key, TextView text);
// The first bytes of a sort key, as many as there is room for, zeros behind its end.
void sortKeyStartAnsi(std::span<char> into, Pieces pieces);

// The character of code page 1252 that sorts last: 8E, "Ž", the first in code order among its equals.
uint8 lastAnsiByte() noexcept;

// A text of code page 1252 that is compared with many others, as an index search does. Comparing allocates
// nothing.
class AnsiSearchKey {
 public:
    AnsiSearchKey() = default;
    explicit AnsiSearchKey(BytesView text) { assign(Pieces(&text, 1)); }
    // Another text; the room is kept.
    void assign(Pieces pieces);

    const Bytes& text() const noexcept { return text_; }
    const Bytes& sortKey() const noexcept { return key_; }

    // The search text against a record's key: the answer of compareAnsi(text, joined pieces).
    std::strong_ordering compare(Pieces record) const noexcept;
    std::strong_ordering compare(BytesView record) const noexcept { return compare(Pieces(&record, 1)); }

 private:
    Bytes text_;
    Bytes key_;
    unsigned marks_ = 0;  // levels behind the base that the text has
};

// Order of two texts in the DOS code page: byte by byte through a fold table (case folded, Ä as A, Ö as O, Ü
// as U, ß as S, accented letters as their base letters, all else by its code), 255 greatest.
std::strong_ordering compareDos(BytesView a, BytesView b) noexcept;
void appendSortKeyDos(Bytes& key, BytesView text);
void appendSortKeyDos(Bytes& key, Pieces pieces);

// The same as AnsiSearchKey for the DOS code page.
class DosSearchKey {
 public:
    explicit DosSearchKey(BytesView text) { appendSortKeyDos(key_, text); }

    const Bytes& sortKey() const noexcept { return key_; }

    std::strong_ordering compare(Pieces record) const noexcept;
    std::strong_ordering compare(BytesView record) const noexcept { return compare(Pieces(&record, 1)); }

 private:
    Bytes key_;
};

}  // namespace tsRtm
