#pragma once
// Messages of payment files: lines of text that the caller judges.
#include "tsRtm/types/Failure.hpp"

namespace tsRtm::payments {

// Messages, each ended by CR LF.
class Report {
 public:
    // A text that ends in CR LF gets no second one.
    void add(TextView message);
    const Text& text() const noexcept { return text_; }

 private:
    Text text_;
};

// `head`, the number and the description of a failure, a line each.
Text failureReport(TextView head, const Failure& failure);

// What a check reports; a failure in it replaces all that it has said.
template <class Check>
Text checked(Check check) {
    try {
        Report report;
        check(report);
        return report.text();
    } catch (const Failure& failure) {
        return failureReport(u"FEHLER: Validierung fehlgeschlagen!", failure);
    }
}

// Raises a run-time error number with its description.
[[noreturn]] void raiseNumber(int32 number, TextView source);

}  // namespace tsRtm::payments
