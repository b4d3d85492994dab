#include "tsRtm/types/Text.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "tsRtm/types/Digits.hpp"

namespace tsRtm {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

// Gives the place behind it.
char16_t* putScalar(char16_t* to, char32_t c) noexcept {
    if (c < 0x10000) {
        *to++ = static_cast<char16_t>(c);
    } else {
        *to++ = static_cast<char16_t>(0xD7C0 + (c >> 10));
        *to++ = static_cast<char16_t>(0xDC00 + (c & 0x3FF));
    }
    return to;
}

// Most text is ASCII, which is taken in runs of this many bytes.
constexpr std::size_t kAsciiRun = sizeof(uint64);
bool startsWithAsciiRun(std::string_view bytes) noexcept {
    uint64 run = 0;
    if (bytes.size() < sizeof run) return false;
    std::memcpy(&run, bytes.data(), sizeof run);
    return (run & 0x8080808080808080) == 0;
}

// Length of the sequence that a lead byte announces, 0 for a byte that leads none.
int sequenceLength(unsigned char lead) noexcept {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 0;
}

}  // namespace

Text fromUtf8(std::string_view utf8) {
    Text out(utf8.size(), u'\0');  // no text has more code units than bytes
    char16_t* to = out.data();
    for (std::size_t i = 0; i < utf8.size();) {
        for (; startsWithAsciiRun(utf8.substr(i)); i += kAsciiRun)
            for (std::size_t j = 0; j < kAsciiRun; ++j) *to++ = static_cast<unsigned char>(utf8[i + j]);
        if (i == utf8.size()) break;
        const auto lead = static_cast<unsigned char>(utf8[i]);
        const int length = sequenceLength(lead);
        if (length == 1) {
            *to++ = lead;
            ++i;
            continue;
        }
        char32_t c = length == 0 ? 0 : lead & (0x7Fu >> length);
        std::size_t used = 1;
        while (used < static_cast<std::size_t>(length) && i + used < utf8.size() &&
               (static_cast<unsigned char>(utf8[i + used]) & 0xC0) == 0x80)
            c = c << 6 | (static_cast<unsigned char>(utf8[i + used++]) & 0x3F);
        const bool whole = length != 0 && used == static_cast<std::size_t>(length);
        const bool valid = whole && !(length == 3 && c < 0x800) &&
                           !(length == 4 && (c < 0x10000 || c > 0x10FFFF)) && !(c >= 0xD800 && c <= 0xDFFF);
        to = putScalar(to, valid ? c : kReplacement);
        i += used;
    }
    out.resize(static_cast<std::size_t>(to - out.data()));
    return out;
}

std::string toUtf8(TextView text) {
    // Most texts are plain up to their end.
    const auto ascii = std::find_if(text.begin(), text.end(), [](char16_t c) { return c >= 0x80; });
    std::string out(static_cast<std::size_t>(ascii - text.begin()), '\0');
    std::transform(text.begin(), ascii, out.begin(), [](char16_t c) { return static_cast<char>(c); });
    for (std::size_t i = out.size(); i < text.size(); ++i) {
        char32_t c = text[i];
        if (c >= 0xD800 && c <= 0xDFFF) {
            const bool pair =
                c < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF;
            c = pair ? ((c - 0xD7C0) << 10) + (text[++i] & 0x3FFu) : kReplacement;
        }
        const auto push = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
        if (c < 0x80) {
            push(c);
        } else if (c < 0x800) {
            push(0xC0 | c >> 6);
            push(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            push(0xE0 | c >> 12);
            push(0x80 | (c >> 6 & 0x3F));
            push(0x80 | (c & 0x3F));
        } else {
            push(0xF0 | c >> 18);
            push(0x80 | (c >> 12 & 0x3F));
            push(0x80 | (c >> 6 & 0x3F));
            push(0x80 | (c & 0x3F));
        }
    }
    return out;
}

Text toText(int64 number) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    return Text(digits, end);
}

Text toHexadecimal(uint32 number) {
    Text digits;
    do digits.insert(digits.begin(), u"0123456789ABCDEF"[number & 15]);
    while ((number >>= 4) != 0);
    return digits;
}

TextView trimLeft(TextView text) noexcept {
    while (!text.empty() && text.front() == u' ') text.remove_prefix(1);
    return text;
}

TextView trimRight(TextView text) noexcept {
    while (!text.empty() && text.back() == u' ') text.remove_suffix(1);
    return text;
}

TextView trim(TextView text) noexcept { return trimLeft(trimRight(text)); }

char16_t upper(char16_t c) noexcept {
    if (c >= u'a' && c <= u'z') return static_cast<char16_t>(c - 32);
    if (c < 0x80) return c;
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return static_cast<char16_t>(c - 32);
    switch (c) {
        case 0xFF:
            return 0x178;
        case 0x153:
            return 0x152;
        case 0x161:
            return 0x160;
        case 0x17E:
            return 0x17D;
        default:
            return c;
    }
}

char16_t lower(char16_t c) noexcept {
    if (c >= u'A' && c <= u'Z') return static_cast<char16_t>(c + 32);
    if (c < 0x80) return c;
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return static_cast<char16_t>(c + 32);
    switch (c) {
        case 0x178:
            return 0xFF;
        case 0x152:
            return 0x153;
        case 0x160:
            return 0x161;
        case 0x17D:
            return 0x17E;
        default:
            return c;
    }
}

Text upper(TextView text) {
    Text out(text);
    for (auto& c : out) c = upper(c);
    return out;
}

Text lower(TextView text) {
    Text out(text);
    for (auto& c : out) c = lower(c);
    return out;
}

bool equalIgnoringCase(TextView a, TextView b) noexcept {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (upper(a[i]) != upper(b[i])) return false;
    return true;
}

Text replaceAll(TextView text, TextView what, TextView by) {
    if (what.empty()) return Text(text);
    Text out;
    std::size_t from = 0;
    for (;;) {
        const auto at = text.find(what, from);
        if (at == TextView::npos) break;
        out.append(text.substr(from, at - from)).append(by);
        from = at + what.size();
    }
    return out.append(text.substr(from));
}

float64 Val(TextView text) noexcept {
    text = trimLeft(text);
    std::size_t end = 0;
    const auto digits = [&] {
        const std::size_t from = end;
        while (end < text.size() && isDigit(text[end])) ++end;
        return end - from;
    };
    const bool plus = text.starts_with(u'+');
    if (plus || text.starts_with(u'-')) ++end;
    digits();
    if (end < text.size() && text[end] == u'.') {
        ++end;
        digits();
    }
    if (end < text.size() && (text[end] == u'e' || text[end] == u'E')) {
        const std::size_t mantissa = end++;
        if (end < text.size() && (text[end] == u'+' || text[end] == u'-')) ++end;
        if (digits() == 0) end = mantissa;
    }
    const std::string narrow(text.begin() + (plus ? 1 : 0), text.begin() + static_cast<std::ptrdiff_t>(end));
    float64 value = 0;
    return std::from_chars(narrow.data(), narrow.data() + narrow.size(), value).ec == std::errc{} ? value : 0;
}

bool IstNumerisch(TextView text, TextView decimalMark, TextView thousandsMark) noexcept {
    text = trim(text);
    if (!text.empty() && (text.front() == u'+' || text.front() == u'-')) text.remove_prefix(1);
    bool digit = false;
    bool decimal = false;
    while (!text.empty()) {
        if (isDigit(text.front())) {
            digit = true;
            text.remove_prefix(1);
        } else if (!decimal && !decimalMark.empty() && text.starts_with(decimalMark)) {
            decimal = true;
            text.remove_prefix(decimalMark.size());
        } else if (digit && !decimal && !thousandsMark.empty() && text.starts_with(thousandsMark)) {
            text.remove_prefix(thousandsMark.size());
        } else {
            return false;
        }
    }
    return digit;
}

bool IstZiffern(TextView text) noexcept {
    for (const auto c : text)
        if (!isDigit(c)) return false;
    return !text.empty();
}

int32 roundToInt32(float64 value) noexcept {
    if (!(value > std::numeric_limits<int32>::min()))
        return std::isnan(value) ? 0 : std::numeric_limits<int32>::min();
    if (value >= std::numeric_limits<int32>::max()) return std::numeric_limits<int32>::max();
    return static_cast<int32>(std::nearbyint(value));
}

}  // namespace tsRtm
