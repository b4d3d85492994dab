#pragma once
// What the library asks of the machine, the user and the screen at its start.
#include "tsRtm/platform/SystemError.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm::platform {

struct OsVersion {
    int32 platformId = 2;  // 2: the NT family, whose rules this library follows on every ground
    int32 major = 6;
    int32 minor = 4;
    int32 productType = 1;  // 1 workstation
    bool extended = true;   // false: the system does not tell its product type
    Text name;              // of the ground itself, for the log
};

struct Processor {
    int32 architecture = 9;
    int32 type = 8664;
    bool floatingPoint = true;
};

struct VolumeInfo {
    Text fileSystem;
    int32 maxComponent = 255;
};

// Pixels, but for the twips.
struct ScreenMetrics {
    int32 twipsPerPixelX = 15, twipsPerPixelY = 15;
    int32 smallIconX = 16, smallIconY = 16;
    int32 fullX = 1920, fullY = 1080;
    int32 borderX = 1, borderY = 1;
    int32 edgeX = 2, edgeY = 2;
    int32 scrollBarWidth = 17;
    int32 virtualLeft = 0, virtualTop = 0, virtualWidth = 1920, virtualHeight = 1080;
    int32 caretWidth = 1;
    int32 workLeft = 0, workTop = 0, workRight = 1920, workBottom = 1080;
};

struct PixelArea {
    int32 left = 0, top = 0, right = 0, bottom = 0;
};

// Special folders by their numbers.
enum class FolderId : int32 {
    documents = 5,
    applicationData = 26,
    commonApplicationData = 35,
    programFiles = 38,
    commonProgramFiles = 43,
};

class SystemInfo {
 public:
    virtual ~SystemInfo() = default;
    virtual OsVersion osVersion() = 0;
    virtual Processor processor() = 0;
    virtual bool is64Bit() = 0;
    virtual bool isUserAdmin() = 0;
    virtual int32 elevationType() = 0;   // 1 default, 2 full, 3 limited
    virtual bool isRemoteSession() = 0;  // the user sits at another machine
    virtual Text hostPath() = 0;         // full path of the running program
    virtual VolumeInfo volumeInfo(TextView root) = 0;
    virtual ScreenMetrics screen() = 0;
    // Work area of the screen that a window is on or next to; empty where the ground cannot tell.
    virtual PixelArea workAreaOf(int32 /*window*/) { return {}; }
    // Full path without a delimiter at the end, empty where the ground has none. `create` makes it where
    // missing.
    virtual Text folder(FolderId id, bool create) = 0;
    virtual Text tempFolder() = 0;
    // Whether the user may do to a file or folder what the mask says: 1 list or read, 2 write or add a file,
    // 4 add a subfolder, 64 delete a child, 0x120089 read, 0x120116 write.
    virtual bool checkAccess(TextView path, int32 mask) = 0;
    virtual Text userName() = 0;
    virtual char16_t pathDelimiter() = 0;
};

}  // namespace tsRtm::platform
