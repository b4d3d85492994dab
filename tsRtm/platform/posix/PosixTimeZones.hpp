#pragma once
// Summer time by the year, as ICU's zone data have it.
#include <map>
#include <memory>
#include <string>

#include "tsRtm/platform/TimeZones.hpp"

namespace tsRtm::platform::posix {

class PosixTimeZones final : public TimeZones {
 public:
    PosixTimeZones();
    ~PosixTimeZones() override;
    std::optional<ZoneYear> year(TextView zone, int32 year) override;

 private:
    class Zone;
    const Zone& ofMachine();

    std::map<Text, std::unique_ptr<const Zone>, std::less<>> named_;  // nullptr for a name that is not there
    std::unique_ptr<const Zone> machine_;
    std::string machineBy_;  // what the system told of its zone when machine_ was made
};

}  // namespace tsRtm::platform::posix
