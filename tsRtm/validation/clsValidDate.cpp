#include "tsRtm/validation/clsValidDate.hpp"

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/holidays/clsFeierTage.hpp"

namespace tsRtm {
namespace {

constexpr std::size_t kShortDate = 6, kLongDate = 8;
constexpr std::size_t kMostOffset = 8;  // characters behind the "D" of a day from today

// Holidays are asked with the year in four digits.
Text withWholeYear(const clsDatum& calendar, TextView date) {
    if (date.size() == kLongDate && IstZiffern(date)) return Text(date);
    return calendar.KalenderDay(calendar.JulianDay(date));
}

}  // namespace

int32 clsValidDate::limit(TextView value) const {
    if (!value.starts_with(u'D')) return calendar_.JulianDay(value);
    const int32 today = calendar_.DateToJulian(rtmMain::system().clock.now());
    return roundToInt32(today + Val(value.substr(1, kMostOffset)));
}

Text clsValidDate::Minimum() const { return calendar_.KalenderDay(minimum_); }
void clsValidDate::Minimum(TextView value) { minimum_ = limit(value); }
Text clsValidDate::Maximum() const { return calendar_.KalenderDay(maximum_); }
void clsValidDate::Maximum(TextView value) { maximum_ = limit(value); }

bool clsValidDate::onRightWeekday(TextView date) const {
    const auto day = calendar_.DayOfWeek(date);
    switch (mode()) {
        case datMoBisFr:
        case datWerktag:
            return day < Samstag;
        case datMoBisSa:
        case datNichtSUF:
            return day < Sonntag;
        case datSaUndSo:
        case datNichtWerktag:  // the holiday comes on top
            return day >= Samstag;
        case datSonnUndFeiertag:  // here, too
            return day == Sonntag;
        default:
            return true;
    }
}

bool clsValidDate::withinLimits(TextView date) const {
    const int32 day = calendar_.JulianDay(date);
    return (minimum_ <= 0 || day >= minimum_) && (maximum_ <= 0 || day <= maximum_);
}

bool clsValidDate::holidayFits(TextView date) {
    if (mode() < datWerktag) return true;
    const Text whole = withWholeYear(calendar_, date);
    clsFeierTage holidays;
    const bool wanted = mode() == datNichtWerktag || mode() == datSonnUndFeiertag;
    if (holidays.IstFeierTag(whole) == wanted) return true;
    const auto names = holidays.TagNamen(whole);
    holiday_ = names.size() > 1 ? names[1] : Text();
    return false;
}

eValidResult clsValidDate::Check(const std::shared_ptr<iValidControl>&, TextView Wert) {
    fault_ = Fault::none;
    const auto refuse = [this](Fault fault, eValidResult result) {
        fault_ = fault;
        return result;
    };
    if (Wert.empty()) return has(voRequired) ? refuse(Fault::missing, validError) : validOK;
    if (Wert.size() != kShortDate && Wert.size() != kLongDate) return refuse(Fault::length, validError);
    if (!calendar_.DateOK(Wert)) return refuse(Fault::noDate, validError);
    if (!onRightWeekday(Wert)) return refuse(Fault::weekday, grade(false, datDayCritical));
    if (!withinLimits(Wert)) return refuse(Fault::range, grade(false));
    if (!holidayFits(Wert)) return refuse(Fault::holiday, grade(false, datDayCritical));
    return validOK;
}

Text clsValidDate::ShortText() const {
    if (!errorMsg_.empty()) return errorMsg_;
    switch (fault_) {
        case Fault::length:
            return u"Das Datum ist unvollständig";
        case Fault::weekday:
            return u"Der Wochentag ist ungültig";
        case Fault::range:
            return u"Das Datum liegt außerhalb des zugelassenen Bereichs";
        case Fault::holiday:  // also of a day that should be one and is none
            return u"Das Datum ist ein Feiertag (" + holiday_ + u")";
        case Fault::missing:
            return u"Es muss ein Datum eingegeben werden";
        case Fault::noDate:
            return u"Die Eingabe ist kein gültiges Datum";
        case Fault::none:
            break;
    }
    return {};
}

Text clsValidDate::Msg() const {
    if (!description_.empty()) return description_;
    Text text;
    switch (fault_) {
        case Fault::length:
            return u"Ein Datum muss mit 2 Ziffern für den Tag, 2 Ziffern für den Monat und 4 Ziffern für das "
                   u"Jahr "
                   u"eingegeben werden. Sie können bei der Eingabe das Jahr mit 2 Stellen eingeben, das Jahr "
                   u"weglassen oder Jahr und Monat weglassen. Dann wird das Datum mit den fehlenden Werten "
                   u"aus dem "
                   u"heutigen Datum ergänzt.";
        case Fault::weekday:
            // Other modes end with Saturday here, also those that want weekends.
            return Text(
                       u"Das Datum liegt auf einem nicht zugelassenen Wochentag. Zulässig sind hier Montag "
                       u"bis ") +
                   (mode() == datMoBisFr || mode() == datWerktag ? u"Freitag." : u"Samstag.");
        case Fault::range:
            text = u"Das Datum liegt außerhalb des zugelassenen Bereichs";
            if (minimum_ > 0) text += u" ab dem " + calendar_.DateTo8(Minimum());
            if (maximum_ > 0) text += u" bis zum " + calendar_.DateTo8(Maximum());
            return text;
        case Fault::noDate:
            return u"Ein Datum muss ein gültige Tageszahl zwischen 1 und der Anzahl Tage des angegebenen "
                   u"Monats und "
                   u"eine gültige Monatszahl zwischen 1 und 12 haben.";
        default:
            return text;
    }
}

}  // namespace tsRtm
