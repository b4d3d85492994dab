#pragma once
// Dates as people write them on the command line, and reckoning with them.
#include <optional>
#include <string>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::cli {

// While it lives, the library's local form of a date is TTMMJJJJ with dots, whatever the user's locale says:
// what is reckoned here is then the same on every machine.
class DayFirst {
 public:
    DayFirst();
    ~DayFirst();
    DayFirst(const DayFirst&) = delete;
    DayFirst& operator=(const DayFirst&) = delete;

    // A date TTMMJJJJ as the user's locale writes it.
    Text local(TextView digits) const;

 private:
    int32 form_;
    Text separator_;
};

// Dates as TTMMJJJJ, of the years 101 to 9999.
struct DateExpression {
    Text date;
    std::optional<Text> until;  // of DATE .. DATE
};

// Reads and reckons. Throws a CliError that says what is wrong. Needs a DayFirst that lives.
DateExpression readDates(const std::string& expression);

// How an expression is written, for the help.
extern const char* const kDateSyntax;

}  // namespace tsRtm::cli
