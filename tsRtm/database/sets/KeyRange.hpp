#pragma once
// A part of an order: the records whose keys lie between two bounds.
#include <optional>

#include "tsRtm/database/index/IndexForm.hpp"

namespace tsRtm {

// A bound is a key as a caller types it; a date without decimals at its start turns to its sortable form. An
// empty one is none. Knows keys and layout by reference.
class KeyRange {
 public:
    // Both bounds belong to it, and with `to` all keys whose first field it is. A `to` that ends in the
    // greatest character of the locale is a beginning of keys; that character alone is none.
    static KeyRange between(const IndexKeys& keys, const RecordLayout& layout, TextView from, TextView to);
    // From the first key that is not below to all that begin with the other one, which is a bound even if it
    // is empty: the keys that begin with two of the greatest character lie behind it. A date field without
    // decimals takes days instead, and only those.
    static KeyRange beginning(const IndexKeys& keys, const RecordLayout& layout, TextView from, TextView to);

    bool holds(BytesView record) const;
    // Whether records between two that belong to it may not.
    bool hasGaps() const noexcept { return days_ || first_; }
    // The places of an order by these keys where such records can be: the first, and the last.
    struct Places {
        int32 first;
        int32 last;
    };
    template <class Order>
    Places placesIn(Order& order) const {
        return {from_ ? order.locate(*from_).position : 1,
                end_ ? order.locate(*end_).position - 1 : order.total()};
    }

 private:
    KeyRange(const IndexKeys& keys, const RecordLayout& layout) : keys_(&keys), layout_(&layout) {}
    bool takesDates() const;
    Text typed(TextView bound) const;
    void days(TextView from, TextView to);

    const IndexKeys* keys_;
    const RecordLayout* layout_;
    std::optional<SearchKey> from_, to_;
    std::optional<SearchKey> end_;  // not below any key that belongs to it
    // Keys by their first field alone, and `to` as such a one.
    std::optional<IndexKeys> first_;
    SearchKey whole_;
    struct Days {
        int32 from, to;
    };
    std::optional<Days> days_;
};

}  // namespace tsRtm
