#pragma once
// The memos and blobs of the rows of one chain: Memo-ooo.fff, where ooo is the chain's field.
#include <map>
#include <set>

#include "tsRtm/database/chains/ChainStore.hpp"
#include "tsRtm/database/memos/MemoStores.hpp"

namespace tsRtm {

// Knows the chain and the parts of the database by reference. Not thread-safe. Failures raise as
// raiseFileFailure tells, and those of MemoText.
class ChainMemos final : public RowMemos {
 public:
    explicit ChainMemos(ChainStore& chain, MemoStores::Parts parts);

    MemoStores& stores() noexcept { return stores_; }

    void write(int32 field, TextView text, std::span<char> row) override;
    bool isFresh(int32 field, int32 block) const override { return fresh_.contains({field, block}); }
    int32 copy(int32 field, int32 block) override;
    void drop(int32 field, int32 block) noexcept override;
    void ended(bool written) noexcept override;
    void eachFile(const std::function<void(platform::File&)>& work) override { stores_.eachFile(work); }
    void close() noexcept override { stores_.close(); }

 private:
    void added(int32 field, const MemoFile& file);

    MemoStores stores_;
    std::set<RowBlock> fresh_;             // of the write under way
    std::map<int32, MemoFile::Run> runs_;  // by field: what it appended
};

}  // namespace tsRtm
