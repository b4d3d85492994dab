#pragma once
// The commands of the group.
namespace tsRtm::cli {

class Command;

void addPaymentWrite(Command dta);
void addPaymentShow(Command dta);

}  // namespace tsRtm::cli
