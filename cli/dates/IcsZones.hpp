#pragma once
// Time zones of an iCalendar file, and the way from their times to those of this place.
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/dates/IcsLines.hpp"

namespace tsRtm::cli {

inline constexpr int32 kDayMinutes = 24 * 60;

// A day by its Julian number, with minutes since midnight; -1 for the whole day.
struct IcsMoment {
    int32 day = 0;
    int32 minute = -1;
    bool operator==(const IcsMoment&) const = default;
};
// "20241224", "20241224T180000" with or without a "Z"; nothing for another form.
std::optional<IcsMoment> icsMoment(const std::string& value);

// A zone is one that the file describes (VTIMEZONE), by the name it has there, or one of the public zone data
// ("Europe/Berlin"); kHere is that of this place. What the public data have no hour for is taken as in
// Germany: clocks go forward at 2 and back at 3.
class IcsZones {
 public:
    static constexpr const char* kHere = "";
    static constexpr const char* kUtc = "UTC";

    IcsZones() = default;
    explicit IcsZones(const std::vector<IcsProperty>& file);

    // The same moment by the clocks of another zone; whole days are whole days everywhere. These throw a
    // std::invalid_argument that says why for a zone that is not known.
    IcsMoment moved(IcsMoment there, const std::string& from, const std::string& to);
    // From one moment to another one.
    int64 minutes(IcsMoment begin, const std::string& beginZone, IcsMoment end, const std::string& endZone);

 private:
    // Changes by the clock as it is before them, in their order; minutes that are ahead of UTC from then on.
    struct Change {
        int64 at;
        int32 ahead;
    };
    struct Zone {
        int32 aheadAtFirst = 0;
        std::vector<Change> changes;
    };
    class Description;

    const Zone& zone(const std::string& name);
    int64 toUtc(IcsMoment moment, const std::string& zone);
    static std::optional<Zone> known(const std::string& name);

    std::map<std::string, Zone> zones_;
    std::map<std::string, std::string> faults_;  // why a description cannot be taken
};

}  // namespace tsRtm::cli
