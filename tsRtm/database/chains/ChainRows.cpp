#include "tsRtm/database/chains/ChainRows.hpp"

namespace tsRtm {

Bytes ChainRows::encode(std::span<const Text> cells) const {
    Bytes row = layout_.blank();
    for (int32 number = 1; number <= fields(); ++number) {
        const auto cell = static_cast<std::size_t>(number - 1);
        if (cell >= cells.size()) break;
        const auto& field = layout_.field(number);
        layout_.encode(field, cells[cell], std::span(row).subspan(field.offset, field.bytes));
    }
    return row;
}

Bytes ChainRows::encode(const std::vector<std::vector<Text>>& rows) const {
    Bytes out;
    for (const auto& cells : rows) out += encode(std::span<const Text>(cells));
    return out;
}

void ChainRows::decode(BytesView row, std::vector<Text>& cells) const {
    cells.resize(static_cast<std::size_t>(fields()));
    Text text;
    for (int32 number = 1; number <= fields(); ++number) {
        const auto& field = layout_.field(number);
        layout_.decode(field, layout_.bytesOf(field, row), RecordLayout::Decode::value, text);
        cells[static_cast<std::size_t>(number - 1)] = trim(text);
    }
}

Bytes ChainRows::withoutPointers(BytesView rows) const {
    Bytes out(rows);
    const std::size_t pointers = fields() > 0 ? layout_.field(1).offset : layout_.bytes();
    for (std::size_t at = 0; at + layout_.bytes() <= out.size(); at += layout_.bytes())
        out.replace(at, pointers, layout_.blank(), 0, pointers);
    return out;
}

bool ChainRows::sameCells(BytesView a, BytesView b) const {
    decode(a, one_);
    decode(b, other_);
    return one_ == other_;
}

}  // namespace tsRtm
