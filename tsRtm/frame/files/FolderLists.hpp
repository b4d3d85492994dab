#pragma once
// Which files and folders are there.
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// Whether there is a file, or a folder, of that name or wildcard name.
bool fileExists(TextView name);
bool folderExists(TextView name);

struct ListWish {
    bool fullPath = false;
    bool hidden = true;    // hidden ones, too
    bool folders = false;  // the matching folders, too, always by full path
};
// Puts the files of `root` that match the pattern ("*" and "?"; empty matches all) into `names`, sorted,
// behind the first `keep` ones, and gives their number then. In a folder that cannot be read there is
// nothing: `names` stays but for a `keep` of 0.
int32 listFiles(TextView root, TextView pattern, std::vector<Text>& names, int32 keep, ListWish wish);

}  // namespace tsRtm
