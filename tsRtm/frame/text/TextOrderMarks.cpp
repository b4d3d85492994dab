#include "tsRtm/frame/text/TextOrderMarks.hpp"

namespace tsRtm::textorder {
namespace {

// A place in a sort key is told as the distance from the mark before, turned round since the earlier mark is
// the greater: one byte up to kFarStep, above it one byte kFar for each whole step.
constexpr uint8 kNearest = 0xFE;
constexpr uint8 kFar = 0x0E;
constexpr std::size_t kFarStep = kNearest - kFar;

void appendDistance(Bytes& key, std::size_t distance) {
    key.append(distance / kFarStep, static_cast<char>(kFar));
    key.push_back(static_cast<char>(kNearest - distance % kFarStep));
}

std::strong_ordering compareLevel(MarkWalker a, MarkWalker b) noexcept {
    for (;;) {
        const Mark x = a.next();
        const Mark y = b.next();
        if (x == y) {
            if (x.weight == 0) return std::strong_ordering::equal;
        } else if (x.weight == 0 || y.weight == 0 || x.place == y.place) {
            return x.weight <=> y.weight;
        } else {
            return y.place <=> x.place;
        }
    }
}

struct Level {
    const std::array<uint8, 256>& weights;
    unsigned bit;
};
const Level kLevels[] = {{tables.accent, kAccented}, {tables.form, kFormed}, {tables.special, kSpecial}};

}  // namespace

std::strong_ordering compareMarks(Pieces a, Pieces b, unsigned levels) noexcept {
    for (const auto& level : kLevels) {
        if ((levels & level.bit) == 0) continue;
        const auto order = compareLevel(MarkWalker(level.weights, a), MarkWalker(level.weights, b));
        if (order != 0) return order;
    }
    return std::strong_ordering::equal;
}

void appendMarks(Bytes& key, Pieces text, unsigned levels) {
    std::size_t endsDue = 0;
    for (const auto& level : kLevels) {
        ++endsDue;
        if ((levels & level.bit) == 0) continue;
        MarkWalker walker(level.weights, text);
        std::size_t last = 0;
        for (Mark mark = walker.next(); mark.weight != 0; mark = walker.next()) {
            key.append(endsDue, static_cast<char>(kLevelEnd));
            endsDue = 0;
            appendDistance(key, mark.place - last);
            key.push_back(static_cast<char>(mark.weight));
            last = mark.place;
        }
    }
}

}  // namespace tsRtm::textorder
