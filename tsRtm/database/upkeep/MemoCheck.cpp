#include "tsRtm/database/upkeep/MemoCheck.hpp"

#include <unordered_map>

namespace tsRtm {
namespace {

// The memos of one field.
class FieldCheck {
 public:
    FieldCheck(OpenDatabase& d, int32 field, Mend mend, std::vector<Text>& lines)
        : d_(d), field_(field), mend_(mend), lines_(lines) {}

    void look(int32 record, BytesView bytes) {
        const int32 pointer = d_.memos.pointerIn(bytes, field_);
        if (pointer < 1) return;
        if (!d_.memos.leadsSomewhere(field_, pointer)) {
            if (movedMeanwhile(record, pointer)) return;
            note(u"Satz " + toText(record) + u" zeigt auf keinen Text an der Stelle " + toText(pointer));
            if (mend_ == Mend::yes) put(record, bytes, 0);
            return;
        }
        const auto [first, isNew] = owners_.emplace(pointer, record);
        if (isNew) return;
        note(u"Satz " + toText(first->second) + u" und Satz " + toText(record) +
             u" haben denselben Text an der Stelle " + toText(pointer));
        if (mend_ == Mend::yes) put(record, bytes, d_.memos.copy(field_, pointer, d_.memos.open(field_)));
    }

 private:
    void note(const Text& text) { lines_.push_back(memoFormat::fileName(0, field_) + u": " + text); }

    // A reader looks without a lock: somebody may have moved the text.
    bool movedMeanwhile(int32 record, int32 pointer) {
        Bytes now;
        d_.store.read(record, now);
        return d_.memos.pointerIn(now, field_) != pointer;
    }

    void put(int32 record, BytesView bytes, int32 pointer) {
        Bytes image(bytes);
        d_.memos.setPointer(image, field_, pointer);
        const auto& columns = d_.layout.field(field_);
        const BytesView place = BytesView(image).substr(columns.offset, columns.bytes);
        d_.marks.begin();
        if (d_.store.tears(record, columns.offset, columns.offset + columns.bytes))
            d_.marks.keep(record, columns.offset, place, bytes.substr(columns.offset, columns.bytes));
        d_.store.writePart(record, columns.offset, place);
        d_.marks.end(d_.records());
    }

    OpenDatabase& d_;
    int32 field_;
    Mend mend_;
    std::vector<Text>& lines_;
    std::unordered_map<int32, int32> owners_;  // of entries, by their first block
};

}  // namespace

std::vector<Text> checkMemos(OpenDatabase& d, Mend mend) {
    std::vector<Text> lines;
    Bytes bytes;
    for (int32 field = 1; field <= d.layout.fields(); ++field) {
        if (!d.memos.has(field)) continue;
        FieldCheck check(d, field, mend, lines);
        for (int32 n = 1; n <= d.records(); ++n) {
            d.store.read(n, bytes);
            check.look(n, bytes);
        }
    }
    return lines;
}

}  // namespace tsRtm
