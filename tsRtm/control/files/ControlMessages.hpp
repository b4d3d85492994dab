#pragma once
// What a structure file's faults tell the user. They are shown, and reading goes on.
#include "tsRtm/types/Numbers.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class FilesTopic;

void showMissingKette(FilesTopic& files, TextView dir, int32 number);
void showDoubleName(FilesTopic& files, TextView name, TextView dir, int32 fieldNumber);
void showWrongIndex(FilesTopic& files, TextView file, TextView dir);
void showDoubleIndexes(FilesTopic& files, TextView file, TextView dir);

}  // namespace tsRtm
