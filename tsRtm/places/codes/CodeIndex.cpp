#include "tsRtm/places/codes/CodeIndex.hpp"

#include <cstring>

namespace tsRtm {
namespace {

int16 numberAt(std::span<const char> bytes) {
    return static_cast<int16>(static_cast<uint16>(static_cast<uint8>(bytes[0])) |
                              static_cast<uint16>(static_cast<uint8>(bytes[1]) << 8));
}

void store(std::span<char> bytes, int32 number) {
    const auto bits = static_cast<uint16>(static_cast<int16>(number));
    bytes[0] = static_cast<char>(bits & 0xFF);
    bytes[1] = static_cast<char>(bits >> 8);
}

}  // namespace

CodeIndex::CodeIndex(platform::File& file) : file_(file) {
    const auto size = file.size();
    long_ = size && *size >= kLongFrom;
}

CodeIndex::Entry CodeIndex::at(int32 code) const {
    if (code < 1 || code > kCodes) return {};
    char bytes[4] = {};
    const std::size_t width = long_ ? 4 : 2;
    const auto got =
        file_.readAt(static_cast<uint64>(code - 1) * width, std::as_writable_bytes(std::span(bytes, width)));
    if (!got || *got != width) return {};
    int32 number = numberAt(std::span(bytes, 2));
    if (number == 0 && long_) number = numberAt(std::span(bytes + 2, 2));
    return {number < 0 ? -number : number, number < 0};
}

void CodeIndex::Writer::put(int32 code, std::size_t offset, int32 record) {
    if (code < 1 || code > kCodes) return;
    const std::span<char> place(bytes_.data() + static_cast<std::size_t>(code - 1) * 4 + offset, 2);
    const int32 before = numberAt(place);
    store(place, before == 0 ? record : before > 0 ? -before : before);
}

platform::SystemError CodeIndex::Writer::write(platform::File& file) const {
    return file.writeAt(0, std::as_bytes(std::span(bytes_.data(), bytes_.size())));
}

}  // namespace tsRtm
