#include "tsRtm/banking/payments/Reports.hpp"

#include "tsRtm/frame/messages/TextTables.hpp"

namespace tsRtm::payments {
namespace {

constexpr TextView kLineEnd = u"\r\n";

}  // namespace

void Report::add(TextView message) {
    text_ += message;
    if (!message.ends_with(kLineEnd)) text_ += kLineEnd;
}

Text failureReport(TextView head, const Failure& failure) {
    Report report;
    report.add(head);
    report.add(toText(failure.Number()));
    report.add(failure.Description());
    return report.text();
}

void raiseNumber(int32 number, TextView source) { raise(number, source, runtimeErrorText(number)); }

}  // namespace tsRtm::payments
