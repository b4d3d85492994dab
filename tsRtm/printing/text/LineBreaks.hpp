#pragma once
#include <functional>
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// The lines of a text within a width, without the blanks at their ends. CR, LF and CR LF end a paragraph; a
// line breaks behind a blank and behind each of "/,.-:;+)". A word wider than the limit stands alone and is
// not cut. `width` measures in the limit's unit. At least one line, and an empty one for each empty
// paragraph.
std::vector<Text> brokenLines(TextView text, int32 limit, const std::function<int32(TextView)>& width);

}  // namespace tsRtm
