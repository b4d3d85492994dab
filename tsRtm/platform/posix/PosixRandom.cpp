#include "tsRtm/platform/posix/PosixRandom.hpp"

#include <sys/random.h>

#include <cerrno>

#include "tsRtm/platform/posix/PosixErrors.hpp"

namespace tsRtm::platform::posix {

SystemError PosixRandom::check() {
    std::byte one{};
    return fill({&one, 1});
}

SystemError PosixRandom::fill(std::span<std::byte> into) {
    while (!into.empty()) {
        // May give fewer than asked for: a signal ends a long call early.
        const auto count = ::getrandom(into.data(), into.size(), 0);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return lastError();
        into = into.subspan(static_cast<std::size_t>(count));
    }
    return SystemError::none;
}

}  // namespace tsRtm::platform::posix
