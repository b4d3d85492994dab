#pragma once
// What an open database is made of, and where its cursor stands: what the operations behind clsTSDB share.
#include <chrono>
#include <memory>
#include <optional>
#include <vector>

#include "tsRtm/database/CountFile.hpp"
#include "tsRtm/database/DatabaseEvents.hpp"
#include "tsRtm/database/DatabaseLocks.hpp"
#include "tsRtm/database/IndexForm.hpp"
#include "tsRtm/database/RecordBuffer.hpp"
#include "tsRtm/database/RecordStore.hpp"
#include "tsRtm/database/SerialNumber.hpp"
#include "tsRtm/database/UpdateWatch.hpp"
#include "tsRtm/frame/files/FilesTopic.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

// Of the operations that work on whole records.
inline constexpr TextView kUnicodeFieldsRefused =
    u"Diese Funktion wird für Datenbanken mit Unicode-Feldern nicht unterstützt.";
// A walk to a leaf that finds no end, while an entry is taken out.
inline constexpr int32 kUpdateOverrun = static_cast<int32>(0x80040001);
// The wait of all openings: NetWait seconds, then silence.
inline constexpr int32 kOpenSilently = -1;

// One index: its keys, and its file while it is open.
struct IndexSlot {
    explicit IndexSlot(IndexKeys keysOfIndex) : keys(std::move(keysOfIndex)) {}
    IndexKeys keys;
    int32 file = 0;                   // file number, 0 closed
    std::unique_ptr<IndexForm> form;  // while open
};

// Passive: the operations keep it consistent. Not thread-safe, not movable (its parts know each other).
struct DatabaseParts {
    DatabaseParts(FilesTopic& filesTopic, DatabaseEvents& databaseEvents)
        : files(filesTopic),
          events(databaseEvents),
          locks(filesTopic.messages(), count),
          watch(count, shared, locks.databaseLocked) {}
    DatabaseParts(const DatabaseParts&) = delete;
    DatabaseParts& operator=(const DatabaseParts&) = delete;

    FilesTopic& files;
    DatabaseEvents& events;
    MessagesTopic& messages() const { return files.messages(); }

    // How it was opened.
    std::shared_ptr<clsControl> control;
    Text folder;  // the name as given, with ".DBD"
    bool opened = false;
    bool readOnly = false;
    bool shared = true;
    int32 modus = 4;  // of DB_Open: 4 read and write, 5 read only
    bool big = false;
    bool sensible = false;
    std::vector<int32> viewLaenge;

    // Its files.
    RecordLayout layout;
    int32 countNumber = 0;
    int32 dataHandle = 0;
    int32 serialNumberFile = 0;
    int32 lockNumber = 0;
    CountFile count;
    RecordStore store;
    SerialNumber serial;
    DatabaseLocks locks;
    UpdateWatch watch;
    std::vector<std::unique_ptr<IndexSlot>> indexes;

    // Its cursor and the current record.
    RecordBuffer felder;
    std::optional<RecordBuffer> spareBuffer;  // room of a record object that has gone
    int32 fehler = 0;
    int32 aktSatz = 0;
    int32 aktIndex = 0;
    int32 logPos = 0;
    int32 viewPos = 0;
    bool istNeu = false;
    bool imUpdate = false;
    bool keineEreignisse = false;
    bool inBulk = false;      // a bulk operation runs: indexes open without a look at their totals
    bool marking = false;     // the mark in Count.tsd is this object's
    bool leftBehind = false;  // an update died and its traces could not be removed: the mark stays
    int32 exclusiveDepth = 0;
    std::chrono::nanoseconds refreshed{};

    int32 records() const noexcept { return store.count(); }
    IndexSlot& index(int32 number) const { return *indexes[static_cast<std::size_t>(number - 1)]; }
    bool hasIndex(int32 number) const noexcept {
        return number >= 1 && number <= static_cast<int32>(indexes.size());
    }
    Text path(TextView file) const { return FilesTopic::MakePath({Variant(folder), Variant(file)}); }
    // Name of an index file: "I" and the last three digits of 1000 + the primary field.
    Text indexName(int32 number) const;

    // The record count anew from the length of Data.tsd.
    void refreshCount();
    // The same when others may have changed it and the last look is 6 x NetWait seconds old.
    void refreshWhenDue();
    // Whether the record is there; looks again before it says no.
    bool hasRecord(int32 record);
    // An empty buffer for a record object, and its room back: most objects live one after the other.
    RecordBuffer takeBuffer();
    void giveBack(RecordBuffer&& buffer) noexcept { spareBuffer = std::move(buffer); }
    // Closes a file of the numbered or of the handle family and sets its number to 0; failures are ignored.
    void close(int32& number) noexcept;
    void closeHandle(int32& handle) noexcept;
    // Records an error for `Error`; gives false, for the callers that answer with it.
    bool fail(int32 number) noexcept {
        fehler = number;
        return false;
    }
};

// Notes a failure of the file layer that an operation caught: the operation ends with the state as far as it
// got, and the number stands in Fehler and in the last failure number.
void recordFailure(DatabaseParts& parts, const Failure& failure) noexcept;
// Runs a move of the cursor: what a file refuses is recorded, damage of an index stays raised.
template <class Work>
void recordingFileFailures(DatabaseParts& parts, Work work) {
    try {
        work();
    } catch (const Failure& failure) {
        if (failure.Source() != kFileFailureSource) throw;
        recordFailure(parts, failure);
    }
}

}  // namespace tsRtm
