#pragma once
// Where imported rows go: one by one beside other users, or alone in bulk.
#include <memory>

#include "cli/db/RowSource.hpp"

namespace tsRtm::cli {

class RowTarget {
 public:
    virtual ~RowTarget() = default;
    enum class Stored {
        yes,
        no,    // this row was not; later ones may do better
        never  // nor will any later one be
    };
    // Where it is not stored `reason` tells why.
    [[nodiscard]] virtual Stored add(const ImportRow& row, std::string& reason) = 0;
    // Rows that stay in the database if it ends here.
    virtual int64 kept() const = 0;
    // Makes it last. Throws a CliError where that fails.
    virtual void finish() = 0;
};

// The session outlives the target; for `bulk` it has the database alone. A bulk target that is not finished
// takes its rows back.
std::unique_ptr<RowTarget> makeRowTarget(Session& session, bool bulk);

}  // namespace tsRtm::cli
