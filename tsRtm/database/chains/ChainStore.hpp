#pragma once
// The chains of one field: its file, opened at first use, and reading beside writers.
#include <functional>
#include <memory>

#include "tsRtm/database/chains/ChainRows.hpp"
#include "tsRtm/database/chains/RowMemos.hpp"
#include "tsRtm/database/chains/RowSupply.hpp"
#include "tsRtm/database/files/CountFile.hpp"
#include "tsRtm/database/files/DatabaseLocks.hpp"
#include "tsRtm/database/files/UpdateMarks.hpp"
#include "tsRtm/database/files/UpdateWatch.hpp"
#include "tsRtm/database/records/RecordStore.hpp"

namespace tsRtm {

class ChainStore;

// What the chains know of the database they belong to.
struct ChainParts {
    const DatabaseFolder& folder;
    CountFile& count;
    RecordStore& records;
    DatabaseLocks& locks;
    UpdateMarks& marks;
    UpdateWatch& watch;
    ShareGuard& guard;
    // Bytes of a record, none of them half written by others.
    std::function<void(int32 record, uint32 offset, std::span<char> into)> readRecord;
    // For the rows of a chain that can have memos; may be empty.
    std::function<std::unique_ptr<RowMemos>(ChainStore&)> rowMemos = {};
};

// The rows of one record, as they lie in the file.
struct ChainContent {
    Bytes columns;            // of the field
    std::vector<int32> rows;  // row numbers
    Bytes bytes;              // the rows, one behind the other
    bool operator==(const ChainContent&) const = default;
};

// Not thread-safe. Failures raise as raiseFileFailure tells.
class ChainStore {
 public:
    // `field` is that of the record, `rows` the control of the chain.
    ChainStore(const ChainParts& parts, const FieldLayout& field, std::shared_ptr<clsControl> rows);
    ~ChainStore() { close(); }
    ChainStore(const ChainStore&) = delete;
    ChainStore& operator=(const ChainStore&) = delete;

    const clsControl& control() const noexcept { return *control_; }
    const FieldLayout& field() const noexcept { return field_; }
    const ChainFormat& format() const noexcept { return format_; }
    const ChainRows& rows() const noexcept { return rows_; }
    const ChainParts& parts() const noexcept { return p_; }
    ChainFile& file() noexcept { return file_; }
    RowSupply& supply() noexcept { return supply_; }
    // The memos of the rows; nullptr where they have none, or nobody keeps them.
    RowMemos* memos() const noexcept { return memos_.get(); }

    // Opens the file where it is there; false where it is not, and then all chains are empty. Raises 70 where
    // it cannot be opened or the directory has become that of another database, 9 for a chain that cannot be.
    bool openToRead();
    // Makes it where it is missing. Under the database lock.
    void openToWrite();
    void close() noexcept;
    bool isOpen() const noexcept { return static_cast<bool>(file_); }
    Text fileName() const;
    Text path() const { return p_.folder.path(fileName()); }
    // A file of a reorganisation by an older program that died lies beside it: records may lead into that
    // one, so no row is given back.
    bool hasLeftover() const noexcept { return hasLeftover_; }

    // The chain of a record that is there, as it is at one moment: walked until two walks agree, by who holds
    // no lock. A cycle and a row that is not there end it.
    ChainContent read(int32 record);
    // The same in one walk, from the field's columns.
    ChainContent walk(BytesView columns);
    // The last row that any record names. Looks at all of them.
    int32 lastNamed() const;
    // The last row of the chain that leads through this one.
    int32 lastFrom(int32 row);

    // Byte 0 of the file; waits NetWait seconds in silence. Raises 70. Nothing to lock in single use.
    void lock();
    void unlock() noexcept;

 private:
    bool open(bool toWrite);
    ChainContent look(int32 record);
    ChainContent steady(int32 record);
    // Rows met in one walk; false for one that was met before.
    void beginWalk();
    bool meets(int32 row);

    ChainParts p_;
    FieldLayout field_;
    std::shared_ptr<clsControl> control_;
    ChainRows rows_;
    ChainFormat format_;
    int32 handle_ = 0;
    ChainFile file_;
    std::unique_ptr<RowMemos> memos_;
    RowSupply supply_{file_};
    bool hasLeftover_ = false;
    bool locked_ = false;
    std::vector<uint32> met_;  // by row: the walk that met it last
    uint32 walk_ = 0;
    Bytes room_;
};

// The lock of a chain's file, which is there, as long as this lives. Raises as lock().
class ChainLock {
 public:
    explicit ChainLock(ChainStore& chain) : chain_(chain) { chain.lock(); }
    ~ChainLock() { chain_.unlock(); }
    ChainLock(const ChainLock&) = delete;
    ChainLock& operator=(const ChainLock&) = delete;

 private:
    ChainStore& chain_;
};

}  // namespace tsRtm
