#pragma once
// A list on a terminal, page by page.
#include <functional>
#include <optional>
#include <string>

#include "tsRtm/platform/Choices.hpp"

namespace tsRtm::platform::posix {

// Numbers the lines of a page from 1. A number of them chooses, an empty line shows the next page, "-" the
// one before, "." ends without a choice; any other text is searched where the list can be.
class ConsoleChoice {
 public:
    // `print` writes lines for the eye, `read` gives what was typed, nothing at the end of the input.
    ConsoleChoice(const ChoiceList& list, std::function<void(TextView)> print,
                  std::function<std::optional<std::string>()> read)
        : list_(list), print_(std::move(print)), read_(std::move(read)) {}

    int32 hold();

 private:
    void showPage() const;
    int32 linesOfPage() const;
    void move(int32 to);

    const ChoiceList& list_;
    std::function<void(TextView)> print_;
    std::function<std::optional<std::string>()> read_;
    int32 first_ = 1;
};

}  // namespace tsRtm::platform::posix
