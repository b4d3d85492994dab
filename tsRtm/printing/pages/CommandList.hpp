#pragma once
// The drawing commands of a page, one behind the other in one run of bytes: jobs of many thousand pages stay
// in memory.
#include "tsRtm/platform/Drawing.hpp"

namespace tsRtm {

class CommandList {
 public:
    // Any of the kinds of a DrawingCommand.
    template <class Command>
    void add(const Command& command);
    // A TextOut without a copy of its text.
    void add(platform::Place from, TextView text);
    // In the order in which they were added.
    void play(platform::PageDevice& device) const;

    // Nothing more will be added.
    void close() { bytes_.shrink_to_fit(); }
    std::size_t size() const noexcept { return bytes_.size(); }

 private:
    Bytes bytes_;
};

}  // namespace tsRtm
