#include "tsRtm/frame/rtf/Charsets.hpp"

#include <unicode/ucnv.h>

#include <algorithm>
#include <string>

#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm::rtf {
namespace {

constexpr int32 kAnsi = 1252;

struct Charset {
    int32 charset, codePage;
};

constexpr Charset kCharsets[] = {
    {0, kAnsi},   // western, whatever the document's page is
    {2, kAnsi},   // symbols: places in the font, one byte each
    {77, 10000},  // Macintosh
    {128, 932},   // Japanese
    {129, 949},   // Korean
    {134, 936},   // simplified Chinese
    {136, 950},   // traditional Chinese
    {161, 1253},  // Greek
    {162, 1254},  // Turkish
    {163, 1258},  // Vietnamese
    {177, 1255},  // Hebrew
    {178, 1256},  // Arabic
    {186, 1257},  // Baltic
    {204, 1251},  // Russian
    {222, 874},   // Thai
    {238, 1250},  // East European
    {254, 437},   // DOS
    {255, 850},   // OEM
};

std::string converterName(int32 codePage) {
    if (codePage == 10000) return "macintosh";
    if (codePage == 65001) return "UTF-8";
    const bool dos = codePage < 900 && codePage != 874;
    return (dos ? "ibm-" : "windows-") + std::to_string(codePage);
}

}  // namespace

int32 codePageOfCharset(int32 charset) noexcept {
    for (const auto& row : kCharsets)
        if (row.charset == charset) return row.codePage;
    return 0;
}

bool awaitsTrail(BytesView bytes, int32 codePage) noexcept {
    const bool japanese = codePage == 932;
    if (!japanese && codePage != 936 && codePage != 949 && codePage != 950) return false;
    bool waits = false;
    for (const char c : bytes) {
        const auto byte = static_cast<uint8>(c);
        // The Japanese page has single bytes in its upper half.
        const bool single = byte <= 0x80 || byte == 0xFF || (japanese && byte >= 0xA0 && byte <= 0xDF);
        waits = !waits && !single;
    }
    return waits;
}

void Decoder::Close::operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
Decoder::Decoder() = default;
Decoder::~Decoder() = default;

UConverter* Decoder::converter(int32 codePage) {
    // A text may name any number of pages: beyond these few the rest reads as 1252.
    constexpr std::size_t kMostPages = 32;
    const auto known = converters_.find(codePage);
    if (known != converters_.end()) return known->second.get();
    if (converters_.size() >= kMostPages) return nullptr;
    UErrorCode status = U_ZERO_ERROR;
    UConverter* opened = ucnv_open(converterName(codePage).c_str(), &status);
    return converters_.emplace(codePage, U_SUCCESS(status) ? opened : nullptr).first->second.get();
}

void Decoder::append(Text& out, BytesView bytes, int32 codePage) {
    UConverter* const by = codePage == kAnsi ? nullptr : converter(codePage);
    if (by == nullptr) {
        out += fromAnsi(bytes);
        return;
    }
    // No page gives more than two units a byte.
    const std::size_t before = out.size();
    out.resize(before + bytes.size() * 2 + 1);
    char16_t* to = out.data() + before;
    const char* from = bytes.data();
    UErrorCode status = U_ZERO_ERROR;
    ucnv_toUnicode(by, &to, out.data() + out.size(), &from, bytes.data() + bytes.size(), nullptr, true,
                   &status);
    ucnv_resetToUnicode(by);
    out.resize(static_cast<std::size_t>(to - out.data()));
    // Some pages answer half a character with the control character for it.
    std::replace(out.begin() + static_cast<std::ptrdiff_t>(before), out.end(), u'\x1A', u'\uFFFD');
}

}  // namespace tsRtm::rtf
