#pragma once
// Rows in columns, page after page: the titles over each, their sums at the end.
#include "cli/print/PrintJob.hpp"

namespace tsRtm::cli {

struct ListColumn {
    Text title;
    bool right = false;
    // Decimals of its sum; none: it is not added up.
    std::optional<int32> sum;
};

// Calls the function it is given for each row, in order; the same rows each time.
using ListRows = std::function<void(const std::function<void(const std::vector<Text>&)>&)>;

// Goes through the rows three times: for the widths of the columns and the sums, for the number of pages, and
// to write them.
void printList(const PrintOptions& options, const Text& title, const std::vector<ListColumn>& columns,
               const ListRows& rows);

}  // namespace tsRtm::cli
