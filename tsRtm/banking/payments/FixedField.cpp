#include "tsRtm/banking/payments/FixedField.hpp"

#include <array>

#include "tsRtm/frame/messages/TextTables.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm::payments {
namespace {

constexpr int32 kBadCall = 5;
constexpr char16_t kDiaeresis = 0x308;  // joins the letter before it
constexpr char16_t kSharpS = u'ß', kCapitalSharpS = 0x1E9E;
constexpr std::size_t kAscii = 128;

// What stands in a file for each ASCII character, 0 for nothing.
constexpr auto kKept = [] {
    std::array<char, kAscii> kept{};
    for (const char c : BytesView("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ .,-/+"))
        kept[static_cast<unsigned char>(c)] = c;
    for (char c = 'a'; c <= 'z'; ++c) kept[static_cast<unsigned char>(c)] = static_cast<char>(c - 'a' + 'A');
    return kept;
}();

// "AE" of "Ä" and the like, in either case; nothing for others.
BytesView umlaut(char16_t c) noexcept {
    switch (c) {
        case u'ä':
        case u'Ä':
            return "AE";
        case u'ö':
        case u'Ö':
            return "OE";
        case u'ü':
        case u'Ü':
            return "UE";
        case kSharpS:
        case kCapitalSharpS:
            return "SS";
        default:
            return {};
    }
}

}  // namespace

void normalise(TextView text, Bytes& into) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (c >= kAscii) {
            into += umlaut(c);
            continue;
        }
        const char kept = kKept[c];
        if (kept == 0) continue;
        into += kept;
        const bool vowel = kept == 'A' || kept == 'O' || kept == 'U';
        if (vowel && i + 1 < text.size() && text[i + 1] == kDiaeresis) into += 'E';
    }
}

Bytes normalised(TextView text) {
    Bytes out;
    out.reserve(text.size());
    normalise(text, out);
    return out;
}

void appendField(BytesView value, const FieldForm& form, Bytes& record) {
    if (form.width < 0) raise(kBadCall, u"DtAField.toFileString", runtimeErrorText(kBadCall));
    const auto width = static_cast<std::size_t>(form.width);
    const BytesView kept = value.substr(0, width);
    const char filling = form.zeros ? '0' : ' ';
    if (form.leftAligned) record += kept;
    record.append(width - kept.size(), filling);
    if (!form.leftAligned) record += kept;
}

Text textOf(BytesView ascii) { return Text(ascii.begin(), ascii.end()); }

}  // namespace tsRtm::payments
