#pragma once
// Files put in the place of others, in one step, so that nobody ever sees half of one.
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// The bytes in place of the file's: written beside it, flushed and put in its place, with the rights of the
// file before. Whether it succeeded; else the file is as it was.
bool replaceContent(TextView name, BytesView content);

// Puts a file, with the rights of the one replaced, in its place; a copy of that stays with the extension
// ".sik" if wanted. Where there is none to replace it only takes the name.
bool replaceFile(TextView replaced, TextView by, bool keepCopy);

}  // namespace tsRtm
