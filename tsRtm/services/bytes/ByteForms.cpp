#include "tsRtm/services/bytes/ByteForms.hpp"

#include <nettle/base64.h>

#include <algorithm>
#include <utility>

namespace tsRtm::byteForms {
namespace {

constexpr int32 kFormBits = 0xFF;
constexpr int32 kFlagBits = CRYPT_STRING_SHORT | CRYPT_STRING_STRICT | CRYPT_STRING_STRICT_STOB |
                            CRYPT_STRING_NOCRLF | CRYPT_STRING_NOCR;
constexpr std::size_t kBase64Line = 64;
constexpr BytesView kBegin = "-----BEGIN ", kEnd = "-----END ", kRule = "-----";

// A line of a dump: address and tab, 16 bytes with a wider gap in the middle, three blanks, the characters.
constexpr std::size_t kRow = 16;
constexpr std::size_t kRowWidth = 3 * kRow;
constexpr std::size_t kCharactersAt = kRowWidth + 3;
constexpr std::size_t kFullRow = kCharactersAt + kRow;

// The form without flags; -1 where there are bits that mean nothing.
int32 formOf(CryptStringFlags flags) noexcept {
    const int32 form = flags & ~kFlagBits;
    return (form & ~kFormBits) == 0 ? form : -1;
}

BytesView lineEnd(CryptStringFlags flags) noexcept {
    if ((flags & CRYPT_STRING_NOCRLF) != 0) return "";
    return (flags & CRYPT_STRING_NOCR) != 0 ? "\n" : "\r\n";
}

bool isSpace(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }

char shown(char c) noexcept { return c >= ' ' && c <= '~' ? c : '.'; }

// --- Base 64

Bytes base64Lines(BytesView bytes, BytesView end) {
    Bytes whole(BASE64_ENCODE_RAW_LENGTH(bytes.size()), '\0');
    base64_encode_raw(whole.data(), bytes.size(), reinterpret_cast<const uint8*>(bytes.data()));
    Bytes lines;
    for (std::size_t at = 0; at < whole.size(); at += kBase64Line)
        lines.append(whole, at, kBase64Line).append(end);
    return lines;
}

Bytes withHeader(BytesView label, const Bytes& lines, BytesView end) {
    Bytes text;
    text.append(kBegin).append(label).append(kRule).append(end).append(lines);
    return text.append(kEnd).append(label).append(kRule).append(end);
}

std::optional<Bytes> fromBase64(BytesView text, bool strict) {
    Bytes digits;
    std::copy_if(text.begin(), text.end(), std::back_inserter(digits), [](char c) { return !isSpace(c); });
    if (!strict && digits.size() % 4 > 1) digits.append(4 - digits.size() % 4, '=');
    base64_decode_ctx context;
    base64_decode_init(&context);
    Bytes bytes(BASE64_DECODE_LENGTH(digits.size()), '\0');
    std::size_t count = bytes.size();
    if (base64_decode_update(&context, &count, reinterpret_cast<uint8*>(bytes.data()), digits.size(),
                             digits.data()) == 0 ||
        base64_decode_final(&context) == 0)
        return std::nullopt;
    bytes.resize(count);
    return bytes;
}

// What stands between the two lines of a header, whatever their label.
std::optional<BytesView> insideHeader(BytesView text) {
    const auto begin = text.find(kBegin);
    if (begin == BytesView::npos) return std::nullopt;
    const auto label = begin + kBegin.size();
    const auto rule = text.find(kRule, label);
    if (rule == BytesView::npos) return std::nullopt;
    const auto body = rule + kRule.size();
    const auto end = text.find(kEnd, body);
    return end == BytesView::npos ? std::nullopt : std::optional(text.substr(body, end - body));
}

std::optional<Bytes> fromHeader(BytesView text, bool strict) {
    const auto body = insideHeader(text);
    return body ? fromBase64(*body, strict) : std::nullopt;
}

// --- Hexadecimal

int32 digitValue(char c) noexcept {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Appends the bytes of pairs of digits; false where there is something else.
bool appendPairs(Bytes& bytes, BytesView text) {
    int32 high = -1;
    for (const char c : text) {
        if (isSpace(c)) continue;
        const int32 digit = digitValue(c);
        if (digit < 0) return false;
        if (high >= 0) bytes += static_cast<char>(high * 16 + digit);
        high = high < 0 ? digit : -1;
    }
    return high < 0;
}

Bytes addressOf(std::size_t offset) {
    Bytes digits;
    for (; offset > 0 || digits.size() < 4; offset /= 16) digits += "0123456789abcdef"[offset % 16];
    std::reverse(digits.begin(), digits.end());
    return digits;
}

Bytes dump(BytesView bytes, bool address, bool characters, BytesView end) {
    Bytes text;
    for (std::size_t at = 0; at < bytes.size(); at += kRow) {
        const auto row = bytes.substr(at, kRow);
        Bytes line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (i > 0) line += i == kRow / 2 ? "  " : " ";
            line += hexDigits(row.substr(i, 1), Case::lower);
        }
        if (characters) {
            line.resize(kCharactersAt, ' ');
            std::transform(row.begin(), row.end(), std::back_inserter(line), shown);
        }
        // Without line ends a blank keeps two rows apart.
        if (at > 0 && end.empty()) text += ' ';
        if (address) text.append(addressOf(at)).append("\t");
        text.append(line).append(end);
    }
    return text;
}

// Behind the bytes of a row must stand their characters: a blank too many would else hide what was left out.
bool charactersFit(BytesView bytes, BytesView behind) {
    Bytes expected(kCharactersAt - kRowWidth, ' ');
    std::transform(bytes.begin(), bytes.end(), std::back_inserter(expected), shown);
    const auto trimmed = [](BytesView text) { return text.substr(0, text.find_last_not_of(" \r") + 1); };
    return trimmed(expected) == trimmed(behind);
}

// Takes a row without its address, which a tab ends. A line has more than one where there are no line ends: a
// blank then stands behind a full row of characters, or in front of the next address.
BytesView takeRow(BytesView& line, bool characters) {
    if (const auto tab = line.find('\t'); tab != BytesView::npos) line.remove_prefix(tab + 1);
    auto next = line.size();
    if (characters && line.size() > kFullRow && isSpace(line[kFullRow])) next = kFullRow + 1;
    if (const auto tab = line.find('\t'); !characters && tab != BytesView::npos)
        next = line.find_last_of(' ', tab) + 1;
    const auto row = line.substr(0, next);
    line.remove_prefix(next);
    return row;
}

// A dump with or without addresses.
std::optional<Bytes> fromDump(BytesView text, bool characters) {
    Bytes bytes;
    while (!text.empty()) {
        const auto end = text.find('\n');
        auto line = text.substr(0, end);
        text.remove_prefix(end == BytesView::npos ? text.size() : end + 1);
        while (!line.empty()) {
            const auto row = takeRow(line, characters);
            const auto width = characters ? std::min(row.size(), kRowWidth) : row.size();
            const auto before = bytes.size();
            if (!appendPairs(bytes, row.substr(0, width))) return std::nullopt;
            if (characters && !charactersFit(BytesView(bytes).substr(before), row.substr(width)))
                return std::nullopt;
        }
    }
    return bytes;
}

}  // namespace

Bytes hexDigits(BytesView bytes, Case digits) {
    const char* const set = digits == Case::upper ? "0123456789ABCDEF" : "0123456789abcdef";
    Bytes text;
    text.reserve(2 * bytes.size());
    for (const char byte : bytes) {
        text += set[static_cast<uint8>(byte) / 16];
        text += set[static_cast<uint8>(byte) % 16];
    }
    return text;
}

Bytes encode(BytesView bytes, CryptStringFlags flags) {
    if (bytes.empty()) return {};
    const auto end = lineEnd(flags);
    switch (formOf(flags)) {
        case CRYPT_STRING_BASE64HEADER:
            return withHeader("CERTIFICATE", base64Lines(bytes, end), end);
        case CRYPT_STRING_BASE64REQUESTHEADER:
            return withHeader("NEW CERTIFICATE REQUEST", base64Lines(bytes, end), end);
        case CRYPT_STRING_BASE64X509CRLHEADER:
            return withHeader("X509 CRL", base64Lines(bytes, end), end);
        case CRYPT_STRING_BASE64:
            return base64Lines(bytes, end);
        case CRYPT_STRING_BINARY:
            return Bytes(bytes);
        case CRYPT_STRING_HEX:
            return dump(bytes, false, false, end);
        case CRYPT_STRING_HEXASCII:
            return dump(bytes, false, true, end);
        case CRYPT_STRING_HEXADDR:
            return dump(bytes, true, false, end);
        case CRYPT_STRING_HEXASCIIADDR:
            return dump(bytes, true, true, end);
        case CRYPT_STRING_HEXRAW:
            return hexDigits(bytes, Case::lower).append(end);
        default:
            return {};
    }
}

std::optional<Bytes> decode(BytesView text, CryptStringFlags flags) {
    const bool strict = (flags & (CRYPT_STRING_STRICT | CRYPT_STRING_STRICT_STOB)) != 0;
    switch (formOf(flags)) {
        case CRYPT_STRING_BASE64HEADER:
        case CRYPT_STRING_BASE64REQUESTHEADER:
        case CRYPT_STRING_BASE64X509CRLHEADER:
            return fromHeader(text, strict);
        case CRYPT_STRING_BASE64:
            return fromBase64(text, strict);
        case CRYPT_STRING_BASE64_ANY:
        case CRYPT_STRING_ANY:  // never the bytes as they are: what is not of the form is told apart
            return insideHeader(text) ? fromHeader(text, strict) : fromBase64(text, strict);
        case CRYPT_STRING_BINARY:
            return Bytes(text);
        case CRYPT_STRING_HEX:
        case CRYPT_STRING_HEXRAW: {
            Bytes bytes;
            return appendPairs(bytes, text) ? std::optional(std::move(bytes)) : std::nullopt;
        }
        case CRYPT_STRING_HEXADDR:
            return fromDump(text, false);
        case CRYPT_STRING_HEXASCII:
        case CRYPT_STRING_HEXASCIIADDR:
            return fromDump(text, true);
        case CRYPT_STRING_HEX_ANY: {
            auto bytes = fromDump(text, true);
            return bytes ? bytes : fromDump(text, false);
        }
        default:
            return std::nullopt;
    }
}

}  // namespace tsRtm::byteForms
