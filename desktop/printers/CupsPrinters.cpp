#include "desktop/printers/CupsPrinters.hpp"

#include <span>

#include "desktop/printers/CupsPrinter.hpp"

namespace tsRtm::desktop {
namespace {

// Asking looks around in the network, too.
constexpr qint64 kGoodFor = 10000;  // milliseconds

}  // namespace

std::vector<Text> CupsPrinters::names() {
    if (asked_.isValid() && asked_.elapsed() < kGoodFor) return names_;
    cups_dest_t* dests = nullptr;
    const int count = cupsGetDests2(CUPS_HTTP_DEFAULT, &dests);
    names_.clear();
    for (const auto& dest : std::span(dests, static_cast<std::size_t>(count))) {
        const Text name = fromUtf8(dest.name) + (dest.instance ? u"/" + fromUtf8(dest.instance) : Text());
        names_.insert(dest.is_default ? names_.begin() : names_.end(), name);
    }
    cupsFreeDests(count, dests);
    asked_.start();
    return names_;
}

std::shared_ptr<platform::Printer> CupsPrinters::printer(TextView name) {
    if (const auto known = known_.find(Text(name)); known != known_.end())
        for (const auto& one : known->second)
            if (one.use_count() == 1) return one;
    auto queue = Queue::open(toUtf8(name));
    if (!queue) return nullptr;
    return known_[Text(name)].emplace_back(std::make_shared<CupsPrinter>(std::move(queue)));
}

}  // namespace tsRtm::desktop
