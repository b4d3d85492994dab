// Whole text files with their encodings.
#include <algorithm>
#include <limits>

#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/files/Encodings.hpp"
#include "tsRtm/frame/files/SystemFailures.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm {

namespace {

constexpr char16_t oldEndOfFile = 26;

// Closes its handle on all ways out.
class OpenHandle {
 public:
    OpenHandle(FilesTopic& files, int32 handle) : files_(files), handle_(handle) {}
    ~OpenHandle() {
        if (handle_ == 0) return;
        try {
            files_.CloseAPI(handle_);
        } catch (const Failure&) {
            // Closed by another way already.
        }
    }
    OpenHandle(const OpenHandle&) = delete;
    OpenHandle& operator=(const OpenHandle&) = delete;
    operator int32() const noexcept { return handle_; }

 private:
    FilesTopic& files_;
    int32 handle_;
};

// A file without a mark says nothing about its code page: then the DOS code page stays the caller's choice.
int32 detectedOr850(int32 detected, int32 asked) {
    return detected == ANSI1252 && asked == CP850 ? static_cast<int32>(CP850) : detected;
}

void needSupported(int32 encoding, TextView source, TextView name) {
    if (!encodings::supported(encoding)) encodings::raiseUnsupported(encoding, source, name);
}

}  // namespace

int32 FilesTopic::DetectEncoding(int32 Handle) {
    HandleFile* const opened = handles_.find(Handle);
    if (!opened) return ANSI1252;
    Bytes head(4, '\0');
    const auto read = opened->file->readAt(0, std::as_writable_bytes(std::span(head)));
    head.resize(read.ok() ? *read : 0);
    const auto detected = encodings::detect(head);
    opened->position = detected.textBegin.value_or(head.size());
    return detected.encoding;
}

Bytes FilesTopic::readFrom(int32 Handle, int64 Position, int64 Count) {
    // A text is counted in int32.
    if (Count > std::numeric_limits<int32>::max()) raise(6, u"clsRtm.GetContentAPI", failureText(6));
    Bytes bytes(static_cast<std::size_t>(std::max<int64>(Count, 0)), '\0');
    if (bytes.empty()) return bytes;
    const Text details = u" Position " + toText(Position) + u" Count " + toText(Count);
    bytes.resize(
        readCall(Handle, u"GetBytesAPI", details, Position, std::as_writable_bytes(std::span(bytes))));
    return bytes;
}

Text FilesTopic::GetContentAPI(TextView Name, int32& Encoding, Date& Datum) {
    Text text;
    {
        const OpenHandle handle(*this, OpenBinaryAPI(Name, true, true));
        if (handle == 0) return {};
        const int64 length = LofAPI(handle);
        Bytes bytes;
        if (length >= 1) {
            Encoding = detectedOr850(DetectEncoding(handle), Encoding);
            needSupported(Encoding, u"clsRtm.GetContentAPI", Name);
            const int64 begin = FilePosAPI(handle);
            bytes = readFrom(handle, begin, length - begin);
        }
        text = encodings::decode(bytes, Encoding);
    }
    if (auto status = rtmMain::system().files.status(Name)) Datum = status->changed;
    text.resize(std::min(text.find(oldEndOfFile), text.size()));
    return text;
}

// Writes in place of all bytes from a position on. What lies behind the old end is written first: where there
// is no room for it, the file is cut at its old length and is as it was, since the bytes in front of that
// have their room on the medium.
void FilesTopic::replaceTail(int32 Handle, int64 Position, BytesView bytes) {
    const int64 length = LofAPI(Handle);
    const auto inside =
        std::min(bytes.size(), static_cast<std::size_t>(std::max<int64>(length - Position, 0)));
    const auto write = [&](std::size_t from, std::size_t count) {
        if (count == 0) return;
        writeCall(Handle, u"PutBytesAPI", {}, Position + static_cast<int64>(from),
                  std::as_bytes(std::span(bytes.substr(from, count))));
    };
    try {
        write(inside, bytes.size() - inside);
        write(0, inside);
        SetEndAPI(Handle, Position + std::ssize(bytes));
    } catch (const Failure&) {
        // More than trying is not possible.
        static_cast<void>(handleFile(Handle).resize(static_cast<uint64>(length)));
        throw;
    }
}

int64 FilesTopic::PutContentAPI(TextView Name, TextView Inhalt, int32 Encoding, bool Append, Date& Datum) {
    int64 position = 0;
    {
        const OpenHandle handle(*this, OpenBinaryAPI(Name, false, false));
        if (handle == 0)
            raise(75, u"clsRtm.PutContentAPI",
                  u"Die Datei \"" + Text(Name) + u"\" kann nicht geöffnet werden.");
        if (Append) position = LofAPI(handle);
        Bytes bytes;
        if (!Inhalt.empty()) {
            BytesView mark;
            if (position != 0 || Encoding == ANSI1252) {
                Encoding = detectedOr850(DetectEncoding(handle), Encoding);
                // The file's mark stays in its place: without it the text would be read in another encoding.
                position = std::max(position, std::ssize(encodings::markBytes(Encoding)));
            } else {
                mark = encodings::markBytes(Encoding);
            }
            needSupported(Encoding, u"clsRtm.PutContentAPI", Name);
            bytes = Bytes(mark) + encodings::encode(Inhalt, Encoding);
        }
        replaceTail(handle, position, bytes);
        position = FilePosAPI(handle);
    }
    if (auto status = rtmMain::system().files.status(Name)) Datum = status->changed;
    return position;
}

Text FilesTopic::Content(TextView Datei) {
    int32 encoding = ANSI1252;
    Date changed;
    return GetContentAPI(Datei, encoding, changed);
}

}  // namespace tsRtm
