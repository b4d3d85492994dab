#include "tsRtm/frame/text/CodePages.hpp"

#include <algorithm>

#include "tsRtm/frame/text/CodePageTables.hpp"

namespace tsRtm {
namespace {

constexpr uint8 kSpecialFirst = 0x80;
constexpr uint8 kSpecialEnd = 0xA0;

// The codes where the code page differs from the first page of Unicode.
constexpr bool isSpecial(uint8 byte) noexcept { return (byte & 0xE0) == kSpecialFirst; }
static_assert(isSpecial(kSpecialFirst) && isSpecial(kSpecialEnd - 1) && !isSpecial(kSpecialEnd));

constexpr char16_t widen(uint8 byte) noexcept {
    return isSpecial(byte) ? codepage::kAnsiSpecial[byte - kSpecialFirst] : byte;
}

// As if there were no codes 80 to 9F, which are rare: two loops that the compiler turns into vector code.
void widenInto(BytesView bytes, char16_t* __restrict out) noexcept {
    const char* __restrict in = bytes.data();
    for (std::size_t i = 0; i < bytes.size(); ++i) out[i] = static_cast<uint8>(in[i]);
    uint8 special = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        special = static_cast<uint8>(special | (isSpecial(static_cast<uint8>(in[i])) ? 1 : 0));
    if (special == 0) return;
    for (std::size_t i = 0; i < bytes.size(); ++i) out[i] = widen(static_cast<uint8>(in[i]));
}

// Backwards, in the same way; false where a character is outside the code page.
bool narrowInto(TextView text, char* __restrict out) noexcept {
    const char16_t* __restrict in = text.data();
    for (std::size_t i = 0; i < text.size(); ++i) out[i] = static_cast<char>(in[i]);
    uint16 special = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        special =
            static_cast<uint16>(special | (in[i] > 0xFF || isSpecial(static_cast<uint8>(in[i])) ? 1 : 0));
    if (special == 0) return true;
    bool exact = true;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int32 byte = unicodeToAnsi(in[i]);
        out[i] = byte < 0 ? '?' : static_cast<char>(byte);
        exact = exact && byte >= 0;
    }
    return exact;
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

bool appendAnsi(Bytes& out, TextView text) {
    const std::size_t from = out.size();
    out.resize(from + text.size());
    return narrowInto(text, out.data() + from);
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
