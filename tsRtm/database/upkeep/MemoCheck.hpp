#pragma once
// The places of memos and blobs held against their stores.
#include "tsRtm/database/writing/OpenDatabase.hpp"

namespace tsRtm {

// cut: after an end that was not clean.
enum class Mend { no, cut, yes };

// Pointers that lead to a free block, behind the end of the store or into the middle of nothing, and entries
// that have two owners: what is found, in the words of the log. To mend, a pointer that leads nowhere
// becomes 0, or the next text written there would be shown (not with `cut` where the whole store is gone: it
// may come back from a backup, and new texts keep clear of its places); the second owner of an entry gets a
// copy of its own. Nothing is given free: an entry without an owner may be somebody's in this moment. Nothing
// is mended beside what a reorganisation by an older program left. The caller holds the database lock to
// mend. Raises what the files raise.
std::vector<Text> checkMemos(OpenDatabase& database, Mend mend);

// The same for the rows of all chains; after the chains, so that each row has one owner.
std::vector<Text> checkRowMemos(OpenDatabase& database, Mend mend);

}  // namespace tsRtm
