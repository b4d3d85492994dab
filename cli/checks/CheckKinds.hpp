#pragma once
// The kinds of values that can be checked, and the checkers behind them.
#include <memory>
#include <span>
#include <string>

#include "tsRtm/banking/clsBanken.hpp"
#include "tsRtm/validation/iValidChecker.hpp"

namespace tsRtm::cli {

class Command;

struct CheckOptions;

struct CheckKind {
    const char* name;
    const char* help;
    std::unique_ptr<iValidChecker> (*make)(const CheckOptions& options);
    bool banking;  // often typed with blanks and small letters
    bool limits;
    bool days;
    const char* footer;
};
std::span<const CheckKind> checkKinds();

struct CheckOptions {
    const CheckKind* kind = nullptr;
    bool error = false;
    bool required = false;
    std::string least, most;
    int32 days = 0;  // a mode of eValidDateOptions
    bool critical = false;
    std::string banks;  // the register, empty for the usual ones
};
// The options about days of dates.
void addDays(Command command, CheckOptions& options);

struct Graded {
    Text value;
    eValidResult grade = validOK;
    Text message, explanation;
    std::string note;  // of the tool
    Text bank;         // whose name the register knows
};
const char* gradeName(eValidResult grade) noexcept;

// Grades by one checker, as the library does: values stay as they were typed. Dates are day first.
class Grader {
 public:
    // The options outlive the grader. Throws a CliError for a limit that is none.
    explicit Grader(const CheckOptions& options);
    Graded grade(TextView value);

 private:
    const CheckOptions& options_;
    std::unique_ptr<iValidChecker> checker_;
    std::shared_ptr<clsBanken> banks_;
};

}  // namespace tsRtm::cli
