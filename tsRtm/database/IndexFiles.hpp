#pragma once
// Opening and closing the index files of a database, and healing one whose total is wrong.
#include "tsRtm/database/DatabaseParts.hpp"

namespace tsRtm {

// The open form of an index, opened at first use. Raises 70 where the file cannot be opened, 461 for a
// version it does not know, 6 for a tree that is empty or has a wrong total and cannot be rebuilt (source
// "clsTSDB_IndexOpen").
IndexForm& openIndex(DatabaseParts& parts, int32 number);
void closeIndex(DatabaseParts& parts, int32 number) noexcept;
void closeIndexes(DatabaseParts& parts) noexcept;

}  // namespace tsRtm
