#pragma once
// Records or rows of chains from one character form into another, field by field.
#include "tsRtm/database/records/RecordLayout.hpp"

namespace tsRtm {

// The form of records: code page 1252, the DOS code page, or UTF-16.
struct CharacterForm {
    bool wide = false;
    bool dos = false;
    bool operator==(const CharacterForm&) const = default;
};

// Knows the control and the layouts by reference to a copy of its own; a value.
class Recoding {
 public:
    // Of the records of this control, or of the rows of a chain's.
    Recoding(const clsControl& control, CharacterForm from, CharacterForm to);

    bool changes() const noexcept { return from_.wide() != to_.wide() || from_.dos() != to_.dos(); }
    const RecordLayout& to() const noexcept { return to_; }
    // Columns are taken over as they are; texts in UTF-8 are decoded and coded anew, and a field that is in
    // UTF-16 by itself stays so. What the new form lacks becomes "?". A record that was not filled gets the
    // new filler.
    void recode(BytesView record, Bytes& into) const;
    // Characters of a record that would become another one, and the first field that has such.
    struct Loss {
        int64 characters = 0;
        int32 field = 0;
    };
    Loss lossOf(BytesView record) const;

 private:
    void recode(const FieldLayout& from, const FieldLayout& to, BytesView columns,
                std::span<char> into) const;
    bool keepsForm(const FieldLayout& from, TextView characters) const;

    RecordLayout from_, to_;
    std::size_t before_;  // characters before the fields
    mutable Text value_;
};

}  // namespace tsRtm
