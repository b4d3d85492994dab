// Bank code files of any content through the reader, in the encoding it tells and in both that there are.
#include "tests/support/MemoryFiles.hpp"
#include "tsRtm/banking/BankFile.hpp"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    using namespace tsRtm;
    test::MemoryFiles disk;
    disk.put(u"/d/banks", {reinterpret_cast<const char*>(data), size});
    const auto file = disk.open(u"/d/banks", {});
    if (!file) return 0;
    const std::optional<BankFileEncoding> encodings[] = {std::nullopt, BankFileEncoding::latin1,
                                                         BankFileEncoding::utf8};
    for (const auto& encoding : encodings) {
        BankFileReader reader(**file, encoding);
        BankRow row;
        while (reader.next(row)) static_cast<void>(reader.fault());
    }
    return 0;
}
