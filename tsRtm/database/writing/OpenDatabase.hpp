#pragma once
// What an open database is made of: its files and the parts that work on them.
#include <chrono>
#include <memory>

#include "tsRtm/database/chains/ChainSet.hpp"
#include "tsRtm/database/files/ReorganisationLock.hpp"
#include "tsRtm/database/files/SerialNumber.hpp"
#include "tsRtm/database/files/UpdateLog.hpp"
#include "tsRtm/database/files/WorkSign.hpp"
#include "tsRtm/database/index/IndexSet.hpp"
#include "tsRtm/database/memos/MemoStores.hpp"

namespace tsRtm {

// The opening fills it. Its parts know each other by reference, so it does not move. Not thread-safe.
struct OpenDatabase {
    explicit OpenDatabase(FilesTopic& files);
    ~OpenDatabase() { close(); }
    OpenDatabase(const OpenDatabase&) = delete;
    OpenDatabase& operator=(const OpenDatabase&) = delete;

    DatabaseFolder folder;
    std::shared_ptr<clsControl> control;
    RecordLayout layout;
    // File numbers and a handle; 0 closed.
    struct Openings {
        int32 count = 0;
        int32 data = 0;
        int32 serial = 0;
        int32 changes = 0;
    } opened;

    CountFile count;
    ChangeCount changes;
    RecordStore store;
    SerialNumber serial;
    ShareGuard guard{folder, count, changes};
    DatabaseLocks locks{folder, count, guard};
    UpdateMarks marks{count, changes, guard};
    UpdateWatch watch{count, changes, locks, folder, guard};
    WorkSign sign{folder, count, locks};
    UpdateLog log{folder};
    ReorganisationLock reorganisation{folder, count, opened.count, locks};
    IndexSet indexes{{folder, count, store, locks, marks, watch, sign, guard}};
    ChainSet chains{
        {folder, count, store, locks, marks, watch, guard,
         [this](int32 record, uint32 offset, std::span<char> into) { read(record, offset, into); },
         [this](ChainStore& chain) { return memosOf(chain); }}};
    MemoStores memos{{folder, count, store, locks, guard, layout}};

    // The texts of a chain's rows; nullptr where they have none.
    static MemoStores* rowMemos(const ChainStore& chain);

    // Every write holds the database lock: a client's cache stands between the files and others.
    bool remote() const { return guard.needed(); }
    // What is acknowledged outlives the machine. On a share each write is flushed before its lock is given
    // back anyway.
    bool durable() const { return folder.durable && !remote(); }
    int32 maxRecords() const { return control ? control->MaxRecords() : 0; }
    int32 records() const noexcept { return store.count(); }
    // Control.tsd, and what follows from it: the layout of records and what indexes, memos and chains there
    // are. False where there is none that can be read.
    bool readStructure();
    // Data.tsd; made by who may write. False where it is not to be had.
    bool openData();
    // Stand.tsd; made by who may write. False where it is not to be had.
    bool openChanges();
    // The record count anew; the same where the last look is 6 x NetWait seconds old, as reads do; and that
    // also where a change was counted since the last such question.
    void refreshCount();
    void refreshWhenDue();
    void refreshWhenChanged();
    // Bytes of a record that is there, none of them half written by others, be they at work or dead; filled
    // up with blanks behind the end of the file.
    void read(int32 record, uint32 offset, std::span<char> into);
    void read(int32 record, Bytes& into) {
        into.resize(layout.bytes());
        read(record, 0, into);
    }
    // Records one behind the other, each as if read by itself.
    void readRun(int32 first, int32 howMany, Bytes& into);
    // Brings what was written to the device, gives up all locks and closes all files.
    void close() noexcept;

 private:
    void flush();
    void sniffUnicode();
    std::unique_ptr<RowMemos> memosOf(ChainStore& chain);

    std::chrono::nanoseconds refreshed_{};
    uint64 refreshedAt_ = 0;  // the number of changes of the last question
};

}  // namespace tsRtm
