#pragma once
// The files that are open under a number.
#include <memory>
#include <vector>

#include "tsRtm/frame/files/SequentialReader.hpp"
#include "tsRtm/platform/File.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

struct NumberedFile {
    Text name;
    int32 number = 0;
    int32 mode = 0;
    bool shared = false;
    int32 recordLength = 0;
    std::unique_ptr<platform::File> file;
    uint64 position = 0;  // bytes from 0
    uint64 end = 0;       // of a file of mode 2 or 3, which nobody else changes
    SequentialReader reader;
};

// Numbers 1..511, the lowest free one first. A number is taken before its file is opened, since other events,
// which may open files as well, run while an open waits.
class OpenFileTable {
 public:
    static constexpr int32 highest = 511;

    // A taken number without a file; 0 when none is free.
    int32 take();
    // Gives it back and closes its file.
    void release(int32 number) noexcept;
    // The number is open from now on. It must be a taken one.
    void enter(NumberedFile opened);
    // nullptr for a number that is not open.
    NumberedFile* find(int32 number) noexcept;
    void closeAll() noexcept { entries_.clear(); }

 private:
    struct Entry {
        bool taken = false;
        std::unique_ptr<NumberedFile> opened;
    };
    std::vector<Entry> entries_;  // entry i: number i + 1
};

}  // namespace tsRtm
