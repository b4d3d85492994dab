// clsTSDB: serial numbers of records.
#include <algorithm>

#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"

namespace tsRtm {

void clsTSDB::openSerial() {
    auto& d = engine_->d;
    if (d.control->AutowertFeld() == 0 || d.folder.readOnly) return;
    d.opened.serial = d.folder.open(u"Autowert.tsd", d.folder.shared);
    if (d.opened.serial == 0) return rtmMain::DebugLog(d.folder.name + u": kein Zugriff auf Autowert.tsd");
    d.guard.opened(d.folder.files.file(d.opened.serial));
    d.serial = SerialNumber(d.folder.files.file(d.opened.serial), d.folder.messages());
}

// The last record need not have the greatest number, and a counter may have been lost with the machine.
int32 clsTSDB::greatestSerial() {
    auto& d = engine_->d;
    d.refreshCount();
    const int32 field = d.control->AutowertFeld();
    int32 greatest = 0;
    for (int32 n = 1; n <= d.records(); ++n)
        greatest = std::max(greatest, roundToInt32(Val(GetField(n, field))));
    return greatest < 1 ? d.records() : greatest;
}

void clsTSDB::giveUpSerial(int32 value, bool storeTried) noexcept {
    if (!engine_->d.serial) return;
    try {
        if (storeTried)
            engine_->d.serial.settled(value);
        else
            engine_->d.serial.giveUp(value);
    } catch (const Failure&) {  // the number stays used
        engine_->d.serial.settled(value);
    }
}

// The number of a record that has no serial number yet becomes it, where nobody is disturbed by that.
bool clsTSDB::storeSerial(int32 record, TextView number) {
    const Working working(*this);
    auto& e = *engine_;
    auto& d = e.d;
    const int32 field = d.control->AutowertFeld();
    const int32 index = d.control->IndexNr(Variant(field));
    if (d.folder.readOnly || e.writer.busy() || !d.indexes.has(index) || !d.serial) return false;
    const DatabaseHold hold(d.locks, DatabaseLocks::Wait::never);
    if (!hold) return false;
    try {
        d.refreshCount();
        if (!trim(GetField(record, field)).empty()) return false;
        const SearchKey key = d.indexes.keys(index).search(number);
        if (d.indexes.open(index).locate(key).exact || !d.serial.take(record)) return false;
        RecordBuffer content(d.layout);
        d.store.read(record, content.room());
        content.loaded();
        content.set(field, number);
        const WriteOrder order{.content = content, .extent = RecordBuffer::Extent::assigned, .locked = true};
        return static_cast<bool>(e.writer.change(record, order));
    } catch (const Failure& failure) {
        recordFailure(failure);
        return false;
    }
}

}  // namespace tsRtm
