#pragma once
// The keys of one index, made from records where they lie: an index file holds record numbers and no key.
//
// The key of a record is the texts of up to three fields, joined by one blank; an empty text counts as one
// blank, and a date field takes its sortable form. Keys order by the text order of the library (records in
// the DOS code page: by the order of that code page), equal keys by the record number. Two keys are the same
// only when their texts agree exactly, though the order ignores case.
#include <array>
#include <compare>
#include <variant>

#include "tsRtm/database/index/KeyWord.hpp"
#include "tsRtm/database/records/RecordLayout.hpp"
#include "tsRtm/frame/text/TextOrder.hpp"

namespace tsRtm {

// A key prepared for many comparisons. A value.
class SearchKey {
 public:
    // The key's text in the code of the records (UTF-16 in bytes for a Unicode index).
    const Bytes& bytes() const noexcept {
        const auto* ansi = std::get_if<AnsiSearchKey>(&prepared_);
        return ansi ? ansi->text() : bytes_;
    }
    // Compares with the sort keys of records by its bytes.
    const Bytes& sortKey() const;

 private:
    friend class IndexKeys;
    Bytes bytes_;  // but for an AnsiSearchKey, which has its text: then only room
    std::variant<std::monostate, AnsiSearchKey, DosSearchKey, Bytes> prepared_;
};

// Knows the layout by reference; not thread-safe (it keeps room between calls).
class IndexKeys {
 public:
    // Field numbers of the index; the first 0 ends them.
    IndexKeys(const RecordLayout& layout, std::array<int32, 3> fields);

    int32 primary() const noexcept { return fields_[0]; }
    int32 count() const noexcept { return count_; }
    // Bytes of a record by which all of its key comes near in memory.
    std::span<const uint32> touched() const noexcept { return touched_; }
    int32 field(int32 component) const noexcept { return fields_[static_cast<std::size_t>(component)]; }

    // A key typed by a caller.
    void search(TextView key, SearchKey& into) const;
    SearchKey search(TextView key) const {
        SearchKey out;
        search(key, out);
        return out;
    }
    // The key of a record; `into` keeps its room from key to key.
    void searchFor(BytesView record, SearchKey& into) const;
    SearchKey searchFor(BytesView record) const {
        SearchKey key;
        searchFor(record, key);
        return key;
    }
    // The search key against the key of a record.
    std::strong_ordering compare(const SearchKey& key, BytesView record) const;
    // The same, then the record numbers.
    std::strong_ordering compare(const SearchKey& key, int32 number, BytesView record,
                                 int32 recordNumber) const {
        const auto order = compare(key, record);
        return order != 0 ? order : number <=> recordNumber;
    }
    // The search key against the key of a record, and whether the texts agree to the byte.
    struct Match {
        std::strong_ordering order;
        bool exact;
    };
    Match match(const SearchKey& key, BytesView record) const;
    // Whether the texts agree to the byte.
    bool same(const SearchKey& key, BytesView record) const;
    // Bytes that compare as the keys do.
    void appendSortKey(Bytes& into, BytesView record) const;
    // Keys can have characters outside the 8-bit code pages.
    bool isWide() const noexcept { return order_ == Order::text; }
    // The first bytes of the sort key, `most` of them.
    void start(BytesView record, std::size_t most, KeyStart& into) const;
    void start(const SearchKey& key, KeyStart& into) const;
    // A key as text, for messages.
    Text text(BytesView record) const;
    Text text(const SearchKey& key) const;
    // Whether one of the index's fields differs between two records.
    bool differs(BytesView a, BytesView b) const;

 private:
    enum class Order { ansi, dos, text };
    struct KeyPieces {
        std::array<BytesView, 3> piece;
        std::size_t count = 0;
        std::span<const BytesView> all() const noexcept { return {piece.data(), count}; }
    };

    static std::strong_ordering compare(const SearchKey& key, const KeyPieces& record);
    static bool same(const SearchKey& key, const KeyPieces& record);
    KeyPieces pieces(BytesView record) const;
    BytesView piece(std::size_t component, BytesView record) const;
    BytesView sortableDate(std::size_t component, BytesView digits) const;
    Text fieldText(const FieldLayout& field, BytesView record) const;
    Text joined(BytesView record) const;
    void prepare(Pieces text, SearchKey& into) const;
    void prepare(TextView text, SearchKey& into) const;

    const RecordLayout* layout_;
    std::array<int32, 3> fields_;
    int32 count_ = 0;
    std::vector<uint32> touched_;
    Order order_ = Order::ansi;
    mutable std::array<Bytes, 3> room_;
    mutable Text decoded_;
    mutable Bytes sortKey_;
};

}  // namespace tsRtm
