#pragma once
// The days of the week; the value is the day number modulo 7.
#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

enum Wochentage : int32 {
    Montag = 0,
    Dienstag = 1,
    Mittwoch = 2,
    Donnerstag = 3,
    Freitag = 4,
    Samstag = 5,
    Sonntag = 6,
};

}  // namespace tsRtm
