#pragma once
// A record held for a change by a command.
#include <optional>

#include "cli/shared/Session.hpp"

namespace tsRtm::cli {

class Command;

inline constexpr int32 kFull = 7, kLocked = 70;

// Throws a CliError where somebody else has it; gives it back at its end.
class RecordLock {
 public:
    RecordLock(Session& session, int32 number, std::optional<int32> wait);
    ~RecordLock();
    RecordLock(const RecordLock&) = delete;
    RecordLock& operator=(const RecordLock&) = delete;

 private:
    Session& session_;
    int32 number_;
};

// The option --wait of what locks.
void addWait(Command command, std::optional<int32>& wait);

}  // namespace tsRtm::cli
