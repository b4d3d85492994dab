#pragma once
// What ends a command with one line on standard error and exit status 1.
#include <stdexcept>
#include <string>

namespace tsRtm::cli {

class CliError : public std::runtime_error {
 public:
    explicit CliError(const std::string& message) : std::runtime_error(message) {}
};

}  // namespace tsRtm::cli
