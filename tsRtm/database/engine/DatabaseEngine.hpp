#pragma once
// What stands behind clsTSDB: the open database, where its cursor stands, and the way its records are
// written.
#include <memory>
#include <vector>

#include "tsRtm/database/engine/LiveObjects.hpp"
#include "tsRtm/database/files/RecordedFailure.hpp"
#include "tsRtm/database/writing/RecordWriter.hpp"

namespace tsRtm {

// Of the operations that work on whole records.
inline constexpr TextView kUnicodeFieldsRefused =
    u"Diese Funktion wird für Datenbanken mit Unicode-Feldern nicht unterstützt.";

// Where an open database stands.
struct Cursor {
    RecordBuffer felder;
    int32 aktSatz = 0;
    int32 aktIndex = 0;
    int32 logPos = 0;
    int32 viewPos = 0;  // as the last move left it
    int32 chain = 0;    // the field of the chain that was used last
    int32 seen = 0;     // entries of the order at that move: what its position is held against
};

// Passive: the operations of the face keep it consistent. Does not move. Not thread-safe.
struct DatabaseEngine {
    explicit DatabaseEngine(FilesTopic& files) : d(files) {}

    OpenDatabase d;
    Cursor c;
    RecordWriter writer{d};
    LiveObjects live;
    std::vector<int32> viewLaenge;
    bool opened = false;
    int32 fehler = 0;
    bool keineEreignisse = false;
    int32 seenRecord = 0;  // whose bytes `seen` has, 0 for none
    Bytes seen;
    std::unique_ptr<RecordBuffer> spareBuffer;  // room of a record object that has gone
    SearchKey spareKey;                         // room of a search that has ended

    // Records an error for `Error`; gives false, for the callers that answer with it.
    bool fail(DatabaseError error) noexcept { return fail(numberOf(error)); }
    bool fail(int32 number) noexcept {
        fehler = number;
        return false;
    }
    void fail(const Failure& failure) noexcept {
        fehler = failure.Number();
        recordFailure(failure);
    }
    // Runs a work: what a file refuses is recorded, damage of an index stays raised.
    template <class Work>
    void recordingFileFailures(Work work) {
        try {
            work();
        } catch (const Failure& failure) {
            if (failure.Source() != kFileFailureSource) throw;
            fail(failure);
        }
    }

    // An empty buffer for a record object, and its room back: most objects live one after the other.
    std::unique_ptr<RecordBuffer> takeBuffer();
    void giveBack(std::unique_ptr<RecordBuffer> buffer) noexcept { spareBuffer = std::move(buffer); }

    // Looks at the active order, or another one, as no update of others can disturb it: `look(form)` on an
    // index.
    template <class Look>
    auto inIndex(int32 index, Look look) {
        return d.watch.steady(
            [&](uint64 changes) {
                IndexForm& form = d.indexes.open(index);
                form.at(changes);
                return look(form);
            },
            [&] { return look(d.indexes.listed(index, d.changes ? d.changes.value() : 0)); });
    }
    // The same for `look(form)` that gives a record number: the record is read into `seen` at that moment, so
    // that its key is the one it was found by.
    template <class Look>
    int32 recordInIndex(int32 index, Look look) {
        int32 read = 0;
        const int32 record = inIndex(index, [&](IndexForm& form) {
            const int32 found = look(form);
            read = d.store.reaches(found) ? found : 0;
            if (read != 0) d.store.read(read, seen);
            return found;
        });
        seenRecord = read;
        return record;
    }
};

}  // namespace tsRtm
