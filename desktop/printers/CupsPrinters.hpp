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
    // Of each name as many as there are documents at once: one that nobody holds takes the next one.
    std::map<Text, std::vector<std::shared_ptr<platform::Printer>>> known_;
};

}  // namespace tsRtm::desktop
