#pragma once
// The handle family of open files: 64-bit positions from 0, one system call an operation, failures are
// raised.
#include <span>

#include "tsRtm/frame/files/HandleTable.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class Messages;

// The operations of FilesTopic of the same names, which tells them in full.
class HandleFiles {
 public:
    // The messages outlive it.
    explicit HandleFiles(Messages& messages) noexcept : messages_(messages) {}
    HandleFiles(const HandleFiles&) = delete;
    HandleFiles& operator=(const HandleFiles&) = delete;

    int32 OpenBinaryAPI(TextView Name, bool ReadOnly, bool Shared);
    void CloseAPI(int32 Handle);
    int64 LofAPI(int32 Handle);
    int64 FilePosAPI(int32 Handle);
    void SeekAPI(int32 Handle, int64 Position);
    void SetEndAPI(int32 Handle, int64 Position);
    void GetAPI(int32 Handle, int64 Position, ByteText& Buffer);
    void GetBytesAPI(int32 Handle, int64 Position, std::span<std::byte> Buffer, int32 Count);
    void PutAPI(int32 Handle, int64 Position, TextView Buffer);
    void PutBytesAPI(int32 Handle, int64 Position, std::span<const std::byte> Buffer, int32 Count);
    void GetIntegerAPI(int32 Handle, int64 Position, int32 Size, int32& Value);
    void PutIntegerAPI(int32 Handle, int64 Position, int32 Size, int32 Value);
    bool LockAPI(int32 Handle, int64 Position, int32 Length);
    bool UnlockAPI(int32 Handle, int64 Position, int32 Length);
    Text HandleFileName(int32 Handle);
    int32 DetectEncoding(int32 Handle);

    platform::File& handleFile(int32 Handle);

    // For whole texts: as GetBytesAPI and PutBytesAPI, of any length; the bytes that were read.
    std::size_t readBytes(int32 Handle, int64 Position, std::span<std::byte> into);
    void writeBytes(int32 Handle, int64 Position, std::span<const std::byte> bytes);

 private:
    HandleFile& handle(int32 Handle, TextView Call, TextView Details = {});
    void checkCall(platform::SystemError error, TextView Call, int32 Handle, TextView Details = {});
    void writeCall(int32 Handle, TextView Call, TextView Details, int64 Position,
                   std::span<const std::byte> bytes);
    std::size_t readCall(int32 Handle, TextView Call, TextView Details, int64 Position,
                         std::span<std::byte> into);

    Messages& messages_;
    HandleTable handles_;
};

}  // namespace tsRtm
