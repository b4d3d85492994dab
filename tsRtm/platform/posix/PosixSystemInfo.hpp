#pragma once
// The machine, the user and the folders of this ground.
#include "tsRtm/platform/Screen.hpp"
#include "tsRtm/platform/SystemInfo.hpp"
#include "tsRtm/platform/UserInfo.hpp"

namespace tsRtm::platform::posix {

// The screen keeps its defaults: a desktop that has one brings a ground of its own.
class PosixSystemInfo final : public SystemInfo, public UserInfo, public Screen {
 public:
    OsVersion osVersion() override;
    Processor processor() override;
    bool is64Bit() override;
    bool isUserAdmin() override;
    int32 elevationType() override;
    bool isRemoteSession() override;
    Text hostPath() override;
    VolumeInfo volumeInfo(TextView root) override;
    ScreenMetrics metrics() override { return {}; }
    PixelArea workAreaOf(int32) override { return {}; }
    Text folder(FolderId id, bool create) override;
    Text tempFolder() override;
    bool checkAccess(TextView path, int32 mask) override;
    Text userName() override;
    char16_t pathDelimiter() override { return u'/'; }
};

}  // namespace tsRtm::platform::posix
