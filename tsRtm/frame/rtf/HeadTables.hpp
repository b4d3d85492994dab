#pragma once
// The tables at the head of an RTF text: its fonts and its colours.
#include <unordered_map>
#include <vector>

#include "tsRtm/frame/rtf/Formats.hpp"
#include "tsRtm/frame/rtf/Tokens.hpp"

namespace tsRtm::rtf {

// Filled by the words and characters of its destination. Fonts stay where they are once they are there.
class FontTable {
 public:
    void word(const Token& word);
    void text(TextView text);

    // The font of a number; one without name where the table lacks it.
    const Font& font(int32 number) const;
    // The font that is being told of: its name is in its own character set.
    int32 current() const noexcept { return current_; }

 private:
    std::unordered_map<int32, Font> fonts_;
    int32 current_ = kNoNumber;
    bool named_ = false;  // the ";" behind the name has come
};

class ColourTable {
 public:
    void word(const Token& word);
    void text(TextView text);

    // The colour of a number; automatic where the table lacks it.
    Colour colour(int32 number) const noexcept;

 private:
    std::vector<Colour> colours_;
    Colour next_;
};

}  // namespace tsRtm::rtf
