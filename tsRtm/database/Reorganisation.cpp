#include "tsRtm/database/Reorganisation.hpp"

#include "tsRtm/database/IndexFiles.hpp"
#include "tsRtm/database/IndexSort.hpp"
#include "tsRtm/frame/rtmMain.hpp"

namespace tsRtm {
namespace {

bool openCount(DatabaseParts& parts, bool shared) {
    parts.count = CountFile();
    parts.close(parts.countNumber);
    parts.files.DB_Open(parts.path(u"Count.tsd"), parts.countNumber, parts.modus, shared, 0, kOpenSilently);
    if (parts.countNumber == 0) return false;
    parts.count = CountFile(parts.files.file(parts.countNumber));
    return true;
}

// Ends an exclusive work on all paths.
class Exclusive {
 public:
    explicit Exclusive(DatabaseParts& parts) : parts_(parts), held_(takeExclusive(parts)) {}
    ~Exclusive() {
        if (held_) giveExclusive(parts_);
    }
    explicit operator bool() const noexcept { return held_; }
    Exclusive(const Exclusive&) = delete;
    Exclusive& operator=(const Exclusive&) = delete;

 private:
    DatabaseParts& parts_;
    bool held_;
};

Text indexCaption(const DatabaseParts& parts, int32 number) {
    const int32 field = parts.index(number).keys.primary();
    return parts.layout.has(field) ? parts.control->field(field).Caption() : Text();
}

bool sortOne(DatabaseParts& parts, int32 number) {
    closeIndex(parts, number);
    const Text name = parts.path(parts.indexName(number));
    const Text fresh = name + u".tmp";
    auto& files = rtmMain::system().files;
    {
        auto file = files.open(fresh, {platform::Access::readWrite, platform::Sharing::none,
                                       platform::Disposition::createEmpty});
        if (!file) raiseFileFailure(file.error(), fresh);
        try {
            writeSortedIndex(parts, number, **file);
        } catch (const Failure&) {
            file.value().reset();
            static_cast<void>(files.remove(fresh));
            throw;
        }
    }
    if (parts.sensible && parts.files.Exist(name)) parts.files.SecureKill(name);
    // The new file takes the old one's place in one step.
    if (const auto error = files.rename(fresh, name, true); failed(error)) raiseFileFailure(error, name);
    parts.events.IndexChange(parts.index(number).keys.primary());
    return true;
}

}  // namespace

bool takeExclusive(DatabaseParts& parts) {
    if (!parts.shared || parts.exclusiveDepth > 0) {
        ++parts.exclusiveDepth;
        return true;
    }
    parts.files.OpenWrite(parts.path(u"Lock.tsd"), parts.lockNumber);
    if (parts.lockNumber == 0) return false;
    if (!openCount(parts, false)) {
        // Somebody else has the database open.
        openCount(parts, true);
        parts.close(parts.lockNumber);
        if (parts.count) parts.locks.takeAgain();
        return false;
    }
    parts.exclusiveDepth = 1;
    parts.refreshCount();
    return true;
}

void giveExclusive(DatabaseParts& parts) {
    if (--parts.exclusiveDepth > 0 || !parts.shared) return;
    openCount(parts, true);
    parts.close(parts.lockNumber);
    // Closing Count.tsd gave up every lock of this opening.
    if (parts.count) parts.locks.takeAgain();
}

bool sortIndexes(DatabaseParts& parts, int32 number) {
    if (!parts.opened) return parts.fail(70);
    if (parts.readOnly) return parts.fail(5);
    if (number != -1 && !parts.hasIndex(number)) return parts.fail(53);
    const Exclusive exclusive(parts);
    if (!exclusive) return false;
    const bool before = std::exchange(parts.inBulk, true);
    try {
        const int32 first = number == -1 ? 1 : number;
        const int32 last = number == -1 ? static_cast<int32>(parts.indexes.size()) : number;
        for (int32 i = first; i <= last; ++i) sortOne(parts, i);
    } catch (const Failure& failure) {
        parts.inBulk = before;
        recordFailure(parts, failure);
        return false;
    }
    parts.inBulk = before;
    if (number == -1 && parts.count && parts.count.marked()) parts.count.mark(false);
    if (!parts.keineEreignisse) parts.events.RecordChange(parts.aktSatz);
    return true;
}

bool healIndex(DatabaseParts& parts, int32 number) {
    parts.messages().HaltNachricht(u"Reorganisation des Index " + indexCaption(parts, number) +
                                   u" erforderlich, bitte einen Augenblick Geduld...");
    const bool healed = sortIndexes(parts, number);
    parts.messages().ClearHaltNachricht();
    if (healed) openIndex(parts, number);
    return healed;
}

bool healAfterCrash(DatabaseParts& parts) {
    if (parts.indexes.empty() || !parts.count || !parts.count.marked()) return true;
    rtmMain::DebugLog(u"Eine Aktualisierung von " + parts.folder + u" wurde nicht beendet");
    if (parts.readOnly) return false;
    if (parts.shared) {
        // Whoever holds the lock is at work; whoever died does not hold it.
        auto& file = parts.count.file();
        const auto lock = countFormat::byteAt(countFormat::kDatabaseLock);
        if (failed(file.tryLock(lock))) return true;
        const bool stillMarked = parts.count.marked();
        static_cast<void>(file.unlock(lock));
        if (!stillMarked) return true;
    }
    parts.messages().HaltNachricht(
        u"Reorganisation der Indizes erforderlich, bitte einen Augenblick Geduld...");
    const bool healed = sortIndexes(parts, -1);
    parts.messages().ClearHaltNachricht();
    if (!healed) rtmMain::DebugLog(u"Die Indizes von " + parts.folder + u" müssen neu aufgebaut werden");
    return healed;
}

}  // namespace tsRtm
