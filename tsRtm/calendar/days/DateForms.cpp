#include "tsRtm/calendar/days/DateForms.hpp"

#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::dates {
namespace {

enum DateForm : int32 { monthDayYear = 0, dayMonthYear = 1, yearMonthDay = 2 };

int32 dateForm() noexcept { return rtmMain::state().locale.dateForm; }

bool isMonth(TextView piece) noexcept {
    const auto month = number(piece);
    return month >= 1 && month <= 12;
}

// The last eight characters of the text without its separators.
DateDigits withoutSeparators(TextView text, TextView separator) {
    const auto tail = [](TextView whole) {
        return whole.substr(whole.size() - std::min(whole.size(), DateDigits::kCapacity));
    };
    DateDigits digits;
    if (separator.empty() || text.find(separator) == TextView::npos) return digits += tail(text);
    return digits += tail(replaceAll(text, separator, u""));
}

// Seven characters lack the zero of the day, or have a digit too many in front.
DateDigits completed(const DateDigits& digits) noexcept {
    if (digits.size() != 7) return digits;
    DateDigits whole;
    if (isMonth(digits.between(2, 3))) return (whole += u"0") += digits.view();
    if (isMonth(digits.between(4, 5))) return whole += digits.from(2);
    return digits;
}

DateDigits joined(TextView first, TextView second, TextView third) noexcept {
    DateDigits digits;
    return ((digits += first) += second) += third;
}

TextView lastCharacters(TextView text, std::size_t count) noexcept {
    return text.substr(text.size() - std::min(text.size(), count));
}

}  // namespace

int32 number(TextView piece) noexcept {
    if (piece.size() > 9) return roundToInt32(Val(piece));
    int32 value = 0;
    for (const auto c : piece) {
        if (c < u'0' || c > u'9') return roundToInt32(Val(piece));
        value = value * 10 + (c - u'0');
    }
    return value;
}

DateDigits twoDigits(int64 value) noexcept {
    const auto text = toText(value + 100);
    DateDigits digits;
    return digits += lastCharacters(text, 2);
}

DateDigits localDigits(TextView date) {
    const TextView separator = rtmMain::state().locale.sepDate;
    const auto first = separator.empty() ? TextView::npos : date.find(separator);
    if (first != TextView::npos) {
        const auto second = date.find(separator, first + separator.size());
        const auto day = number(date.substr(0, first));
        if (day >= 1 && second != TextView::npos) {
            const auto monthAt = first + separator.size();
            // Day first in every locale: applications hand in separated dates this way.
            return completed(compose(day, number(date.substr(monthAt, second - monthAt)),
                                     number(date.substr(second + separator.size()))));
        }
    }
    return completed(withoutSeparators(date, separator));
}

DateDigits normalDigits(TextView date) {
    const auto local = localDigits(date);
    switch (dateForm()) {
        case monthDayYear:
            return joined(local.between(3, 4), local.between(1, 2), local.from(5));
        case yearMonthDay: {
            const auto text = local.view();
            const auto day = lastCharacters(text, 2);
            const auto yearMonth = text.substr(0, text.size() - day.size());
            const auto month = lastCharacters(yearMonth, 2);
            return joined(day, month, yearMonth.substr(0, yearMonth.size() - month.size()));
        }
        default:
            return local;
    }
}

DateDigits toLocal(const DateDigits& normal) noexcept {
    switch (dateForm()) {
        case monthDayYear:
            return joined(normal.between(3, 4), normal.between(1, 2), normal.from(5));
        case yearMonthDay:
            return joined(normal.between(5, 8), normal.between(3, 4), normal.between(1, 2));
        default:
            return normal;
    }
}

DateDigits sortDigits(TextView date) {
    // A stored day number: it sorts by its own text.
    if (date.empty() || date.front() == u'J') return {};
    const auto local = localDigits(date);
    switch (dateForm()) {
        case monthDayYear:
            return joined(local.between(5, 8), local.between(1, 4), {});
        case yearMonthDay:
            return local;
        default:
            return joined(local.between(5, 8), local.between(3, 4), local.between(1, 2));
    }
}

DateDigits compose(int64 day, int64 month, int64 year) noexcept {
    if (day == 0) {
        month -= 1;
        day = 99;
    }
    // Truncating division and a remainder with the sign of the month, as stored dates were made.
    if (month < 1) {
        year += month / 12 - 1;
        month = month % 12 + 12;
    } else if (month > 12) {
        year += (month - 1) / 12;
        month = (month - 1) % 12 + 1;
    }
    if (day < 0) day = 1;
    if (day > 28) day = std::min<int64>(day, daysInMonth(month, year));
    const auto yearText = toText(year + 10000);
    // A year up to 100 keeps two digits: the date stays a six-digit one.
    return toLocal(completed(joined(twoDigits(day).view(), twoDigits(month).view(),
                                    lastCharacters(yearText, year < 101 ? 2 : 4))));
}

int32 daysInMonth(int64 month, int64 year) noexcept {
    switch (month) {
        case 4:
        case 6:
        case 9:
        case 11:
            return 30;
        case 2:
            break;
        default:
            return 31;  // out of range too
    }
    if (year % 4 != 0) return 28;
    // 1600 and before: every fourth year, the century years included.
    return year % 100 == 0 && year % 400 != 0 && year >= 1700 ? 28 : 29;
}

}  // namespace tsRtm::dates
