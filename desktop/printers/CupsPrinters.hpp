#pragma once
#include <QElapsedTimer>
#include <map>

#include "tsRtm/platform/Printers.hpp"

namespace tsRtm::desktop {

// The printers that this machine knows. A printer that it does not know is found by its address, too:
// ipp://host:port/path.
class CupsPrinters final : public platform::Printers {
 public:
    std::vector<Text> names() override;
    std::shared_ptr<platform::Printer> printer(TextView name) override;

 private:
    std::vector<Text> names_;
    QElapsedTimer asked_;
    std::map<Text, std::shared_ptr<platform::Printer>> known_;
};

}  // namespace tsRtm::desktop
