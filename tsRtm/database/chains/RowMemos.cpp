#include "tsRtm/database/chains/RowMemos.hpp"

#include <algorithm>
#include <set>

#include "tsRtm/frame/text/NumberCode.hpp"

namespace tsRtm {
namespace {

// Calls work(field number, field, offset of its columns) for each block's columns of the rows.
template <class Work>
void eachBlock(const RecordLayout& layout, std::size_t bytes, Work work) {
    for (int32 number = 1; number <= layout.fields(); ++number) {
        const auto& field = layout.field(number);
        if (!field.pointer) continue;
        for (std::size_t row = 0; row + layout.bytes() <= bytes; row += layout.bytes())
            work(number, field, row + field.offset);
    }
}

int32 blockIn(const RecordLayout& layout, const FieldLayout& field, BytesView columns) {
    Text text;
    layout.decode(field, columns, RecordLayout::Decode::value, text);
    return std::max(rtmMain::DecodeNumber(text), 0);
}

std::set<RowBlock> blocksOf(const RecordLayout& layout, BytesView rows) {
    std::set<RowBlock> out;
    eachBlock(layout, rows.size(), [&](int32 number, const FieldLayout& field, std::size_t at) {
        if (const int32 block = blockIn(layout, field, rows.substr(at, field.bytes)); block != 0)
            out.insert({number, block});
    });
    return out;
}

}  // namespace

std::vector<RowBlock> settleBlocks(const ChainRows& rows, RowMemos* memos, BytesView stay, BytesView go,
                                   std::span<char> fresh) {
    const RecordLayout& layout = rows.layout();
    if (!layout.namesPlaces()) return {};
    const auto taken = blocksOf(layout, stay);
    auto left = blocksOf(layout, go);
    std::set<RowBlock> used;
    eachBlock(layout, fresh.size(), [&](int32 number, const FieldLayout& field, std::size_t at) {
        const auto columns = fresh.subspan(at, field.bytes);
        const RowBlock wanted{number, blockIn(layout, field, {columns.data(), columns.size()})};
        if (wanted.block == 0) return;
        if (left.erase(wanted) != 0 ||
            (memos && memos->isFresh(wanted.field, wanted.block) && !used.contains(wanted))) {
            used.insert(wanted);
            return;
        }
        const bool second = taken.contains(wanted) || used.contains(wanted);
        const int32 copy = second && memos ? memos->copy(wanted.field, wanted.block) : 0;
        layout.encode(field, copy == 0 ? Text() : rtmMain::EncodeNumber(copy), columns);
    });
    return {left.begin(), left.end()};
}

}  // namespace tsRtm
