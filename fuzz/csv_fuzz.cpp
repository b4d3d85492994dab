// CSV files of any content through the reader, with limits small enough to be met.
#include <cstring>

#include "cli/shared/CsvReader.hpp"

namespace {

class MemorySource final : public tsRtm::cli::ByteSource {
 public:
    explicit MemorySource(std::string_view bytes) : bytes_(bytes) {}
    std::size_t read(tsRtm::uint64 offset, std::span<char> into) override {
        if (offset >= bytes_.size()) return 0;
        const auto part = bytes_.substr(offset, into.size());
        std::memcpy(into.data(), part.data(), part.size());
        return part.size();
    }
    tsRtm::uint64 size() override { return bytes_.size(); }

 private:
    std::string_view bytes_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    using namespace tsRtm::cli;
    MemorySource source({reinterpret_cast<const char*>(data), size});
    CsvReader reader(source, ';', {64, 16});
    CsvRow row;
    while (reader.next(row)) static_cast<void>(row.blank());
    return 0;
}
