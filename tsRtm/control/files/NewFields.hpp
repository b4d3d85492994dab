#pragma once
// The fields of a database to be made, as a table of rows.
#include <span>

#include "tsRtm/fields/TSIO.hpp"

namespace tsRtm {

struct NewField {
    int32 length = 0;
    int32 typ = 0;
    TextView name;
    TextView caption;
    TextView help = {};
};

// As DBCreateExt takes them, each on a line of its own in a mask.
TSIOArray newFields(std::span<const NewField> rows);

}  // namespace tsRtm
