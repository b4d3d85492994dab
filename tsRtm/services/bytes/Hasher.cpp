#include "tsRtm/services/bytes/Hasher.hpp"

#include <nettle/nettle-meta.h>

namespace tsRtm {
namespace {

const nettle_hash* algorithmOf(HashType type) noexcept {
    switch (type) {
        case CALG_MD2:
            return &nettle_md2;
        case CALG_MD4:
            return &nettle_md4;
        case CALG_MD5:
            return &nettle_md5;
        case CALG_SHA:
            return &nettle_sha1;
        case CALG_SHA256:
            return &nettle_sha256;
        case CALG_SHA384:
            return &nettle_sha384;
        case CALG_SHA512:
            return &nettle_sha512;
    }
    return nullptr;
}

}  // namespace

bool Hasher::knows(HashType type) noexcept { return algorithmOf(type) != nullptr; }

Hasher::Hasher(HashType type)
    : algorithm_(*algorithmOf(type)), context_(algorithm_.context_size / sizeof(std::max_align_t) + 1) {
    algorithm_.init(context_.data());
}

void Hasher::add(BytesView bytes) {
    algorithm_.update(context_.data(), bytes.size(), reinterpret_cast<const uint8*>(bytes.data()));
}

Bytes Hasher::value() {
    Bytes value(algorithm_.digest_size, '\0');
    algorithm_.digest(context_.data(), value.size(), reinterpret_cast<uint8*>(value.data()));
    return value;
}

}  // namespace tsRtm
