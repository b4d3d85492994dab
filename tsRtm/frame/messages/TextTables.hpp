#pragma once
// The tables of fixed texts.
#include <array>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// Message by its number in a language (LangNr); empty where there is none.
TextView messageText(int32 number) noexcept;

// Caption of eStringIDs; `language` is the low byte of a language id. Empty where there is none.
TextView captionText(int32 id, int32 language) noexcept;

constexpr int32 noVirtualKey = 0;  // the name is fixed

struct KeyRow {
    int32 virtualKey;
    TextView name;
};
const std::array<KeyRow, 20>& keyTable() noexcept;

struct ErrorRow {
    int32 number;
    TextView text;
};

// Description of a run-time error number; a general one where there is no row. Empty for 0.
TextView runtimeErrorText(int32 number) noexcept;

// Description of a system error number; empty where there is none.
TextView systemErrorText(int32 number) noexcept;

}  // namespace tsRtm
