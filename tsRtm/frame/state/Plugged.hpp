#pragma once
// What rooms above bring for the use of rooms below them.
#include <memory>

#include "tsRtm/types/Variant.hpp"

namespace tsRtm::platform {
struct Paper;
}

namespace tsRtm::rtmMain {

struct Plugged {
    std::shared_ptr<Object> bankRegister;    // who knows the banks, an iBankRegister
    std::weak_ptr<Object> facadeBanks;       // the one that all facades share
    const platform::Paper* paper = nullptr;  // who draws, prints and shows pages
};

// One copy per process; empty until somebody brings something.
Plugged& plugged() noexcept;

}  // namespace tsRtm::rtmMain
