#include "tsRtm/database/TreeWriter.hpp"

#include "tsRtm/frame/rtmMain.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

// Larger blocks would make later small writes into the file slow.
constexpr std::size_t kBlock = std::size_t{64} * 1024;

}  // namespace

TreeWriter::TreeWriter(platform::File& file, int32 index) : bytes_(file, false), index_(index) {
    block_.reserve(kBlock);
    block_.assign(tree::kBlockBytes, '\0');
}

void TreeWriter::flush() {
    if (!block_.empty()) bytes_.write(written_, block_);
    written_ += block_.size();
    block_.clear();
}

int32 TreeWriter::write(const tree::Node& node) {
    if (block_.size() >= kBlock) flush();
    const auto address = static_cast<int32>(written_ + block_.size()) + 1;
    block_.append(reinterpret_cast<const char*>(&node), sizeof node);
    return address;
}

tree::Node& TreeWriter::level(int32 number) {
    if (number >= tree::kMostLevels) {
        const Text text = u"Buffer overrun while sort creates indexfile for index #" + toText(index_);
        rtmMain::DebugLog(text);
        raise(28, u"clsTSDB Sort", text);
    }
    if (number >= height_) height_ = number + 1;
    return levels_[static_cast<std::size_t>(number)];
}

void TreeWriter::add(int32 record) {
    ++records_;
    tree::Entry entry{0, 0, record};
    for (int32 number = 0;; ++number) {
        tree::Node& node = level(number);
        if (node.anzahl < tree::kBulkKeys) {
            node.entry(++node.anzahl) = entry;
            return;
        }
        // The node is complete: what came from below is its rightmost subtree, and the key goes up.
        node.entry(node.anzahl + 1) = {entry.kind, entry.zaehler, 0};
        const int32 total = node.total();
        entry = {write(node), total, record};
        node = {};
    }
}

void TreeWriter::finish() {
    tree::Header header;
    if (records_ > 0) {
        tree::Entry below;
        for (int32 number = 0; number < height_; ++number) {
            tree::Node& node = level(number);
            node.entry(node.anzahl + 1) = {below.kind, below.zaehler, 0};
            const int32 total = node.total();
            below = {write(node), total, 0};
        }
        header.wurzel = below.kind;
    }
    flush();
    bytes_.write(0, {reinterpret_cast<const char*>(&header), sizeof header});
}

}  // namespace tsRtm
