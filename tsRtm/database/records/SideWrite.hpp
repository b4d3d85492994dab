#pragma once
// The part of a record's write that goes to a file beside Data.tsd: a memo, a chain.
#include <span>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// All calls come under the database lock (or in single use), in this order: prepare, the
// one write of the record that makes the new content visible, finish; or undo instead of what did not come.
// Who dies in between leaves the old content or the new one, and at most room that nobody points to.
class SideWrite {
 public:
    virtual ~SideWrite() = default;
    // Writes the new content where nobody points to yet, and lays its place over the columns of `image`.
    // `stored` is the record as it is in the file, empty for a new one. Raises as raiseFileFailure tells;
    // undo follows then, too.
    virtual void prepare(BytesView stored, std::span<char> image) = 0;
    // What was prepared is on the device. Raises as prepare does.
    virtual void flush() = 0;
    // The record is written: the room of the old content is given up. What fails here costs room, no content.
    virtual void finish() noexcept = 0;
    // The record was not written: what was appended is taken back where it can be. It may be prepared again.
    virtual void undo() noexcept = 0;
};

}  // namespace tsRtm
