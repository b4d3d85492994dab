#include "tsRtm/database/index/IndexSet.hpp"

#include <numeric>

#include "tsRtm/database/index/FlatIndex.hpp"
#include "tsRtm/database/index/ListedIndex.hpp"
#include "tsRtm/database/index/TreeIndex.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"

namespace tsRtm {
namespace {

constexpr TextView kOpenSource = u"clsTSDB_IndexOpen";
constexpr int16 kUnknownVersion = 2;

// A notice to the user for the length of a work.
class Notice {
 public:
    Notice(MessagesTopic& messages, const Text& text) : messages_(messages) { messages_.HaltNachricht(text); }
    ~Notice() { messages_.ClearHaltNachricht(); }
    Notice(const Notice&) = delete;
    Notice& operator=(const Notice&) = delete;

 private:
    MessagesTopic& messages_;
};

}  // namespace

void IndexSet::define(const clsControl& control, const RecordLayout& layout, bool big) {
    clear();
    form_ = big ? IndexFileForm::tree : IndexFileForm::flat;
    serialField = control.AutowertFeld();
    for (const auto& entry : control.indexes()) {
        slots_.push_back(std::make_unique<Slot>(IndexKeys(layout, {entry[0], entry[1], entry[2]})));
        captions_.push_back(layout.has(entry[0]) ? Text(control.field(entry[0]).Caption()) : Text());
    }
}

void IndexSet::clear() noexcept {
    closeAll();
    slots_.clear();
    captions_.clear();
}

Text IndexSet::fileName(const IndexKeys& keys) {
    const Text digits = toText(1000 + keys.primary());
    return u"I" + digits.substr(digits.size() - 3);
}

Text IndexSet::quotedName(int32 number) const { return u"Indexdatei \"" + filePath(number) + u"\""; }

void IndexSet::openFile(int32 number) {
    Slot& at = slot(number);
    const bool there = !p_.folder.readOnly || FilesTopic::Exist(filePath(number));
    if (p_.count.inPlace() && there) at.file = p_.folder.open(fileName(number), true);
    // No blank before "kann": the text stands so in logs.
    if (at.file == 0) raise(70, kOpenSource, quotedName(number) + u"kann nicht geöffnet werden");
    auto& file = p_.folder.files.file(at.file);
    p_.guard.opened(file);
    if (!big()) {
        at.form = std::make_unique<FlatIndex>(file, p_.store, at.keys, p_.folder.shared);
        return;
    }
    auto tree = std::make_unique<TreeIndex>(file, p_.store, at.keys);
    if (!p_.folder.readOnly && tree->isNew()) {
        // Whoever comes first makes it. Without the lock it reads as empty.
        const DatabaseHold hold(p_.locks, DatabaseLocks::Wait::silently);
        if (hold) tree->initialise();
    }
    at.form = std::move(tree);
}

void IndexSet::checkVersion(int32 number) {
    if (!big()) return;
    const auto header = static_cast<TreeIndex&>(*slot(number).form).header();
    if (header.version < kUnknownVersion) return;
    raise(461, kOpenSource, quotedName(number) + u" hat die falsche Version " + toText(header.version));
}

bool IndexSet::isEmptyTree(int32 number) {
    return big() && static_cast<TreeIndex&>(*slot(number).form).header().wurzel <= 0;
}

bool IndexSet::fits(int32 number) {
    IndexForm& form = *slot(number).form;
    p_.store.refresh();
    if (big()) return form.total() == p_.store.count();
    // The array may be longer: what lies behind the records counts for nothing.
    return static_cast<FlatIndex&>(form).stored() >= p_.store.count();
}

IndexForm& IndexSet::openAsItIs(int32 number) {
    if (!slot(number).form) {
        try {
            openFile(number);
            checkVersion(number);
        } catch (const Failure&) {
            close(number);
            throw;
        }
    }
    return *slot(number).form;
}

IndexForm& IndexSet::open(int32 number) {
    if (slot(number).form) return *slot(number).form;
    openAsItIs(number);
    try {
        if (!p_.watch.steady([&](uint64) { return fits(number); })) heal(number);
    } catch (const Failure&) {
        close(number);
        throw;
    }
    return *slot(number).form;
}

// A file that does not fit the records.
void IndexSet::heal(int32 number) {
    // A root of 0 is not healed, only a wrong total is; but for an index that nobody has built yet.
    const bool isNew = keys(number).primary() == serialField;
    if (isEmptyTree(number) && !isNew) raise(6, kOpenSource, quotedName(number) + u" ist leer");
    // A reader bears an array that is too short: it is opened without a check.
    if (!big() && p_.folder.readOnly) return;
    const Text text = quotedName(number) + u" hat die falsche Anzahl von Einträgen";
    rtmMain::DebugLog(u"clsTSDB_IndexOpen: " + text);
    if (p_.folder.readOnly) raise(6, kOpenSource, text);
    const DatabaseHold hold(p_.locks, DatabaseLocks::Wait::silently);
    if (!hold) raise(70, kOpenSource, quotedName(number) + u"kann nicht geöffnet werden");
    // Somebody else may have been quicker.
    if (!p_.marks.leftBehind() && fits(number)) return;
    try {
        if (p_.marks.leftBehind())
            rebuildAll();
        else
            rebuild({number});
    } catch (const Failure& failure) {
        rtmMain::DebugLog(failure.Source() + u": " + failure.Description());
        raise(6, kOpenSource, text);
    }
}

IndexForm& IndexSet::listed(int32 number, uint64 changes) {
    Slot& at = slot(number);
    p_.store.refresh();
    if (!at.list || at.listedAt != changes || at.list->total() != p_.store.count()) {
        at.list = std::make_unique<ListedIndex>(p_.store, at.keys);
        at.listedAt = changes;
    }
    return *at.list;
}

void IndexSet::close(int32 number) noexcept {
    Slot& at = slot(number);
    at.form.reset();
    p_.folder.close(at.file);
}

void IndexSet::closeAll() noexcept {
    for (int32 number = 1; has(number); ++number) close(number);
}

void IndexSet::eachFile(const std::function<void(platform::File&)>& work) {
    for (const auto& at : slots_)
        if (at->file != 0) work(p_.folder.files.file(at->file));
}

void IndexSet::buildOne(RecordSorter& sorter, int32 number) {
    Slot& at = slot(number);
    if (!at.form) openFile(number);
    at.form->forget();
    rebuildIndex(p_.folder.files.file(at.file), form_, sorter.inOrder(p_.store, at.keys, {}), number);
}

void IndexSet::completeRecord() {
    const auto left = p_.marks.leftBehind() ? p_.marks.kept() : ChangeCount::Kept();
    p_.store.refresh();
    if (left.record < 1 || left.record > p_.store.count() + 1) return;
    // After a cut of the power what is kept may be of another time than the record.
    if (!left.before.empty()) {
        Bytes there(left.bytes.size(), ' ');
        p_.store.readPart(left.record, left.offset, there);
        if (!left.completes(there)) return;
    }
    p_.store.writePart(left.record, left.offset, left.bytes);
    p_.store.refresh();
}

void IndexSet::build(const std::vector<int32>& numbers) {
    if (const auto error = p_.sign.enter(); failed(error))
        raise(numberOf(error), kFileFailureSource, p_.folder.name + u": kein Zugriff zum Schreiben");
    completeRecord();
    // Inside an update they are its own marks, and it ends them.
    const bool own = !p_.marks.underWay();
    p_.marks.begin();
    try {
        RecordSorter sorter;
        for (const int32 number : numbers) buildOne(sorter, number);
    } catch (const Failure&) {
        if (own) p_.marks.giveUp();
        throw;
    }
    if (own) p_.marks.end(p_.store.count());
    for (const int32 number : numbers)
        if (rebuilt) rebuilt(keys(number).primary());
}

void IndexSet::rebuildAll() {
    std::vector<int32> all(slots_.size());
    std::iota(all.begin(), all.end(), 1);
    const Notice notice(p_.folder.messages(),
                        u"Reorganisation der Indizes erforderlich, bitte einen Augenblick Geduld...");
    build(all);
}

void IndexSet::rebuild(const std::vector<int32>& numbers) {
    Text what = u"der Indizes";
    if (numbers.size() == 1) what = u"des Index " + captions_[static_cast<std::size_t>(numbers[0] - 1)];
    const Notice notice(p_.folder.messages(),
                        u"Reorganisation " + what + u" erforderlich, bitte einen Augenblick Geduld...");
    build(numbers);
}

bool IndexSet::healLeftBehind() {
    const DatabaseHold hold(p_.locks, DatabaseLocks::Wait::silently);
    if (!hold) return false;
    if (!p_.marks.leftBehind()) return true;
    rtmMain::DebugLog(u"Eine Aktualisierung von " + p_.folder.name + u" wurde nicht beendet");
    try {
        rebuildAll();
        return true;
    } catch (const Failure& failure) {
        rtmMain::DebugLog(u"Die Indizes von " + p_.folder.name + u" müssen neu aufgebaut werden: " +
                          failure.Description());
        return false;
    }
}

}  // namespace tsRtm
