#include "cli/db/RecordLock.hpp"

#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Terminal.hpp"

namespace tsRtm::cli {
namespace {}  // namespace

RecordLock::RecordLock(Session& session, int32 number, std::optional<int32> wait)
    : session_(session), number_(number) {
    session.needRecord(number);
    // With nobody to ask, a wait that asks would end in a No all the same.
    if (session.db().Sperren(number, wait.value_or(canAsk() ? 1 : -1))) return;
    if (const int32 error = session.db().Error(); error != kLocked)
        session.fail("cannot lock record " + std::to_string(number), error);
    throw CliError("record " + std::to_string(number) + " is locked by another user");
}

RecordLock::~RecordLock() { session_.db().Entsperren(number_); }

void addWait(Command command, std::optional<int32>& wait) {
    command
        .option("--wait", wait,
                "For a lock: 0 waits for ever, -N gives up after N times NetWait seconds, N asks then; 1 "
                "at a terminal, "
                "else -1")
        .typeName("N");
}

}  // namespace tsRtm::cli
