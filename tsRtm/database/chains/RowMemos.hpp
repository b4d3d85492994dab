#pragma once
// Memos and blobs that belong to the rows of a chain: what a write of rows asks of their stores.
#include <functional>

#include "tsRtm/database/chains/ChainRows.hpp"
#include "tsRtm/platform/File.hpp"

namespace tsRtm {

// The stores of one chain's memos and blobs. Fields are those of the chain. Under the locks of the chain.
class RowMemos {
 public:
    virtual ~RowMemos() = default;
    // A text for a row of this very write; its place is put into the row, none for an empty text.
    virtual void write(int32 field, TextView text, std::span<char> row) = 0;
    // Written for a row of this very write: nobody points to it yet.
    virtual bool isFresh(int32 field, int32 block) const = 0;
    // The content of a block once more, for a second row; 0 where it has none.
    virtual int32 copy(int32 field, int32 block) = 0;
    // No row has the block any more, and the chain without it stands.
    virtual void drop(int32 field, int32 block) noexcept = 0;
    // The write has ended: as told, or without effect, and then what copy made is taken back.
    virtual void ended(bool written) noexcept = 0;

    virtual void eachFile(const std::function<void(platform::File&)>& work) = 0;
    virtual void close() noexcept = 0;
};

// One block in one field of a chain.
struct RowBlock {
    int32 field = 0;
    int32 block = 0;
    auto operator<=>(const RowBlock&) const = default;
};

// Each block has one owner. Makes that so for rows that are about to be written behind rows that stay and in
// the place of rows that go: a block of a new row counts only where the chain had it and no other row has it
// now; a second one gets a copy, one that the chain never had gives way to none. `memos` nullptr: a second
// one gives way, too. All rows one behind the other; the result is the blocks that no row has any more.
std::vector<RowBlock> settleBlocks(const ChainRows& rows, RowMemos* memos, BytesView stay, BytesView go,
                                   std::span<char> fresh);

}  // namespace tsRtm
