// From the text of a pattern to its parts, and from these to steps.
#include <algorithm>
#include <memory>

#include "tsRtm/types/Digits.hpp"
#include "tsRtm/validation/texts/RegexProgram.hpp"

namespace tsRtm::regex {
namespace {

constexpr int32 kDeepest = 200;           // groups within groups
constexpr uint32 kEndless = 0xFFFFFFFF;   // of a repetition
constexpr uint32 kMostRepeats = 1000000;  // more unfold to too many steps in any case
constexpr char16_t kLetterUnit = 0x1F;    // "\cA" is 1

struct Node {
    enum class Kind {
        unit,
        any,
        set,
        begin,
        end,
        edge,
        noEdge,
        same,
        group,
        plainGroup,
        look,
        lookNot,
        repeat
    };
    Kind kind = Kind::unit;
    uint32 value = 0;                      // the character, or the number of a set or group
    uint32 least = 0, most = 0;            // of a repetition
    std::vector<std::vector<Node>> parts;  // alternatives of a group; the one node of a repetition
};
using Sequence = std::vector<Node>;

int32 hexValue(char16_t c) noexcept {
    if (isDigit(c)) return c - u'0';
    const char16_t letter = lower(c);
    return letter >= u'a' && letter <= u'f' ? letter - u'a' + 10 : -1;
}

class Parser {
 public:
    Parser(TextView pattern, Program& program) : pattern_(pattern), program_(program) {}

    std::optional<Node> parse() {
        Node all;
        all.kind = Node::Kind::plainGroup;
        if (!alternatives(all) || at_ != pattern_.size() || highestSame_ > groups_) return std::nullopt;
        return all;
    }
    uint32 groups() const noexcept { return groups_; }
    bool refersBack() const noexcept { return highestSame_ > 0; }

 private:
    bool more() const noexcept { return at_ < pattern_.size(); }
    bool accept(TextView text) noexcept {
        if (!pattern_.substr(at_).starts_with(text)) return false;
        at_ += text.size();
        return true;
    }

    bool alternatives(Node& into) {
        if (++depth_ > kDeepest) return false;
        do {
            if (!sequence(into.parts.emplace_back())) return false;
        } while (accept(u"|"));
        --depth_;
        return true;
    }

    bool sequence(Sequence& into) {
        while (more() && pattern_[at_] != u'|' && pattern_[at_] != u')') {
            Node node;
            if (!atom(node) || !repetition(node)) return false;
            into.push_back(std::move(node));
        }
        return true;
    }

    bool group(Node& node) {
        if (accept(u"?:")) {
            node.kind = Node::Kind::plainGroup;
        } else if (accept(u"?=")) {
            node.kind = Node::Kind::look;
        } else if (accept(u"?!")) {
            node.kind = Node::Kind::lookNot;
        } else {
            if (more() && pattern_[at_] == u'?') return false;
            node.kind = Node::Kind::group;
            node.value = ++groups_;
        }
        if (node.kind == Node::Kind::look || node.kind == Node::Kind::lookNot) program_.simple = false;
        return alternatives(node) && accept(u")");
    }

    bool atom(Node& node) {
        const char16_t c = pattern_[at_++];
        switch (c) {
            case u'(':
                return group(node);
            case u'[':
                return set(node);
            case u'.':
                node.kind = Node::Kind::any;
                return true;
            case u'^':
                node.kind = Node::Kind::begin;
                return true;
            case u'$':
                node.kind = Node::Kind::end;
                return true;
            case u'\\':
                return escape(node);
            case u'*':
            case u'+':
            case u'?':
                return false;
            default:
                node.value = c;
                return true;
        }
    }

    bool escape(Node& node) {
        if (!more()) return false;
        const char16_t c = pattern_[at_++];
        if (c == u'b' || c == u'B') {
            node.kind = c == u'b' ? Node::Kind::edge : Node::Kind::noEdge;
        } else if (TextView(u"dDwWsS").find(c) != TextView::npos) {
            CharSet set;
            set.addClass(c);
            addSet(node, std::move(set));
        } else if (c >= u'1' && c <= u'9') {
            --at_;
            node.kind = Node::Kind::same;
            node.value = number();
            highestSame_ = std::max(highestSame_, node.value);
            program_.simple = false;
        } else {
            node.value = character(c);
        }
        return true;
    }

    // The character that an escape stands for.
    char16_t character(char16_t c) {
        switch (c) {
            case u't':
                return u'\t';
            case u'n':
                return u'\n';
            case u'r':
                return u'\r';
            case u'f':
                return u'\f';
            case u'v':
                return u'\v';
            case u'0':
                return u'\0';
            case u'x':
                return hexadecimal(c, 2);
            case u'u':
                return hexadecimal(c, 4);
            case u'c':
                return more() ? static_cast<char16_t>(pattern_[at_++] & kLetterUnit) : c;
            default:
                return c;
        }
    }
    // Without its digits the letter stands for itself.
    char16_t hexadecimal(char16_t letter, std::size_t digits) {
        const TextView text = pattern_.substr(at_, digits);
        int32 value = 0;
        for (const char16_t c : text) {
            if (hexValue(c) < 0) return letter;
            value = value * 16 + hexValue(c);
        }
        if (text.size() < digits) return letter;
        at_ += digits;
        return static_cast<char16_t>(value);
    }

    void addSet(Node& node, CharSet set) {
        node.kind = Node::Kind::set;
        node.value = static_cast<uint32>(program_.sets.size());
        program_.sets.push_back(std::move(set));
    }

    bool set(Node& node) {
        CharSet set;
        const bool negated = accept(u"^");
        while (!accept(u"]")) {
            const auto first = setItem(set);
            if (!first) return false;
            if (*first == kClass) continue;
            if (at_ + 1 >= pattern_.size() || pattern_[at_] != u'-' || pattern_[at_ + 1] == u']') {
                set.add(static_cast<char16_t>(*first), static_cast<char16_t>(*first));
                continue;
            }
            ++at_;
            const auto last = setItem(set);
            if (!last) return false;
            if (*last == kClass) {  // "a-\d" is no range
                set.add(static_cast<char16_t>(*first), static_cast<char16_t>(*first));
                set.add(u'-', u'-');
            } else {
                if (*last < *first) return false;
                set.add(static_cast<char16_t>(*first), static_cast<char16_t>(*last));
            }
        }
        if (negated) set.negate();
        addSet(node, std::move(set));
        return true;
    }
    // A character, or kClass for a class that is in the set now.
    static constexpr uint32 kClass = 0x10000;
    std::optional<uint32> setItem(CharSet& set) {
        if (!more()) return std::nullopt;
        const char16_t c = pattern_[at_++];
        if (c != u'\\') return c;
        if (!more()) return std::nullopt;
        const char16_t escaped = pattern_[at_++];
        if (escaped == u'b') return u'\b';
        if (TextView(u"dDwWsS").find(escaped) == TextView::npos) return character(escaped);
        set.addClass(escaped);
        return kClass;
    }

    uint32 number() {
        uint32 value = 0;
        while (more() && isDigit(pattern_[at_]))
            value = std::min(value * 10 + static_cast<uint32>(pattern_[at_++] - u'0'), kMostRepeats);
        return value;
    }
    // "{2}", "{2,}", "{2,5}"; anything else in braces is text.
    bool braces(uint32& least, uint32& most) {
        const std::size_t start = at_;
        if (accept(u"{") && more() && isDigit(pattern_[at_])) {
            least = most = number();
            if (accept(u",")) most = more() && isDigit(pattern_[at_]) ? number() : kEndless;
            if (accept(u"}")) return true;
        }
        at_ = start;
        return false;
    }
    bool repetition(Node& node) {
        uint32 least = 0, most = kEndless;
        if (accept(u"+"))
            least = 1;
        else if (accept(u"?"))
            most = 1;
        else if (!accept(u"*") && !braces(least, most))
            return true;
        accept(u"?");  // takes as little as it can: whether anything fits stays the same
        using enum Node::Kind;
        if (least > most || node.kind == begin || node.kind == end || node.kind == edge ||
            node.kind == noEdge)
            return false;
        Node outer;
        outer.kind = repeat;
        outer.least = least;
        outer.most = most;
        outer.parts.emplace_back().push_back(std::move(node));
        node = std::move(outer);
        // A second one has nothing to repeat.
        const std::size_t behind = at_;
        if (braces(least, most)) return false;
        at_ = behind;
        return true;
    }

    TextView pattern_;
    Program& program_;
    std::size_t at_ = 0;
    int32 depth_ = 0;
    uint32 groups_ = 0;
    uint32 highestSame_ = 0;
};

class Unfolder {
 public:
    Unfolder(Program& program, uint32 groups, bool keepGroups) : program_(program), keepGroups_(keepGroups) {
        if (keepGroups) program.slots = 2 * (groups + 1);
    }
    bool unfold(const Node& all) {
        node(all);
        add({Op::match});
        return !full();
    }

 private:
    bool full() const noexcept { return program_.steps.size() > kMostSteps; }
    uint32 here() const noexcept { return static_cast<uint32>(program_.steps.size()); }
    uint32 add(Step step) {
        program_.steps.push_back(step);
        return here() - 1;
    }
    // On at the next step or elsewhere, which is told later.
    uint32 addSplit() { return add({Op::split, here() + 1, 0, program_.splits++}); }
    Step& step(uint32 at) { return program_.steps[at]; }

    void node(const Node& node) {
        using enum Node::Kind;
        switch (node.kind) {
            case unit:
                add({Op::unit, node.value});
                break;
            case any:
                add({Op::any});
                break;
            case set:
                add({Op::set, node.value});
                break;
            case begin:
                add({Op::begin});
                break;
            case end:
                add({Op::end});
                break;
            case edge:
                add({Op::edge});
                break;
            case noEdge:
                add({Op::noEdge});
                break;
            case same:
                add({Op::same, 2 * node.value});
                break;
            case group:
                if (keepGroups_) add({Op::keep, 2 * node.value});
                alternatives(node);
                if (keepGroups_) add({Op::keep, 2 * node.value + 1});
                break;
            case plainGroup:
                alternatives(node);
                break;
            case look:
            case lookNot: {
                const uint32 at = add({node.kind == look ? Op::look : Op::lookNot});
                alternatives(node);
                add({Op::match});
                step(at).a = here();
                break;
            }
            case repeat:
                repetition(node);
                break;
        }
    }

    void alternatives(const Node& group) {
        std::vector<uint32> jumps;
        for (std::size_t i = 0; i < group.parts.size(); ++i) {
            const bool last = i + 1 == group.parts.size();
            const uint32 split = last ? 0 : addSplit();
            for (const Node& part : group.parts[i]) node(part);
            if (last) break;
            jumps.push_back(add({Op::jump}));
            step(split).b = here();
        }
        for (const uint32 jump : jumps) step(jump).a = here();
    }

    void repetition(const Node& repeat) {
        const Node& what = repeat.parts[0][0];
        for (uint32 i = 0; i < repeat.least && !full(); ++i) {
            const uint32 before = here();
            node(what);
            if (here() == before) break;  // nothing, however often
        }
        if (repeat.most == kEndless) return loop(what);
        std::vector<uint32> splits;
        for (uint32 i = repeat.least; i < repeat.most && !full(); ++i) {
            splits.push_back(addSplit());
            node(what);
        }
        for (const uint32 split : splits) step(split).b = here();
    }

    // A round that takes nothing would go on for ever.
    void loop(const Node& what) {
        const uint32 slot = program_.slots++;
        const uint32 split = addSplit();
        add({Op::keep, slot});
        node(what);
        add({Op::progress, slot});
        add({Op::jump, split});
        step(split).b = here();
    }

    Program& program_;
    bool keepGroups_;
};

}  // namespace

std::optional<Program> compile(TextView pattern) {
    Program program;
    Parser parser(pattern, program);
    const auto all = parser.parse();
    if (!all || !Unfolder(program, parser.groups(), parser.refersBack()).unfold(*all)) return std::nullopt;
    return program;
}

}  // namespace tsRtm::regex
