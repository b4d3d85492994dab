#pragma once
// One field of fixed width, as payment records have them.
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class DtAField {
 public:
    // What fills it up: 0 blanks, any other value "0".
    int32 FieldCharCompletion() const noexcept { return completion_; }
    void FieldCharCompletion(int32 value) noexcept { completion_ = value; }
    // Value first and filling behind it, or the other way round.
    bool IsLeftAligned() const noexcept { return leftAligned_; }
    void IsLeftAligned(bool value) noexcept { leftAligned_ = value; }
    // Characters in the file.
    int32 FieldLength() const noexcept { return length_; }
    void FieldLength(int32 value) noexcept { length_ = value; }
    // Kept in capitals, without what a payment file may not hold, and as long as it is: "Müller & Söhne"
    // becomes "MUELLER  SOEHNE".
    Text FieldValue() const;
    void FieldValue(TextView value);
    const Text& FieldName() const noexcept { return name_; }
    void FieldName(TextView value) { name_ = value; }

    // As it stands in the file; a value that is too long loses its end. Where the field has no form, a report
    // that begins with "FEHLER".
    Text toFileString() const;

 private:
    int32 completion_ = 0;
    int32 length_ = 0;
    bool leftAligned_ = false;
    Bytes value_;
    Text name_;
};

}  // namespace tsRtm
