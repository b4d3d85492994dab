#pragma once
// Named properties of a record: lines of key, "=" and value in its property memo, separated by carriage
// returns.
#include <optional>
#include <vector>

#include "tsRtm/database/memos/MemoWrite.hpp"

namespace tsRtm {

struct RecordProperty {
    Text key;
    Text value;
};

// Keys are found without regard to case, the first one of several; lines without "=" are no properties, and
// stay.
namespace propertyText {

// Empty where there is none.
Text valueOf(TextView text, TextView key);
// In the place of the first line with this key, or behind the last line.
void set(Text& text, const RecordProperty& property);
void set(Text& text, const std::vector<RecordProperty>& properties);
std::vector<RecordProperty> all(TextView text);
// Raises 380 for an empty key, "=" or a line break in it, and for a line break in the value.
void check(const RecordProperty& property);

}  // namespace propertyText

// Puts properties into the memo as it is when the database lock is held: what others set meanwhile stays.
class PropertyWrite final : public SideWrite {
 public:
    // All outlive it.
    PropertyWrite(MemoStores& stores, int32 field, const std::vector<RecordProperty>& properties)
        : stores_(stores), field_(field), properties_(properties) {}

    void prepare(BytesView stored, std::span<char> image) override;
    void flush() override;
    void finish() noexcept override;
    void undo() noexcept override;

 private:
    Text storedText(BytesView stored);

    MemoStores& stores_;
    int32 field_;
    const std::vector<RecordProperty>& properties_;
    std::optional<MemoWrite> write_;  // nothing where the text is that already
};

}  // namespace tsRtm
