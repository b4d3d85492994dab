#pragma once
// The control words of borders: first the side, then what its border is like.
#include "tsRtm/frame/rtf/FormatWords.hpp"
#include "tsRtm/frame/rtf/HeadTables.hpp"

namespace tsRtm::rtf {

// The side of a word that ends in its letter, kSides for none.
int sideOf(TextView letter) noexcept;
// What a word tells of a border; one that is none stays so until a word says what it is.
void describeBorder(const Token& word, const ColourTable& colours, int32& width, Colour& colour);
// Whether the word was one of a paragraph's box; that is then changed.
bool applyBoxWord(ParagraphState& paragraph, const Token& word, const ColourTable& colours);

}  // namespace tsRtm::rtf
