#pragma once
// The zone whose summer time commands reckon with: that of Germany, whatever the machine's own is, until
// another one is chosen. What is printed is then the same on every machine.
#include <string>

#include "tsRtm/platform/TimeZones.hpp"

namespace tsRtm::cli {

// The zones of this machine, the chosen one in the place of its own.
platform::TimeZones& toolZones(platform::TimeZones& machine);
// By its name in the zone data. Throws a CliError where it is not there.
void chooseZone(const std::string& name);

}  // namespace tsRtm::cli
