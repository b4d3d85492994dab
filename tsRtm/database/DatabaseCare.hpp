#pragma once
// What those who look after a database ask of it while others work.
#include <functional>

#include "tsRtm/database/DatabaseStatistics.hpp"
#include "tsRtm/database/clsTSDB.hpp"

namespace tsRtm {

// Knows an open database, which outlives it. Errors are recorded there.
class DatabaseCare {
 public:
    using Progress = std::function<void(uint64 done, uint64 of)>;

    explicit DatabaseCare(clsTSDB& database);

    // Looks without a lock: beside writers it may be off by what they do meanwhile.
    DatabaseStatistics statistics(const Progress& progress = {});

    // Gives all files of the database as they are at one moment: it holds the database lock and the locks of
    // all chains until the last one was given, so that whoever writes waits; only a change that needs no lock
    // may still come, and is then whole. `begin` is told of each file, `piece` its bytes in their order. The
    // copy bears no sign of work under way. False, and the error is recorded, where the lock or a file is not
    // to be had; what the callbacks throw ends it.
    struct Copying {
        std::function<void(TextView file, uint64 bytes)> begin;
        std::function<void(BytesView bytes)> piece;
        Progress progress;
    };
    bool copy(const Copying& to);

 private:
    DatabaseEngine& engine_;
};

}  // namespace tsRtm
