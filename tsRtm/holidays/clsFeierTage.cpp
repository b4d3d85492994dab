#include "tsRtm/holidays/clsFeierTage.hpp"

#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/calendar/days/DayNumbers.hpp"
#include "tsRtm/frame/messages/TextTables.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/holidays/rules/Feasts.hpp"
#include "tsRtm/holidays/rules/Seasons.hpp"
#include "tsRtm/holidays/rules/YearTable.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

using namespace holidays;

constexpr int32 kFirstDay = dates::kFloor + 1;
constexpr int32 kLastDay = 5373484;  // 31.12.9999

const clsDatum kCalendar;

// The last four characters of a number that has at least four.
Text fourDigits(int64 value) {
    const Text text = toText(value + 10000);
    return text.substr(text.size() - std::min<std::size_t>(text.size(), 4));
}

[[noreturn]] void notReckoned(TextView operation) {
    constexpr int32 kNotSupported = 445;
    raise(kNotSupported, u"clsFeierTage." + Text(operation), runtimeErrorText(kNotSupported));
}

}  // namespace

clsFeierTage::clsFeierTage() : table_(std::make_unique<YearTable>(0)) {}
clsFeierTage::~clsFeierTage() = default;
clsFeierTage::clsFeierTage(clsFeierTage&&) noexcept = default;
clsFeierTage& clsFeierTage::operator=(clsFeierTage&&) noexcept = default;

bool clsFeierTage::IstFeierTag(TextView Datum) {
    if (Datum.empty()) return false;
    table_->build(Datum, false);
    const auto [day, year] = tableDay(Datum);
    const auto* rule = table_->holidayOn(day, year);
    return rule && rule->isHolidayIn(rtmMain::state().bundesland);
}

std::vector<Text> clsFeierTage::TagNamen(TextView Datum) {
    std::vector<Text> names(1);
    if (Datum.empty()) return names;
    table_->build(Datum, false);
    const auto [day, year] = tableDay(Datum);
    for (int32 row = 1; row <= table_->rows(); ++row) {
        const auto& rule = table_->rule(row);
        if (table_->day(row) == day && rule.in(year)) names.emplace_back(rule.name);
    }
    return names;
}

std::vector<std::array<Text, 4>> clsFeierTage::FeierTage(int32 Jahr) { return rowsOf(Jahr, false); }

std::vector<std::array<Text, 4>> clsFeierTage::FeierTageOrthodox(int32 Jahr, bool /*Julianisch*/) {
    return rowsOf(Jahr, true);
}

std::vector<std::array<Text, 4>> clsFeierTage::rowsOf(int32 year, bool orthodox) {
    table_->build(u"0101" + fourDigits(year), orthodox);
    std::vector<std::array<Text, 4>> rows(static_cast<std::size_t>(table_->rows()) + 1);
    for (int32 row = 1; row <= table_->rows(); ++row) {
        const auto& rule = table_->rule(row);
        const bool noAdvent = orthodox && rule.name.find(u"Advent") != TextView::npos;
        const bool shown = rule.in(year) && !noAdvent;
        rows[static_cast<std::size_t>(row)] = {Text(rule.name), shown ? fourDigits(table_->day(row)) : Text(),
                                               toText(rule.kind), toText(rule.fixed)};
    }
    return rows;
}

Text clsFeierTage::NextWorkday(TextView Datum, int32 Mindestabstand) {
    if (Datum.empty()) return {};
    const bool back = Mindestabstand < 0;
    for (auto day = int64{kCalendar.JulianDay(Datum)} + Mindestabstand;; day += back ? -1 : 1) {
        if (day < kFirstDay || day > kLastDay) return {};
        const auto weekday = static_cast<int32>(day % 7);
        if (weekday >= Samstag) day += back ? Freitag - weekday : Sonntag + 1 - weekday;
        if (day < kFirstDay || day > kLastDay) return {};
        auto date = kCalendar.KalenderDay(static_cast<int32>(day));
        if (!IstFeierTag(date)) return date;
    }
}

Text clsFeierTage::AddBankWorkDays(TextView Datum, int32 Tage) {
    Text date(Datum);
    for (; Tage > 0 && !date.empty(); --Tage) date = NextWorkday(date, 1);
    return date;
}

Text clsFeierTage::Advent(TextView Datum) const {
    return Datum.empty() ? Text() : firstAdvent(dates::split(Datum).year);
}

Text clsFeierTage::Ostern(TextView Datum) const {
    return Datum.empty() ? Text() : easterSunday(dates::split(Datum).year);
}

int32 clsFeierTage::OsternGregorianisch(TextView Datum) const { return kCalendar.JulianDay(Ostern(Datum)); }

int32 clsFeierTage::OsternOrthodox(TextView Datum) const {
    return Datum.empty() ? 0 : orthodoxEaster(dates::split(Datum).year);
}

float64 clsFeierTage::Jahreszeitbeginn(int32 Jahr, eJahreszeit Ereignis) const {
    LocalZone zone;
    return seasonStart(Jahr, Ereignis, zone);
}

float64 clsFeierTage::TimeZone(TextView Datum) const { return LocalZone().hoursAhead(Datum); }

int32 clsFeierTage::Rechtsstand() const noexcept { return table_->lawAsOf(); }

void clsFeierTage::Rechtsstand(int32 JJJJMMTT) {
    if (JJJJMMTT != table_->lawAsOf()) table_ = std::make_unique<YearTable>(JJJJMMTT);
}

Text clsFeierTage::Gesetz(int32 Zeile) const {
    return Zeile >= 1 && Zeile <= table_->rows() ? Text(table_->law(Zeile)) : Text();
}

int32 clsFeierTage::Tierkreis(TextView) const { notReckoned(u"Tierkreis"); }
Text clsFeierTage::TierkreisZeichen(TextView) const { notReckoned(u"TierkreisZeichen"); }
float64 clsFeierTage::MondPhase(TextView) const { notReckoned(u"MondPhase"); }
Text clsFeierTage::MondPhasenName(TextView) const { notReckoned(u"MondPhasenName"); }
void clsFeierTage::SunMoonRiseSet(TextView) const { notReckoned(u"SunMoonRiseSet"); }

}  // namespace tsRtm
