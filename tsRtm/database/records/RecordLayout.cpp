#include "tsRtm/database/records/RecordLayout.hpp"

#include <algorithm>
#include <cstring>

#include "tsRtm/calendar/days/DateText.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/frame/text/TextOrder.hpp"

namespace tsRtm {
namespace {

constexpr char kDosGreatest = '\xFF';

FieldLayout layoutOf(const TSIO& field, const clsControl& control, bool wideDatabase) {
    const bool inRow = control.Typ() == ControlTyp_Kette;
    FieldLayout out;
    out.typ = field.Typ();
    out.nachKomma = field.NachKomma();
    out.length = field.Laenge();
    out.special = out.typ == 254 || out.typ == 255;
    out.alpha = field.IsAlpha();
    out.pointer = field.IsMemo() || field.IsBlob();
    out.chain = field.IsKette();
    out.wide = wideDatabase || field.IsUnicode();
    out.utf8 = field.IsUTF8();
    out.date = !out.special && (out.typ & 7) == 7;
    out.number = !out.special && (out.typ & 7) == 5;
    out.julian = !inRow && out.date && out.length == 8 && (out.nachKomma & 7) == 7;
    out.left = inRow ? !out.number : out.alpha || out.special;
    out.offset = static_cast<uint32>(field.Position() + control.VorLaenge()) * (wideDatabase ? 2 : 1);
    out.bytes = static_cast<uint32>(out.length) * (out.wide ? 2 : 1);
    return out;
}

// A date stored as "J" and its day number.
Text dayNumberText(TextView stored) { return KalenderDay(roundToInt32(Val(stored.substr(1)))); }

// The stored form of a text in a UTF-8 field, cut at a character to at most `length` bytes.
Bytes utf8Form(TextView text, std::size_t length, const RecordLayout& layout) {
    Bytes utf8 = toUtf8(text);
    if (utf8.size() <= text.size()) return layout.toRecordCode(text);
    utf8.insert(utf8.begin(), '~');
    if (utf8.size() > length) {
        std::size_t cut = length;
        while (cut > 1 && (static_cast<unsigned char>(utf8[cut]) & 0xC0) == 0x80) --cut;
        utf8.resize(cut);
    }
    return utf8;
}

}  // namespace

RecordLayout::RecordLayout(const clsControl& control, bool wide, bool dos) : wide_(wide), dos_(dos && !wide) {
    fields_.reserve(static_cast<std::size_t>(control.Felder()) + 1);
    for (int32 i = 1; i <= control.Felder(); ++i) {
        auto& field = fields_.emplace_back(layoutOf(control.field(i), control, wide));
        field.inPlace = field.plain() && !dos_ && !field.pointer && !field.chain && field.bytes <= 64;
        if (field.inPlace && field.bytes > 0) field.bits = ~uint64{0} >> (64 - field.bytes);
        mixed_ = mixed_ || control.field(i).IsUnicode();
        namesPlaces_ = namesPlaces_ || field.namesPlace();
    }
    count_ = control.Felder();
    bytes_ = static_cast<uint32>(control.GesamtSatzLaenge()) * unit();
    blank_ = wide ? toUtf16Le(Text(bytes_ / 2, u' ')) : Bytes(bytes_, ' ');
}

void RecordLayout::setDeleted(std::span<char> record, bool deleted) const noexcept {
    record[0] = deleted ? '*' : ' ';
    if (wide_) record[1] = 0;
}

Bytes RecordLayout::unfilled() const {
    const char16_t greatest = dos_ ? 0 : rtmMain::state().locale.lastChar;
    Bytes out;
    if (wide_)
        out = toUtf16Le(Text(bytes_ / 2, greatest));
    else
        out.assign(bytes_, dos_ ? kDosGreatest : toAnsi({&greatest, 1})[0]);
    setDeleted(out, true);
    return out;
}

void RecordLayout::keepPlaces(BytesView stored, std::span<char> record) const noexcept {
    if (!namesPlaces_) return;
    const BytesView from = stored.empty() ? BytesView(blank_) : stored;
    for (const auto& field : fields_)
        if (field.namesPlace())
            std::memcpy(record.data() + field.offset, from.data() + field.offset, field.bytes);
}

Text RecordLayout::fromRecordCode(BytesView bytes) const {
    return dos_ ? fromAnsi(oemToAnsi(bytes)) : fromAnsi(bytes);
}

Bytes RecordLayout::toRecordCode(TextView text) const {
    return dos_ ? ansiToOem(toAnsi(text)) : toAnsi(text);
}

Text RecordLayout::text(BytesView record) const {
    return wide_ ? fromUtf16Le(record) : fromRecordCode(record);
}

void RecordLayout::decode(const FieldLayout& field, BytesView bytes, Decode how, Text& into) const {
    const bool keepBlanks = how == Decode::whole && (field.pointer || field.chain);
    if (field.plain() && !dos_) {
        if (!keepBlanks) bytes = field.trimmed(bytes);
        fromAnsi(bytes, into);
        if (field.tellsDayNumber(bytes)) into = dayNumberText(into);
        return;
    }
    into = field.wide ? fromUtf16Le(bytes) : fromRecordCode(bytes);
    if (field.utf8 && into.starts_with(u'~')) {
        const Bytes form = field.wide ? toAnsi(into) : Bytes(bytes);
        into = fromUtf8(BytesView(form).substr(1, form.find_last_not_of(' ')));
    }
    if (keepBlanks) return;
    into = Text(field.left ? trimRight(into) : trimLeft(into));
    if (field.date && into.starts_with(u'J')) into = dayNumberText(into);
}

void RecordLayout::fill(std::span<char> into, TextView text, bool right, bool wide) const {
    const std::size_t width = into.size() / (wide ? 2 : 1);
    text = text.substr(0, width);
    const std::size_t before = right ? width - text.size() : 0;
    if (wide) {
        for (std::size_t i = 0; i < width; ++i) {
            const char16_t c = i >= before && i - before < text.size() ? text[i - before] : u' ';
            into[2 * i] = static_cast<char>(c & 0xFF);
            into[2 * i + 1] = static_cast<char>(c >> 8);
        }
        return;
    }
    std::memset(into.data(), ' ', into.size());
    char* const to = into.data() + before;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int32 byte = text[i] < 0x80 ? text[i] : unicodeToAnsi(text[i]);
        to[i] = byte < 0 ? '?' : static_cast<char>(byte);
    }
    if (!dos_) return;
    const Bytes oem = ansiToOem({to, text.size()});
    std::copy(oem.begin(), oem.end(), to);
}

void RecordLayout::encode(const FieldLayout& field, TextView text, std::span<char> into) const {
    if (field.julian && !text.empty()) {
        fill(into, Text(u"J") + toText(JulianDay(text)), true, field.wide);
    } else if (field.utf8) {
        const Bytes bytes = utf8Form(text, static_cast<std::size_t>(field.length), *this);
        // Not the text itself but its form in bytes, a character each.
        if (field.wide)
            return fill(into, bytes.starts_with('~') ? fromAnsi(bytes) : Text(text), !field.left, true);
        const std::size_t count = std::min(bytes.size(), into.size());
        std::memset(into.data(), ' ', into.size());
        std::memcpy(into.data() + (field.left ? 0 : into.size() - count), bytes.data(), count);
    } else {
        fill(into, text, !field.left, field.wide);
    }
}

}  // namespace tsRtm
