#pragma once
// The index of a normal database: a sorted array of record numbers.
#include "tsRtm/database/index/FlatFile.hpp"
#include "tsRtm/database/index/IndexForm.hpp"

namespace tsRtm {

// Knows store and keys by reference.
class FlatIndex final : public IndexForm {
 public:
    FlatIndex(platform::File& file, RecordStore& store, const IndexKeys& keys, bool shared)
        : file_(file), store_(store), keys_(keys), shared_(shared) {}

    // Entries in the file; fewer than there are records is a fault of the file.
    int32 stored() { return file_.entries(); }

    Found locate(const SearchKey& key) override;
    int32 positionOf(int32 record) override;
    int32 recordAt(int32 position) override;
    int32 total() override;
    void aim(int32, const SearchKey&) override {}
    int32 enter(int32 record, const SearchKey& key) override;
    int32 move(int32 record, const SearchKey& from, const SearchKey& to) override;
    void forget() override {}
    IndexFindings inspect(int32 index) override;

 private:
    void load();
    // Takes an entry of the loaded array to the place of its key; the new position.
    int32 moveEntry(std::size_t from, int32 record, const SearchKey& to);
    // Lower bound of (key, number) in the loaded array.
    std::size_t placeOf(const SearchKey& key, int32 number) const;
    std::size_t entryOf(int32 record) const;

    FlatFile file_;
    RecordStore& store_;
    const IndexKeys& keys_;
    bool shared_;
    FlatFile::Array array_;  // the whole file while an operation works on it
    mutable Bytes room_;
};

}  // namespace tsRtm
