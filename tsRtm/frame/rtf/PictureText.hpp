#pragma once
#include "tsRtm/frame/rtf/Formats.hpp"
#include "tsRtm/frame/rtf/Tokens.hpp"

namespace tsRtm::rtf {

// Gathers a picture from the words and the hexadecimal digits of its group. What is no digit is passed over.
class PictureText {
 public:
    void word(const Token& word);
    void text(TextView text);
    // With its wished size, scaled.
    Picture picture() const;

 private:
    Picture picture_;
    int32 scaleX_ = 100, scaleY_ = 100;  // per cent
    int32 half_ = -1;                    // the first digit of a byte
};

}  // namespace tsRtm::rtf
