#pragma once
// How a command ends before its time.
#include <stdexcept>
#include <string>

namespace tsRtm::cli {

// With one line on standard error and exit status 1.
class CliError : public std::runtime_error {
 public:
    explicit CliError(const std::string& message) : std::runtime_error(message) {}
};

// With an exit status of its own, when it has said all it has to say.
struct CliStatus {
    int status;
};

}  // namespace tsRtm::cli
