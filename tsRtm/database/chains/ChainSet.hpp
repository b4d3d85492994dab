#pragma once
// All chains of an open database, by the field they belong to.
#include <map>

#include "tsRtm/database/chains/ChainStore.hpp"

namespace tsRtm {

// Stores come at first use and stay. Not thread-safe.
class ChainSet {
 public:
    explicit ChainSet(ChainParts parts) : parts_(std::move(parts)) {}

    // The chains that the control file names.
    void define(std::shared_ptr<clsControl> control, const RecordLayout& layout);
    void clear() noexcept;
    const ChainParts& parts() const noexcept { return parts_; }

    // Numbers of the fields that have chains, in their order.
    std::vector<int32> fields() const;
    // nullptr where the field is no chain, or its control is missing or has no fields.
    ChainStore* find(int32 field);
    void eachFile(const std::function<void(platform::File&)>& work);
    void closeAll() noexcept;

 private:
    ChainParts parts_;
    std::shared_ptr<clsControl> control_;
    const RecordLayout* layout_ = nullptr;
    std::map<int32, std::unique_ptr<ChainStore>> stores_;
};

}  // namespace tsRtm
