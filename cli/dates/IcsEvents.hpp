#pragma once
// Events of an iCalendar file (RFC 5545): read, and written.
#include <string>
#include <vector>

#include "cli/shared/TextFiles.hpp"

namespace tsRtm::cli {

// What the tool knows of an event. Times are local ones, in minutes since midnight.
struct IcsEvent {
    std::string uid;
    int32 day = 0;      // Julian number
    int32 minute = -1;  // -1: all day
    int32 minutes = 0;  // how long, of one with a time
    int32 days = 1;     // of one without
    std::string rule;   // of RRULE
    Text summary, description, location;
    int64 line = 0;     // where it begins
    std::string fault;  // why it cannot be taken
};

// All events of a file. Throws a CliError for a file that is none.
std::vector<IcsEvent> readIcs(InputFile& file);

// Begins with the file's head; ends it in finish().
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

// A line as such a file has it, folded behind 75 bytes, and a text within it.
std::string icsLine(const std::string& text);
std::string icsEscaped(const std::string& text);

}  // namespace tsRtm::cli
