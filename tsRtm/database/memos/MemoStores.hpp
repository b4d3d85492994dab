#pragma once
// The memo stores of an open database: their files, opened at first use, and their entries by record and
// field.
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "tsRtm/database/files/DatabaseLocks.hpp"
#include "tsRtm/database/memos/MemoFile.hpp"
#include "tsRtm/database/records/RecordStore.hpp"

namespace tsRtm {

// Reading takes no lock. What changes a store is done under the database lock.
// Knows the other parts of the database by reference. Not thread-safe. Failures raise as raiseFileFailure
// tells, and those of MemoText.
class MemoStores {
 public:
    struct Parts {
        const DatabaseFolder& folder;
        CountFile& count;
        RecordStore& store;
        DatabaseLocks& locks;
        ShareGuard& guard;
        const RecordLayout& layout;  // of what owns the texts: records, or rows of a chain
        int32 owner = 0;             // the field of that chain
        // Brings what points to the texts to the device, beside Data.tsd; may be empty.
        std::function<void()> flushOwner = {};
        // All rows that may own texts; empty where the records do.
        std::function<void(const std::function<void(BytesView)>&)> eachRow = {};
    };
    explicit MemoStores(const Parts& parts);
    ~MemoStores() { close(); }
    MemoStores(const MemoStores&) = delete;
    MemoStores& operator=(const MemoStores&) = delete;

    // The memo and blob fields of the control file; the stores that were open are closed.
    void define(const clsControl& control);
    bool has(int32 field) const noexcept { return kindOf(field) != nullptr; }
    bool isBlob(int32 field) const noexcept { return has(field) && kindOf(field)->blob; }
    Text fileName(int32 field) const { return memoFormat::fileName(p_.owner, field); }
    // A store of a reorganisation by an older program that died: records may lead into that one, so nothing
    // becomes zeros.
    static constexpr TextView kLeftover = u"Memo.tmp";
    void close() noexcept;
    void eachFile(const std::function<void(platform::File&)>& work);

    // What the field of a record has, or of a row that `pointer` reads anew each time, by the pointer that
    // stands in the file at this moment; a text that was moved meanwhile is looked for anew.
    Text text(int32 record, int32 field);
    Bytes bytes(int32 record, int32 field);
    Text textOf(int32 field, const std::function<int32()>& pointer);
    Bytes bytesOf(int32 field, const std::function<int32()>& pointer);
    // The pointer in the columns of a record, 0 for none.
    int32 pointerIn(BytesView record, int32 field) const;
    void setPointer(std::span<char> record, int32 field, int32 pointer) const;

    bool isMissing(int32 field) const { return !FilesTopic::Exist(p_.folder.path(fileName(field))); }
    // Whether there is an entry, of whichever form, at a place. 70 where the store cannot be had.
    bool leadsSomewhere(int32 field, int32 pointer);
    // An entry as it is into a store, an older one in the present form; its place there, 0 for none.
    int32 copy(int32 field, int32 pointer, MemoFile& to);

    // The open store of a field, for who writes. 70 where it cannot be had.
    MemoFile& open(int32 field);
    MemoText texts(int32 field) { return {*kindOf(field), scrambler_}; }
    // Nobody points to the entry any more: it becomes zeros as soon as it is sure on the medium that nobody
    // does. At most once a second the device is asked for that, and not in the middle of what an application
    // does under its own database lock; until then entries wait.
    void release(int32 field, int32 pointer);
    // Zeros for all that wait; now, or if that is due. On a share only under the database lock.
    enum class When { due, now };
    void releaseWaiting(When when) noexcept;

 private:
    const MemoKind* kindOf(int32 field) const noexcept;
    enum class Missing { make, leave };
    // nullptr where there is none and none is to be made; tryOpen also where it cannot be had, which raises
    // else: texts that nobody can read are not gone.
    MemoFile* openForReading(int32 field);
    MemoFile* tryOpen(int32 field, Missing missing);
    [[noreturn]] void raiseClosed(int32 field) const;
    bool keepsAll(int32 field) { return !tryOpen(field, Missing::leave) || open_.at(field).keepsAll; }
    MemoEntry readSteadily(int32 field, const std::function<int32()>& pointer);
    int32 pointerInFile(int32 record, int32 field) const;
    // The last place that a record, or a row, names. Looks at all of them.
    int32 lastNamed(int32 field) const;

    Parts p_;
    Scrambler scrambler_;
    std::vector<MemoKind> kinds_;  // by field number
    std::vector<bool> isMemo_;
    struct Store {
        int32 fileNumber = 0;
        std::unique_ptr<MemoFile> file;
        bool keepsAll = false;  // see kLeftover
    };
    std::map<int32, Store> open_;  // by field
    struct Waiting {
        int32 field;
        int32 pointer;
    };
    std::vector<Waiting> waiting_;
    std::chrono::nanoseconds flushed_{-std::chrono::hours(1)};
};

}  // namespace tsRtm
