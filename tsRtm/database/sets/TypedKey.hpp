#pragma once
// What a caller types to find a record, in the forms that an index has.
#include <optional>

#include "tsRtm/database/index/IndexKeys.hpp"

namespace tsRtm {

// The position that "#5" names; "#0" stands for the first one. What is no number is a key.
std::optional<int32> positionIn(TextView typed);

// The text of one field as a key has it: a date without decimals takes its sortable form.
Text typedPart(const RecordLayout& layout, int32 field, TextView typed);
// Texts for the fields of a key, joined as keys are: a missing one before the last is a blank.
Text typedKey(const IndexKeys& keys, const RecordLayout& layout, std::span<const TextView> parts);

// Texts that fields are to have exactly, as many as are given.
class ExactParts {
 public:
    ExactParts(const RecordLayout& layout, std::span<const int32> fields, std::span<const TextView> parts);
    bool in(BytesView record) const;

 private:
    struct Part {
        const FieldLayout& field;
        Text text;
    };
    const RecordLayout& layout_;
    std::vector<Part> parts_;
};

// A text behind which no key begins: so many times the character that sorts last in these keys.
Text greatestText(const IndexKeys& keys, const RecordLayout& layout, int32 count);

}  // namespace tsRtm
