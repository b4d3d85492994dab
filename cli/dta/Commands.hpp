#pragma once
// The commands of the group.
namespace CLI {
class App;
}

namespace tsRtm::cli {

void addPaymentWrite(CLI::App& dta);
void addPaymentShow(CLI::App& dta);

}  // namespace tsRtm::cli
