#include "tsRtm/database/chains/ChainWrite.hpp"

#include <algorithm>

#include "tsRtm/database/files/RecordedFailure.hpp"

namespace tsRtm {
namespace {

constexpr int32 kMostAttempts = 3;

}  // namespace

void ChainWrite::prepare(BytesView /*stored*/, std::span<char> image) {
    const FieldLayout& field = store_.field();
    store_.openToWrite();
    store_.lock();
    store_.file().refresh();
    // The record may stay as it is: on a share, others have to hear of the rows, too.
    store_.parts().marks.touched();
    // These columns are as they stand in the file, blanks for a new record.
    const auto columns = image.subspan(field.offset, field.bytes);
    change(Bytes(columns.begin(), columns.end()), columns);
}

void ChainWrite::flush() {
    if (taken_.rows.empty()) return;
    const auto toDevice = [](platform::File& file) { must(file.flush(), file); };
    if (store_.memos()) store_.memos()->eachFile(toDevice);
    toDevice(store_.file().file());
}

void ChainWrite::finish() noexcept {
    try {
        auto& file = store_.file();
        if (behind_.row != 0) file.writePointer(behind_.row, behind_.offset, behind_.to);
        if (!store_.hasLeftover()) {
            store_.supply().free(surplus_);
            for (const auto& [field, block] : blocks_)
                if (store_.memos()) store_.memos()->drop(field, block);
        }
    } catch (const Failure& failure) {  // costs room: the chain stands
        recordFailure(failure);
    }
    end(true);
}

void ChainWrite::undo() noexcept {
    try {
        if (shown_.row != 0) store_.file().writePointer(shown_.row, shown_.offset, shown_.to);
        store_.supply().takeBack(taken_);
    } catch (const Failure& failure) {  // costs room
        recordFailure(failure);
    }
    end(false);
}

void ChainWrite::end(bool written) noexcept {
    if (store_.memos()) store_.memos()->ended(written);
    taken_ = {};
    shown_ = behind_ = {};
    surplus_.clear();
    blocks_.clear();
    store_.unlock();
}

bool ChainWrite::areOurs(BytesView rows) {
    if (!store_.parts().folder.shared) return true;
    if (!store_.supply().stands(taken_)) return false;
    const std::size_t length = store_.format().rowBytes();
    Bytes room;
    for (std::size_t i = 0; i < taken_.rows.size(); ++i)
        if (store_.file().row(taken_.rows[i], room) != rows.substr(i * length, length)) return false;
    return true;
}

void ChainWrite::writeNew(Bytes& rows, int32 before, int32 behind) {
    const ChainFormat& format = store_.format();
    const std::size_t length = format.rowBytes();
    for (int32 attempt = 0; attempt < kMostAttempts; ++attempt) {
        taken_ = {};
        taken_ = store_.supply().take(static_cast<int32>(rows.size() / length));
        const auto& numbers = taken_.rows;
        for (std::size_t i = 0; i < numbers.size(); ++i)
            format.pointers(i == 0 ? before : numbers[i - 1],
                            i + 1 == numbers.size() ? behind : numbers[i + 1],
                            std::span(rows).subspan(i * length, length));
        store_.file().write(numbers, rows);
        // An older program takes no lock here, and may have been given the same rows: theirs stay.
        if (areOurs(rows)) return;
    }
    taken_ = {};
    raise(numberOf(DatabaseError::locked), kFileFailureSource,
          u"Datei \"" + store_.path() + u"\" wird von anderen ohne Sperre geändert");
}

void ChainWrite::replace(const ChainContent& old, Bytes rows, std::span<char> columns) {
    blocks_ = settleBlocks(store_.rows(), store_.memos(), {}, old.bytes, rows);
    if (!rows.empty()) writeNew(rows, 0, 0);
    const auto& numbers = taken_.rows;
    store_.format().ends(numbers.empty() ? ChainEnds() : ChainEnds{numbers.front(), numbers.back()}, columns);
    surplus_ = old.rows;
}

bool ChainWrite::addBehind(int32 last, Bytes& rows, BytesView stay, std::span<char> columns) {
    const ChainFormat& format = store_.format();
    const bool durable = store_.parts().folder.durable;
    if (store_.file().tears(last, format.nextOffset(), durable)) return false;
    settleBlocks(store_.rows(), store_.memos(), stay, {}, rows);
    writeNew(rows, last, 0);
    // The rows before what shows them.
    if (durable) flush();
    Bytes room;
    const int32 before = format.next(store_.file().row(last, room));
    shown_ = {last, format.nextOffset(), before};
    store_.file().writePointer(last, format.nextOffset(), taken_.rows.front());
    const BytesView stored(columns.data(), columns.size());
    if (format.paired()) format.ends({format.ends(stored).first, taken_.rows.back()}, columns);
    return true;
}

void ChainWrite::addBefore(ChainEnds ends, Bytes row, BytesView stay, std::span<char> columns) {
    const ChainFormat& format = store_.format();
    settleBlocks(store_.rows(), store_.memos(), stay, {}, row);
    writeNew(row, 0, ends.first);
    if (format.paired()) behind_ = {ends.first, ChainFormat::kPreviousOffset, taken_.rows.front()};
    format.ends({taken_.rows.front(), ends.last}, columns);
}

void ReplaceChain::change(BytesView stored, std::span<char> columns) {
    exchange(store_.walk(stored), rows_, columns);
}

void ChainWrite::exchange(const ChainContent& old, const Bytes& rows, std::span<char> columns) {
    const std::size_t length = store_.format().rowBytes();
    std::size_t same = 0;
    const auto rowOf = [&](const Bytes& all) { return BytesView(all).substr(same * length, length); };
    while (same < old.rows.size() && same * length < rows.size() &&
           store_.rows().sameCells(rowOf(old.bytes), rowOf(rows)))
        ++same;
    const bool keepsAll = same == old.rows.size();
    Bytes rest = rows.substr(same * length);
    if (keepsAll && rest.empty()) return;
    if (keepsAll && same > 0 && addBehind(old.rows.back(), rest, old.bytes, columns)) return;
    replace(old, rows, columns);
}

void AddChainRow::change(BytesView stored, std::span<char> columns) {
    const ChainEnds ends = store_.format().ends(stored);
    Bytes room;
    if (!store_.file().has(ends.first, room)) return replace({}, row_, columns);
    // What the other rows have is asked only for rows that can have memos.
    const bool withBlocks = store_.rows().layout().namesPlaces();
    const Bytes stay = withBlocks ? store_.walk(stored).bytes : Bytes();
    if (place_ == Place::head) return addBefore(ends, row_, stay, columns);
    // A death may have left the field's last row before the real one.
    const int32 last = store_.lastFrom(store_.file().has(ends.last, room) ? ends.last : ends.first);
    Bytes row = row_;
    if (addBehind(last, row, stay, columns)) return;
    const ChainContent old = store_.walk(stored);
    replace(old, old.bytes + row_, columns);
}

}  // namespace tsRtm
