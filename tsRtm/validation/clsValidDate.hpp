#pragma once
// Dates within limits and on days of a kind.
#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/validation/ValidCheckerBase.hpp"

namespace tsRtm {

// Takes six or eight characters, the digits of a date in the user's order. The mode is one of
// eValidDateOptions:
//
//   datMoBisFr, datMoBisSa, datSaUndSo           by weekday
//   datWerktag, datNichtSUF                      Monday to Friday, to Saturday, and no holiday
//   datNichtWerktag, datSonnUndFeiertag          a weekend, a Sunday, that is a holiday as well
//
// Holidays are those of the user's state (clsCommon::Bundesland). A day of the wrong kind is a warning, with
// datDayCritical an error; what is no date is always an error.
class clsValidDate final : public ValidCheckerBase {
 public:
    // A date; empty is no limit. "D-30" and "D+7" are days from today, as of now.
    Text Minimum() const;
    void Minimum(TextView value);
    Text Maximum() const;
    void Maximum(TextView value);

    eValidResult Check(const std::shared_ptr<iValidControl>& Ctrl, TextView Wert) override;
    Text Msg() const override;

 private:
    enum class Fault { none, length, weekday, range, holiday, missing, noDate };

    Text ShortText() const override;
    int32 limit(TextView value) const;
    bool onRightWeekday(TextView date) const;
    bool withinLimits(TextView date) const;
    bool holidayFits(TextView date);

    clsDatum calendar_;
    int32 minimum_ = 0;  // day numbers, 0 none
    int32 maximum_ = 0;
    Fault fault_ = Fault::none;
    Text holiday_;
};

}  // namespace tsRtm
