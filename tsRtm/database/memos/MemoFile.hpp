#pragma once
// One open memo store.
#include <functional>

#include "tsRtm/database/files/BlockFile.hpp"
#include "tsRtm/database/memos/MemoText.hpp"

namespace tsRtm {

// Entries go to the end of the file and are never written over, but for zeros when nobody points to them any
// more. Read and written by positional calls: others cut and lengthen the file. What changes it is done under
// the database lock. Failures raise as raiseFileFailure tells. Not thread-safe.
class MemoFile {
 public:
    explicit MemoFile(platform::File& file) : bytes_(file, false) {}

    platform::File& file() const noexcept { return bytes_.file(); }

    // The last place that somebody names. Asked where the file is empty or ends within a block: it may have
    // been lost or cut, and a new entry in a place of old would be shown as the text of whoever still names
    // that.
    std::function<int32()> lastNamed;

    // A new entry in one write; its first block. Where that fails the file is as it was. 61 for an entry that
    // no pointer could name or no length could tell, 70 where programs that lock nothing take every place.
    int32 append(const memoFormat::Head& head, BytesView payload);
    // Takes back the last entry appended, where it still is the end of the file.
    void takeBack() noexcept { takeBack(last_); }
    // The length before and behind the last entry, or a run of them; taking that back where the file still
    // ends there.
    struct Run {
        uint64 before = 0;
        uint64 behind = 0;
    };
    Run last() const noexcept { return last_; }
    void takeBack(Run run) noexcept;

    MemoEntry::Kind kindAt(int32 block) { return headAt(block).kind; }
    // The entry at a block, as far as it is there.
    MemoEntry read(int32 block);
    // Overwrites an entry with zeros, its head included; an older one without a head stays. Where the length
    // leads out of the file only the first block goes, and the log says so.
    void release(int32 block);
    // Blocks of the entry: 0 where there is none.
    uint64 blocksAt(int32 block);
    uint64 blocks() { return memoFormat::blocksOf(bytes_.refreshSize()); }

 private:
    // As many blocks as there are, or were once.
    uint64 blocksTaken(uint64 size) const;
    MemoEntry headAt(int32 block);
    // The same with as much of what follows as there is room for and `got` tells; zeros behind it.
    MemoEntry headAt(int32 block, std::span<char> start, std::size_t& got);
    Bytes rawFrom(uint64 offset);

    BlockFile bytes_;
    Run last_;
};

}  // namespace tsRtm
