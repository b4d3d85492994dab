#pragma once
// The words of an RTF text, one by one.
#include "tsRtm/types/Text.hpp"

namespace tsRtm::rtf {

enum class TokenKind {
    end,     // of the text
    open,    // "{"
    close,   // "}"
    word,    // control word: name and, where given, number
    symbol,  // "\" and one character that is no letter: `character`
    byte,    // \'hh: `number`
    text,    // characters that stand for themselves: `text`
};

struct Token {
    TokenKind kind = TokenKind::end;
    TextView name;
    TextView text;
    int32 number = 0;
    bool hasNumber = false;
    char16_t character = 0;
};

// Cuts a text into tokens; views into it. Any text has some reading, so nothing fails. Line ends between the
// words are left out, numbers are limited to the range of int32, and what follows \bin is skipped.
class Tokens {
 public:
    explicit Tokens(TextView text) : rest_(text) {}
    Token next();

 private:
    Token controlWord();
    Token hexByte();

    TextView rest_;
};

}  // namespace tsRtm::rtf
