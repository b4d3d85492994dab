#include "desktop/fields/Spelling.hpp"

#include <algorithm>
#include <optional>
#include <vector>

#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/types/Digits.hpp"

namespace tsRtm::desktop {
namespace {

constexpr std::size_t kShortestIban = 15;
constexpr std::size_t kGroup = 4;

bool isLetter(char16_t c) noexcept { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }

bool separates(char16_t c) {
    return TextView(u".-/ ").find(c) != TextView::npos ||
           rtmMain::state().locale.sepDate.find(c) != Text::npos;
}

// The runs of digits of a date; nothing for a text with other signs than digits and separators.
std::optional<std::vector<Text>> numbersOf(TextView shown) {
    std::vector<Text> numbers;
    bool within = false;
    for (const char16_t c : shown) {
        if (!isDigit(c) && !separates(c)) return std::nullopt;
        if (isDigit(c) && !within) numbers.emplace_back();
        within = isDigit(c);
        if (within) numbers.back() += c;
    }
    return numbers;
}

Text twoDigits(const Text& number) { return number.size() == 1 ? u"0" + number : number; }

// Day, month and year of a date, as far as they are typed.
struct Typed {
    Text day, month, year;
    bool whole() const noexcept {
        return day.size() == 2 && month.size() == 2 && (year.size() == 2 || year.size() == 4);
    }
    Text digits() const { return clsDatum().LokalDatum(day + month + year); }
};

// With separators: day first, or the year where the first number has four digits.
Typed byParts(std::vector<Text> numbers) {
    if (numbers.size() == 3 && numbers[0].size() == 4) std::swap(numbers[0], numbers[2]);
    numbers.resize(3);
    return {twoDigits(numbers[0]), twoDigits(numbers[1]), numbers[2]};
}

// Digits alone stand in the user's order.
Typed byPlace(const Text& number) {
    const Text digits = number.size() % 2 == 1 ? u"0" + number : number;
    if (digits.size() == 2) return {digits, {}, {}};
    if (digits.size() == 4) {
        const Text front = digits.substr(0, 2), back = digits.substr(2);
        return rtmMain::state().locale.dateForm == 1 ? Typed{front, back, {}} : Typed{back, front, {}};
    }
    if (digits.size() > 8) return {};
    const Text normal = clsDatum().NormDatum(digits);
    return {normal.substr(0, 2), normal.substr(2, 2), normal.substr(4)};
}

Text dateInFull(TextView shown) {
    const auto numbers = numbersOf(shown);
    if (!numbers || numbers->empty() || numbers->size() > 3) return Text(shown);
    Typed date = numbers->size() == 1 ? byPlace(numbers->front()) : byParts(*numbers);
    const clsDatum calendar;
    const auto normal = [&](int32 day) { return calendar.NormDatum(calendar.KalenderDay(day)); };
    const Text today = normal(calendar.DateToJulian(rtmMain::system().clock.now()));
    if (date.month.empty()) date.month = today.substr(2, 2);
    if (date.year.empty()) date.year = today.substr(4);
    if (!date.whole()) return Text(shown);
    if (date.year.size() == 2)
        date.year = normal(calendar.JulianDay(calendar.LokalDatum(u"0101" + date.year))).substr(4);
    return calendar.DateOK(date.digits()) ? calendar.DateTo8(date.digits()) : Text(shown);
}

Text dateValue(TextView shown) {
    const auto numbers = numbersOf(shown);
    if (!numbers) return Text(shown);
    if (numbers->size() == 3)
        if (const auto date = byParts(*numbers); date.whole()) return date.digits();
    Text digits;
    for (const Text& number : *numbers) digits += number;
    return digits;
}

// Accounts keep their blanks: only in a number with a country are they for the eye.
Text ibanValue(TextView shown) {
    const auto first = std::find_if(shown.begin(), shown.end(), [](char16_t c) { return c != u' '; });
    return first != shown.end() && isLetter(*first) ? replaceAll(shown, u" ", u"") : Text(shown);
}

Text ibanInFull(TextView shown) {
    const Text value = upper(ibanValue(shown));
    const auto good = [&](std::size_t from, std::size_t to, bool letters, bool digits) {
        return std::all_of(value.begin() + static_cast<std::ptrdiff_t>(from),
                           value.begin() + static_cast<std::ptrdiff_t>(to),
                           [&](char16_t c) { return (letters && isLetter(c)) || (digits && isDigit(c)); });
    };
    if (value.size() < kShortestIban || !good(0, 2, true, false) || !good(2, 4, false, true) ||
        !good(4, value.size(), true, true))
        return Text(shown);
    Text grouped;
    for (std::size_t at = 0; at < value.size(); at += kGroup)
        grouped += (at == 0 ? u"" : u" ") + value.substr(at, kGroup);
    return grouped;
}

}  // namespace

Spelling spellingOf(eValidatorType type) noexcept {
    if (type == Datum) return Spelling::date;
    return type == IBAN || type == KontoOrIBAN ? Spelling::iban : Spelling::plain;
}

Text valueOf(Spelling spelling, TextView shown) {
    if (spelling == Spelling::date) return dateValue(shown);
    return spelling == Spelling::iban ? ibanValue(shown) : Text(shown);
}

Text inFull(Spelling spelling, TextView shown) {
    if (spelling == Spelling::date) return dateInFull(shown);
    return spelling == Spelling::iban ? ibanInFull(shown) : Text(shown);
}

}  // namespace tsRtm::desktop
