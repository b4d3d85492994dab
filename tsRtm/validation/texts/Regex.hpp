#pragma once
// Regular expressions whose test ends soon, whatever the pattern and the text: patterns come from
// applications, texts from anywhere.
#include "tsRtm/validation/texts/RegexProgram.hpp"

namespace tsRtm {

// A test takes kMostWork steps at most; what is not decided by then does not match. Patterns that look
// neither ahead nor back need at most as many as they have steps themselves for each character.
class Regex {
 public:
    static constexpr int64 kMostWork = 400000;  // some milliseconds

    // A pattern that is none never matches.
    explicit Regex(TextView pattern, bool ignoreCase = false);

    // Whether the pattern fits anywhere in the text.
    bool test(TextView text) const;

 private:
    std::optional<regex::Program> program_;
    bool anyCase_;
};

}  // namespace tsRtm
