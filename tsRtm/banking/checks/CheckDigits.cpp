#include "tsRtm/banking/checks/CheckDigits.hpp"

#include <algorithm>

#include "tsRtm/types/Digits.hpp"

namespace tsRtm::checkDigits {
namespace {

constexpr uint64 kModulus = 97;
constexpr int32 kLetterOffset = 55;      // code of "A" minus its value 10
constexpr std::size_t kHead = 4;         // country and check digits
constexpr uint64 kReduceFrom = 1 << 30;  // leaves room for the five digits of any code

// The remainder of a number that comes digit by digit; divided as seldom as its room allows.
class Remainder {
 public:
    void put(char16_t c) noexcept {
        if (isDigit(c))
            shift(10, static_cast<uint64>(c - u'0'));
        else
            code(static_cast<int32>(c) - kLetterOffset);
    }
    void shift(uint64 by, uint64 value) noexcept {
        value_ = value_ * by + value;
        if (value_ >= kReduceFrom) value_ %= kModulus;
    }
    uint64 value() const noexcept { return value_ % kModulus; }

 private:
    void code(int32 number) noexcept {
        // A sign is a digit 0: codes below "0" give a negative number.
        if (number < 0) {
            shift(10, 0);
            number = -number;
        }
        uint64 by = 10;
        while (by <= static_cast<uint64>(number)) by *= 10;
        shift(by, static_cast<uint64>(number));
    }
    uint64 value_ = 0;
};

}  // namespace

OfIban of(TextView iban) noexcept {
    Remainder remainder;
    bool onlyDigits = true;
    for (const char16_t c : iban.substr(std::min(kHead, iban.size()))) {
        onlyDigits = onlyDigits && isDigit(c);
        remainder.put(c);
    }
    for (const char16_t c : iban.substr(0, 2)) remainder.put(c);
    remainder.shift(100, 0);
    return {static_cast<int32>(kModulus + 1 - remainder.value()), onlyDigits};
}

bool fit(TextView iban, const OfIban& wanted) noexcept {
    return iban.size() >= kHead && isDigit(iban[2]) && isDigit(iban[3]) &&
           (iban[2] - u'0') * 10 + (iban[3] - u'0') == wanted.number;
}

Text twoDigits(int32 number) { return toText(number + 100).substr(1); }

}  // namespace tsRtm::checkDigits
