#pragma once
// The control words that change the format of characters and paragraphs.
#include "tsRtm/frame/rtf/Formats.hpp"
#include "tsRtm/frame/rtf/Tokens.hpp"

namespace tsRtm::rtf {

// A paragraph's format while it is read: what stands before \tx belongs to the next tabulator,
// and what a border is like to the sides told before it.
struct ParagraphState {
    ParagraphFormat format;
    Tab next;
    uint8 boxSides = 0;  // whose borders are told of, a bit each
};

// Whether the word was one of theirs; the format is then changed.
bool applyCharacterWord(CharacterFormat& format, const Token& word);
bool applyParagraphWord(ParagraphState& paragraph, const Token& word);

}  // namespace tsRtm::rtf
