#include "tsRtm/database/UpdatePath.hpp"

#include "tsRtm/database/IndexFiles.hpp"
#include "tsRtm/database/Reorganisation.hpp"
#include "tsRtm/frame/rtmMain.hpp"

namespace tsRtm {

void beginIndexChange(DatabaseParts& parts) {
    if (parts.marking) return;
    // Without the mark somebody else has mended what was left.
    parts.leftBehind = parts.count.marked() && !sortIndexes(parts, -1);
    parts.count.mark(true);
    parts.marking = true;
}

void endIndexChange(DatabaseParts& parts, bool whole) {
    if (!std::exchange(parts.marking, false)) return;
    if (whole && !parts.leftBehind) parts.count.mark(false);
}

void UpdatePath::begin(int32 record, bool isNew) {
    active_ = true;
    record_ = record;
    isNew_ = isNew;
    changed_.clear();
    entered_.clear();
    watched_ = 0;
    position_ = 0;
    moving_ = false;
    if (parts_.indexes.empty()) return;
    image_ = parts_.felder.image();
    const bool stored = !isNew && parts_.hasRecord(record);
    if (stored) parts_.store.read(record, stored_);
    for (int32 number = 1; parts_.hasIndex(number); ++number)
        // A new record enters all indexes; an index whose fields did not change is not touched at all.
        if (isNew || (stored && parts_.index(number).keys.differs(stored_, image_)))
            changed_.push_back(number);
}

void UpdatePath::moveEntries() {
    if (changed_.empty()) return;
    for (const int32 number : changed_) openIndex(parts_, number);
    beginIndexChange(parts_);
    for (const int32 number : changed_) {
        IndexForm& form = openIndex(parts_, number);
        const IndexKeys& keys = parts_.index(number).keys;
        keys.searchFor(image_, to_);
        int32 position = 0;
        moving_ = true;
        if (isNew_) {
            position = form.move(record_, nullptr, to_);
            entered_.push_back(number);
        } else {
            keys.searchFor(stored_, from_);
            position = form.move(record_, &from_, to_);
        }
        moving_ = false;
        // The flat form compares a field number with the index number: known so, and kept.
        if ((parts_.big ? number : keys.primary()) == watched_) position_ = position;
        parts_.events.IndexChange(keys.primary());
    }
}

void UpdatePath::giveUp() noexcept {
    // A flat database has the record already, allocated and marked as deleted. An index that failed midway
    // needs more.
    const bool undo = isNew_ && parts_.big && !moving_;
    try {
        if (!undo) return endIndexChange(parts_, false);
        for (const int32 number : entered_)
            openIndex(parts_, number).erase(record_, parts_.index(number).keys.searchFor(image_));
        finish();
    } catch (const Failure& failure) {
        parts_.marking = false;
        rtmMain::DebugLog(u"Indexeinträge von Satz " + toText(record_) + u" bleiben: " +
                          failure.Description());
    }
}

}  // namespace tsRtm
