#pragma once
// What a regular expression becomes: steps that a matcher follows through a text.
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::regex {

// A set of characters, as in "[a-z\d]".
class CharSet {
 public:
    void add(char16_t first, char16_t last);
    // The class of an escape: d, w or s, or a capital for all but it.
    void addClass(char16_t letter);
    void negate() noexcept { negated_ = true; }
    // With `anyCase`, also where the other case of the character is in the set.
    bool contains(char16_t c, bool anyCase) const noexcept;

 private:
    bool listed(char16_t c) const noexcept;

    std::array<uint64, 2> ascii_{};
    std::vector<std::pair<char16_t, char16_t>> others_;
    bool negated_ = false;
};

enum class Op : uint8 {
    unit,      // the character a
    any,       // one that ends no line
    set,       // one of set a
    begin,     // of the whole text
    end,       // of the whole text
    edge,      // of a word
    noEdge,    //
    split,     // on at a, or at b; c numbers the splits from 0
    jump,      // on at a
    keep,      // puts the place into slot a
    progress,  // only where the place is another than in slot a
    same,      // the text between slots a and a + 1
    look,      // where the steps behind this one up to their `match` fit here; on at a
    lookNot,   // where they do not fit
    match,
};

struct Step {
    Op op;
    uint32 a = 0, b = 0, c = 0;
};

struct Program {
    std::vector<Step> steps;
    std::vector<CharSet> sets;
    uint32 splits = 0;
    uint32 slots = 0;
    // Whether a place in the steps and a place in the text say all about what follows: nothing looks ahead,
    // and nothing is to be the same as before.
    bool simple = true;
};

// Nothing for a pattern that is none, or that unfolds to more than kMostSteps steps. The language is that of
// ECMAScript 3: no looking back, no names, "^" and "$" at the ends of the whole text only.
inline constexpr std::size_t kMostSteps = 20000;
std::optional<Program> compile(TextView pattern);

}  // namespace tsRtm::regex
