#pragma once
// The records that are printed: --to says where they go, so the end of their range is --until.
#include <functional>

#include "cli/shared/Records.hpp"
#include "cli/shared/Walk.hpp"

namespace tsRtm::cli {

class Command;

using RangeOptions = WalkOptions;

void addRange(Command command, RangeOptions& options);

// Calls `visit` with the reader on each record of the range.
void eachOf(Session& session, const FieldMap& map, const RangeOptions& options, RecordReader& record,
            const std::function<void()>& visit);

}  // namespace tsRtm::cli
