#pragma once
// All indexes of an open database: their files, opened at first use, and their healing.
#include <memory>
#include <vector>

#include "tsRtm/database/files/DatabaseLocks.hpp"
#include "tsRtm/database/files/UpdateMarks.hpp"
#include "tsRtm/database/files/UpdateWatch.hpp"
#include "tsRtm/database/files/WorkSign.hpp"
#include "tsRtm/database/index/IndexBuild.hpp"
#include "tsRtm/database/index/IndexForm.hpp"

namespace tsRtm {

// Indexes count from 1. An index that is found wrong is built anew in its file, under the database lock and
// with everybody else at work: readers wait on the marks of the update. Knows the other parts of the database
// by reference. Not thread-safe.
class IndexSet {
 public:
    struct Parts {
        const DatabaseFolder& folder;
        CountFile& count;
        RecordStore& store;
        DatabaseLocks& locks;
        UpdateMarks& marks;
        UpdateWatch& watch;
        WorkSign& sign;
        ShareGuard& guard;
    };
    explicit IndexSet(Parts parts) : p_(parts) {}
    ~IndexSet() { clear(); }
    IndexSet(const IndexSet&) = delete;
    IndexSet& operator=(const IndexSet&) = delete;

    // The indexes that the control file names; `big` for trees.
    void define(const clsControl& control, const RecordLayout& layout, bool big);
    void clear() noexcept;

    int32 count() const noexcept { return static_cast<int32>(slots_.size()); }
    bool has(int32 number) const noexcept { return number >= 1 && number <= count(); }
    bool big() const noexcept { return form_ == IndexFileForm::tree; }
    const IndexKeys& keys(int32 number) const { return slot(number).keys; }
    // "I" and the last three digits of 1000 + the primary field.
    static Text fileName(const IndexKeys& keys);
    Text fileName(int32 number) const { return fileName(keys(number)); }

    // The open form of an index. Raises 70 where the file cannot be opened or the directory has become that
    // of another database, 461 for a version it does not know, 6 for a tree that is empty or has a wrong
    // total and cannot be rebuilt (source "clsTSDB_IndexOpen").
    IndexForm& open(int32 number);
    // The same for a look at the file as it is, without a rebuild.
    IndexForm& openAsItIs(int32 number);
    void close(int32 number) noexcept;
    void closeAll() noexcept;
    void eachFile(const std::function<void(platform::File&)>& work);

    // Nothing but changes by these forms lies between two numbers of changes.
    void holds(uint64 from, uint64 to) noexcept {
        for (const auto& at : slots_)
            if (at->form) at->form->holds(from, to);
    }

    // Builds all indexes, or some, anew in their files. The caller holds the database lock. Raises what the
    // files raise; the marks of the update then stay. Tells the user once that it goes on.
    void rebuildAll();
    void rebuild(const std::vector<int32>& numbers);
    // Under the database lock: the record that an update which died was writing becomes what it was to be.
    void completeRecord();
    // Rebuilds all where an update died; nothing otherwise. False where that failed: recorded in the log.
    bool healLeftBehind();

    // The order of the records as they are, for a reader who may not build anew what a death left.
    IndexForm& listed(int32 number, uint64 changes);

    // Told of an index that was built anew: its primary field.
    std::function<void(int32)> rebuilt;
    // The field that gives serial numbers: an index on it that the control file does not name has no file at
    // first.
    int32 serialField = 0;

 private:
    struct Slot {
        explicit Slot(IndexKeys keysOfIndex) : keys(std::move(keysOfIndex)) {}
        IndexKeys keys;
        int32 file = 0;                   // file number, 0 closed
        std::unique_ptr<IndexForm> form;  // while open
        std::unique_ptr<IndexForm> list;  // see listed()
        uint64 listedAt = 0;
    };

    Slot& slot(int32 number) const { return *slots_[static_cast<std::size_t>(number - 1)]; }
    Text filePath(int32 number) const { return p_.folder.path(fileName(number)); }
    Text quotedName(int32 number) const;
    void openFile(int32 number);
    void checkVersion(int32 number);
    // Whether the file holds an entry for each record, as far as that can be told without a walk.
    bool fits(int32 number);
    bool isEmptyTree(int32 number);
    void heal(int32 number);
    void build(const std::vector<int32>& numbers);
    void buildOne(RecordSorter& sorter, int32 number);

    Parts p_;
    std::vector<std::unique_ptr<Slot>> slots_;
    std::vector<Text> captions_;
    IndexFileForm form_ = IndexFileForm::flat;
};

}  // namespace tsRtm
