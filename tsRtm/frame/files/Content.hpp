#pragma once
// Whole text files with their encodings.
#include "tsRtm/types/Date.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class HandleFiles;

// The text up to an old end-of-file mark (code 26). `encoding` becomes the file's (it stays for an empty
// file, and 850 stays where the file has no mark), `changed` its time stamp. Empty where the file cannot be
// opened, and F says why. Raises 321 for an encoding that cannot be read.
Text readContent(HandleFiles& files, TextView name, int32& encoding, Date& changed);

// Writes the text, cuts the file behind it and gives that position. The file's own encoding and mark are kept
// when appending and with 1252. Raises 75 where it cannot be opened, 321 for an encoding that cannot be
// written, 5 where writing fails; the file then has its old length.
int64 writeContent(HandleFiles& files, TextView name, TextView content, int32 encoding, bool append,
                   Date& changed);

}  // namespace tsRtm
