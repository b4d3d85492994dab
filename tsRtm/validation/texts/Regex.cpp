#include "tsRtm/validation/texts/Regex.hpp"

#include <algorithm>
#include <limits>

namespace tsRtm {
namespace regex {

namespace {

constexpr char16_t kAscii = 128;
constexpr char16_t kLast = 0xFFFF;
constexpr std::pair<char16_t, char16_t> kDigits[] = {{u'0', u'9'}};
constexpr std::pair<char16_t, char16_t> kWord[] = {{u'0', u'9'}, {u'A', u'Z'}, {u'_', u'_'}, {u'a', u'z'}};
constexpr std::pair<char16_t, char16_t> kSpace[] = {
    {u'\t', u'\r'},   {u' ', u' '},     {0xA0, 0xA0},     {0x1680, 0x1680}, {0x2000, 0x200A},
    {0x2028, 0x2029}, {0x202F, 0x202F}, {0x205F, 0x205F}, {0x3000, 0x3000}, {0xFEFF, 0xFEFF}};

bool isWord(char16_t c) noexcept {
    return std::any_of(std::begin(kWord), std::end(kWord),
                       [c](const auto& range) { return c >= range.first && c <= range.second; });
}
bool endsLine(char16_t c) noexcept { return c == u'\n' || c == u'\r' || c == 0x2028 || c == 0x2029; }

}  // namespace

void CharSet::add(char16_t first, char16_t last) {
    for (char16_t c = first; c <= last && c < kAscii; ++c) ascii_[c / 64] |= uint64{1} << c % 64;
    if (last >= kAscii) others_.emplace_back(std::max(first, kAscii), last);
}

void CharSet::addClass(char16_t letter) {
    const char16_t name = lower(letter);
    const auto addAll = [&](const auto& ranges) {
        char16_t next = 0;  // behind the ranges so far
        for (const auto& [first, last] : ranges) {
            if (letter == name)
                add(first, last);
            else if (first > next)
                add(next, static_cast<char16_t>(first - 1));
            next = static_cast<char16_t>(last + 1);
        }
        if (letter != name) add(next, kLast);
    };
    if (name == u'd')
        addAll(kDigits);
    else if (name == u'w')
        addAll(kWord);
    else
        addAll(kSpace);
}

bool CharSet::listed(char16_t c) const noexcept {
    if (c < kAscii) return (ascii_[c / 64] >> c % 64 & 1) != 0;
    return std::any_of(others_.begin(), others_.end(),
                       [c](const auto& range) { return c >= range.first && c <= range.second; });
}

bool CharSet::contains(char16_t c, bool anyCase) const noexcept {
    return (listed(c) || (anyCase && (listed(upper(c)) || listed(lower(c))))) != negated_;
}

namespace {

constexpr std::size_t kMostMemory = std::size_t{1} << 24;  // places remembered, a bit each
constexpr uint32 kRestore = 0x80000000;                    // a slot, not a step
constexpr uint32 kUnset = 0xFFFFFFFF;

// One test: follows the steps, and goes back to where there was another way.
class Run {
 public:
    Run(const Program& program, TextView text, bool anyCase)
        : program_(program), text_(text), anyCase_(anyCase), slots_(program.slots, kUnset) {
        // A way that led nowhere from a place leads nowhere again: it is gone once.
        const std::size_t places = program.splits * (text.size() + 1);
        if (program.simple && places <= kMostMemory) seen_.resize(places);
    }

    bool anywhere() {
        const bool fromBegin = program_.steps.front().op == Op::begin;
        for (uint32 start = 0; start <= (fromBegin ? 0 : text_.size()) && work_ > 0; ++start)
            if (matches(0, start)) return true;
        return false;
    }

 private:
    struct Way {
        uint32 step;
        uint32 place;
    };

    bool matches(uint32 step, uint32 place) {
        const std::size_t bottom = ways_.size();
        ways_.push_back({step, place});
        while (ways_.size() > bottom) {
            const Way way = ways_.back();
            ways_.pop_back();
            if ((way.step & kRestore) != 0) {
                slots_[way.step & ~kRestore] = way.place;
            } else if (follow(way)) {
                ways_.resize(bottom);
                return true;
            }
        }
        return false;
    }

    // To the end of the pattern, or until something does not fit.
    bool follow(Way way) {
        for (;;) {
            if (--work_ < 0) return false;
            const Step& step = program_.steps[way.step];
            switch (step.op) {
                case Op::match:
                    return true;
                case Op::split:
                    if (!seen_.empty()) {
                        auto seen = seen_[step.c * (text_.size() + 1) + way.place];
                        if (seen) return false;
                        seen = true;
                    }
                    ways_.push_back({step.b, way.place});
                    way.step = step.a;
                    continue;
                case Op::jump:
                    way.step = step.a;
                    continue;
                case Op::look:
                case Op::lookNot:
                    if (!looks(step, way)) return false;
                    continue;
                default:
                    if (!fits(step, way.place)) return false;
            }
            ++way.step;
        }
    }

    // Moves on behind what it takes.
    bool fits(const Step& step, uint32& place) {
        const bool more = place < text_.size();
        switch (step.op) {
            case Op::unit:
                return more && equal(static_cast<char16_t>(step.a), text_[place++]);
            case Op::any:
                return more && !endsLine(text_[place++]);
            case Op::set:
                return more && program_.sets[step.a].contains(text_[place++], anyCase_);
            case Op::begin:
                return place == 0;
            case Op::end:
                return !more;
            case Op::edge:
            case Op::noEdge: {
                const bool before = place > 0 && isWord(text_[place - 1]);
                return (before != (more && isWord(text_[place]))) == (step.op == Op::edge);
            }
            case Op::keep:
                set(step.a, place);
                return true;
            case Op::progress:
                return !seen_.empty() ||
                       place != slots_[step.a];  // a split that was seen ends empty rounds, too
            default:
                return same(step.a, place);
        }
    }

    bool looks(const Step& step, Way& way) {
        const auto before = slots_;
        const bool fitsHere = matches(way.step + 1, way.place);
        const auto kept = std::exchange(slots_, before);
        if (fitsHere != (step.op == Op::look)) return false;
        // What it has kept is undone on the way back, too.
        for (uint32 slot = 0; slot < kept.size(); ++slot) set(slot, kept[slot]);
        way.step = step.a;
        return true;
    }

    // A group that has taken no part is empty.
    bool same(uint32 slot, uint32& place) {
        if (slots_[slot] == kUnset || slots_[slot + 1] == kUnset || slots_[slot + 1] < slots_[slot])
            return true;
        const TextView wanted = text_.substr(slots_[slot], slots_[slot + 1] - slots_[slot]);
        const TextView found = text_.substr(place, wanted.size());
        work_ -= static_cast<int64>(wanted.size());
        if (found.size() != wanted.size()) return false;
        for (std::size_t i = 0; i < wanted.size(); ++i)
            if (!equal(wanted[i], found[i])) return false;
        place += static_cast<uint32>(wanted.size());
        return true;
    }

    void set(uint32 slot, uint32 place) {
        if (!seen_.empty() || slots_[slot] == place) return;
        ways_.push_back({slot | kRestore, slots_[slot]});
        slots_[slot] = place;
    }

    bool equal(char16_t a, char16_t b) const noexcept { return a == b || (anyCase_ && upper(a) == upper(b)); }

    const Program& program_;
    TextView text_;
    bool anyCase_;
    int64 work_ = Regex::kMostWork;
    std::vector<uint32> slots_;
    std::vector<bool> seen_;
    std::vector<Way> ways_;
};

}  // namespace
}  // namespace regex

Regex::Regex(TextView pattern, bool ignoreCase) : program_(regex::compile(pattern)), anyCase_(ignoreCase) {}

bool Regex::test(TextView text) const {
    return program_ && text.size() < std::numeric_limits<int32>::max() &&
           regex::Run(*program_, text, anyCase_).anywhere();
}

}  // namespace tsRtm
