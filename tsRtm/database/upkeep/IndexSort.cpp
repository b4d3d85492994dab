#include "tsRtm/database/upkeep/IndexSort.hpp"

#include "tsRtm/database/files/RecordedFailure.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm {
namespace {

using platform::SystemError;

constexpr TextView kNewEnd = u".tmp";

// The index under a name to come, whole on the device.
void buildBeside(OpenDatabase& d, RecordSorter& sorter, int32 number, const IndexKeys& keys,
                 const Text& fresh, const WorkProgress& progress) {
    auto& files = rtmMain::system().files;
    auto opened = files.open(
        fresh, {platform::Access::readWrite, platform::Sharing::none, platform::Disposition::createEmpty});
    if (!opened) raiseFileFailure(opened.error(), fresh);
    try {
        const auto form = d.indexes.big() ? IndexFileForm::tree : IndexFileForm::flat;
        const auto records = sorter.inOrder(d.store, keys, progress);
        buildNewIndex(**opened, form, records, number, progress);
        must((*opened)->flush(), fresh);
    } catch (const Failure&) {
        opened->reset();
        static_cast<void>(files.remove(fresh));
        throw;
    }
}

// The old file of a sensitive database is overwritten before it goes.
void replaceSensible(OpenDatabase& d, const Text& fresh, const Text& name) {
    auto& files = rtmMain::system().files;
    if (!platform::failed(files.exchange(fresh, name))) {
        d.folder.files.SecureKill(fresh);
        return;
    }
    // Without an exchange of names there is a moment without an index: the mark tells whoever opens it then.
    d.marks.begin();
    d.folder.files.SecureKill(name);
    must(files.rename(fresh, name, true), name);
}

void sortOne(OpenDatabase& d, RecordSorter& sorter, int32 number, const WorkProgress& progress) {
    d.indexes.close(number);
    const Text name = d.folder.path(d.indexes.fileName(number));
    const Text fresh = name + Text(kNewEnd);
    buildBeside(d, sorter, number, d.indexes.keys(number), fresh, progress);
    // Who listens to the progress may have searched in it.
    d.indexes.close(number);
    if (d.folder.sensible && FilesTopic::Exist(name))
        replaceSensible(d, fresh, name);
    else
        must(rtmMain::system().files.rename(fresh, name, true), name);
}

// From the reorganisation lock to `work`; failures are outcomes.
template <class Work>
DatabaseError reorganising(OpenDatabase& d, Work work) {
    if (!d.store) return DatabaseError::locked;
    if (d.folder.readOnly) return DatabaseError::readOnly;
    const ReorganisationHold alone(d.reorganisation);
    if (!alone) return alone.error();
    try {
        const DatabaseHold hold(d.locks);
        if (!hold) return hold.error();
        if (const auto error = d.sign.enter(); failed(error)) return error;
        d.indexes.completeRecord();
        d.refreshCount();
        const auto outcome = work();
        d.guard.renamed();
        return outcome;
    } catch (const Failure& failure) {
        d.marks.giveUp();
        recordFailure(failure);
        return static_cast<DatabaseError>(failure.Number());
    }
}

// The same files under the numbers of the control as it is now.
void defineAnew(OpenDatabase& d) { d.indexes.define(*d.control, d.layout, d.indexes.big()); }

}  // namespace

DatabaseError sortIndexes(OpenDatabase& d, int32 number, const WorkProgress& progress) {
    if (d.store && !d.folder.readOnly && number != -1 && !d.indexes.has(number))
        return DatabaseError::badIndex;
    return reorganising(d, [&] {
        const bool healed = d.marks.leftBehind() && number == -1;
        const int32 first = number == -1 ? 1 : number;
        const int32 last = number == -1 ? d.indexes.count() : number;
        RecordSorter sorter;
        for (int32 i = first; i <= last; ++i) sortOne(d, sorter, i, progress);
        must(rtmMain::system().files.flushFolder(d.folder.name), d.folder.name);
        if (healed) d.marks.begin();
        d.marks.end(d.records());
        return DatabaseError::none;
    });
}

DatabaseError createIndex(OpenDatabase& d, const IndexEntry& fields, const WorkProgress& progress) {
    for (const int32 field : fields)
        if (field != 0 && (!d.layout.has(field) || d.layout.field(field).namesPlace()))
            return DatabaseError::badField;
    if (fields[0] == 0) return DatabaseError::badField;
    for (int32 i = 1; d.indexes.has(i); ++i)
        if (d.indexes.keys(i).primary() % 1000 == fields[0] % 1000) return DatabaseError::badIndex;
    return reorganising(d, [&] {
        // Who listens to the progress finds an index that is there, or none.
        const IndexKeys keys(d.layout, fields);
        const Text name = d.folder.path(IndexSet::fileName(keys));
        const Text fresh = name + Text(kNewEnd);
        RecordSorter sorter;
        buildBeside(d, sorter, d.indexes.count() + 1, keys, fresh, progress);
        must(rtmMain::system().files.rename(fresh, name, true), name);
        must(rtmMain::system().files.flushFolder(d.folder.name), d.folder.name);
        if (!d.control->IndexHinzu(fields[0], fields[1], fields[2])) return DatabaseError::badField;
        try {
            d.control->Save();
        } catch (const Failure&) {
            d.control->IndexWeg(d.control->Indizes());
            throw;
        }
        defineAnew(d);
        return DatabaseError::none;
    });
}

DatabaseError deleteIndex(OpenDatabase& d, int32 primaryField) {
    return reorganising(d, [&] {
        const int32 number = d.control->IndexNr(Variant(primaryField));
        if (number == 0) return DatabaseError::badIndex;
        const Text file = d.folder.path(d.indexes.fileName(number));
        const IndexEntry entry = d.control->indexes()[static_cast<std::size_t>(number - 1)];
        d.control->IndexWeg(number);
        try {
            d.control->Save();
        } catch (const Failure&) {
            // As it stands in the file; the order of indexes in memory counts for nothing there.
            d.control->IndexHinzu(entry[0], entry[1], entry[2]);
            defineAnew(d);
            throw;
        }
        defineAnew(d);
        if (d.folder.sensible)
            d.folder.files.SecureKill(file);
        else
            FilesTopic::Recycle(file);
        return DatabaseError::none;
    });
}

}  // namespace tsRtm
