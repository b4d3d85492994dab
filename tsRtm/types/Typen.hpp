#pragma once
// The kinds of input that a field takes.
#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

enum Typen : int32 {
    typALLES = 0,
    typDRUCKBAR = 1,
    typBUCHSTABEN = 2,
    typTELEFON = 3,
    typZIFFERN = 4,
    typWERT = 5,
    typNN = 6,
    typDATUM = 7,
};

}  // namespace tsRtm
