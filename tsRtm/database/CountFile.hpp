#pragma once
// Count.tsd: the record count as text, the mark of an update under way, and the lock area behind the text.
//
//   offset   size  content
//   0        10    decimal record count, CR, blanks; as created: " 0" CR, five blanks, CR LF
//   9        1     "*" while an update changes the indexes, else as the row above says
//   10       -     lock byte of the database (position 11)
//   10 + 10n -     lock byte of record n (position 10n + 11)
//
// The lock bytes lie behind the end of the file, only byte-range locks use them. The count is written for
// other readers and never read: the length of Data.tsd tells. The mark is ours: an update that died leaves
// it, and the next opening rebuilds the indexes. Programs that do not know it overwrite it with their next
// count, and do no harm by that.
#include "tsRtm/database/BlockFile.hpp"

namespace tsRtm {

namespace countFormat {

constexpr uint64 kTextBytes = 10;
constexpr uint64 kMarkOffset = 9;
constexpr char kMark = '*';

constexpr int32 kDatabaseLock = 11;  // positions count from 1
constexpr int64 recordLock(int32 record) noexcept { return int64{10} * record + 11; }
constexpr platform::ByteRange byteAt(int64 position) noexcept {
    return {static_cast<uint64>(position - 1), 1};
}

Bytes initialText();
Bytes encode(int32 count);

}  // namespace countFormat

// The open Count.tsd.
class CountFile {
 public:
    CountFile() = default;
    explicit CountFile(platform::File& file) : bytes_(file) {}

    explicit operator bool() const noexcept { return static_cast<bool>(bytes_); }
    platform::File& file() const noexcept { return bytes_.file(); }
    // Writes the initial text into an empty file.
    void initialise();
    void write(int32 count);

    // The mark of an update under way. Setting and clearing is done under the database lock.
    bool marked();
    void mark(bool underWay);
    // Whether the mark can be watched without a system call.
    bool watchable() const noexcept { return bytes_.mapped(); }

 private:
    BlockFile bytes_;
};

}  // namespace tsRtm
