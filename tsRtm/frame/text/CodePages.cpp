#include "tsRtm/frame/text/CodePages.hpp"

#include <algorithm>
#include <cstring>

#include "tsRtm/frame/text/CodePageTables.hpp"

namespace tsRtm {
namespace {

constexpr uint8 kSpecialFirst = 0x80;
constexpr uint8 kSpecialEnd = 0xA0;

constexpr bool isSpecial(uint8 byte) noexcept { return byte >= kSpecialFirst && byte < kSpecialEnd; }

constexpr char16_t widen(uint8 byte) noexcept {
    return isSpecial(byte) ? codepage::kAnsiSpecial[byte - kSpecialFirst] : byte;
}

constexpr uint64 kHighBits = 0x8080808080808080;

// Whether one of eight bytes is 80..9F: where the top three bits are 100.
bool anySpecial(uint64 bytes) noexcept {
    const uint64 other = (bytes & 0xE0E0E0E0E0E0E0E0) ^ kHighBits;  // 0 in a special byte
    return ((other - 0x0101010101010101) & ~other & kHighBits) != 0;
}

// Eight bytes at a time, and one by one what is left; the codes 80 to 9F are rare.
void widenInto(BytesView bytes, char16_t* out) noexcept {
    bool special = false;
    std::size_t i = 0;
    for (; i + 8 <= bytes.size(); i += 8) {
        uint64 eight;
        std::memcpy(&eight, bytes.data() + i, sizeof eight);
        special = special || anySpecial(eight);
        for (std::size_t j = 0; j < 8; ++j) out[i + j] = static_cast<uint8>(bytes[i + j]);
    }
    for (; i < bytes.size(); ++i) out[i] = widen(static_cast<uint8>(bytes[i]));
    if (!special) return;
    for (i = 0; i < bytes.size(); ++i) out[i] = widen(static_cast<uint8>(bytes[i]));
}

Bytes mapped(BytesView bytes, const uint8 (&table)[256]) {
    Bytes out(bytes);
    for (char& c : out) c = static_cast<char>(table[static_cast<uint8>(c)]);
    return out;
}

}  // namespace

Text fromAnsi(BytesView bytes) {
    Text text;
    fromAnsi(bytes, text);
    return text;
}

void fromAnsi(BytesView bytes, Text& into) {
    into.resize(bytes.size());
    widenInto(bytes, into.data());
}

char16_t ansiToUnicode(uint8 byte) noexcept { return widen(byte); }

int32 unicodeToAnsi(char16_t c) noexcept {
    if (c < kSpecialFirst || (c >= kSpecialEnd && c <= 0xFF)) return c;
    const auto* const found =
        std::find(std::begin(codepage::kAnsiSpecial), std::end(codepage::kAnsiSpecial), c);
    if (found == std::end(codepage::kAnsiSpecial)) return -1;
    return kSpecialFirst + static_cast<int32>(found - codepage::kAnsiSpecial);
}

Bytes toAnsi(TextView text) {
    Bytes out;
    appendAnsi(out, text);
    return out;
}

void appendAnsi(Bytes& out, TextView text) {
    const std::size_t from = out.size();
    out.resize(from + text.size());
    char* to = out.data() + from;
    for (const char16_t c : text) {
        const int32 byte = c < kSpecialFirst ? c : unicodeToAnsi(c);
        *to++ = byte < 0 ? '?' : static_cast<char>(byte);
    }
}

Bytes oemToAnsi(BytesView bytes) { return mapped(bytes, codepage::kOemToAnsi); }
Bytes ansiToOem(BytesView bytes) { return mapped(bytes, codepage::kAnsiToOem); }
Text OemToChar(TextView text) { return fromAnsi(oemToAnsi(toAnsi(text))); }
Text CharToOem(TextView text) { return fromAnsi(ansiToOem(toAnsi(text))); }

Bytes toUtf16Le(TextView text) {
    Bytes out(text.size() * 2, '\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        out[2 * i] = static_cast<char>(text[i] & 0xFF);
        out[2 * i + 1] = static_cast<char>(text[i] >> 8);
    }
    return out;
}

Text fromUtf16Le(BytesView bytes) {
    Text out(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = static_cast<char16_t>(static_cast<uint8>(bytes[2 * i]) | static_cast<uint8>(bytes[2 * i + 1])
                                                                              << 8);
    return out;
}

}  // namespace tsRtm
