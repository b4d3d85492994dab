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

UpdatePath::UpdatePath(DatabaseParts& parts, int32 record, bool isNew)
    : parts_(parts), record_(record), isNew_(isNew), image_(parts.felder.image()) {
    if (parts.indexes.empty()) return;
    if (!isNew_ && parts.hasRecord(record)) parts.store.read(record, stored_);
    for (int32 number = 1; parts.hasIndex(number); ++number)
        // A new record enters all indexes; an index whose fields did not change is not touched at all.
        if (isNew_ || (!stored_.empty() && parts.index(number).keys.differs(stored_, image_)))
            changed_.push_back(number);
}

void UpdatePath::moveEntries() {
    if (changed_.empty()) return;
    for (const int32 number : changed_) openIndex(parts_, number);
    beginIndexChange(parts_);
    for (const int32 number : changed_) {
        IndexForm& form = openIndex(parts_, number);
        const IndexKeys& keys = parts_.index(number).keys;
        const SearchKey to = keys.searchFor(image_);
        int32 position = 0;
        moving_ = true;
        if (isNew_) {
            position = form.move(record_, nullptr, to);
            entered_.push_back(number);
        } else {
            const SearchKey from = keys.searchFor(stored_);
            position = form.move(record_, &from, to);
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
