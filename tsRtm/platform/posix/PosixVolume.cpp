#include "tsRtm/platform/posix/PosixVolume.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>

#include "tsRtm/platform/posix/PosixHandle.hpp"

namespace tsRtm::platform::posix {
namespace {

struct KnownVolume {
    uint32 magic;
    const char16_t* name;
    DriveKind kind;
};

constexpr uint32 kUserSpace = 0x65735546;

// The numbers of statfs(2). A user-space file system may stand for anything, so it counts as remote.
// clang-format off
constexpr KnownVolume kVolumes[] = {
    {0x0000EF53, u"ext4",     DriveKind::fixed},
    {0x58465342, u"xfs",      DriveKind::fixed},
    {0x9123683E, u"btrfs",    DriveKind::fixed},
    {0x2FC12FC1, u"zfs",      DriveKind::fixed},
    {0xF2F52010, u"f2fs",     DriveKind::fixed},
    {0xCA451A4E, u"bcachefs", DriveKind::fixed},
    {0x52654973, u"reiserfs", DriveKind::fixed},
    {0x3153464A, u"jfs",      DriveKind::fixed},
    {0x794C7630, u"overlay",  DriveKind::fixed},
    {0x00004D44, u"vfat",     DriveKind::fixed},
    {0x2011BAB0, u"exfat",    DriveKind::fixed},
    {0x7366746E, u"ntfs3",    DriveKind::fixed},
    {0x73717368, u"squashfs", DriveKind::fixed},
    {0x01021994, u"tmpfs",    DriveKind::ramDisk},
    {0x858458F6, u"ramfs",    DriveKind::ramDisk},
    {0x00009660, u"iso9660",  DriveKind::cdRom},
    {0x15013346, u"udf",      DriveKind::cdRom},
    {0x00006969, u"nfs",      DriveKind::remote},
    {0x0000517B, u"smbfs",    DriveKind::remote},
    {0xFF534D42, u"cifs",     DriveKind::remote},
    {0xFE534D42, u"smb2",     DriveKind::remote},
    {0x01021997, u"9p",       DriveKind::remote},
    {kUserSpace, u"fuse",     DriveKind::remote},
    {0x00C36400, u"ceph",     DriveKind::remote},
    {0x5346414F, u"afs",      DriveKind::remote},
    {0x6B414653, u"kafs",     DriveKind::remote},
    {0x73757245, u"coda",     DriveKind::remote},
    {0x01161970, u"gfs2",     DriveKind::remote},
    {0x7461636F, u"ocfs2",    DriveKind::remote},
    {0x0BD00BD0, u"lustre",   DriveKind::remote},
    {0x786F4256, u"vboxsf",   DriveKind::remote},
};
// clang-format on

// The kernel keeps the flag with the whole disk; a partition lies one folder below it.
bool removableDisk(dev_t device) {
    const std::string base =
        "/sys/dev/block/" + std::to_string(::major(device)) + ':' + std::to_string(::minor(device));
    for (const auto* place : {"/removable", "/../removable"}) {
        const Handle flag(::open((base + place).c_str(), O_RDONLY | O_CLOEXEC));
        char digit = '0';
        if (flag && ::read(flag.get(), &digit, 1) == 1) return digit == '1';
    }
    return false;
}

const KnownVolume* knownVolume(const struct statfs& system) noexcept {
    const auto magic = static_cast<uint32>(system.f_type);
    const auto* known = std::find_if(std::begin(kVolumes), std::end(kVolumes),
                                     [magic](const KnownVolume& row) { return row.magic == magic; });
    return known == std::end(kVolumes) ? nullptr : known;
}

Volume describe(const struct statfs& system, const struct stat* status) {
    Volume volume;
    volume.maxComponent = static_cast<int32>(system.f_namelen);
    const auto* known = knownVolume(system);
    if (!known) {
        volume.fileSystem = toHexadecimal(static_cast<uint32>(system.f_type));
        return volume;
    }
    volume.fileSystem = known->name;
    volume.kind = known->kind;
    if (volume.kind == DriveKind::fixed && status && removableDisk(status->st_dev))
        volume.kind = DriveKind::removable;
    return volume;
}

}  // namespace

Volume volumeOf(int descriptor) {
    struct statfs system {};
    struct stat status {};
    if (::fstatfs(descriptor, &system) != 0) return {};
    return describe(system, ::fstat(descriptor, &status) == 0 ? &status : nullptr);
}

Volume volumeOf(const std::string& path) {
    struct statfs system {};
    struct stat status {};
    if (::statfs(path.c_str(), &system) != 0) return {};
    return describe(system, ::stat(path.c_str(), &status) == 0 ? &status : nullptr);
}

ServedBy servedBy(int descriptor) noexcept {
    struct statfs system {};
    if (::fstatfs(descriptor, &system) != 0) return ServedBy::elsewhere;
    if (static_cast<uint32>(system.f_type) == kUserSpace) return ServedBy::program;
    const auto* known = knownVolume(system);
    return !known || known->kind == DriveKind::remote ? ServedBy::elsewhere : ServedBy::thisMachine;
}

}  // namespace tsRtm::platform::posix
