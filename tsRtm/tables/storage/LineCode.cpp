#include "tsRtm/tables/storage/LineCode.hpp"

#include <algorithm>

#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr auto kForm = CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF | CRYPT_STRING_SHORT;

bool isBase64(TextView text) {
    return std::all_of(text.begin(), text.end(), [](char16_t c) {
        return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9') ||
               c == u'+' || c == u'/' || c == u'=';
    });
}

}  // namespace

std::vector<Text> linesOf(TextView text) {
    std::vector<Text> lines;
    const bool hasCr = text.find(u'\r') != TextView::npos;
    const char16_t end = hasCr ? u'\r' : u'\n';
    while (!text.empty()) {
        const auto length = text.find(end);
        Text line(text.substr(0, length));
        if (hasCr) std::erase(line, u'\n');
        text.remove_prefix(length == TextView::npos ? text.size() : length + 1);
        // What stands behind the last line end is a line, unless it is the LF of that very end.
        const bool restOfEnd = text.empty() && length == TextView::npos && line.empty();
        if (!restOfEnd) lines.push_back(std::move(line));
    }
    return lines;
}

void needHeld(TextView text, Holds what, TextView Source, TextView Datei) {
    const bool oneLine = what == Holds::oneLine;
    if (text.find_first_of(oneLine ? TextView(u"\r\n\x1A") : TextView(u"\x1A")) == TextView::npos) return;
    raise(380, Source,
          u"Ein Eintrag der Datei \"" + Text(Datei) + u"\" darf " +
              (oneLine ? u"keinen Zeilenumbruch und " : u"") + u"kein Dateiende-Zeichen enthalten");
}

Text LineCode::encoded(TextView line) {
    if (line.empty()) return {};
    const int32 start = crypt_.Zufall(1, 255);
    Bytes bytes = toAnsi(line);
    scrambler_.scramble(bytes, start);
    return crypt_.Base64(ansiToUnicode(static_cast<uint8>(start)) + fromAnsi(bytes), kForm);
}

Text LineCode::decoded(TextView line) {
    const Text coded = isBase64(line) ? crypt_.FromBase64(line, CRYPT_STRING_BASE64) : Text();
    if (coded.empty()) return Text(line);
    Bytes bytes = toAnsi(coded);
    const int32 start = static_cast<uint8>(bytes.front());
    bytes.erase(bytes.begin());
    scrambler_.scramble(bytes, start);
    return fromAnsi(bytes);
}

}  // namespace tsRtm
