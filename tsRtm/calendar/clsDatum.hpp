#pragma once
// Date forms and date arithmetic: the one place where dates change their form and days are counted.
//
// Forms: local text with separator ("31.12.2024"); local digits in Date_Form order, 8 or 6 of them; normal
// form TTMMJJJJ or TTMMJJ; sort form JJJJMMTT; ISO form "2024-12-31"; day number, the chronological Julian
// day number (its remainder by 7 is the Wochentage value); bank day number, 30/360. Dates travel as Text. The
// locale is read at each call. A bad date gives a nonsense value or an empty text; callers guard with DateOK
// or DateCheck.
#include "tsRtm/calendar/Wochentage.hpp"
#include "tsRtm/types/Date.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// Stateless. Only DateToJulian and JulianToDate raise.
class clsDatum {
 public:
    // Tage bank days on (a month has 30 days; cut to the end of February).
    Text AddDayB(TextView VonDat, int32 Tage) const;
    // Tage calendar days on; empty for an empty date.
    Text AddDayC(TextView VonDat, int32 Tage) const;
    // MCnt months on, cut to the end of the month.
    Text AddMonth(TextView InD, int32 MCnt) const;
    // Bank day number: 360 days a year, 30 a month, from year 1; a 31st counts as the 30th. -390 for an empty
    // date.
    int32 BankDay(TextView Datum) const;
    // Splits a date; six digits are widened first, so that Jahr has four.
    void CtoD(TextView Datum, int32& Tag, int32& Monat, int32& Jahr) const;
    // The sort form of a date that is DateOK, else empty.
    Text DateCheck(TextView Datum) const;
    // Month 1 to 12, day 1 to the month's end; the year as it stands, not widened.
    bool DateOK(TextView Datum) const;
    // Local text to local digits. A text with separators is taken day first, whatever Date_Form says.
    Text DateTo6(TextView Date8) const;
    // Local digits to text with separators, always day first.
    Text DateTo8(TextView Date6) const;
    // Name of the weekday, counted from the system's first day of the week.
    Text DayName(TextView Datum) const;
    // Sort form; empty for an empty date and for one that begins with "J".
    Text DateSort(TextView Datum) const;
    // "2024-12-31" (ISO 8601); today for an empty date.
    Text DateIso8601(TextView Datum = {}) const;
    // "2024-12-31T08:15:00" (ISO 8601); without a time where there is a date but no readable time.
    Text DateTimeIso8601(TextView Datum = {}, TextView Zeit = {}) const;
    Wochentage DayOfWeek(TextView Datum) const;
    // 1 for the first of January.
    int32 DayOfYear(TextView Datum) const;
    // 31 also for a month out of range. Leap years by the Julian rule up to 1600.
    int32 DaysInMonth(int32 Monat, int32 Jahr) const;
    // Bank days and calendar days from one date to another.
    int32 DifDateB(TextView VonDat, TextView BisDat) const;
    int32 DifDateC(TextView VonDat, TextView BisDat) const;
    // Local digits of a date; day 0 is the end of the month before, months out of range move the year, and
    // the day is cut to the month's end. Years up to 100 come out with two digits.
    Text DtoC(int32 Tag, int32 Monat, int32 Jahr) const;
    // The Zaehler-th (1 to 5, 5 the last) such weekday of a month; empty outside years 1 to 9999.
    Text FindDate(int32 Jahr, int32 Monat, Wochentage Wochentag, int32 Zaehler) const;
    // Day number of a Date. Raises 5 before 15.10.1582.
    int32 DateToJulian(Date Datum) const;
    // Date of a day number. Raises 5 before 15.10.1582 and after 31.12.9999.
    Date JulianToDate(int32 TagesZahl) const;
    // Day number of a date; 0 for an empty one. The days that the reform of 1582 left out give that
    // of 15.10.1582.
    int32 JulianDay(TextView Datum) const;
    // Local digits of a day number; empty at or below 1720995.
    Text KalenderDay(int32 Datum) const;
    // The date of the Thai calendar (Buddhist era): 543 years on.
    Text DatumThai(TextView DatumGregorianisch) const;
    // As KalenderDay, in the Julian calendar.
    Text KalenderDayJulian(int32 Julian) const;
    Text LastOfMonth(TextView Datum) const;
    // A running month number: Monat + Jahr * 12 - 12.
    int32 MonthFloat(TextView Datum) const;
    int32 MonthLen(TextView Datum) const;
    // "Falscher Monat" for a month out of range.
    Text MonthName(TextView Datum) const;
    // The next half-month date, a 1st or a 15th.
    Text TwiceMonth(TextView Datum) const;
    // Week of the year (ISO 8601).
    int32 WeekNr(TextView Datum) const;
    // "1. Januar 2024".
    Text WordDate(TextView Datum) const;
    // Any local form to normal form, and normal form to local digits.
    Text NormDatum(TextView Datum) const;
    Text LokalDatum(TextView Datum) const;
    // Minutes since midnight of "hh:mm", "hh.mm" or "hh,mm"; 0 for a text that is no number.
    int32 ToMinutes(TextView Zeit) const;
    // "hh:mm"; hours show their last two digits.
    Text ToTime(int32 Minutes) const;
};

}  // namespace tsRtm
