#pragma once
// What the last users left who did not leave cleanly (the machine went down, all programs were killed),
// mended before anybody reads.
#include "tsRtm/database/writing/OpenDatabase.hpp"

namespace tsRtm {

// Both under the database lock with nobody else at work. What was cut is told in the words of the log. They
// raise what the files raise.
//
// A record that was never written counts as deleted, and a torn end is filled up; before the indexes are
// healed.
std::vector<Text> settleRecords(OpenDatabase& database);
// A place without a text becomes none; chains end before a row that is not theirs. Behind that.
void settleSideFiles(OpenDatabase& database, std::vector<Text>& lines);

}  // namespace tsRtm
