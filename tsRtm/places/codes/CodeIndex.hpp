#pragma once
// "Index.tsd" in the folder of "Orte": from a postal code straight to a record.
//
// Numbers of 16 bits with a sign, little-endian, by the code as a number n from 1. A file of 300001 bytes or
// more:
//
//   offset     size  content
//   4(n - 1)      2  the record that delivery with code n leads to
//   4(n - 1)+2    2  the record whose boxes have code n; read where the first number is 0
//
// A shorter one has at 2(n - 1) the first number alone. 0: there is no such code. A number below 0: several
// places share the code, and the record is the first of them.
#include <span>

#include "tsRtm/platform/File.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class CodeIndex {
 public:
    static constexpr TextView kFileName = u"Index.tsd";
    static constexpr uint64 kLongFrom = 300001;
    static constexpr int32 kCodes = 99999;  // the greatest one

    struct Entry {
        int32 record = 0;  // 0: unknown
        bool shared = false;
    };

    // Of an open file, which outlives the index.
    explicit CodeIndex(platform::File& file);
    Entry at(int32 code) const;

    // Makes the long form.
    class Writer {
     public:
        Writer() : bytes_(std::size_t{kCodes} * 4, '\0') {}
        // The first record given for a code is kept, a second one makes it shared.
        void delivery(int32 code, int32 record) { put(code, 0, record); }
        void box(int32 code, int32 record) { put(code, 2, record); }
        [[nodiscard]] platform::SystemError write(platform::File& file) const;

     private:
        void put(int32 code, std::size_t offset, int32 record);
        Bytes bytes_;
    };

 private:
    platform::File& file_;
    bool long_ = false;
};

}  // namespace tsRtm
