#pragma once
// The control words that change the format of characters and paragraphs.
#include "tsRtm/frame/rtf/Formats.hpp"
#include "tsRtm/frame/rtf/Tokens.hpp"

namespace tsRtm::rtf {

// A paragraph's format while it is read: what stands before \tx belongs to the next tabulator.
struct ParagraphState {
    ParagraphFormat format;
    Tab next;
};

// Whether the word was one of theirs; the format is then changed.
bool applyCharacterWord(CharacterFormat& format, const Token& word);
bool applyParagraphWord(ParagraphState& paragraph, const Token& word);

}  // namespace tsRtm::rtf
