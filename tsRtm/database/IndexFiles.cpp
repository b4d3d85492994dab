#include "tsRtm/database/IndexFiles.hpp"

#include "tsRtm/database/FlatIndex.hpp"
#include "tsRtm/database/LockWait.hpp"
#include "tsRtm/database/Reorganisation.hpp"
#include "tsRtm/database/TreeIndex.hpp"
#include "tsRtm/frame/rtmMain.hpp"

namespace tsRtm {
namespace {

constexpr TextView kSource = u"clsTSDB_IndexOpen";

// Closes the index unless the opening succeeds.
class ClosesOnFailure {
 public:
    ClosesOnFailure(DatabaseParts& parts, int32 number) : parts_(parts), number_(number) {}
    ~ClosesOnFailure() {
        if (!kept_) closeIndex(parts_, number_);
    }
    void keep() noexcept { kept_ = true; }
    ClosesOnFailure(const ClosesOnFailure&) = delete;
    ClosesOnFailure& operator=(const ClosesOnFailure&) = delete;

 private:
    DatabaseParts& parts_;
    int32 number_;
    bool kept_ = false;
};

// No blank before "kann": the text is known so.
[[noreturn]] void raiseCannotOpen(TextView name) {
    raise(70, kSource, Text(u"Indexdatei \"").append(name).append(u"\"kann nicht geöffnet werden"));
}

void openFile(DatabaseParts& parts, int32 number) {
    IndexSlot& slot = parts.index(number);
    const Text name = parts.path(parts.indexName(number));
    parts.files.DB_Open(name, slot.file, parts.modus, true, 0, kOpenSilently);
    if (slot.file == 0) raiseCannotOpen(name);
    auto& file = parts.files.file(slot.file);
    if (parts.big)
        slot.form = std::make_unique<TreeIndex>(file, parts.store, slot.keys, parts.watch,
                                                TreeUse{parts.readOnly, !parts.shared});
    else
        slot.form = std::make_unique<FlatIndex>(file, parts.store, slot.keys, parts.watch, parts.shared);
}

// A new record stands in the trees before it stands in Data.tsd: a difference counts only while nobody is at
// work.
bool agreesWhenQuiet(DatabaseParts& parts, int32 number) {
    if (!parts.shared || parts.locks.databaseLocked) return false;
    const auto agrees = [&] {
        parts.refreshCount();
        return parts.index(number).form->total() == parts.records();
    };
    if (!parts.readOnly) {
        const LockRequest silently{countFormat::kDatabaseLock, -1, true};
        // Who holds the lock all the time is at work: the next opening looks again.
        if (lockWithWait(parts.messages(), parts.count.file(), silently) != 0) return true;
        const bool result = agrees();
        static_cast<void>(parts.count.file().unlock(countFormat::byteAt(countFormat::kDatabaseLock)));
        return result;
    }
    for (int32 attempt = 1; !agrees(); ++attempt)
        if (!parts.watch.pause(attempt)) return false;
    return true;
}

// The entries of a tree against the records of the database; a tree that does not fit is rebuilt.
void checkTotal(DatabaseParts& parts, int32 number) {
    const Text name = Text(u"Indexdatei \"").append(parts.path(parts.indexName(number))).append(u"\"");
    const int32 total = parts.index(number).form->total();
    // A root of 0 is not healed, only a wrong total is.
    if (total == 0 && parts.records() > 0 &&
        static_cast<TreeIndex&>(*parts.index(number).form).header().wurzel <= 0)
        raise(6, kSource, name + u" ist leer");
    if (total > parts.records()) parts.refreshCount();
    if (total == parts.records() || agreesWhenQuiet(parts, number)) return;
    const Text text = name + u" hat die falsche Anzahl von Einträgen";
    rtmMain::DebugLog(u"clsTSDB_IndexOpen: " + text);
    if (!healIndex(parts, number)) raise(6, kSource, text);
}

// An index on the serial number that the control file does not name has no file before its first opening.
bool isNewAutowertIndex(const DatabaseParts& parts, int32 number) {
    return parts.control->AutowertFeld() != 0 &&
           parts.index(number).keys.primary() == parts.control->AutowertFeld() && parts.records() > 0 &&
           parts.files.file(parts.index(number).file).size().ok() &&
           *parts.files.file(parts.index(number).file).size() == 0;
}

}  // namespace

IndexForm& openIndex(DatabaseParts& parts, int32 number) {
    IndexSlot& slot = parts.index(number);
    if (slot.form) return *slot.form;
    ClosesOnFailure guard(parts, number);
    openFile(parts, number);
    if (!parts.inBulk && !parts.readOnly && isNewAutowertIndex(parts, number) && !parts.istNeu) {
        if (!healIndex(parts, number)) raiseCannotOpen(parts.path(parts.indexName(number)));
    }
    // The flat form opens without any check.
    if (parts.big) {
        const auto header = static_cast<TreeIndex&>(*slot.form).header();
        if (header.version >= 2)
            raise(461, kSource,
                  Text(u"Indexdatei \"").append(parts.path(parts.indexName(number))) +
                      u"\" hat die falsche Version " + toText(header.version));
        if (!parts.istNeu && !parts.inBulk) checkTotal(parts, number);
    }
    guard.keep();
    return *parts.index(number).form;
}

void closeIndex(DatabaseParts& parts, int32 number) noexcept {
    IndexSlot& slot = parts.index(number);
    slot.form.reset();
    parts.close(slot.file);
}

void closeIndexes(DatabaseParts& parts) noexcept {
    for (int32 number = 1; parts.hasIndex(number); ++number) closeIndex(parts, number);
}

}  // namespace tsRtm
