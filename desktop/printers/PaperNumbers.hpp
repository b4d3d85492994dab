#pragma once
#include <vector>

#include "tsRtm/platform/Printers.hpp"

namespace tsRtm::desktop {

// The usual papers at the places of their well-known numbers, A4 being 9. Those that mean a printer's way of
// using one of the others have no size.
std::vector<platform::PaperForm> usualForms();

}  // namespace tsRtm::desktop
