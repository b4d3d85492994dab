#pragma once
// Autowert.tsd: the last serial number given out, one little-endian int32 at offset 0. Byte 1 is its lock; a
// byte far behind the end, one for each number, is locked while that number waits for its record.
#include <functional>

#include "tsRtm/database/files/BlockFile.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"

namespace tsRtm {

// Failures of the file raise as raiseFileFailure tells; 70 where the lock cannot be had.
class SerialNumber {
 public:
    SerialNumber() = default;
    SerialNumber(platform::File& file, MessagesTopic& messages) : bytes_(file, false), messages_(&messages) {}

    explicit operator bool() const noexcept { return static_cast<bool>(bytes_); }
    platform::File& file() const noexcept { return bytes_.file(); }
    // Makes the counter of a file that has none, from the greatest number there is. Two that come at once ask
    // one after the other.
    void initialise(const std::function<int32()>& greatest);
    // The next number, stored while it is between 1 and `greatest`; else 0, and the counter stays. Others see
    // it as pending until it is settled or given up, or the opening ends.
    int32 next(int32 greatest);
    // A record has the number now, or never will.
    void settled(int32 value) noexcept;
    // Counts a number as given out, for a record that is there; false where somebody, or this opening, has
    // drawn it for one that is not stored yet.
    bool take(int32 value);
    // The counter stands on this number or above from now on.
    void atLeast(int32 value);
    // Takes a number back when no other was given out since.
    void giveUp(int32 value);

 private:
    template <class Work>
    auto locked(Work work);
    int32 last();
    void store(int32 value);

    BlockFile bytes_;
    MessagesTopic* messages_ = nullptr;
};

}  // namespace tsRtm
