#include "tsRtm/frame/text/TextOrder.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/frame/text/ForeignOrder.hpp"
#include "tsRtm/frame/text/TextOrderMarks.hpp"

namespace tsRtm {
namespace {

using textorder::kForeign;
using textorder::kLevelEnd;
using textorder::kMarked;
using textorder::tables;

// Gives the base weights of a text one by one, 0 at its end, and remembers which further levels
// have a weight.
class BaseWalker {
 public:
    explicit BaseWalker(BytesView text) noexcept : at_(text.data()), end_(text.data() + text.size()) {}

    uint8 next() noexcept {
        if (second_ != 0) return std::exchange(second_, uint8{0});
        while (at_ != end_) {
            const auto code = static_cast<uint8>(*at_++);
            const uint16 quick = tables.quick[code];
            seen_ |= quick;
            if (const auto weight = static_cast<uint8>(quick)) return weight;
            if (tables.base[code] != 0) {
                second_ = tables.second[code];
                return tables.base[code];
            }
        }
        return 0;
    }
    // Levels that have a weight.
    unsigned marks() const noexcept { return seen_ & kMarked; }

 private:
    const char* at_;
    const char* end_;
    unsigned seen_ = 0;
    uint8 second_ = 0;
};

std::size_t commonPrefix(BytesView a, BytesView b) noexcept {
    const std::size_t shorter = std::min(a.size(), b.size());
    std::size_t at = 0;
    for (uint64 x = 0, y = 0; at + sizeof x <= shorter; at += sizeof x) {
        std::memcpy(&x, a.data() + at, sizeof x);
        std::memcpy(&y, b.data() + at, sizeof y);
        if (x != y) break;
    }
    return at;
}

// Appends base weights; gives the further levels that have a weight.
unsigned appendBase(Bytes& key, BytesView text) {
    const std::size_t before = key.size();
    key.resize(before + 2 * text.size());
    char* to = key.data() + before;
    unsigned seen = 0;
    for (const char c : text) {
        const auto code = static_cast<uint8>(c);
        const uint16 quick = tables.quick[code];
        seen |= quick;
        if (const auto weight = static_cast<uint8>(quick)) {
            *to++ = static_cast<char>(weight);
        } else if (tables.base[code] != 0) {
            *to++ = static_cast<char>(tables.base[code]);
            *to++ = static_cast<char>(tables.second[code]);
        }
    }
    key.resize(static_cast<std::size_t>(to - key.data()));
    return seen & kMarked;
}

unsigned appendBase(Bytes& key, Pieces pieces) {
    unsigned marks = 0;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i != 0) key.push_back(static_cast<char>(tables.base[' ']));
        marks |= appendBase(key, pieces[i]);
    }
    return marks;
}

// The base weight of a character of Text in the low byte, 0 for none or several, kForeign for one outside the
// code page; with kMarked where a further level has a weight.
uint16 simpleWeight(char16_t c) noexcept {
    const int32 code = c < 0x80 ? c : unicodeToAnsi(c);
    return code < 0 ? uint16{kForeign} : tables.quick[static_cast<std::size_t>(code)];
}

// Of two characters of the code page: whether they weigh alike behind the base, as a letter and its capital.
bool sameMarks(char16_t a, char16_t b) noexcept {
    const auto codeA = static_cast<std::size_t>(unicodeToAnsi(a));
    const auto codeB = static_cast<std::size_t>(unicodeToAnsi(b));
    return tables.accent[codeA] == tables.accent[codeB] && tables.form[codeA] == tables.form[codeB] &&
           tables.special[codeA] == tables.special[codeB];
}

bool isJoined(BytesView text, Pieces pieces) noexcept {
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i != 0) {
            if (!text.starts_with(' ')) return false;
            text.remove_prefix(1);
        }
        if (!text.starts_with(pieces[i])) return false;
        text.remove_prefix(pieces[i].size());
    }
    return text.empty();
}

std::strong_ordering compareByKeys(TextView a, TextView b) {
    Bytes keyA, keyB;
    appendSortKey(keyA, a);
    appendSortKey(keyB, b);
    return keyA.compare(keyB) <=> 0;
}

}  // namespace

void appendJoined(Bytes& text, Pieces pieces) {
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i != 0) text.push_back(' ');
        text.append(pieces[i]);
    }
}

std::strong_ordering compareAnsi(BytesView a, BytesView b) noexcept {
    // What is alike byte for byte weighs alike on every level.
    const std::size_t alike = commonPrefix(a, b);
    a.remove_prefix(alike);
    b.remove_prefix(alike);
    BaseWalker walkerA(a), walkerB(b);
    for (;;) {
        const uint8 weightA = walkerA.next();
        const uint8 weightB = walkerB.next();
        if (weightA != weightB) return weightA <=> weightB;
        if (weightA == 0) break;
    }
    const unsigned marks = walkerA.marks() | walkerB.marks();
    return marks == 0 ? std::strong_ordering::equal
                      : textorder::compareMarks(Pieces(&a, 1), Pieces(&b, 1), marks);
}

std::strong_ordering compareText(TextView a, TextView b) {
    const std::size_t shorter = std::min(a.size(), b.size());
    bool marked = false;  // differently, in a place where the texts differ
    for (std::size_t i = 0; i < shorter; ++i) {
        if (a[i] == b[i]) continue;
        const uint16 quickA = simpleWeight(a[i]);
        const uint16 quickB = simpleWeight(b[i]);
        const auto weightA = static_cast<uint8>(quickA);
        const auto weightB = static_cast<uint8>(quickB);
        const bool simple = weightA != 0 && weightB != 0 && weightA != kForeign && weightB != kForeign;
        if (!simple) return compareByKeys(a, b);
        if (weightA != weightB) return weightA <=> weightB;
        marked = marked || (((quickA | quickB) & kMarked) != 0 && !sameMarks(a[i], b[i]));
    }
    // Mere differences of case weigh nothing.
    if (a.size() == b.size() && !marked) return std::strong_ordering::equal;
    return compareByKeys(a, b);
}

void appendSortKeyAnsi(Bytes& key, BytesView text) { appendSortKeyAnsi(key, Pieces(&text, 1)); }

void appendSortKeyAnsi(Bytes& key, Pieces pieces) {
    if (const unsigned marks = appendBase(key, pieces)) textorder::appendMarks(key, pieces, marks);
}

void sortKeyStartAnsi(std::span<char> into, Pieces pieces) {
    char* to = into.data();
    char* const end = to + into.size();
    unsigned marks = 0;
    for (std::size_t i = 0; i < pieces.size() && to != end; ++i) {
        if (i != 0) *to++ = static_cast<char>(tables.base[' ']);
        BaseWalker walker(pieces[i]);
        while (to != end) {
            const uint8 weight = walker.next();
            if (weight == 0) break;
            *to++ = static_cast<char>(weight);
        }
        marks |= walker.marks();
    }
    if (to != end && marks != 0) {
        Bytes rest;
        textorder::appendMarks(rest, pieces, marks);
        to = std::copy_n(rest.begin(), std::min(rest.size(), static_cast<std::size_t>(end - to)), to);
    }
    std::fill(to, end, '\0');
}

void appendSortKey(Bytes& key, TextView text) {
    Bytes ansi;
    ansi.reserve(text.size());
    for (const char16_t c : text) {
        const int32 code = unicodeToAnsi(c);
        if (code < 0) return textorder::appendForeignSortKey(key, text);
        ansi.push_back(static_cast<char>(code));
    }
    appendSortKeyAnsi(key, ansi);
}

uint8 lastAnsiByte() noexcept {
    static const uint8 last = [] {
        char best = 'Z';
        for (int code = 0; code < 256; ++code) {
            const char candidate = static_cast<char>(code);
            if (compareAnsi({&candidate, 1}, {&best, 1}) > 0) best = candidate;
        }
        return static_cast<uint8>(best);
    }();
    return last;
}

void AnsiSearchKey::assign(Pieces pieces) {
    text_.clear();
    appendJoined(text_, pieces);
    const BytesView text = text_;
    key_.clear();
    marks_ = appendBase(key_, text);
    if (marks_ != 0) textorder::appendMarks(key_, Pieces(&text, 1), marks_);
}

std::strong_ordering AnsiSearchKey::compare(Pieces record) const noexcept {
    // Behind the base weights comes the end of the key or kLevelEnd, which are below all weights.
    const char* key = key_.c_str();
    const auto due = [&key] { return static_cast<uint8>(*key); };
    unsigned seen = marks_;
    for (std::size_t i = 0; i < record.size(); ++i) {
        if (i != 0) {
            const uint8 blank = tables.base[' '];
            if (due() != blank) return due() <=> blank;
            ++key;
        }
        for (const char c : record[i]) {
            const auto code = static_cast<uint8>(c);
            const uint16 quick = tables.quick[code];
            const auto weight = static_cast<uint8>(quick);
            seen |= quick;
            if (weight != 0) {
                if (due() != weight) return due() <=> weight;
                ++key;
            } else if (tables.base[code] != 0) {
                if (due() != tables.base[code]) return due() <=> tables.base[code];
                ++key;
                if (due() != tables.second[code]) return due() <=> tables.second[code];
                ++key;
            }
        }
    }
    if (due() > kLevelEnd) return std::strong_ordering::greater;
    if ((seen & kMarked) == 0 || isJoined(text_, record)) return std::strong_ordering::equal;
    const BytesView text = text_;
    return textorder::compareMarks(Pieces(&text, 1), record, seen);
}

}  // namespace tsRtm
