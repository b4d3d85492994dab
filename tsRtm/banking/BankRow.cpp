#include "tsRtm/banking/BankRow.hpp"

#include <algorithm>

#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/types/Digits.hpp"

namespace tsRtm {
namespace {

using namespace bankFormat;

constexpr BytesView kMarkBytes = "\xEF\xBB\xBF";
constexpr char16_t kReplacement = 0xFFFD;

bool isLetterOrDigit(char16_t c) noexcept {
    return isDigit(c) || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}
bool allDigits(TextView text) noexcept { return std::all_of(text.begin(), text.end(), isDigit); }
bool allLettersOrDigits(TextView text) noexcept {
    return std::all_of(text.begin(), text.end(), isLetterOrDigit);
}

TextView column(TextView row, Column at) noexcept { return trim(row.substr(at.offset, at.size)); }

// U+FFFD stands for malformed bytes; a file that holds it as a character would be refused by the code page as
// well.
BankRowFault characterFault(TextView text, BankFileEncoding encoding) noexcept {
    for (const char16_t c : text) {
        if (c == kReplacement && encoding == BankFileEncoding::utf8) return BankRowFault::encoding;
        if (c < u' ' || unicodeToAnsi(c) < 0) return BankRowFault::characters;
    }
    return BankRowFault::none;
}

BankRowFault columnFault(const BankRow& row) noexcept {
    if (row.code.size() != kCode.size || !allDigits(row.code)) return BankRowFault::code;
    if (row.mark != u'1' && row.mark != u'2') return BankRowFault::mark;
    if (row.name.empty()) return BankRowFault::name;
    if (!row.postalCode.empty() && (row.postalCode.size() != kPostalCode.size || !allDigits(row.postalCode)))
        return BankRowFault::postalCode;
    const bool bicLength = row.bic.empty() || row.bic.size() == 8 || row.bic.size() == kBic.size;
    if (!bicLength || !allLettersOrDigits(row.bic)) return BankRowFault::bic;
    if (row.checkMethod.size() != kCheckMethod.size || !allLettersOrDigits(row.checkMethod))
        return BankRowFault::checkMethod;
    return BankRowFault::none;
}

}  // namespace

void BankEncodingDetector::feed(BytesView bytes) noexcept {
    for (const char byte : bytes) feed(static_cast<uint8>(byte));
}

void BankEncodingDetector::feed(uint8 byte) noexcept {
    if (position_ < kMarkBytes.size() && byte == static_cast<uint8>(kMarkBytes[position_]) &&
        ++markBytes_ == static_cast<int32>(kMarkBytes.size()))
        marked_ = true;
    ++position_;
    const bool continues = (byte & 0xC0) == 0x80;
    if (following_ > 0 && continues) {
        if (--following_ == 0) ++sequences_;
        return;
    }
    if (following_ > 0) ++broken_;
    following_ = 0;
    if (byte >= 0xC2 && byte <= 0xF4)
        following_ = byte < 0xE0 ? 1 : byte < 0xF0 ? 2 : 3;
    else if (byte >= 0x80)
        ++broken_;
}

BankRowFault decodeBankRow(BytesView line, BankFileEncoding encoding, BankRow& into) {
    into = BankRow();
    if (line.starts_with(kMarkBytes)) line.remove_prefix(kMarkBytes.size());
    // Code page 1252 has every printable character of Latin-1 in its place.
    const Text text = encoding == BankFileEncoding::utf8 ? fromUtf8(line) : fromAnsi(line);
    if (text.size() != kRowLength) return BankRowFault::length;
    if (const auto fault = characterFault(text, encoding); fault != BankRowFault::none) return fault;

    const TextView view = text;
    BankRow row;
    row.code = column(view, kCode);
    row.mark = view[kMark.offset];
    row.name = column(view, kName);
    row.postalCode = column(view, kPostalCode);
    row.place = column(view, kPlace);
    row.shortName = column(view, kShortName);
    row.pan = column(view, kPan);
    row.bic = column(view, kBic);
    row.checkMethod = column(view, kCheckMethod);
    row.change = view[kChange.offset];
    row.toBeGivenUp = view[kToBeGivenUp.offset] == u'1';
    if (const TextView successor = column(view, kSuccessor); successor != u"00000000")
        row.successor = successor;
    if (const auto fault = columnFault(row); fault != BankRowFault::none) return fault;
    into = std::move(row);
    return BankRowFault::none;
}

}  // namespace tsRtm
