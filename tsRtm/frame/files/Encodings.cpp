#include "tsRtm/frame/files/Encodings.hpp"

#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm::encodings {

namespace {

using namespace std::string_view_literals;

constexpr auto utf8Mark = "\xEF\xBB\xBF"sv;
constexpr auto utf16LeMark = "\xFF\xFE"sv;
constexpr auto utf16BeMark = "\xFE\xFF"sv;
constexpr auto utf32LeMark = "\xFF\xFE\0\0"sv;
constexpr auto utf32BeMark = "\0\0\xFE\xFF"sv;

Text fromUtf16Be(BytesView bytes) {
    Text text = fromUtf16Le(bytes);
    for (char16_t& c : text) c = static_cast<char16_t>(c << 8 | c >> 8);
    return text;
}

Bytes toUtf16Be(TextView text) {
    Bytes bytes = toUtf16Le(text);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
    return bytes;
}

}  // namespace

BytesView markBytes(int32 encoding) noexcept {
    switch (encoding) {
        case UTF8:
            return utf8Mark;
        case UTF16LE:
            return utf16LeMark;
        case UTF16BE:
            return utf16BeMark;
        default:
            return {};
    }
}

Detected detect(BytesView head) noexcept {
    if (head.starts_with(utf8Mark)) return {UTF8, utf8Mark.size()};
    // In a file of two or three bytes there is no room for a 32-bit form.
    if (head.starts_with(utf32LeMark)) return {UTF32LE, std::nullopt};
    if (head.starts_with(utf16LeMark)) return {UTF16LE, utf16LeMark.size()};
    if (head.starts_with(utf16BeMark)) return {UTF16BE, utf16BeMark.size()};
    if (head.starts_with(utf32BeMark)) return {UTF32BE, std::nullopt};
    return {ANSI1252, 0};
}

bool supported(int32 encoding) noexcept {
    return encoding == ANSI1252 || encoding == CP850 || encoding == UTF8 || encoding == UTF16LE ||
           encoding == UTF16BE;
}

void raiseUnsupported(int32 encoding, TextView Source, TextView Datei) {
    raise(321, Source,
          u"Dieses Dateiformat (Encoding=" + toText(encoding) + u") wird in \"" + Text(Datei) +
              u"\" nicht unterstützt");
}

Text decode(BytesView bytes, int32 encoding) {
    switch (encoding) {
        case CP850:
            return fromAnsi(oemToAnsi(bytes));
        case UTF8:
            return fromUtf8(bytes);
        case UTF16LE:
            return fromUtf16Le(bytes);
        case UTF16BE:
            return fromUtf16Be(bytes);
        default:
            return fromAnsi(bytes);
    }
}

Bytes encode(TextView text, int32 encoding) {
    switch (encoding) {
        case CP850:
            return ansiToOem(toAnsi(text));
        case UTF8:
            return toUtf8(text);
        case UTF16LE:
            return toUtf16Le(text);
        case UTF16BE:
            return toUtf16Be(text);
        default:
            return toAnsi(text);
    }
}

}  // namespace tsRtm::encodings
