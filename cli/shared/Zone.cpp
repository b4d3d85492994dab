#include "cli/shared/Zone.hpp"

#include "cli/shared/CliError.hpp"

namespace tsRtm::cli {
namespace {

class ToolZones final : public platform::TimeZones {
 public:
    std::optional<platform::ZoneYear> year(TextView zone, int32 year) override {
        return machine->year(zone.empty() ? TextView(chosen) : zone, year);
    }
    platform::TimeZones* machine = nullptr;
    Text chosen = u"Europe/Berlin";
};

ToolZones& zones() {
    static ToolZones one;
    return one;
}

}  // namespace

platform::TimeZones& toolZones(platform::TimeZones& machine) {
    zones().machine = &machine;
    return zones();
}

void chooseZone(const std::string& name) {
    constexpr int32 anyYear = 2000;
    const Text zone = fromUtf8(name);
    if (zone.empty() || !zones().machine->year(zone, anyYear))
        throw CliError("no time zone '" + name + "'; a zone is named like Europe/Berlin");
    zones().chosen = zone;
}

}  // namespace tsRtm::cli
