#include "tsRtm/frame/text/ByteStrings.hpp"

#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm {
namespace {

ByteText bytesOf(uint32 value, int count) {
    ByteText out;
    for (int i = 0; i < count; ++i) out.push_back(ansiToUnicode(static_cast<uint8>(value >> (8 * i))));
    return out;
}

// A character that stands for no byte counts as the one that toAnsi gives for it.
uint32 byteOf(char16_t c) noexcept {
    const int32 byte = unicodeToAnsi(c);
    return static_cast<uint32>(byte < 0 ? '?' : byte);
}

// Little-endian, 0 where not all bytes lie in the text.
uint32 numberAt(TextView text, int32 position, std::size_t count) noexcept {
    if (position < 1) return 0;
    const auto first = static_cast<std::size_t>(position) - 1;
    if (text.size() < count || first > text.size() - count) return 0;
    uint32 value = 0;
    for (std::size_t i = count; i-- > 0;) value = value << 8 | byteOf(text[first + i]);
    return value;
}

}  // namespace

ByteText MKI(int32 Zahl) { return bytesOf(static_cast<uint32>(Zahl), 2); }
ByteText MKL(int32 Wert) { return bytesOf(static_cast<uint32>(Wert), 4); }

int32 ByteVal(TextView text, int32 Position) noexcept {
    if (Position < 1 || static_cast<std::size_t>(Position) > text.size()) return -1;
    return static_cast<int32>(byteOf(text[static_cast<std::size_t>(Position) - 1]));
}

int32 WordVal(TextView s, int32 Posi) noexcept { return static_cast<int32>(numberAt(s, Posi, 2)); }
int32 LongVal(TextView text, int32 Position) noexcept {
    return static_cast<int32>(numberAt(text, Position, 4));
}

}  // namespace tsRtm
