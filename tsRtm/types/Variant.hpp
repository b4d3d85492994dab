#pragma once
// A tagged value for the few operations that take a number or a name.
#include <memory>
#include <variant>
#include <vector>

#include "tsRtm/types/Date.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

struct Null {
    constexpr bool operator==(const Null&) const = default;
};

// Base of what a Variant can hold by counted reference.
class Object {
 public:
    virtual ~Object() = default;
};

// Empty (std::monostate), Null, number, text, date, flag, object or list of Variants.
struct Variant;
using VariantList = std::vector<Variant>;
struct Variant : std::variant<std::monostate, Null, int32, float64, bool, Text, Date, std::shared_ptr<Object>,
                              VariantList> {
    using variant::variant;
    Variant(const char16_t* text) : variant(Text(text)) {}
    Variant(TextView text) : variant(Text(text)) {}

    bool isEmpty() const noexcept { return index() == 0; }
    const Text* text() const noexcept { return std::get_if<Text>(this); }
    const int32* number() const noexcept { return std::get_if<int32>(this); }
};

}  // namespace tsRtm
