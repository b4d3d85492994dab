#pragma once
// The user's locale.
#include "tsRtm/types/Text.hpp"

namespace tsRtm::platform {

// Items by their numbers, as ReadLocaleInfos reads them.
enum class LocaleItem : int32 {
    firstDayOfWeek = 4108,   // 0 Monday .. 6 Sunday
    firstWeekOfYear = 4109,  // 0 week of 1 January, 1 first full week, 2 first week of four days
    calendarType = 4105,     // 1 Gregorian
    country = 5,             // telephone number of the country: 49
    countryName = 6,
    decimalMark = 14,
    thousandsMark = 15,
    currencySymbol = 20,
    currencyDigits = 25,
    currencyForm = 27,  // 0 "€1", 1 "1€", 2 "€ 1", 3 "1 €"
    dateMark = 29,
    timeMark = 30,
    dateForm = 33,  // 0 month day year, 1 day month year, 2 year month day
    timeForm = 35,  // 0 12 hours, 1 24 hours
};

class LocaleValues {
 public:
    virtual ~LocaleValues() = default;
    // 1031 for German in Germany; its low byte is the language (7 German, 9 English, 10 Spanish, 12 French,
    // 16 Italian, 19 Dutch).
    virtual int32 lcid() = 0;
    virtual int32 langId() = 0;
    // The ANSI code page: 1252.
    virtual int32 codePage() = 0;
    // Empty for an item that the locale lacks.
    virtual Text item(LocaleItem item) = 0;
    // Full names; weekday 0 is Monday, month 1 is January. Empty outside 0..6 and 1..12.
    virtual Text weekdayName(int32 weekday) = 0;
    virtual Text monthName(int32 month) = 0;
};

}  // namespace tsRtm::platform
