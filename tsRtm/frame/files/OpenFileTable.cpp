#include "tsRtm/frame/files/OpenFileTable.hpp"

#include <algorithm>

namespace tsRtm {

namespace {
std::size_t slot(int32 number) { return static_cast<std::size_t>(number) - 1; }
}  // namespace

int32 OpenFileTable::take() {
    const auto free =
        std::find_if(entries_.begin(), entries_.end(), [](const Entry& entry) { return !entry.taken; });
    const auto number = static_cast<int32>(free - entries_.begin()) + 1;
    if (number > highest) return 0;
    if (free == entries_.end()) entries_.emplace_back();
    entries_[slot(number)].taken = true;
    return number;
}

void OpenFileTable::release(int32 number) noexcept {
    if (number >= 1 && slot(number) < entries_.size()) entries_[slot(number)] = Entry{};
}

void OpenFileTable::enter(NumberedFile opened) {
    Entry& entry = entries_.at(slot(opened.number));
    entry.opened = std::make_unique<NumberedFile>(std::move(opened));
}

NumberedFile* OpenFileTable::find(int32 number) noexcept {
    if (number < 1 || slot(number) >= entries_.size()) return nullptr;
    return entries_[slot(number)].opened.get();
}

}  // namespace tsRtm
