#include "cli/shared/FieldRules.hpp"

#include <algorithm>

#include "tsRtm/calendar/days/DateText.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/types/Digits.hpp"

namespace tsRtm::cli {
namespace {

constexpr int32 kDecimalsMask = 7;
constexpr int32 kMonthFirst = 0, kYearFirst = 2;  // of the locale's date form, else the day is first

// "1.234.567" without its marks, nothing where the groups are no groups of three.
std::optional<Text> withoutGroups(TextView whole, char16_t mark) {
    Text out;
    std::size_t since = 0;
    bool marked = false;
    for (const char16_t c : whole) {
        if (c == mark) {
            if (marked ? since != 3 : since == 0 || since > 3) return std::nullopt;
            marked = true;
            since = 0;
        } else {
            out += c;
            ++since;
        }
    }
    if (marked && since != 3) return std::nullopt;
    return out;
}

struct NumberParts {
    bool negative = false;
    Text whole, decimals;
};

// Where both marks occur the last one is that of the decimals; a mark that occurs once is it as well.
std::optional<NumberParts> numberParts(TextView text) {
    NumberParts parts;
    if (text.starts_with(u'-') || text.starts_with(u'+')) {
        parts.negative = text.front() == u'-';
        text.remove_prefix(1);
    }
    const auto last = text.find_last_of(u".,");
    if (last == TextView::npos) {
        parts.whole = text;
    } else {
        const char16_t mark = text[last];
        const char16_t other = mark == u'.' ? u',' : u'.';
        const bool once = text.find(mark) == last;
        const auto whole = once ? withoutGroups(text.substr(0, last), other) : withoutGroups(text, mark);
        if (!whole) return std::nullopt;
        parts.whole = *whole;
        if (once) parts.decimals = text.substr(last + 1);
    }
    const bool digits = std::all_of(parts.whole.begin(), parts.whole.end(), isDigit) &&
                        std::all_of(parts.decimals.begin(), parts.decimals.end(), isDigit);
    if (!digits || (parts.whole.empty() && parts.decimals.empty())) return std::nullopt;
    return parts;
}

// Day, month and year as digits in the order of the locale.
Text inLocalOrder(const Text& day, const Text& month, const Text& year) {
    switch (rtmMain::state().locale.dateForm) {
        case kMonthFirst:
            return month + day + year;
        case kYearFirst:
            return year + month + day;
        default:
            return day + month + year;
    }
}

Text twoDigits(TextView text) { return text.size() == 1 ? Text(u"0").append(text) : Text(text); }

// The digits of a date in the order of the locale, of six or eight; empty for what has no form of a date.
Text dateDigits(TextView value) {
    if (IstZiffern(value)) return value.size() == 6 || value.size() == 8 ? Text(value) : Text();
    const char16_t mark = value.find(u'-') != TextView::npos ? u'-' : u'.';
    const auto first = value.find(mark);
    const auto second = first == TextView::npos ? first : value.find(mark, first + 1);
    if (second == TextView::npos) return {};
    const Text parts[] = {twoDigits(value.substr(0, first)),
                          twoDigits(value.substr(first + 1, second - first - 1)),
                          twoDigits(value.substr(second + 1))};
    if (!std::all_of(std::begin(parts), std::end(parts), [](const Text& p) { return IstZiffern(p); }))
        return {};
    const bool iso = mark == u'-';
    const Text& year = iso ? parts[0] : parts[2];
    const Text& day = iso ? parts[2] : parts[0];
    if (day.size() != 2 || parts[1].size() != 2 || (year.size() != 4 && (iso || year.size() != 2))) return {};
    return inLocalOrder(day, parts[1], year);
}

// Whether the code page of the records has the character, and gives it back as it was.
bool inCodePage(char16_t c, bool dos) {
    if (unicodeToAnsi(c) < 0) return false;
    if (!dos) return true;
    const Text one(1, c);
    return OemToChar(CharToOem(one)) == one;
}

}  // namespace

std::nullopt_t FieldRules::refuse(const std::string& label, const std::string& why) {
    reason_ = label + ": " + why;
    return std::nullopt;
}

std::optional<Text> FieldRules::accept(int32 number_, TextView value, const std::string& label) {
    const TSIO& field = control_.field(number_);
    const TextView trimmed = field.IsAlpha() ? trimRight(value) : trim(value);
    if (trimmed.empty()) return Text();
    if (field.IsMemo()) return Text(value);
    if (field.IsBlob()) return refuse(label, "a blob is written by: tsrtm db memo set --file");
    if (field.IsKette()) return refuse(label, "a chain cannot be written here");
    std::optional<Text> text = Text(trimmed);
    if (field.Datentyp() == typWERT) text = number(field, trimmed, label);
    if (field.Datentyp() == typDATUM) text = date(field, trimmed, label);
    if (!text || !fits(field, *text, label)) return std::nullopt;
    return text;
}

std::optional<Text> FieldRules::number(const TSIO& field, TextView value, const std::string& label) {
    const auto parts = numberParts(value);
    if (!parts) return refuse(label, "'" + toUtf8(value) + "' is no number");
    const auto decimals = static_cast<std::size_t>(field.NachKomma() & kDecimalsMask);
    if (parts->decimals.size() > decimals)
        return refuse(label, "'" + toUtf8(value) + "' has more decimals than " + std::to_string(decimals));
    Text text = parts->negative ? u"-" : u"";
    text += parts->whole.empty() ? u"0" : parts->whole;
    if (!parts->decimals.empty()) text += u"." + parts->decimals;
    return text;
}

std::optional<Text> FieldRules::date(const TSIO& field, TextView value, const std::string& label) {
    const auto& locale = rtmMain::state().locale;
    const bool yearFirst = locale.dateForm == kYearFirst;
    const auto shortened = [&](Text date) { return date.erase(yearFirst ? 0 : 4, 2); };
    const Text digits = dateDigits(value);
    // There and back: a day that the calendar lacks comes back as another.
    const Text full = digits.empty() ? Text() : KalenderDay(JulianDay(digits));
    if (full.empty() || (digits.size() == 8 ? full : shortened(full)) != digits)
        return refuse(label, "'" + toUtf8(value) + "' is no date");
    if (field.Laenge() < 8) {
        if (KalenderDay(JulianDay(shortened(full))) == full) return shortened(full);
        return refuse(label, "'" + toUtf8(value) + "' needs a field with room for four digits of the year");
    }
    if (field.Laenge() < 10) return full;
    const std::size_t head = yearFirst ? 4 : 2;
    return full.substr(0, head) + locale.sepDate + full.substr(head, 2) + locale.sepDate +
           full.substr(head + 2);
}

bool FieldRules::fits(const TSIO& field, const Text& text, const std::string& label) {
    const bool wide = control_.IstUnicode() || field.IsUnicode();
    if (!wide && !field.IsUTF8()) {
        const bool dos = !control_.IstAnsi();
        const auto bad =
            std::find_if(text.begin(), text.end(), [&](char16_t c) { return !inCodePage(c, dos); });
        if (bad != text.end()) {
            const bool pair = (*bad & 0xFC00) == 0xD800 && bad + 1 != text.end();
            refuse(label, "'" + toUtf8(Text(bad, bad + (pair ? 2 : 1))) + "' is not in code page " +
                              (dos ? "850" : "1252"));
            return false;
        }
    }
    std::size_t size = text.size();
    // Such a field takes the mark "~" and the longer form where a text has more than ASCII.
    if (field.IsUTF8() && !wide)
        if (const std::size_t utf8 = toUtf8(text).size(); utf8 > size) size = utf8 + 1;
    const auto room = static_cast<std::size_t>(std::max(field.Laenge(), 0));
    if (size <= room) return true;
    refuse(label, std::to_string(size) + " characters, the field has " + std::to_string(room));
    return false;
}

}  // namespace tsRtm::cli
