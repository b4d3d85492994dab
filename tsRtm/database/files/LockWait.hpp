#pragma once
// Waiting for a lock on one byte of a file, with the system's rules for how long and what is said meanwhile.
#include <functional>

#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/platform/File.hpp"

namespace tsRtm {

// What a lock stands for, for the texts shown: positions count from 1.
struct LockRequest {
    int64 position = 1;
    // In units of NetWait seconds: 0 waits for ever behind a status line, below 0 gives up silently at the
    // limit, above 0 asks the user there.
    int32 wait = 0;
    // A lock of Count.tsd: position 10n + 11 stands for record n, 11 for the database.
    bool database = true;
};

// What else has a say in a wait.
struct LockHooks {
    std::function<bool()> gate;         // has to let the caller pass before the first try
    std::function<void()> aboutToWait;  // called once, before events run
    std::function<bool()> givenUp;      // asked at each turn; true ends the wait with 70
};

// 0 locked, 70 not; the same goes to the last failure number. While it waits, events of the host run, and the
// state's lockWait tells timers to stay away. Ends with 70 when the library is stopping or the user broke off
// the wait.
//
int32 lockWithWait(MessagesTopic& messages, platform::File& file, const LockRequest& request,
                   const LockHooks& hooks = {});

}  // namespace tsRtm
