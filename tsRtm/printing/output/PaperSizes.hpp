#pragma once
#include "tsRtm/platform/Printers.hpp"

namespace tsRtm {

class MessagesTopic;

// The number of the printer's form of this size, twips, within half a pixel of the resolution. Where there is
// none, one of that name is defined. 0 where that failed, and the user was told.
int32 formOf(platform::Printer& printer, TextView device, TextView formName, int32 width, int32 height,
             int32 pixelsPerInch, MessagesTopic& messages);

}  // namespace tsRtm
