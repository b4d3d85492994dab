#pragma once
// The bank code file, row by row.
#include "tsRtm/banking/BankRow.hpp"
#include "tsRtm/platform/File.hpp"

namespace tsRtm {

// Reads a bank code file. Holds one block of it in memory.
//
//     BankFileReader reader(*file);
//     while (reader.next(row))
//         if (reader.fault() == BankRowFault::none) use(row); else tell(reader.line(), reader.fault());
class BankFileReader {
 public:
    // Walks once through the file, also to tell its encoding where none is given. The file outlives the
    // reader.
    explicit BankFileReader(platform::File& file, std::optional<BankFileEncoding> encoding = std::nullopt);

    BankFileEncoding encoding() const noexcept { return encoding_; }
    // The next row, empty lines passed over; false at the end of the file and where it cannot be read on.
    bool next(BankRow& row);
    // Of the row that next gave: what is wrong with it, its line from 1, and how many bytes are read so far.
    BankRowFault fault() const noexcept { return fault_; }
    int64 line() const noexcept { return line_; }
    uint64 position() const noexcept { return begin_ + used_; }
    uint64 size() const noexcept { return size_; }
    // What the system said where reading stopped early.
    platform::SystemError error() const noexcept { return error_; }

 private:
    bool fill();
    bool nextLine();

    platform::File& file_;
    BankFileEncoding encoding_ = BankFileEncoding::latin1;
    BankRowFault fault_ = BankRowFault::none;
    platform::SystemError error_ = platform::SystemError::none;
    uint64 size_ = 0;
    uint64 begin_ = 0;  // of the block in the file
    std::size_t used_ = 0;
    Bytes block_;
    Bytes text_;  // of the line, as far as a row can be long
    int64 line_ = 0;
};

}  // namespace tsRtm
