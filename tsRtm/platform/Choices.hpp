#pragma once
// Lists out of which the person at the desk chooses a line.
#include <functional>
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::platform {

// Lines count from 1. A long list is asked only for the lines that are shown.
struct ChoiceList {
    Text caption;
    std::vector<Text> titles;  // of the columns; may be empty
    int32 count = 0;
    std::function<std::vector<Text>(int32 line)> cells;
    int32 start = 1;  // the line to stand on at first; count + 1 behind the last one
    // The first line whose key is not below what was typed; none where the list has no order to search by.
    std::function<int32(TextView typed)> find;
};

class Choices {
 public:
    virtual ~Choices() = default;
    // The line chosen, 0 where nothing was; always so with nobody at the desk.
    virtual int32 choose(const ChoiceList& list) = 0;
};

}  // namespace tsRtm::platform
