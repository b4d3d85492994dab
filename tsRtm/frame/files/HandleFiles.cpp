#include "tsRtm/frame/files/HandleFiles.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "tsRtm/frame/files/Encodings.hpp"
#include "tsRtm/frame/files/FolderLists.hpp"
#include "tsRtm/frame/files/SystemFailures.hpp"
#include "tsRtm/frame/files/Waiting.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/messages/Messages.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm {

namespace {

using platform::SystemError;

Text number(SystemError error) { return toText(static_cast<int32>(error)); }

Text at(int64 position) { return u" Position " + toText(position); }

platform::OpenRequest requestOf(bool readOnly, bool shared) {
    using platform::Access, platform::Disposition, platform::Sharing;
    return {readOnly ? Access::read : Access::readWrite, shared ? Sharing::all : Sharing::none,
            readOnly ? Disposition::openExisting : Disposition::openOrCreate};
}

std::size_t limited(int32 count, std::size_t size) {
    return count < 1 ? 0 : std::min(static_cast<std::size_t>(count), size);
}

void checkSize(TextView call, int32 size) {
    if (size != 1 && size != 2 && size != 4)
        raise(380, u"clsRtm", Text(call) + u": Size " + toText(size) + u" not supported");
}

}  // namespace

int32 HandleFiles::OpenBinaryAPI(TextView Name, bool ReadOnly, bool Shared) {
    int32& F = rtmMain::state().F;
    const Text name(Name);
    if (ReadOnly && !fileExists(name)) {
        F = 53;
        return 0;
    }
    for (Waiting waiting;;) {
        auto opened = rtmMain::system().files.open(name, requestOf(ReadOnly, Shared));
        if (opened) return handles_.add(std::move(*opened));
        switch (const SystemError error = opened.error()) {
            case SystemError::fileNotFound:
            case SystemError::pathNotFound:
            case SystemError::tooManyOpenFiles:
                F = failureNumber(error);
                return 0;
            case SystemError::writeProtected:
                F = 70;
                return 0;
            case SystemError::accessDenied:
            case SystemError::sharingViolation:
            case SystemError::lockViolation:
                if (rtmMain::state().stopping || waiting.longerThan(rtmMain::state().netWait)) {
                    F = 70;
                    return 0;
                }
                waiting.pause();
                break;
            case SystemError::notReady:
                if (driveMayBecomeReady(messages_, name)) break;
                F = 71;
                return 0;
            default:
                raise(445, u"clsRtm.OpenBinaryAPI",
                      u"Beim Öffnen von \"" + name + u"\" ist der Fehler " + number(error) + u" (" +
                          messages_.SystemMsg(static_cast<int32>(error)) + u") aufgetreten.");
        }
    }
}

HandleFile& HandleFiles::handle(int32 Handle, TextView Call, TextView Details) {
    HandleFile* const opened = handles_.find(Handle);
    if (!opened) checkCall(SystemError::invalidHandle, Call, Handle, Details);
    return *opened;
}

void HandleFiles::checkCall(SystemError error, TextView Call, int32 Handle, TextView Details) {
    if (!platform::failed(error)) return;
    raise(5, u"clsRtm",
          Text(Call) + u" (Handle " + toText(Handle) + Text(Details) + u"): " + number(error) + u" - " +
              messages_.SystemMsg(static_cast<int32>(error)));
}

platform::File& HandleFiles::handleFile(int32 Handle) {
    HandleFile* const opened = handles_.find(Handle);
    if (!opened) raise(52, u"clsRtm", failureText(52));
    return *opened->file;
}

void HandleFiles::CloseAPI(int32 Handle) {
    if (!handles_.close(Handle)) checkCall(SystemError::invalidHandle, u"CloseAPI", Handle);
}

int64 HandleFiles::LofAPI(int32 Handle) {
    const auto size = handle(Handle, u"LofAPI").file->size();
    checkCall(size.error(), u"LofAPI", Handle);
    return static_cast<int64>(*size);
}

int64 HandleFiles::FilePosAPI(int32 Handle) {
    return static_cast<int64>(handle(Handle, u"FilePosAPI").position);
}

void HandleFiles::SeekAPI(int32 Handle, int64 Position) {
    HandleFile& opened = handle(Handle, u"SeekAPI", at(Position));
    const int64 target = Position < 0 ? LofAPI(Handle) + Position : Position;
    if (target < 0) checkCall(SystemError::invalidParameter, u"SeekAPI", Handle, at(Position));
    opened.position = static_cast<uint64>(target);
}

void HandleFiles::SetEndAPI(int32 Handle, int64 Position) {
    if (Handle == 0) return;
    SeekAPI(Handle, Position);
    HandleFile& opened = handle(Handle, u"SetEndAPI", at(Position));
    checkCall(opened.file->resize(opened.position), u"SetEndAPI", Handle, at(Position));
}

std::size_t HandleFiles::readCall(int32 Handle, TextView Call, TextView Details, int64 Position,
                                  std::span<std::byte> into) {
    HandleFile& opened = handle(Handle, Call, Details);
    SeekAPI(Handle, Position);
    const auto read = opened.file->readAt(opened.position, into);
    checkCall(read.error(), Call, Handle, Details);
    opened.position += *read;
    return *read;
}

void HandleFiles::writeCall(int32 Handle, TextView Call, TextView Details, int64 Position,
                            std::span<const std::byte> bytes) {
    HandleFile& opened = handle(Handle, Call, Details);
    SeekAPI(Handle, Position);
    checkCall(opened.file->writeAt(opened.position, bytes), Call, Handle, Details);
    opened.position += bytes.size();
}

std::size_t HandleFiles::readBytes(int32 Handle, int64 Position, std::span<std::byte> into) {
    return readCall(Handle, u"GetBytesAPI", at(Position) + u" Count " + toText(std::ssize(into)), Position,
                    into);
}

void HandleFiles::writeBytes(int32 Handle, int64 Position, std::span<const std::byte> bytes) {
    writeCall(Handle, u"PutBytesAPI", {}, Position, bytes);
}

void HandleFiles::GetAPI(int32 Handle, int64 Position, ByteText& Buffer) {
    if (Buffer.empty()) return;
    Bytes bytes(Buffer.size(), '\0');
    bytes.resize(
        readCall(Handle, u"GetAPI", at(Position), Position, std::as_writable_bytes(std::span(bytes))));
    Buffer.replace(0, bytes.size(), fromAnsi(bytes));
}

void HandleFiles::GetBytesAPI(int32 Handle, int64 Position, std::span<std::byte> Buffer, int32 Count) {
    const std::size_t count = limited(Count, Buffer.size());
    if (count == 0) return;
    readCall(Handle, u"GetBytesAPI", at(Position) + u" Count " + toText(Count), Position,
             Buffer.first(count));
}

void HandleFiles::PutAPI(int32 Handle, int64 Position, TextView Buffer) {
    if (Buffer.empty()) return;
    const Bytes bytes = toAnsi(Buffer);
    writeCall(Handle, u"PutAPI", {}, Position, std::as_bytes(std::span(bytes)));
}

void HandleFiles::PutBytesAPI(int32 Handle, int64 Position, std::span<const std::byte> Buffer, int32 Count) {
    const std::size_t count = limited(Count, Buffer.size());
    if (count == 0) return;
    writeCall(Handle, u"PutBytesAPI", {}, Position, Buffer.first(count));
}

void HandleFiles::GetIntegerAPI(int32 Handle, int64 Position, int32 Size, int32& Value) {
    checkSize(u"GetIntegerAPI", Size);
    std::array<std::byte, 4> bytes{};
    readCall(Handle, u"GetIntegerAPI", at(Position) + u" Size " + toText(Size), Position,
             std::span(bytes).first(static_cast<std::size_t>(Size)));
    uint32 value = 0;
    for (std::size_t i = bytes.size(); i-- > 0;) value = value << 8 | static_cast<uint32>(bytes[i]);
    Value = static_cast<int32>(value);
}

void HandleFiles::PutIntegerAPI(int32 Handle, int64 Position, int32 Size, int32 Value) {
    checkSize(u"PutIntegerAPI", Size);
    std::array<std::byte, 4> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::byte>(static_cast<uint32>(Value) >> (8 * i) & 0xFF);
    writeCall(Handle, u"PutIntegerAPI", at(Position) + u" Size " + toText(Size) + u" Value " + toText(Value),
              Position, std::span(bytes).first(static_cast<std::size_t>(Size)));
}

namespace {
platform::ByteRange range(int64 position, int32 length) {
    return {static_cast<uint64>(position), static_cast<uint64>(length)};
}
}  // namespace

bool HandleFiles::LockAPI(int32 Handle, int64 Position, int32 Length) {
    HandleFile* const opened = handles_.find(Handle);
    if (!opened || Position < 0 || Length < 1) return false;
    return !platform::failed(opened->file->tryLock(range(Position, Length)));
}

bool HandleFiles::UnlockAPI(int32 Handle, int64 Position, int32 Length) {
    HandleFile* const opened = handles_.find(Handle);
    if (!opened || Position < 0 || Length < 1) return false;
    return !platform::failed(opened->file->unlock(range(Position, Length)));
}

Text HandleFiles::HandleFileName(int32 Handle) {
    const HandleFile* const opened = handles_.find(Handle);
    return opened ? opened->file->name() : Text();
}

int32 HandleFiles::DetectEncoding(int32 Handle) {
    HandleFile* const opened = handles_.find(Handle);
    if (!opened) return ANSI1252;
    Bytes head(4, '\0');
    const auto read = opened->file->readAt(0, std::as_writable_bytes(std::span(head)));
    head.resize(read.ok() ? *read : 0);
    const auto detected = encodings::detect(head);
    opened->position = detected.textBegin.value_or(head.size());
    return detected.encoding;
}

}  // namespace tsRtm
