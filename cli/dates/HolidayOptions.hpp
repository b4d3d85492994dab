#pragma once
// What the commands on holidays have in common: the state, the law that counts, the zone.
#include <optional>
#include <string>

#include "tsRtm/holidays/clsFeierTage.hpp"

namespace tsRtm::cli {

class Command;

struct HolidayOptions {
    std::optional<std::string> land;
    std::optional<std::string> law;  // a date
    std::optional<std::string> zone;
    bool json = false;
};

void addHolidayOptions(Command command, HolidayOptions& options);
// What is to be known of the days, for the help.
extern const char* const kHolidayHelp;

// The holidays of the state that is asked for, else of the one that is stored; says so on standard error
// where there is none and every state counts. Throws a CliError for what it does not know. Needs a DayFirst
// that lives.
clsFeierTage openHolidays(const HolidayOptions& options);
// "NRW"; empty where every state counts.
std::string chosenLand();

// What the law says of a day and the table does not; empty for most.
std::string remarkOn(TextView name);

}  // namespace tsRtm::cli
