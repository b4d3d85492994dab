#pragma once
// Where imported rows go: one by one beside other users, or alone in bulk.
#include <memory>

#include "cli/shared/Records.hpp"

namespace tsRtm::cli {

class RowTarget {
 public:
    virtual ~RowTarget() = default;
    // False where the row was not stored; `reason` then tells why, and later rows may do better. Throws a
    // CliError where nothing more can be stored.
    virtual bool add(const std::vector<Assignment>& row, std::string& reason) = 0;
    // Makes it last. Throws a CliError where that fails.
    virtual void finish() = 0;
};

// The session outlives the target; for `bulk` it has the database alone. A bulk target that is not finished
// takes its rows back.
std::unique_ptr<RowTarget> makeRowTarget(Session& session, bool bulk);

}  // namespace tsRtm::cli
