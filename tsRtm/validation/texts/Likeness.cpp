#include "tsRtm/validation/texts/Likeness.hpp"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace tsRtm {
namespace {

constexpr int64 kMostWork = 500000;            // characters held against parts of the pattern
constexpr std::size_t kMostPattern = 1 << 16;  // characters

// A part of the pattern: what one character may be, or a run of any.
struct Part {
    enum class Kind { unit, one, run, set } kind = Kind::unit;
    std::vector<std::pair<char16_t, char16_t>> ranges;  // in upper case
    bool negated = false;

    bool fits(char16_t c) const noexcept {
        if (kind == Kind::one) return true;
        return std::any_of(ranges.begin(), ranges.end(), [c](const auto& range) {
                   return c >= range.first && c <= range.second;
               }) != negated;
    }
};

// The inside of brackets; nothing where a range runs backwards.
std::optional<Part> setOf(TextView inside) {
    Part part{Part::Kind::set, {}, false};
    if (inside.size() > 1 && inside.front() == u'!') {
        part.negated = true;
        inside.remove_prefix(1);
    }
    for (std::size_t i = 0; i < inside.size(); ++i) {
        const char16_t first = upper(inside[i]);
        char16_t last = first;
        if (i + 2 < inside.size() && inside[i + 1] == u'-') last = upper(inside[i += 2]);
        if (last < first) return std::nullopt;
        part.ranges.emplace_back(first, last);
    }
    return part;
}

std::optional<std::vector<Part>> partsOf(TextView pattern) {
    std::vector<Part> parts;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const char16_t c = pattern[i];
        if (c == u'[') {
            const auto close = pattern.find(u']', i);
            if (close == TextView::npos) return std::nullopt;
            auto part = setOf(pattern.substr(i + 1, close - i - 1));
            if (!part) return std::nullopt;
            if (close > i + 1) parts.push_back(std::move(*part));  // "[]" stands for nothing
            i = close;
        } else if (c == u'*') {
            parts.push_back({Part::Kind::run, {}, false});
        } else if (c == u'?') {
            parts.push_back({Part::Kind::one, {}, false});
        } else if (c == u'#') {
            parts.push_back({Part::Kind::set, {{u'0', u'9'}}, false});
        } else {
            parts.push_back({Part::Kind::unit, {{upper(c), upper(c)}}, false});
        }
    }
    return parts;
}

}  // namespace

bool isLike(TextView text, TextView pattern) {
    if (pattern.size() > kMostPattern) return false;
    const auto parts = partsOf(pattern);
    if (!parts) return false;
    std::size_t at = 0, part = 0;
    // Where to go on after a mismatch: behind the last run, which then is one longer.
    std::size_t run = parts->size(), runEnd = 0;
    int64 work = 0;
    while (at < text.size()) {
        if (++work > kMostWork) return false;
        if (part < parts->size() && (*parts)[part].kind == Part::Kind::run) {
            run = part++;
            runEnd = at;
        } else if (part < parts->size() && (*parts)[part].fits(upper(text[at]))) {
            ++part;
            ++at;
        } else if (run < parts->size()) {
            part = run + 1;
            at = ++runEnd;
        } else {
            return false;
        }
    }
    return std::all_of(parts->begin() + static_cast<std::ptrdiff_t>(part), parts->end(),
                       [](const Part& rest) { return rest.kind == Part::Kind::run; });
}

}  // namespace tsRtm
