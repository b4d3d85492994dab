#include "tsRtm/database/chains/ChainMerge.hpp"

#include <algorithm>
#include <utility>

#include "tsRtm/database/files/RecordedFailure.hpp"

namespace tsRtm {
namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);
// Above this many pairs only what begins or ends alike is taken as the same.
constexpr std::size_t kMostPairs = 4'000'000;

using RowViews = std::vector<BytesView>;

// For each row of `from` the same one in `to`, as many as keep their order.
std::vector<std::size_t> pairs(const RowViews& from, const RowViews& to) {
    std::vector<std::size_t> out(from.size(), kNone);
    std::size_t first = 0;
    std::size_t fromEnd = from.size(), toEnd = to.size();
    for (; first < std::min(fromEnd, toEnd) && from[first] == to[first]; ++first) out[first] = first;
    while (fromEnd > first && toEnd > first && from[fromEnd - 1] == to[toEnd - 1]) out[--fromEnd] = --toEnd;
    const std::size_t rows = fromEnd - first, columns = toEnd - first;
    if (rows == 0 || columns == 0 || rows * columns > kMostPairs) return out;
    // The longest common sequence of what lies between.
    std::vector<uint32> length((rows + 1) * (columns + 1), 0);
    const auto at = [&](std::size_t i, std::size_t j) -> uint32& { return length[i * (columns + 1) + j]; };
    for (std::size_t i = rows; i-- > 0;)
        for (std::size_t j = columns; j-- > 0;)
            at(i, j) = from[first + i] == to[first + j] ? at(i + 1, j + 1) + 1
                                                        : std::max(at(i + 1, j), at(i, j + 1));
    for (std::size_t i = 0, j = 0; i < rows && j < columns;) {
        if (from[first + i] == to[first + j])
            out[first + i++] = first + j++;
        else if (at(i + 1, j) >= at(i, j + 1))
            ++i;
        else
            ++j;
    }
    return out;
}

RowViews bases(const ChainRowList& rows) {
    RowViews out;
    for (const auto& row : rows) out.push_back(row->moved ? BytesView() : BytesView(row->base));
    return out;
}

bool contains(const ChainRowList& list, const std::shared_ptr<ChainRow>& row) {
    return std::find(list.begin(), list.end(), row) != list.end();
}

}  // namespace

bool ChainRowSet::changed() const {
    return list_ != base_ ||
           std::any_of(list_.begin(), list_.end(), [](const auto& row) { return row->changed(); });
}

RowViews ChainRowSet::split(BytesView rows) const {
    const std::size_t length = rows_.layout().bytes();
    RowViews out;
    for (; !rows.empty(); rows.remove_prefix(length)) out.push_back(rows.substr(0, length));
    return out;
}

void ChainRowSet::load(const ChainContent& content) {
    const Bytes clean = rows_.withoutPointers(content.bytes);
    const RowViews stored = split(clean);
    ChainRowList list(stored.size());
    const auto same = pairs(bases(base_), stored);
    for (std::size_t i = 0; i < same.size(); ++i)
        if (same[i] != kNone) list[same[i]] = base_[i];
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (!list[i]) list[i] = std::make_shared<ChainRow>(Bytes(stored[i]));
        list[i]->bytes = list[i]->base;
        list[i]->texts.clear();
    }
    base_ = list_ = std::move(list);
}

std::shared_ptr<ChainRow> ChainRowSet::add(bool inFront) {
    auto row = std::make_shared<ChainRow>(
        rows_.layout().blank(), inFront ? ChainRow::From::addedInFront : ChainRow::From::addedBehind);
    list_.insert(inFront ? list_.begin() : list_.end(), row);
    return row;
}

void ChainRowSet::assign(ChainRow& row, std::vector<Text> cells) const {
    row.texts.clear();
    for (int32 field = 1; field <= rows_.fields(); ++field) {
        const auto cell = static_cast<std::size_t>(field - 1);
        if (!rows_.layout().field(field).pointer) continue;
        row.texts[field] = cell < cells.size() ? std::exchange(cells[cell], {}) : Text();
    }
    row.bytes = rows_.encode(cells);
}

void ChainRowSet::remove(int32 place) { list_.erase(list_.begin() + (place - 1)); }

void ChainRowSet::textsMoved() {
    const auto& layout = rows_.layout();
    for (const auto* list : {&base_, &list_})
        for (const auto& row : *list)
            for (int32 field = 1; field <= layout.fields(); ++field)
                if (layout.field(field).pointer &&
                    layout.bytesOf(layout.field(field), row->base).find_first_not_of({" \0", 2}) !=
                        BytesView::npos)
                    row->moved = true;
}

std::optional<ChainRowSet::Merged> ChainRowSet::merge(BytesView stored, const ChainRow* only) const {
    using From = ChainRow::From;
    const auto counts = [&](const std::shared_ptr<ChainRow>& row) { return !only || row.get() == only; };
    const RowViews theirs = split(stored);
    const auto same = pairs(bases(base_), theirs);
    // What stands for each row of the file here, and what nothing there stands for.
    ChainRowList mine(theirs.size());
    ChainRowList lost;
    const auto missing = [&](const std::shared_ptr<ChainRow>& row) {
        if (row->changed()) lost.push_back(row);
        return row->changed() && counts(row);
    };
    for (const auto& row : list_)
        if (row->from == From::file && !contains(base_, row) && missing(row)) return std::nullopt;
    for (std::size_t i = 0; i < base_.size(); ++i) {
        if (same[i] != kNone)
            mine[same[i]] = base_[i];
        else if (contains(list_, base_[i]) ? missing(base_[i]) : !only)
            return std::nullopt;
    }
    Merged out;
    const auto aside = [&](From from) {
        for (const auto& row : list_)
            if (row->from == from && !counts(row)) out.list.push_back(row);
    };
    const auto added = [&](From from) {
        for (const auto& row : list_) {
            if (row->from != from || !counts(row)) continue;
            out.stored += row->bytes;
            out.base.push_back(row);
            out.list.push_back(row);
        }
    };
    aside(From::addedInFront);
    added(From::addedInFront);
    for (std::size_t i = 0; i < theirs.size(); ++i) {
        auto row = mine[i] ? mine[i] : std::make_shared<ChainRow>(Bytes(theirs[i]));
        const bool removed = mine[i] && !contains(list_, row);
        if (removed && !only) continue;
        out.stored += counts(row) ? BytesView(row->bytes) : theirs[i];
        out.base.push_back(row);
        if (!removed) out.list.push_back(row);
    }
    added(From::addedBehind);
    aside(From::addedBehind);
    out.list.insert(out.list.end(), lost.begin(), lost.end());
    return out;
}

std::optional<std::size_t> ChainRowSet::placeIn(BytesView stored, const ChainRow& row) const {
    if (row.moved) return std::nullopt;
    const RowViews theirs = split(stored);
    const auto same = std::find(theirs.begin(), theirs.end(), BytesView(row.base));
    if (same != theirs.end()) return static_cast<std::size_t>(same - theirs.begin());
    const auto& layout = rows_.layout();
    const auto isAlike = [&](BytesView each) {
        for (int32 field = 1; field <= layout.fields(); ++field) {
            const auto& columns = layout.field(field);
            if (!columns.pointer && layout.bytesOf(columns, each) != layout.bytesOf(columns, row.base))
                return false;
        }
        return true;
    };
    const auto alike = std::find_if(theirs.begin(), theirs.end(), isAlike);
    if (alike == theirs.end() || std::find_if(alike + 1, theirs.end(), isAlike) != theirs.end())
        return std::nullopt;
    return static_cast<std::size_t>(alike - theirs.begin());
}

void ChainRowSet::settle(Merged merged) {
    const RowViews stored = split(merged.stored);
    for (std::size_t i = 0; i < stored.size(); ++i) {
        merged.base[i]->base = stored[i];
        merged.base[i]->from = ChainRow::From::file;
    }
    for (const std::size_t i : merged.written) {
        merged.base[i]->bytes = stored[i];
        merged.base[i]->texts.clear();
    }
    base_ = std::move(merged.base);
    list_ = std::move(merged.list);
}

void MergeChain::change(BytesView stored, std::span<char> columns) {
    const ChainContent old = store_.walk(stored);
    merged_ = rows_.merge(rows_.rows().withoutPointers(old.bytes), only_);
    if (!merged_)
        raise(numberOf(DatabaseError::locked), kFileFailureSource,
              u"Eine Zeile der Kette \"" + store_.path() + u"\" wurde von jemand anderem geändert");
    writeTexts();
    exchange(old, merged_->stored, columns);
}

void MergeChain::writeTexts() {
    const std::size_t length = rows_.rows().layout().bytes();
    for (std::size_t i = 0; i < merged_->base.size(); ++i) {
        const ChainRow& row = *merged_->base[i];
        if (row.texts.empty() || (only_ && &row != only_)) continue;
        for (const auto& [field, text] : row.texts)
            store_.memos()->write(field, text, std::span(merged_->stored).subspan(i * length, length));
        merged_->written.push_back(i);
    }
}

}  // namespace tsRtm
