#pragma once
// The numbers that an open database records in `Error`.
#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

enum class DatabaseError : int32 {
    none = 0,
    readOnly = 5,
    full = 7,
    badField = 9,
    walkFailed = 28,
    noControl = 52,
    badIndex = 53,
    chainRefused = 54,
    alreadyOpen = 55,
    device = 57,
    noRoom = 61,
    noFurtherRecord = 62,
    badRecord = 63,
    locked = 70,
};

constexpr bool failed(DatabaseError error) noexcept { return error != DatabaseError::none; }
constexpr int32 numberOf(DatabaseError error) noexcept { return static_cast<int32>(error); }

}  // namespace tsRtm
