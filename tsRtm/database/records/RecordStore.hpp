#pragma once
// Data.tsd: records by number.
#include <functional>

#include "tsRtm/database/files/BlockFile.hpp"
#include "tsRtm/database/files/FetchAhead.hpp"
#include "tsRtm/database/records/RecordLayout.hpp"

namespace tsRtm {

// Not thread-safe. Failures of the file raise as raiseFileFailure tells. Knows the layout by reference.
class RecordStore {
 public:
    RecordStore() = default;
    // `shared`: others may write at any time.
    RecordStore(platform::File& file, const RecordLayout& layout, bool shared);

    explicit operator bool() const noexcept { return static_cast<bool>(bytes_); }
    // Records that the file's length made when it was last asked, half to even: half a torn record counts.
    int32 count() const noexcept { return count_; }
    void refresh();
    bool has(int32 record) const noexcept { return record >= 1 && record <= count_; }
    // The same, and the length is asked anew before the answer is no.
    bool reaches(int32 record);

    // A record's bytes where they lie, or in `room`; a torn one is filled up with blanks. Good until the next
    // call that may grow the file. Others may be writing it: only for what is looked at again (UpdateWatch).
    // The record must be there.
    BytesView view(int32 record, Bytes& room) const;
    // A copy in which no write of others is half done: copied until two copies agree.
    void read(int32 record, Bytes& into) const;
    // Records one behind the other in the same way, each by itself: as many as `into` has room for.
    void readRun(int32 first, std::span<char> into) const;
    // All records in the same way, in their order.
    void each(const std::function<void(BytesView)>& look) const;
    // Some bytes of a record in the same way, filled up with blanks behind the end of the file.
    void readPart(int32 record, uint32 offset, std::span<char> into) const;
    // Lets the memory come near that a view will look at soon; costs nothing where there is no window.
    void approach(int32 record, std::span<const uint32> offsets) const noexcept {
        if (!has(record)) return;
        const char* const in = bytes_.view(layout_->offsetOf(record), layout_->bytes());
        if (!in) return;
        for (const uint32 offset : offsets) fetchAhead(in + offset, 1);
    }
    void approachWhole(int32 record) const noexcept {
        if (!has(record)) return;
        if (const char* const in = bytes_.view(layout_->offsetOf(record), layout_->bytes()))
            fetchAhead(in, layout_->bytes());
    }

    // Whether these columns lie in more than one page of the system: who is killed in their write may leave
    // the first pages new and the others old. A write within a page is done or not.
    bool tears(int32 record, std::size_t from, std::size_t to) const noexcept;
    // The whole record in one write.
    void write(int32 record, BytesView bytes);
    // Whole records behind the last one.
    void append(BytesView block, int32 records);
    // Within a record, or behind one that is torn.
    void writePart(int32 record, uint32 offset, BytesView bytes);
    // One byte, as the mark of a deleted record is, which nobody sees or leaves half written: in place where
    // there is a window. The file's time may stay as it is, so only where something else tells of the change.
    void putByte(int32 record, uint32 offset, char byte);
    // Takes back a record at the end that was not completed.
    void cutTo(int32 count);

    BlockFile& bytes() noexcept { return bytes_; }

 private:
    void closeGap(int32 record);
    // Bytes that were there, copied until two copies agree.
    std::size_t readWhole(uint64 offset, std::span<char> into) const;
    // Blanks behind the end of the file.
    void fillUp(std::size_t got, std::span<char> into) const;

    BlockFile bytes_;
    const RecordLayout* layout_ = nullptr;
    bool shared_ = true;
    int32 count_ = 0;
    mutable Bytes again_;
};

}  // namespace tsRtm
