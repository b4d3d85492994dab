#include "tsRtm/frame/files/SecureKill.hpp"

#include <algorithm>
#include <vector>

#include "tsRtm/frame/files/FolderLists.hpp"
#include "tsRtm/frame/files/NumberedFiles.hpp"
#include "tsRtm/frame/files/Paths.hpp"
#include "tsRtm/frame/files/SystemFailures.hpp"
#include "tsRtm/frame/files/Wildcards.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

namespace {

using platform::SystemError;

constexpr std::size_t wipeBlock = 64 * 1024;

std::vector<std::byte> alternatingBlock() {
    std::vector<std::byte> block(wipeBlock);
    for (std::size_t i = 0; i < block.size(); ++i) block[i] = std::byte(i % 2 == 0 ? 0x55 : 0xAA);
    return block;
}

// The whole length, and no byte more.
SystemError overwrite(platform::File& file, std::span<const std::byte> block) {
    const auto size = file.size();
    if (!size.ok()) return size.error();
    for (uint64 offset = 0; offset < size.value(); offset += block.size()) {
        const auto count = static_cast<std::size_t>(std::min<uint64>(block.size(), size.value() - offset));
        if (const auto error = file.writeAt(offset, block.first(count)); platform::failed(error))
            return error;
    }
    return file.flush();
}

bool killThis(NumberedFiles& numbered, TextView name) {
    using platform::Access, platform::Disposition, platform::Sharing;
    auto& files = rtmMain::system().files;
    const auto fail = [&](int32 number) {
        raise(number, u"clsRtm",
              u"SecureKillThis(" + Text(name) + u"): " + toText(number) + u" - " + failureText(number));
    };
    auto opened = files.open(name, {Access::readWrite, Sharing::none, Disposition::openExisting});
    SystemError error = SystemError::none;
    if (opened) {
        error = overwrite(**opened, std::vector<std::byte>(wipeBlock));
        opened->reset();
    } else if (!fileExists(name)) {
        return false;
    } else {
        // Others have it open: it is overwritten under their eyes, once the numbered family gets at it.
        int32 number = 0;
        numbered.OpenBinary(name, number);
        if (number == 0) fail(rtmMain::state().F);
        error = overwrite(numbered.file(number), alternatingBlock());
        numbered.TS_Close(number);
    }
    if (platform::failed(error)) fail(failureNumber(error));
    switch (error = files.remove(name); error) {
        case SystemError::none:
        case SystemError::fileNotFound:
            return true;
        case SystemError::accessDenied:
        case SystemError::sharingViolation:
        case SystemError::lockViolation:
            return false;
        default:
            fail(failureNumber(error));
            return false;
    }
}

}  // namespace

bool secureKill(NumberedFiles& numbered, TextView name) {
    if (!wildcards::contains(name)) return killThis(numbered, name);
    std::vector<Text> names;
    const Text folder = paths::folder(name);
    listFiles(folder.empty() ? TextView(u".") : TextView(folder), paths::last(name), names, 0,
              {.fullPath = true});
    bool any = false;
    for (const Text& match : names) any = killThis(numbered, match) || any;
    return any;
}

}  // namespace tsRtm
