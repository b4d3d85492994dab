#pragma once
// Stand.tsd: how often the indexes of a database were changed, so that a reader who takes no lock knows
// whether an update crossed his walk.
//
//   offset  size  content
//   0       8     little-endian number, odd while an update is under way
//   8       8     the number of the update that last wrote bytes of a record in more than one page
//   16      4     that record, from 1
//   20      4     offset of these bytes in the record
//   24      4     how many they are
//   28      4     how many are told that were there before: as many, or none for a new record
//   32      8     sum of the former five and the bytes behind
//   40            the bytes, then those before
//
// Who is killed in a write may leave the first pages of it written and the others not: while his number
// stands, the record is completed from here.
//
// On a share zeros follow up to kServedBytes: clients answer from what they keep of shorter files.
//
// The file is ours. It comes with the first opening that may write; programs that do not know it pass it
// over.
#include <optional>

#include "tsRtm/database/files/BlockFile.hpp"

namespace tsRtm {

// The open Stand.tsd, or none. Changed under the database lock. Failures raise as raiseFileFailure tells.
class ChangeCount {
 public:
    static constexpr TextView kFileName = u"Stand.tsd";
    static constexpr uint64 kServedBytes = platform::ServedFile::kKeptWhole + 4096;

    ChangeCount() = default;
    explicit ChangeCount(platform::File& file) : bytes_(file) {}

    explicit operator bool() const noexcept { return static_cast<bool>(bytes_); }
    platform::File& file() const noexcept { return bytes_.file(); }
    // Writes a 0 into an empty file.
    void initialise();
    // With a window no system call; on a share one question for the server. What was read before this call
    // was read before the number, what is read afterwards after it.
    uint64 value();
    // The number as this client remembers it.
    uint64 cached();
    // While nobody else may change the number it is remembered, and no server asked. Starting anew forgets.
    void alone(bool is) noexcept;
    static constexpr bool isQuiet(uint64 value) noexcept { return value % 2 == 0; }

    void begin();
    void end();
    // Something was written that no index knows of: on a share, others have to hear of that, too.
    void touch() { store(value() + 2); }

    // Bytes of a record that an update writes.
    struct Kept {
        int32 record = 0;  // 0 for none
        uint32 offset = 0;
        Bytes bytes;
        Bytes before;  // as many, or none for a new record

        // Whether these bytes of the record can be what its write left: each as it was or as it was to be.
        bool completes(BytesView there) const noexcept;
    };
    // Within an update, before they are written.
    void keep(int32 record, uint32 offset, BytesView bytes, BytesView before);
    // Those of the update that died.
    Kept kept();

 private:
    void store(uint64 value);
    uint64 served();

    BlockFile bytes_;
    bool alone_ = false;
    std::optional<uint64> known_;  // while alone
};

}  // namespace tsRtm
