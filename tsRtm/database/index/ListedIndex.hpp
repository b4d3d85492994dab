#pragma once
// An index in memory, for a reader who may not mend the file: the order of the records as they are.
#include "tsRtm/database/index/IndexForm.hpp"

namespace tsRtm {

// Sorted when it is made. Knows store and keys by reference. Never written.
class ListedIndex final : public IndexForm {
 public:
    ListedIndex(RecordStore& store, const IndexKeys& keys);

    Found locate(const SearchKey& key) override;
    int32 positionOf(int32 record) override;
    int32 recordAt(int32 position) override;
    int32 total() override { return static_cast<int32>(records_.size()); }
    void aim(int32, const SearchKey&) override {}
    int32 enter(int32 record, const SearchKey& key) override;
    int32 move(int32 record, const SearchKey& from, const SearchKey& to) override;
    void forget() override {}
    IndexFindings inspect(int32) override { return {records_, {}}; }

 private:
    RecordStore& store_;
    const IndexKeys& keys_;
    std::vector<int32> records_;
    Bytes room_;
};

}  // namespace tsRtm
