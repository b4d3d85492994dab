#pragma once
// Searching a text in raw records without regard to case.
#include "tsRtm/database/records/RecordLayout.hpp"

namespace tsRtm {

// Made once per search. An empty text is in every record.
class TextSearch {
 public:
    TextSearch(const RecordLayout& layout, TextView text);
    bool in(BytesView record) const;

 private:
    const RecordLayout& layout_;
    Text upper_;
    Bytes folded_;  // in the records' code page
};

}  // namespace tsRtm
