#pragma once
// The text encodings by their code page numbers.
#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

enum Encodings : int32 {
    ANSI1252 = 1252,
    UTF7 = 65000,
    UTF8 = 65001,
    UTF16LE = 1200,
    UTF16BE = 1201,
    UTF32LE = 12000,
    UTF32BE = 12001,
    CP850 = 850,
};

}  // namespace tsRtm
