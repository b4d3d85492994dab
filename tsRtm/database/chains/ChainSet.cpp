#include "tsRtm/database/chains/ChainSet.hpp"

namespace tsRtm {

void ChainSet::define(std::shared_ptr<clsControl> control, const RecordLayout& layout) {
    clear();
    control_ = std::move(control);
    layout_ = &layout;
}

void ChainSet::clear() noexcept {
    stores_.clear();
    control_.reset();
}

std::vector<int32> ChainSet::fields() const { return control_ ? control_->chains() : std::vector<int32>(); }

ChainStore* ChainSet::find(int32 field) {
    if (const auto known = stores_.find(field); known != stores_.end()) return known->second.get();
    auto rows = control_ && layout_->has(field) ? control_->Kette(field) : nullptr;
    if (!rows) return nullptr;
    auto store = std::make_unique<ChainStore>(parts_, layout_->field(field), std::move(rows));
    return stores_.emplace(field, std::move(store)).first->second.get();
}

void ChainSet::eachFile(const std::function<void(platform::File&)>& work) {
    for (const auto& [field, store] : stores_)
        if (store->isOpen()) {
            work(store->file().file());
            if (store->memos()) store->memos()->eachFile(work);
        }
}

void ChainSet::closeAll() noexcept {
    for (const auto& [field, store] : stores_) store->close();
}

}  // namespace tsRtm
