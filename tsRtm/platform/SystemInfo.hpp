#pragma once
// What the library asks of the machine at its start.
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
    virtual Text hostPath() = 0;  // full path of the running program
    virtual VolumeInfo volumeInfo(TextView root) = 0;
    // Full path without a delimiter at the end, empty where the ground has none. `create` makes it where
    // missing.
    virtual Text folder(FolderId id, bool create) = 0;
    virtual Text tempFolder() = 0;
    virtual char16_t pathDelimiter() = 0;
};

}  // namespace tsRtm::platform
