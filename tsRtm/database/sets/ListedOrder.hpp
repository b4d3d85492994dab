#pragma once
// The records of a set in the order of up to three fields, sorted in memory: the order of that moment.
#include "tsRtm/database/index/IndexForm.hpp"
#include "tsRtm/database/sets/SetContent.hpp"

namespace tsRtm {

// Knows the keys by reference.
class ListedOrder {
 public:
    explicit ListedOrder(const IndexKeys& keys) : keys_(keys) {}
    // A record that is not there any more is left out.
    void sort(SetContent& content);
    void sort(SetContent& content, const std::vector<int32>& numbers);

    int32 total() const noexcept { return static_cast<int32>(entries_.size()); }
    int32 recordAt(int32 position) const;
    int32 positionOf(int32 number) const;
    // Of the first entry whose key is not below; not whether it is the same.
    Found locate(const SearchKey& key) const;

 private:
    struct Entry {
        Bytes key;
        int32 number;
    };
    const IndexKeys& keys_;
    std::vector<Entry> entries_;
};

}  // namespace tsRtm
