#include "tsRtm/database/index/TreeWriter.hpp"

#include <algorithm>

#include "tsRtm/frame/runtime/DebugLog.hpp"
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

TreeWriter::TreeWriter(platform::File& file, int32 index, std::size_t records) : bytes_(file), index_(index) {
    if (!grow(records, tree::kBulkKeys) && !grow(records, tree::kMostKeys))
        raiseFileFailure(platform::SystemError::diskFull, file.name());
    end_ = bytes_.knownSize();
    // The header stays until the new tree is whole.
    written_ = tree::kBlockBytes;
    block_.reserve(kBlock);
}

bool TreeWriter::grow(std::size_t records, int32 keys) {
    keys_ = keys;
    uint64 blocks = 1;
    // A key in each node's worth goes up to the next level, and each level has an unfinished node.
    for (auto left = records; left > 0; left /= static_cast<std::size_t>(keys) + 1)
        blocks += left / (static_cast<std::size_t>(keys) + 1) + 1;
    const uint64 wanted = blocks * tree::kBlockBytes;
    const uint64 before = bytes_.refreshSize();
    try {
        for (uint64 size = before; size < wanted; size = bytes_.knownSize())
            bytes_.write(size, Bytes(std::min<uint64>(kBlock, wanted - size), '\0'));
    } catch (const Failure& failure) {
        if (failure.Number() != 61) throw;
        return false;
    }
    return true;
}

void TreeWriter::flush() {
    if (!block_.empty()) bytes_.store(written_, block_);
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
        if (node.anzahl < keys_) {
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
    header.freiListe = freeTheRest();
    bytes_.store(0, {reinterpret_cast<const char*>(&header), sizeof header});
}

int32 TreeWriter::freeTheRest() {
    int32 first = 0;
    for (uint64 at = end_ / tree::kBlockBytes * tree::kBlockBytes; at > written_;) {
        at -= tree::kBlockBytes;
        tree::Node node;
        node.anzahl = tree::kFreeMark;
        node.entry(1).kind = first;
        bytes_.store(at, {reinterpret_cast<const char*>(&node), sizeof node});
        first = static_cast<int32>(at) + 1;
    }
    return first;
}

}  // namespace tsRtm
