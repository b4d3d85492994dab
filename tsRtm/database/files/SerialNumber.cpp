#include "tsRtm/database/files/SerialNumber.hpp"

#include "tsRtm/database/files/LockWait.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr int64 kLockPosition = 1;
constexpr platform::ByteRange pendingLock(int32 value) noexcept {
    return {(uint64{1} << 40) + static_cast<uint32>(value), 1};
}

}  // namespace

template <class Work>
auto SerialNumber::locked(Work work) {
    if (lockWithWait(*messages_, bytes_.file(), {kLockPosition, 0, true}) != 0)
        raise(70, u"clsTSDB", u"Autowert.tsd ist gesperrt");
    struct Unlock {
        platform::File& file;
        ~Unlock() { static_cast<void>(file.unlock({kLockPosition - 1, 1})); }
    } unlock{bytes_.file()};
    // On a share the number is the server's, before and after.
    const bool remote = bytes_.file().remote();
    const auto renewed = bytes_.file().refresh(platform::RefreshAs::soleWriter);
    if (platform::failed(renewed)) raiseFileFailure(renewed, bytes_.file().name());
    const auto result = work();
    if (remote && platform::failed(bytes_.file().flush()))
        raise(57, u"clsTSDB", u"Autowert.tsd kann nicht geschrieben werden");
    return result;
}

int32 SerialNumber::last() {
    unsigned char bytes[4] = {};
    bytes_.read(0, {reinterpret_cast<char*>(bytes), sizeof bytes});
    return static_cast<int32>(uint32{bytes[0]} | uint32{bytes[1]} << 8 | uint32{bytes[2]} << 16 |
                              uint32{bytes[3]} << 24);
}

void SerialNumber::store(int32 value) {
    const auto bits = static_cast<uint32>(value);
    const char bytes[4] = {static_cast<char>(bits), static_cast<char>(bits >> 8),
                           static_cast<char>(bits >> 16), static_cast<char>(bits >> 24)};
    bytes_.write(0, {bytes, sizeof bytes});
}

void SerialNumber::initialise(const std::function<int32()>& greatest) {
    if (bytes_.refreshSize() != 0) return;
    locked([&] {
        if (bytes_.refreshSize() == 0) store(greatest());
        return 0;
    });
}

int32 SerialNumber::next(int32 greatest) {
    return locked([&] {
        const int64 value = int64{last()} + 1;
        if (value < 1 || value > greatest) return 0;
        store(static_cast<int32>(value));
        // Nobody else can hold it; without it the number is a number like any other.
        static_cast<void>(bytes_.file().tryLock(pendingLock(static_cast<int32>(value))));
        return static_cast<int32>(value);
    });
}

void SerialNumber::atLeast(int32 value) {
    locked([&] {
        if (last() < value) store(value);
        return 0;
    });
}

void SerialNumber::settled(int32 value) noexcept {
    static_cast<void>(bytes_.file().unlock(pendingLock(value)));
}

bool SerialNumber::take(int32 value) {
    return locked([&] {
        if (platform::failed(bytes_.file().tryLock(pendingLock(value)))) return false;
        settled(value);
        if (last() < value) store(value);
        return true;
    });
}

void SerialNumber::giveUp(int32 value) {
    locked([&] {
        if (last() == value) store(value - 1);
        // Who draws it next finds it free; before that, a record without a number must not take it.
        settled(value);
        return 0;
    });
}

}  // namespace tsRtm
