// Numbers in five columns of a record: up to 99999 in decimal digits, beyond in base 94.
//
// A base-94 form is told by its first character, which is never a digit: the leading digit takes the sign as
// 32 more, and skips the ten codes of the decimal digits.
#include "tsRtm/frame/text/NumberCode.hpp"

namespace tsRtm::rtmMain {

namespace {

constexpr int32 base = 94;
constexpr int32 firstCode = 33;
constexpr int32 digits = 5;
constexpr int32 largestDecimal = 99999;
constexpr std::size_t sureDigits = 9;  // so many are an int32, whatever they are
constexpr int32 signMark = 32;
constexpr int32 firstDecimalDigit = 15;  // "0" less the first code
constexpr int32 decimalDigits = 10;
constexpr uint32 signBit = 0x80000000u;
constexpr int64 largestHead = 22845570;  // what may stand before the last digit

int32 leadingDigit(int32 digit, bool negative) noexcept {
    if (negative) digit += signMark;
    return digit >= firstDecimalDigit ? digit + decimalDigits : digit;
}

int32 undoLeadingDigit(int32 digit, bool& negative) noexcept {
    if (digit >= firstDecimalDigit) digit -= decimalDigits;
    negative = digit >= signMark;
    return negative ? digit - signMark : digit;
}

int32 decodeBase94(TextView text) noexcept {
    int64 value = 0;
    bool negative = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        int32 digit = text[i] - firstCode;
        if (digit < 0) break;
        if (i == 0) digit = undoLeadingDigit(digit, negative);
        if (value > largestHead || digit < 0 || digit >= base) return 0;
        value = value * base + digit;  // may pass the range of int32 by 26
    }
    if (value > INT32_MAX) return 0;
    const auto magnitude = static_cast<uint32>(value);
    return static_cast<int32>(negative ? magnitude | signBit : magnitude);
}

}  // namespace

Text EncodeNumber(int32 value) {
    if (value >= 0 && value <= largestDecimal) return toText(value);
    const bool negative = value < 0;
    uint32 rest = static_cast<uint32>(value) & ~signBit;
    Text text(digits, u' ');
    for (auto place = text.rbegin(); place != text.rend(); ++place) {
        auto digit = static_cast<int32>(rest % base);
        rest /= base;
        if (place + 1 == text.rend()) digit = leadingDigit(digit, negative);
        *place = static_cast<char16_t>(digit + firstCode);
    }
    return text;
}

int32 DecodeNumber(TextView text) noexcept {
    text = trimLeft(text);
    if (text.empty()) return 0;
    if (text.front() < u'0' || text.front() > u'9') return decodeBase94(text);
    text = trimRight(text);
    if (!IstZiffern(text)) return 0;
    if (text.size() > sureDigits) return roundToInt32(Val(text));
    int32 value = 0;
    for (const char16_t c : text) value = value * 10 + (c - u'0');
    return value;
}

}  // namespace tsRtm::rtmMain
