#include "tsRtm/frame/runtime/VariantText.hpp"

#include "tsRtm/frame/runtime/LocaleForms.hpp"
#include "tsRtm/frame/text/NumberText.hpp"

namespace tsRtm {

Text textOf(const Variant& value) {
    if (const Text* text = value.text()) return *text;
    if (const int32* number = value.number()) return toText(*number);
    if (const auto* number = std::get_if<float64>(&value)) return plainNumber(*number);
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? u"-1" : u"0";
    if (const auto* date = std::get_if<Date>(&value)) return rtmMain::GeneralDate(*date);
    return {};
}

}  // namespace tsRtm
