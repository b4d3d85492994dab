#include "tsRtm/calendar/clsDatum.hpp"

#include <cmath>

#include "tsRtm/calendar/days/DateText.hpp"
#include "tsRtm/calendar/days/DayNumbers.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

using dates::DateDigits;

Text text(const DateDigits& digits) { return Text(digits.view()); }

// LokalDatum on whatever it is given: its argument is tidied as any date first.
Text local(TextView normal) { return text(dates::toLocal(dates::localDigits(normal))); }

}  // namespace

// --- Forms

Text clsDatum::DateTo6(TextView Date8) const { return text(dates::localDigits(Date8)); }

Text clsDatum::NormDatum(TextView Datum) const { return text(dates::normalDigits(Datum)); }

Text clsDatum::LokalDatum(TextView Datum) const { return local(Datum); }

Text clsDatum::DateSort(TextView Datum) const { return tsRtm::DateSort(Datum); }

Text clsDatum::DateCheck(TextView Datum) const { return DateOK(Datum) ? DateSort(Datum) : Text(); }

bool clsDatum::DateOK(TextView Datum) const {
    if (Datum.size() <= 3) return false;
    const auto normal = dates::normalDigits(Datum);
    const auto day = dates::number(normal.between(1, 2));
    const auto month = dates::number(normal.between(3, 4));
    // The year as it stands: 24 is tested as the year 24.
    return month >= 1 && month <= 12 && day > 0 &&
           day <= dates::daysInMonth(month, dates::number(normal.from(5)));
}

void clsDatum::CtoD(TextView Datum, int32& Tag, int32& Monat, int32& Jahr) const {
    const auto parts = dates::split(Datum);
    Tag = parts.day;
    Monat = parts.month;
    Jahr = parts.year;
}

Text clsDatum::DtoC(int32 Tag, int32 Monat, int32 Jahr) const {
    return text(dates::compose(Tag, Monat, Jahr));
}

// --- Day numbers

int32 clsDatum::JulianDay(TextView Datum) const { return tsRtm::JulianDay(Datum); }

Text clsDatum::KalenderDay(int32 Datum) const { return tsRtm::KalenderDay(Datum); }

Text clsDatum::KalenderDayJulian(int32 Julian) const { return text(dates::julianDate(Julian)); }

int32 clsDatum::BankDay(TextView Datum) const { return dates::bankDay(Datum); }

int32 clsDatum::DifDateB(TextView VonDat, TextView BisDat) const { return BankDay(BisDat) - BankDay(VonDat); }

int32 clsDatum::DifDateC(TextView VonDat, TextView BisDat) const {
    return JulianDay(BisDat) - JulianDay(VonDat);
}

int32 clsDatum::DateToJulian(Date Datum) const {
    const auto day = std::floor(Datum.serial()) + dates::kSerialOffset;
    if (!(day >= dates::kFirstGregorianDay))
        raise(5, u"clsDatum.DateToJulian", u"Datum nicht im Bereich des gregorianischen Kalenders");
    return roundToInt32(day);
}

Date clsDatum::JulianToDate(int32 TagesZahl) const {
    constexpr TextView kSource = u"clsDatum.JulianToDate";
    if (TagesZahl < dates::kFirstGregorianDay) raise(5, kSource, u"Tageszahl zu klein für DATE-Typ");
    if (TagesZahl - dates::kSerialOffset >= dates::kSerialEnd)
        raise(5, kSource, u"Tageszahl zu groß für DATE-Typ");
    return Date(TagesZahl - dates::kSerialOffset);
}

// --- Arithmetic

Text clsDatum::AddDayB(TextView VonDat, int32 Tage) const {
    const auto n = int64{BankDay(VonDat)} + Tage - 1;
    return text(dates::compose(n % 360 % 30 + 1, n % 360 / 30 + 1, n / 360 + 1));
}

Text clsDatum::AddDayC(TextView VonDat, int32 Tage) const {
    const auto day = int64{JulianDay(VonDat)} + Tage;
    return local(KalenderDay(roundToInt32(static_cast<float64>(day))));
}

Text clsDatum::AddMonth(TextView InD, int32 MCnt) const {
    const auto parts = dates::split(InD);
    return text(dates::compose(parts.day, int64{parts.month} + MCnt, parts.year));
}

Text clsDatum::TwiceMonth(TextView Datum) const {
    const auto sum = dates::normalDigits(AddDayB(Datum, 15));
    DateDigits half;
    half += dates::number(sum.between(1, 2)) < 16 ? u"01" : u"15";
    half += sum.from(3);
    return local(half.view());
}

Text clsDatum::DatumThai(TextView DatumGregorianisch) const {
    const auto parts = dates::split(DatumGregorianisch);
    return text(dates::compose(parts.day, parts.month, int64{parts.year} + 543));
}

// --- Months and weeks

int32 clsDatum::DaysInMonth(int32 Monat, int32 Jahr) const { return dates::daysInMonth(Monat, Jahr); }

int32 clsDatum::MonthLen(TextView Datum) const {
    const auto parts = dates::split(Datum);
    return DaysInMonth(parts.month, parts.year);
}

Text clsDatum::LastOfMonth(TextView Datum) const {
    auto last = dates::twoDigits(MonthLen(Datum));
    last += dates::normalDigits(Datum).from(3);
    return local(last.view());
}

int32 clsDatum::MonthFloat(TextView Datum) const {
    const auto parts = dates::split(Datum);
    return roundToInt32(parts.month + parts.year * 12.0 - 12);
}

Wochentage clsDatum::DayOfWeek(TextView Datum) const { return static_cast<Wochentage>(JulianDay(Datum) % 7); }

int32 clsDatum::DayOfYear(TextView Datum) const {
    DateDigits first;
    first += u"0101";
    first += dates::normalDigits(Datum).from(5);
    return JulianDay(Datum) - JulianDay(local(first.view())) + 1;
}

Text clsDatum::FindDate(int32 Jahr, int32 Monat, Wochentage Wochentag, int32 Zaehler) const {
    if (Jahr < 1 || Jahr > 9999 || Monat < 1 || Monat > 12 || Wochentag < Montag || Wochentag > Sonntag)
        return {};
    const auto first = DayOfWeek(DtoC(1, Monat, Jahr));
    auto day = Wochentag - first + 7 * std::clamp(Zaehler, 1, 5) + (Wochentag < first ? 1 : -6);
    if (day > DaysInMonth(Monat, Jahr)) day -= 7;
    return DtoC(day, Monat, Jahr);
}

int32 clsDatum::WeekNr(TextView Datum) const { return dates::weekNumber(Datum); }

}  // namespace tsRtm
