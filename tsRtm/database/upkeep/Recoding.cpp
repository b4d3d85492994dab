#include "tsRtm/database/upkeep/Recoding.hpp"

#include <algorithm>

namespace tsRtm {
namespace {

int64 lacking(TextView text) {
    return std::count_if(text.begin(), text.end(), [](char16_t c) { return unicodeToAnsi(c) < 0; });
}

}  // namespace

Recoding::Recoding(const clsControl& control, CharacterForm from, CharacterForm to)
    : from_(control, from.wide, from.dos),
      to_(control, to.wide, to.dos),
      before_(static_cast<std::size_t>(control.VorLaenge())) {}

// The columns say it in characters that mean the same in both forms.
bool Recoding::keepsForm(const FieldLayout& from, TextView characters) const {
    return !from.utf8 || (!characters.starts_with(u'~') && (to_.wide() || lacking(characters) == 0));
}

void Recoding::recode(const FieldLayout& from, const FieldLayout& to, BytesView columns,
                      std::span<char> into) const {
    const Text characters = from_.characters(columns, from.wide);
    if (keepsForm(from, characters)) return to_.putCharacters(characters, to.wide, into);
    from_.decode(from, columns, RecordLayout::Decode::value, value_);
    to_.encode(to, value_, into);
}

void Recoding::recode(BytesView record, Bytes& into) const {
    if (record == BytesView(from_.unfilled())) {
        into = to_.unfilled();
        return;
    }
    into = to_.blank();
    const Text head = from_.characters(record.substr(0, before_ * from_.unit()), from_.wide());
    to_.putCharacters(head, to_.wide(), std::span(into).subspan(0, before_ * to_.unit()));
    for (int32 number = 1; number <= from_.fields(); ++number) {
        const auto& to = to_.field(number);
        recode(from_.field(number), to, from_.bytesOf(from_.field(number), record),
               std::span(into).subspan(to.offset, to.bytes));
    }
}

Recoding::Loss Recoding::lossOf(BytesView record) const {
    Loss loss;
    if (to_.wide() || !from_.wide()) return loss;
    Bytes room;
    Text before, after;
    for (int32 number = 1; number <= from_.fields(); ++number) {
        const auto& from = from_.field(number);
        const auto& to = to_.field(number);
        if (to.wide) continue;
        const BytesView columns = from_.bytesOf(from, record);
        const Text characters = from_.characters(columns, true);
        int64 lost = lacking(characters);
        if (lost > 0 && from.utf8) {
            // Their form in UTF-8 may keep them, where it fits.
            room.assign(to.bytes, ' ');
            recode(from, to, columns, room);
            from_.decode(from, columns, RecordLayout::Decode::value, before);
            to_.decode(to, room, RecordLayout::Decode::value, after);
            if (before == after) lost = 0;
        }
        if (lost > 0 && loss.field == 0) loss.field = number;
        loss.characters += lost;
    }
    return loss;
}

}  // namespace tsRtm
