// clsTSDB: memos and blobs.
#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/database/memos/MemoWrite.hpp"

namespace tsRtm {

template <class Read>
auto clsTSDB::readPlace(int32 field, int32 record, Read read) {
    const Working working(*this);
    auto& e = *engine_;
    std::optional<decltype(read(e.d.memos))> out;
    if (!e.d.memos.has(field)) {
        e.fail(DatabaseError::badField);
        return out;
    }
    try {
        e.d.guard.lookAnew();
        out.emplace();
        if (e.d.store && e.d.store.reaches(record)) *out = read(e.d.memos);
    } catch (const Failure& failure) {
        e.fail(failure);
        out.reset();
    }
    return out;
}

// The content of the field, which the current record then shows by its new place.
template <class Content>
void clsTSDB::writePlace(int32 field, Content content) {
    const Working working(*this);
    auto& e = *engine_;
    const int32 record = e.c.aktSatz;
    if (e.d.folder.readOnly || !e.d.memos.has(field)) {
        e.fail(e.d.folder.readOnly ? DatabaseError::readOnly : DatabaseError::badField);
        return;
    }
    if (!e.d.store || !e.d.store.reaches(record)) {
        e.fail(DatabaseError::badRecord);
        return;
    }
    try {
        MemoWrite write(e.d.memos, field, content);
        SideWrite* const sides[] = {&write};
        RecordBuffer nothing(e.d.layout);
        const auto out = e.writer.change(
            record, {.content = nothing, .extent = RecordBuffer::Extent::assigned, .sides = sides});
        if (!out) {
            e.fail(out.error);
            return;
        }
        const auto& columns = e.d.layout.field(field);
        Bytes place(columns.bytes, ' ');
        e.d.store.readPart(record, columns.offset, place);
        if (e.c.aktSatz == record) e.c.felder.show(field, place);
        recordChanged(record);
    } catch (const Failure& failure) {
        e.fail(failure);
    }
}

Text clsTSDB::Memo(int32 MemoNr) {
    const int32 field = engine_->d.control ? engine_->d.control->MemoFeld(MemoNr) : 0;
    return memoText(engine_->c.aktSatz, field).value_or(Text());
}

void clsTSDB::Memo(int32 MemoNr, TextView Inhalt) {
    writePlace(engine_->d.control ? engine_->d.control->MemoFeld(MemoNr) : 0, Inhalt);
}

clsBlob clsTSDB::Blob(int32 BlobNr) {
    const int32 field = engine_->d.control ? engine_->d.control->BlobFeld(BlobNr) : 0;
    const int32 record = engine_->c.aktSatz;
    const Bytes bytes = readPlace(field, record, [&](MemoStores& memos) {
                            return memos.bytes(record, field);
                        }).value_or(Bytes());
    return clsBlob(std::vector<uint8>(bytes.begin(), bytes.end()));
}

void clsTSDB::Blob(int32 BlobNr, const clsBlob& Inhalt) {
    const auto& bytes = Inhalt.Bytes();
    writePlace(engine_->d.control ? engine_->d.control->BlobFeld(BlobNr) : 0,
               BytesView(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

std::optional<Text> clsTSDB::memoText(int32 record, int32 field) {
    return readPlace(field, record, [&](MemoStores& memos) { return memos.text(record, field); });
}

}  // namespace tsRtm
