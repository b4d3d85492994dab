#include "tsRtm/fields/TSIO.hpp"

#include <algorithm>
#include <optional>

namespace tsRtm {
namespace {

// A stretch of the title text.
struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;
};

Range upToNextMark(TextView title, std::size_t begin) noexcept {
    return {begin, std::min(title.find(u'@', begin), title.size())};
}

Range captionRange(TextView title) noexcept { return upToNextMark(title, 0); }

std::optional<Range> helpRange(TextView title) noexcept {
    const auto mark = title.find(u'@');
    if (mark == TextView::npos) return {};
    return upToNextMark(title, mark + 1);
}

// The value behind "@" digit; the "@" of the help part is not looked at.
std::optional<Range> extensionRange(TextView title, int32 number) noexcept {
    const auto help = title.find(u'@');
    if (help == TextView::npos) return {};
    const char16_t digits[] = {u'@', static_cast<char16_t>(u'0' + number)};
    const auto mark = title.find(TextView(digits, 2), help + 1);
    if (mark == TextView::npos) return {};
    return upToNextMark(title, mark + 2);
}

bool isExtension(int32 number) noexcept { return number >= 0 && number <= 9; }

Text cut(TextView title, const std::optional<Range>& range) {
    return range ? Text(title.substr(range->begin, range->end - range->begin)) : Text();
}

void replace(Text& title, const Range& range, TextView value) {
    title.replace(range.begin, range.end - range.begin, value);
}

}  // namespace

Typen TSIO::Datentyp() const noexcept { return isSpecial(typ_) ? typALLES : static_cast<Typen>(typ_ & 7); }

void TSIO::Datentyp(Typen value) noexcept { typ_ = (typ_ & ~7) | (value & 7); }

bool TSIO::Visible() const noexcept { return !has(fUnSichtbar) && (typ_ & 255) < tsKeine_Eingabe; }

void TSIO::Visible(bool value) noexcept {
    // A field once hidden stays hidden.
    if (!value) set(fUnSichtbar, true);
}

eAusrichtung TSIO::Alignment() const noexcept {
    return has(fRechtsbuendig) ? ausrichtungRechts : ausrichtungLinks;
}

// Digits (4) are no letters: they stand on the right.
bool TSIO::IsAlpha() const noexcept { return isSpecial(typ_) || (typ_ & 7) < typZIFFERN; }

bool TSIO::IsMemo() const noexcept {
    if (isSpecial(typ_)) return false;
    const auto kind = typ_ & kKindMask;
    return kind == tsMemo || kind == tsMemoEncrypted || kind == tsProperties;
}

bool TSIO::IsBlob() const noexcept {
    if (isSpecial(typ_)) return false;
    const auto kind = typ_ & kKindMask;
    return kind == tsBlob || kind == tsBlobEncrypted;
}

Text TSIO::Caption() const { return cut(titel_, captionRange(titel_)); }

void TSIO::Caption(TextView value) { replace(titel_, captionRange(titel_), value); }

Text TSIO::Hilfe() const { return cut(titel_, helpRange(titel_)); }

void TSIO::Hilfe(TextView value) {
    if (const auto help = helpRange(titel_))
        replace(titel_, *help, value);
    else
        (titel_ += u'@') += value;
}

Text TSIO::EXTENSION(int32 ExtNr) const {
    if (ExtNr == extHILFE) return Hilfe();
    return isExtension(ExtNr) ? cut(titel_, extensionRange(titel_, ExtNr)) : Text();
}

void TSIO::EXTENSION(int32 ExtNr, TextView value) {
    if (ExtNr == extHILFE) return Hilfe(value);
    if (!isExtension(ExtNr)) return;
    // An emptied value leaves "@" and its digit standing.
    if (const auto range = extensionRange(titel_, ExtNr)) return replace(titel_, *range, value);
    if (value.empty()) return;
    if (titel_.find(u'@') == Text::npos) titel_ += u'@';
    ((titel_ += u'@') += static_cast<char16_t>(u'0' + ExtNr)) += value;
}

int32 TSIO::DisplayWidth() const { return roundToInt32(Val(EXTENSION(extDISPLAYWIDTH))); }

void TSIO::DisplayWidth(int32 value) {
    const auto old = EXTENSION(extDISPLAYWIDTH);
    const auto slash = std::min(old.find(u'/'), old.size());
    EXTENSION(extDISPLAYWIDTH, toText(value) + old.substr(slash));
}

Text TSIO::Name() const {
    const auto names = EXTENSION(extNAMEN);
    return upper(TextView(names).substr(0, names.find(u':')));
}

void TSIO::Name(TextView value) {
    const auto old = EXTENSION(extNAMEN);
    const auto colon = std::min(old.find(u':'), old.size());
    EXTENSION(extNAMEN, upper(value) + old.substr(colon));
}

Text TSIO::ObjectName() const {
    const auto names = EXTENSION(extNAMEN);
    const auto colon = names.find(u':');
    return colon == Text::npos ? Text() : upper(TextView(names).substr(colon + 1));
}

void TSIO::ObjectName(TextView value) {
    const auto old = EXTENSION(extNAMEN);
    const auto colon = old.find(u':');
    // Without a colon the object comes first and the colon behind it: stored data relies on it.
    EXTENSION(extNAMEN, colon == Text::npos ? upper(value) + u":" : old.substr(0, colon + 1) + upper(value));
}

std::shared_ptr<TSIO> TSIO::Clone() const {
    auto copy = std::make_shared<TSIO>(*this);
    copy->inhalt_.clear();
    copy->istIndexFeld_ = false;
    copy->istKetteFeld_ = false;
    return copy;
}

}  // namespace tsRtm
