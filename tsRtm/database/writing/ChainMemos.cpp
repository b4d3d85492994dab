#include "tsRtm/database/writing/ChainMemos.hpp"

#include "tsRtm/database/files/RecordedFailure.hpp"

namespace tsRtm {
namespace {

MemoStores::Parts of(ChainStore& chain, MemoStores::Parts parts) {
    parts.owner = chain.control().Anker();
    // The rows name the texts, and the records the rows.
    parts.flushOwner = [&chain] {
        if (!chain.isOpen()) return;
        auto& file = chain.file().file();
        must(file.flush(), file);
    };
    parts.eachRow = [&chain](const auto& look) { chain.file().each(look); };
    return parts;
}

}  // namespace

ChainMemos::ChainMemos(ChainStore& chain, MemoStores::Parts parts) : stores_(of(chain, std::move(parts))) {
    stores_.define(chain.control());
}

void ChainMemos::write(int32 field, TextView text, std::span<char> row) {
    int32 block = 0;
    if (!text.empty()) {
        auto& file = stores_.open(field);
        const auto [head, content] = stores_.texts(field).encode(text);
        block = file.append(head, content);
        added(field, file);
        fresh_.insert({field, block});
    }
    stores_.setPointer(row, field, block);
}

int32 ChainMemos::copy(int32 field, int32 block) {
    auto& file = stores_.open(field);
    const int32 copied = stores_.copy(field, block, file);
    if (copied != 0) added(field, file);
    return copied;
}

void ChainMemos::added(int32 field, const MemoFile& file) {
    auto& run = runs_[field];
    const auto last = file.last();
    // What a program without locks has put between stays.
    if (run.behind != last.before) run.before = last.before;
    run.behind = last.behind;
}

void ChainMemos::drop(int32 field, int32 block) noexcept {
    try {
        stores_.release(field, block);
    } catch (const Failure& failure) {  // costs room
        recordFailure(failure);
    }
}

void ChainMemos::ended(bool written) noexcept {
    fresh_.clear();
    for (const auto& [field, run] : std::exchange(runs_, {})) try {
            if (!written) stores_.open(field).takeBack(run);
        } catch (const Failure& failure) {  // costs room
            recordFailure(failure);
        }
}

}  // namespace tsRtm
