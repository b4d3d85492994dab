#pragma once
// Count.tsd: the record count as text, the sign of who is at work, and the lock area behind the text.
//
//   offset   size  content
//   0        10    decimal record count, CR, blanks; as created: " 0" CR, five blanks, CR LF
//   9        1     "+" while somebody works who writes, "*" while an update changes the indexes; else as
//   above 10       -     lock byte of the database (position 11) 10 + 10n -     lock byte of record n
//   (position 10n + 11)
//
// The lock bytes lie behind the end of the file, only byte-range locks use them. The count is written for
// other readers and never read: the length of Data.tsd tells. The sign at offset 9 is ours. Programs that do
// not know it overwrite it with their next count, and do no harm by that: whoever holds the database lock
// sets it again.
#include "tsRtm/database/files/BlockFile.hpp"

namespace tsRtm {

namespace countFormat {

constexpr uint64 kTextBytes = 10;
constexpr uint64 kSignOffset = 9;
constexpr char kAtWork = '+';
constexpr char kMark = '*';

constexpr int32 kDatabaseLock = 11;  // positions count from 1
constexpr int64 recordLock(int32 record) noexcept { return int64{10} * record + 11; }
constexpr platform::ByteRange byteAt(int64 position) noexcept {
    return {static_cast<uint64>(position - 1), 1};
}

Bytes initialText();
Bytes encode(int32 count, char sign = ' ');

}  // namespace countFormat

// The open Count.tsd. What changes it is done under the database lock.
class CountFile {
 public:
    CountFile() = default;
    explicit CountFile(platform::File& file) : bytes_(file) {}

    explicit operator bool() const noexcept { return static_cast<bool>(bytes_); }
    platform::File& file() const noexcept { return bytes_.file(); }
    // Whether its name still leads to it: the directory may have become that of another database, copied or
    // renamed into the place of ours. Asked before a file is opened late, by its name.
    bool inPlace() const {
        const auto inPlace = bytes_.file().inPlace();
        return inPlace && *inPlace;
    }
    // Writes the initial text into an empty file.
    void initialise();

    // An update is under way, or died.
    bool marked() { return sign() == countFormat::kMark; }
    // Somebody who writes is at work, or did not leave cleanly.
    bool atWork() { return marked() || sign() == countFormat::kAtWork; }
    // The mark of an update under way.
    void mark() { sign(countFormat::kMark); }
    // Count and sign in one write: the update is whole.
    void finish(int32 count);
    // The sign alone.
    void signOn() { sign(countFormat::kAtWork); }
    void signOff();

 private:
    char sign();
    void sign(char byte) { bytes_.store(countFormat::kSignOffset, {&byte, 1}); }

    BlockFile bytes_;
};

}  // namespace tsRtm
