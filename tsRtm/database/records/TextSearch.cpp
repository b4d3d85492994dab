#include "tsRtm/database/records/TextSearch.hpp"

#include <algorithm>
#include <array>

#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm {
namespace {

using Fold = std::array<char, 256>;

// Capitals of code page 1252, and of the DOS code page by way of it.
Fold makeFold(bool dos) {
    Fold fold{};
    for (int i = 0; i < 256; ++i) {
        const auto byte = static_cast<char>(i);
        const Bytes ansi = dos ? oemToAnsi({&byte, 1}) : Bytes(1, byte);
        const char16_t capital = upper(ansiToUnicode(static_cast<uint8>(ansi[0])));
        const Bytes back = dos ? ansiToOem(toAnsi({&capital, 1})) : toAnsi({&capital, 1});
        // A frame character has no letter behind it and stays as it is.
        const bool letter = capital != ansiToUnicode(static_cast<uint8>(ansi[0]));
        fold[static_cast<std::size_t>(i)] = letter ? back[0] : byte;
    }
    return fold;
}

const Fold& foldOf(bool dos) {
    static const Fold ansi = makeFold(false);
    static const Fold oem = makeFold(true);
    return dos ? oem : ansi;
}

Bytes folded(BytesView bytes, const Fold& fold) {
    Bytes out(bytes);
    for (auto& byte : out) byte = fold[static_cast<uint8>(byte)];
    return out;
}

}  // namespace

TextSearch::TextSearch(const RecordLayout& layout, TextView text)
    : layout_(layout),
      upper_(upper(text)),
      folded_(folded(layout.toRecordCode(text), foldOf(layout.dos()))) {}

bool TextSearch::in(BytesView record) const {
    if (layout_.wide()) return upper(layout_.text(record)).find(upper_) != Text::npos;
    const Fold& fold = foldOf(layout_.dos());
    const auto equal = [&](char have, char wanted) { return fold[static_cast<uint8>(have)] == wanted; };
    return std::search(record.begin(), record.end(), folded_.begin(), folded_.end(), equal) != record.end() ||
           folded_.empty();
}

}  // namespace tsRtm
