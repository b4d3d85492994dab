#pragma once
// A hash that takes its bytes piece by piece.
#include <cstddef>
#include <vector>

#include "tsRtm/types/CryptTypes.hpp"
#include "tsRtm/types/Text.hpp"

struct nettle_hash;

namespace tsRtm {

class Hasher {
 public:
    static bool knows(HashType type) noexcept;

    // Only for a type that it knows.
    explicit Hasher(HashType type);

    void add(BytesView bytes);
    // The hash value of all bytes so far; begins anew.
    Bytes value();

 private:
    const nettle_hash& algorithm_;
    std::vector<std::max_align_t> context_;
};

}  // namespace tsRtm
