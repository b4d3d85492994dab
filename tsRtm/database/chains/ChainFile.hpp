#pragma once
// KetteDat.nnn: rows by number.
#include <functional>

#include "tsRtm/database/chains/ChainFormat.hpp"
#include "tsRtm/database/files/BlockFile.hpp"

namespace tsRtm {

// Failures of the file raise as raiseFileFailure tells. Not thread-safe.
class ChainFile {
 public:
    ChainFile() = default;
    ChainFile(platform::File& file, const ChainFormat& format) : bytes_(file), format_(format) {}

    explicit operator bool() const noexcept { return static_cast<bool>(bytes_); }
    platform::File& file() const noexcept { return bytes_.file(); }
    const ChainFormat& format() const noexcept { return format_; }

    // The file's length asked anew, and the rows that it makes: a begun one counts.
    int32 refresh();
    int32 rows() const noexcept { return rows_; }
    uint64 size() const noexcept { return bytes_.knownSize(); }
    // A row that a pointer may lead to.
    bool holds(int32 row) const noexcept { return row >= ChainFormat::kFirstRow && row <= rows_; }

    // One that somebody has written: else it is all zeros, where rows lay that were lost.
    bool has(int32 row, Bytes& room) const;

    // A row where it lies, or in `room`; blanks behind the end of the file. Others may be writing it.
    BytesView row(int32 number, Bytes& room) const;
    // All rows but the first, the free ones among them.
    void each(const std::function<void(BytesView)>& look) const;
    // Raises when the file was cut short under a run of row().
    void check() const { bytes_.check(); }

    // Whole rows, one behind the other in `bytes`; those that are neighbours in one write.
    void write(std::span<const int32> numbers, BytesView bytes);
    void writePart(int32 row, uint32 offset, BytesView bytes);
    void writePointer(int32 row, uint32 offset, int32 to);
    // Whether that pointer lies in two pages of the system, so that a death may leave half of it; or in two
    // sectors, for a cut of the power.
    bool tears(int32 row, uint32 offset, bool durable) const noexcept;
    // The beginning of row 1, and with it all of the row where the file is shorter.
    ChainHead head() const;
    void head(ChainHead head);
    void cutTo(uint64 size);

 private:
    void sizeChanged() noexcept;

    BlockFile bytes_;
    ChainFormat format_;
    int32 rows_ = 0;
};

}  // namespace tsRtm
