#pragma once
// The records that list and export go through: an order, a part of it, a direction.
#include <functional>
#include <optional>

#include "cli/shared/FieldMap.hpp"
#include "cli/shared/Session.hpp"

namespace tsRtm::cli {

struct WalkOptions {
    std::optional<std::string>
        index;  // word of the primary field, "0" the physical order; the first index without it
    std::optional<std::string> from, to;
    int32 limit = 0;  // 0: all
    bool descending = false;
    bool deleted = false;
};

// Number of the index for a word, or of the first index (0 where there is none).
int32 indexFor(const clsControl& control, const FieldMap& map, const std::optional<std::string>& word);

// Positions of an order, both within; empty where first is above last.
struct Range {
    int32 first, last;
};
// The positions of the keys from one to another, those that begin with the other one within; no text is no
// bound.
Range keyRange(Session& session, int32 index, const std::optional<std::string>& from,
               const std::optional<std::string>& to);
// Both set the index.
Range rangeOf(Session& session, const FieldMap& map, const WalkOptions& options);

// Calls `visit` for each record number of the range, until it says false. The caller leaves out what is
// deleted.
void walk(Session& session, Range range, bool descending, const std::function<bool(int32 number)>& visit);

}  // namespace tsRtm::cli
