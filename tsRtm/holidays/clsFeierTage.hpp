#pragma once
// Which named days and holidays fall on a date, and what the next working day is.
//
// All of it comes from a table of rules for every year: Easter and Advent, the seasons, summer time of the
// machine's zone, fixed days, with the years and the federal states in which they are holidays. Dates are
// Text in any local form (clsDatum) with the year in four digits; right in locales that have the day first.
// Results are local digits. The state is the library's (clsCommon::Bundesland) at each question; without one,
// what is a holiday in any state is one.
//
// The table shows the law of 2020. What changed since counts when Rechtsstand asks for it. Rules of
// municipalities are not in it: Friedensfest (Augsburg) and Mariä Himmelfahrt count in all of BAYERN,
// Fronleichnam in no part of SACHSEN and THUERINGEN. 24.12. and 31.12. are working days.
#include <array>
#include <memory>
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

enum eJahreszeit : int32 { Fruehling = 0, Sommer = 1, Herbst = 2, Winter = 3 };

namespace holidays {
class YearTable;
}

// Keeps the table of one year: ask date by date, not in turns between years. The tables of the orthodox
// churches overwrite fixed days: an object that has built one has no Christmas any more. Use an object of its
// own for them.
class clsFeierTage {
 public:
    clsFeierTage();
    ~clsFeierTage();
    clsFeierTage(clsFeierTage&&) noexcept;
    clsFeierTage& operator=(clsFeierTage&&) noexcept;

    // Whether the date is a legal holiday in the state. A year of two digits is taken as it stands: "251226"
    // is none.
    bool IstFeierTag(TextView Datum);
    // All rows for a year. Row 0 is empty; then a row of the table each: name; TTMM, empty outside of the
    // row's years; kind (0 named day, 1 holiday, 2 holiday in some states); the fixed day as a number, 0 for
    // one that moves. For years outside 1 to 9999 only rows without bounds have a day, that of the year's
    // last four digits.
    std::vector<std::array<Text, 4>> FeierTage(int32 Jahr);
    // The same with the orthodox Easter and without Advent. Julianisch has no effect.
    std::vector<std::array<Text, 4>> FeierTageOrthodox(int32 Jahr, bool Julianisch);
    // Names of all that falls on the date, of every state, from index 1 on; index 0 is empty.
    std::vector<Text> TagNamen(TextView Datum);

    // The first working day, Monday to Friday and no holiday, at least so many days on, the date itself for
    // 0; back for a negative number. Empty for an empty date and outside of the calendar.
    Text NextWorkday(TextView Datum, int32 Mindestabstand);
    // So many working days on; the date as it came for 0 and less.
    Text AddBankWorkDays(TextView Datum, int32 Tage);

    // First Sunday of Advent and Easter Sunday (Gregorian for every year) of the date's year; empty for none.
    Text Advent(TextView Datum) const;
    Text Ostern(TextView Datum) const;
    // Day numbers of Easter Sunday, 0 for an empty date. The orthodox one is two days late in years that four
    // does not divide.
    int32 OsternGregorianisch(TextView Datum) const;
    int32 OsternOrthodox(TextView Datum) const;
    // Start of a season: day number and, as its fraction, the local time of day, some minutes off. 0 for no
    // season.
    float64 Jahreszeitbeginn(int32 Jahr, eJahreszeit Ereignis) const;
    // Hours from UTC to local time on the date; today for an empty one.
    float64 TimeZone(TextView Datum) const;

    // The law that counts, as a day JJJJMMTT: amendments in force up to it follow as rows behind the table, 0
    // none, 99999999 all. A new value begins with a fresh table.
    int32 Rechtsstand() const noexcept;
    void Rechtsstand(int32 JJJJMMTT);
    // The law behind a row of FeierTage that is an amendment; empty for all others.
    Text Gesetz(int32 Zeile) const;

    // Place and air of an observer: kept, used by nothing.
    float64 MyLongitude() const noexcept { return observer_.longitude; }
    void MyLongitude(float64 value) noexcept { observer_.longitude = value; }
    float64 MyLatitude() const noexcept { return observer_.latitude; }
    void MyLatitude(float64 value) noexcept { observer_.latitude = value; }
    float64 MyHeightInMeter() const noexcept { return observer_.height; }
    void MyHeightInMeter(float64 value) noexcept { observer_.height = value; }
    float64 MyPressure() const noexcept { return observer_.pressure; }
    void MyPressure(float64 value) noexcept { observer_.pressure = value; }
    float64 MyTemperature() const noexcept { return observer_.temperature; }
    void MyTemperature(float64 value) noexcept { observer_.temperature = value; }
    // Moon, zodiac and sun are not reckoned: all raise 445.
    int32 Tierkreis(TextView Datum) const;
    Text TierkreisZeichen(TextView Datum) const;
    float64 MondPhase(TextView Datum) const;
    Text MondPhasenName(TextView Datum) const;
    void SunMoonRiseSet(TextView Datum) const;

 private:
    struct Observer {
        float64 longitude = 0, latitude = 0, height = 0, pressure = 0, temperature = 0;
    };
    std::vector<std::array<Text, 4>> rowsOf(int32 year, bool orthodox);

    std::unique_ptr<holidays::YearTable> table_;
    Observer observer_;
};

}  // namespace tsRtm
