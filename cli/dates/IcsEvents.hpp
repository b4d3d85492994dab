#pragma once
// Events of an iCalendar file (RFC 5545): read, and written.
#include <string>
#include <vector>

#include "cli/dates/IcsZones.hpp"

namespace tsRtm::cli {

// A moment by the clocks of a zone.
struct IcsTime {
    IcsMoment at;
    std::string zone;
};

// What the tool knows of an event. Its times are those of its zone, in minutes since midnight.
struct IcsEvent {
    std::string uid;
    int32 day = 0;                       // Julian number
    int32 minute = -1;                   // -1: all day
    int32 minutes = 0;                   // how long, of one with a time
    int32 days = 1;                      // of one without
    std::string zone;                    // as IcsZones has it
    std::string rule;                    // of RRULE; an end in UTC is told in the event's zone
    std::vector<IcsTime> left, further;  // days that are left out of the rule, and those that come on top
    std::optional<IcsTime> instead;      // of this day of the series with the same uid
    bool cancelled = false;
    Text summary, description, location;
    int64 line = 0;     // where it begins
    std::string fault;  // why it cannot be taken
};

// All events of a file, and its zones. Throws a CliError for a file that is none.
struct IcsContent {
    std::vector<IcsEvent> events;
    IcsZones zones;
};
IcsContent readIcs(InputFile& file);

// Begins with the file's head; ends it in finish(). Times stand as local ones.
class IcsEvents {
 public:
    // `today` as JJJJMMTT: when the file was made.
    IcsEvents(OutputFile& file, const std::string& name, const std::string& today);
    void add(const IcsEvent& event);
    void finish();

 private:
    void line(const std::string& text);

    OutputFile& file_;
    std::string stamp_;
};

}  // namespace tsRtm::cli
