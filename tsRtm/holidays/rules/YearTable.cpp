#include "tsRtm/holidays/rules/YearTable.hpp"

#include <cmath>

#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/calendar/days/DayNumbers.hpp"
#include "tsRtm/holidays/rules/Amendments.hpp"
#include "tsRtm/holidays/rules/Feasts.hpp"
#include "tsRtm/holidays/rules/LocalZone.hpp"
#include "tsRtm/holidays/rules/RuleTable.hpp"
#include "tsRtm/holidays/rules/Seasons.hpp"

namespace tsRtm::holidays {
namespace {

constexpr auto kRules = [] {
    std::array<HolidayRule, kRuleTexts.size()> rules;
    for (std::size_t i = 0; i < rules.size(); ++i) rules[i] = parsedRule(kRuleTexts[i]);
    return rules;
}();

// What days that move are counted from in one year.
class Bases {
 public:
    Bases(int32 year, bool orthodox)
        : year_(year),
          easter_(orthodox ? calendar_.KalenderDay(orthodoxEaster(year)) : easterSunday(year)),
          advent_(orthodox ? Text() : firstAdvent(year)) {}

    // A date and the days from it; empty for a day that does not come in this year.
    struct Base {
        Text date;
        int32 offset;
    };
    Base of(const HolidayRule& rule) {
        switch (rule.letter) {
            case u'O':
                return {easter_, rule.offset};
            case u'A':
                return {advent_, rule.offset};
            case u'M':
                return mothersDay();
            case u'E':
                return fromWeekdayOf(calendar_.DtoC(29, 9, year_), 6);
            case u'W':
                return fromWeekdayOf(calendar_.DtoC(1, 10, year_), -1);
            case u'S':
                return {zone_.summerTimeBegins(year_), 0};
            case u'X':
                return {zone_.summerTimeEnds(year_), 0};
            default: {  // J
                const auto day = roundToInt32(std::trunc(seasonStart(year_, rule.offset, zone_)));
                return {calendar_.KalenderDay(day), 0};
            }
        }
    }

 private:
    Base fromWeekdayOf(Text date, int32 days) const {
        const int32 weekday = calendar_.DayOfWeek(date);
        return {std::move(date), days - weekday};
    }
    // The second Sunday of May, and a week later where that is Whit Sunday.
    Base mothersDay() const {
        auto base = fromWeekdayOf(calendar_.DtoC(1, 5, year_), 13);
        if (calendar_.JulianDay(base.date) + base.offset == calendar_.JulianDay(easter_) + 49)
            base.offset += 7;
        return base;
    }

    clsDatum calendar_;
    int32 year_;
    Text easter_, advent_;
    LocalZone zone_;
};

}  // namespace

YearTable::YearTable(int32 lawAsOf) : lawAsOf_(lawAsOf), rules_(1), days_(1) {
    for (const auto& rule : kRules) add(rule);
    for (const auto& amendment : kAmendments) {
        if (amendment.inForce > lawAsOf) continue;
        const auto rule = parsedRule(amendment.rule);
        if (amendment.ends != 0) rules_[static_cast<std::size_t>(amendment.ends)].to = rule.from - 1;
        add(rule);
        laws_.push_back(amendment.law);
    }
}

void YearTable::add(const HolidayRule& rule) {
    rules_.push_back(rule);
    days_.push_back(rule.fixed);
}

TextView YearTable::law(int32 row) const {
    const auto i = static_cast<std::size_t>(row) - 1;
    return i < kRules.size() ? TextView() : laws_[i - kRules.size()];
}

void YearTable::build(TextView date, bool orthodox) {
    const int32 year = dates::split(date).year;
    if (year == year_ && orthodox == orthodox_) return;
    const clsDatum calendar;
    Bases bases(year, orthodox);
    std::size_t skipped = 0;
    for (std::size_t row = 1; row < rules_.size(); ++row) {
        if (rules_[row].fixed != 0) continue;
        const auto base = bases.of(rules_[row]);
        if (base.date.empty()) {
            ++skipped;
            continue;
        }
        const auto day = calendar.NormDatum(calendar.AddDayC(base.date, base.offset));
        // A row that is left out moves all behind it up, onto fixed days too, and those stay so in this
        // table: an orthodox year has no Advent, and its seasons and summer time come where Christmas stood.
        days_[row - skipped] = dates::number(TextView(day).substr(0, 4));
    }
    year_ = year;
    orthodox_ = orthodox;
}

const HolidayRule* YearTable::holidayOn(int32 day, int32 year) const noexcept {
    for (std::size_t row = 1; row < days_.size(); ++row)
        if (days_[row] == day && rules_[row].kind != named && rules_[row].in(year)) return &rules_[row];
    return nullptr;
}

TableDay tableDay(TextView date) {
    // The first four characters whatever the locale: right where the day comes first.
    const auto local = dates::localDigits(date);
    return {dates::number(local.between(1, 4)), dates::number(local.from(5))};
}

}  // namespace tsRtm::holidays
