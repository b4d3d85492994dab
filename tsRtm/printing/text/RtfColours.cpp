#include "tsRtm/printing/text/RtfColours.hpp"

namespace tsRtm {
namespace {

constexpr TextView kTable = u"{\\colortbl";
constexpr TextView kBlack = u"\\red0\\green0\\blue0";
constexpr TextView kColour = u"\\cf";

void replaceAll(Text& text, TextView what, TextView by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != Text::npos; at += by.size())
        text.replace(at, what.size(), by);
}

// The number of the black entry of a table, without its end; one is added where there is none.
std::size_t blackOf(Text& table) {
    std::size_t number = 0;
    for (std::size_t begin = 0;; ++number) {
        const auto end = table.find(u';', begin);
        const TextView entry = TextView(table).substr(begin, end == Text::npos ? end : end - begin);
        if (entry == kBlack || entry == Text(kTable) + Text(kBlack)) return number;
        if (end == Text::npos) break;
        begin = end + 1;
    }
    if (!table.ends_with(u';')) {
        table += u';';
        ++number;
    }
    table.append(kBlack).append(u";");
    return number;
}

}  // namespace

Text blackened(TextView rtf) {
    if (!rtf.starts_with(u'{')) return Text(rtf);
    Text text(rtf);
    const auto begin = text.find(kTable);
    if (begin == Text::npos) {
        const auto head = text.find(u"}}");
        if (head != Text::npos)
            text.insert(
                head + 2,
                Text(kTable).append(u" ;").append(kBlack).append(u";}").append(kColour).append(u"1 "));
        return text;
    }
    const auto end = text.find(u'}', begin);
    if (end == Text::npos) return text;
    Text table = text.substr(begin, end - begin);
    const Text colour = Text(kColour) + toText(static_cast<int64>(blackOf(table)));
    Text rest = text.substr(end);
    replaceAll(rest, u"\\cf0", colour);
    rest.insert(1, colour + u" ");
    return text.substr(0, begin) + table + rest;
}

}  // namespace tsRtm
