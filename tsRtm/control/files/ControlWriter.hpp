#pragma once
// Writes the content of a structure file.
#include "tsRtm/fields/ControlContent.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// The whole file as bytes: version 2 as UTF-8 with its mark, else code page 1252; in the older form with a
// plain count and texts in the DOS code page. Raises 380 for a Titel that the file could not give back.
Bytes encodeControl(const ControlContent& content, eControlTyp typ);

// Puts the bytes in place of dir/target by way of dir/"Control.tmp", so that there is always one whole target
// where the ground can replace in one step. Raises the file system's failure; the old target then stands.
void replaceControlFile(TextView dir, TextView target, BytesView bytes);

}  // namespace tsRtm
