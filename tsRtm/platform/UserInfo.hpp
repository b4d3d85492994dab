#pragma once
// The user whose process this is, and his rights.
#include "tsRtm/types/Text.hpp"

namespace tsRtm::platform {

class UserInfo {
 public:
    virtual ~UserInfo() = default;
    virtual Text userName() = 0;
    virtual bool isUserAdmin() = 0;
    virtual int32 elevationType() = 0;   // 1 default, 2 full, 3 limited
    virtual bool isRemoteSession() = 0;  // the user sits at another machine
    // Whether the user may do to a file or folder what the mask says: 1 list or read, 2 write or add a file,
    // 4 add a subfolder, 64 delete a child, 0x120089 read, 0x120116 write.
    virtual bool checkAccess(TextView path, int32 mask) = 0;
};

}  // namespace tsRtm::platform
