#pragma once
// Binary content of a record's blob field.
#include <utility>
#include <vector>

#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

// One byte array; its data lie in a memo store.
class clsBlob {
 public:
    clsBlob() = default;
    explicit clsBlob(std::vector<uint8> Bytes) : bytes_(std::move(Bytes)) {}
    const std::vector<uint8>& Bytes() const noexcept { return bytes_; }
    void Bytes(std::vector<uint8> value) { bytes_ = std::move(value); }

 private:
    std::vector<uint8> bytes_;
};

}  // namespace tsRtm
