#include "tsRtm/platform/posix/PosixLocale.hpp"

#include <unicode/calendar.h>
#include <unicode/dcfmtsym.h>
#include <unicode/decimfmt.h>
#include <unicode/dtfmtsym.h>
#include <unicode/smpdtfmt.h>
#include <unicode/ucurr.h>

#include <array>
#include <cstdlib>
#include <map>
#include <string_view>

#include "tsRtm/platform/posix/CountryCodes.hpp"

namespace tsRtm::platform::posix {
namespace {

constexpr int32 kUnnumberedLocale = 4096;

Text toText(const icu::UnicodeString& text) {
    Text out(text.getBuffer(), static_cast<std::size_t>(text.length()));
    // The narrow no-break space of newer locale data has no place in code page 1252.
    for (auto& c : out)
        if (c == 0x202F) c = 0x00A0;
    return out;
}

bool isPatternLetter(char16_t c) noexcept { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }

// What stands between the first and the second field of a date or time pattern, without blanks.
Text markOf(TextView pattern) {
    std::size_t from = 0;
    while (from < pattern.size() && isPatternLetter(pattern[from])) ++from;
    std::size_t to = from;
    while (to < pattern.size() && !isPatternLetter(pattern[to])) ++to;
    return Text(trim(pattern.substr(from, to - from)));
}

Text patternOf(icu::DateFormat* format) {
    const std::unique_ptr<icu::DateFormat> owner(format);
    const auto* simple = dynamic_cast<const icu::SimpleDateFormat*>(format);
    icu::UnicodeString pattern;
    return simple ? toText(simple->toPattern(pattern)) : Text();
}

// 0 month first, 1 day first, 2 year first.
char16_t dateForm(TextView pattern) noexcept {
    switch (pattern.empty() ? u'd' : pattern.front()) {
        case u'M':
        case u'L':
            return u'0';
        case u'y':
        case u'u':
            return u'2';
        default:
            return u'1';
    }
}

// 0 symbol before, 1 behind; 2 and 3 the same with a blank between.
char16_t currencyForm(TextView pattern) noexcept {
    pattern = pattern.substr(0, pattern.find(u';'));
    const auto blank = [](char16_t c) { return c == u' ' || c == 0x00A0; };
    const auto sign = pattern.find(u'\u00A4');
    if (sign == TextView::npos) return u'3';
    const bool before = sign < pattern.find_first_of(u"#0");
    if (before) return sign + 1 < pattern.size() && blank(pattern[sign + 1]) ? u'2' : u'0';
    return sign > 0 && blank(pattern[sign - 1]) ? u'3' : u'1';
}

// Monday 0, where ICU counts from Sunday 1.
char16_t firstDay(int32 icuDay) noexcept { return static_cast<char16_t>(u'0' + (icuDay + 5) % 7); }

char16_t firstWeek(int32 minimalDays) noexcept {
    return minimalDays >= 7 ? u'1' : minimalDays >= 4 ? u'2' : u'0';
}

icu::Locale completed(const std::string& name) {
    icu::Locale locale(name.c_str());
    if (*locale.getCountry() != '\0') return locale;
    UErrorCode code = U_ZERO_ERROR;
    icu::Locale likely(locale);
    likely.addLikelySubtags(code);
    return U_SUCCESS(code) ? icu::Locale(locale.getLanguage(), likely.getCountry()) : locale;
}

}  // namespace

struct PosixLocale::Values {
    // German of Germany, the home of the library, as ICU tells it: a start there needs not load ICU's tables,
    // which costs most of the time and memory of a start.
    Values()
        : lcid(1031),
          items{{LocaleItem::country, u"49"},       {LocaleItem::countryName, u"Deutschland"},
                {LocaleItem::decimalMark, u","},    {LocaleItem::thousandsMark, u"."},
                {LocaleItem::currencySymbol, u"€"}, {LocaleItem::currencyDigits, u"2"},
                {LocaleItem::currencyForm, u"3"},   {LocaleItem::dateMark, u"."},
                {LocaleItem::dateForm, u"1"},       {LocaleItem::timeMark, u":"},
                {LocaleItem::timeForm, u"1"},       {LocaleItem::calendarType, u"1"},
                {LocaleItem::firstDayOfWeek, u"0"}, {LocaleItem::firstWeekOfYear, u"2"}},
          weekdays{u"Montag", u"Dienstag", u"Mittwoch", u"Donnerstag", u"Freitag", u"Samstag", u"Sonntag"},
          months{u"Januar", u"Februar", u"März",      u"April",   u"Mai",      u"Juni",
                 u"Juli",   u"August",  u"September", u"Oktober", u"November", u"Dezember"} {}

    explicit Values(const icu::Locale& locale) : lcid(static_cast<int32>(locale.getLCID())) {
        if (lcid == 0) lcid = kUnnumberedLocale;
        readCountry(locale);
        readNumbers(locale);
        readDates(locale);
        readNames(locale);
    }

    void readCountry(const icu::Locale& locale) {
        icu::UnicodeString name;
        items[LocaleItem::countryName] = toText(locale.getDisplayCountry(locale, name));
        if (const auto code = telephoneCode(locale.getCountry()); code != 0)
            items[LocaleItem::country] = tsRtm::toText(code);
    }

    void readNumbers(const icu::Locale& locale) {
        UErrorCode code = U_ZERO_ERROR;
        const std::unique_ptr<icu::NumberFormat> format(
            icu::NumberFormat::createCurrencyInstance(locale, code));
        const auto* decimal = dynamic_cast<const icu::DecimalFormat*>(format.get());
        if (U_FAILURE(code) || !decimal) return;
        const auto* symbols = decimal->getDecimalFormatSymbols();
        const auto symbol = [symbols](icu::DecimalFormatSymbols::ENumberFormatSymbol which) {
            return toText(symbols->getConstSymbol(which));
        };
        items[LocaleItem::decimalMark] = symbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol);
        items[LocaleItem::thousandsMark] = symbol(icu::DecimalFormatSymbols::kGroupingSeparatorSymbol);
        items[LocaleItem::currencySymbol] = symbol(icu::DecimalFormatSymbols::kCurrencySymbol);
        items[LocaleItem::currencyDigits] = tsRtm::toText(decimal->getMaximumFractionDigits());
        icu::UnicodeString pattern;
        items[LocaleItem::currencyForm] = Text(1, currencyForm(toText(decimal->toPattern(pattern))));
    }

    void readDates(const icu::Locale& locale) {
        const Text date = patternOf(icu::DateFormat::createDateInstance(icu::DateFormat::kShort, locale));
        const Text time = patternOf(icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, locale));
        items[LocaleItem::dateMark] = markOf(date);
        items[LocaleItem::dateForm] = Text(1, dateForm(date));
        items[LocaleItem::timeMark] = markOf(time);
        items[LocaleItem::timeForm] = time.find_first_of(u"Hk") == Text::npos ? u"0" : u"1";
        items[LocaleItem::calendarType] = u"1";
        UErrorCode code = U_ZERO_ERROR;
        const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(locale, code));
        if (U_FAILURE(code)) return;
        items[LocaleItem::firstDayOfWeek] = Text(1, firstDay(calendar->getFirstDayOfWeek(code)));
        items[LocaleItem::firstWeekOfYear] = Text(1, firstWeek(calendar->getMinimalDaysInFirstWeek()));
    }

    void readNames(const icu::Locale& locale) {
        UErrorCode code = U_ZERO_ERROR;
        const icu::DateFormatSymbols symbols(locale, code);
        if (U_FAILURE(code)) return;
        const auto context = icu::DateFormatSymbols::STANDALONE;
        const auto width = icu::DateFormatSymbols::WIDE;
        int32 count = 0;
        const auto* days = symbols.getWeekdays(count, context, width);
        for (int32 day = 0; day < 7 && count == 8; ++day)
            weekdays[static_cast<std::size_t>(day)] = toText(days[(day + 1) % 7 + 1]);
        const auto* names = symbols.getMonths(count, context, width);
        for (int32 month = 0; month < 12 && month < count; ++month)
            months[static_cast<std::size_t>(month)] = toText(names[month]);
    }

    int32 lcid;
    std::map<LocaleItem, Text> items;
    std::array<Text, 7> weekdays;
    std::array<Text, 12> months;
};

std::string environmentLocale() {
    const auto variable = [](const char* name) {
        const char* value = std::getenv(name);
        return std::string_view(value ? value : "");
    };
    auto name = variable("LC_ALL");
    if (name.empty()) name = variable("LANG");
    name = name.substr(0, name.find_first_of(".@"));
    if (name.empty() || name == "C" || name == "POSIX") return "de_DE";
    return std::string(name);
}

PosixLocale::PosixLocale(std::string name) : name_(std::move(name)) {}
PosixLocale::~PosixLocale() = default;

bool PosixLocale::become(std::string name) {
    if (name == name_) return false;
    name_ = std::move(name);
    values_.reset();
    return true;
}

const PosixLocale::Values& PosixLocale::values() {
    if (!values_ && name_ == "de_DE") values_ = std::make_unique<const Values>();
    if (!values_) values_ = std::make_unique<const Values>(completed(name_));
    return *values_;
}

int32 PosixLocale::lcid() { return values().lcid; }

Text PosixLocale::item(LocaleItem item) {
    const auto& items = values().items;
    const auto found = items.find(item);
    return found == items.end() ? Text() : found->second;
}

Text PosixLocale::weekdayName(int32 weekday) {
    return weekday >= 0 && weekday <= 6 ? values().weekdays[static_cast<std::size_t>(weekday)] : Text();
}

Text PosixLocale::monthName(int32 month) {
    return month >= 1 && month <= 12 ? values().months[static_cast<std::size_t>(month - 1)] : Text();
}

}  // namespace tsRtm::platform::posix
