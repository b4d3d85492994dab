#include "tsRtm/frame/files/Content.hpp"

#include <algorithm>
#include <limits>

#include "tsRtm/frame/files/Encodings.hpp"
#include "tsRtm/frame/files/HandleFiles.hpp"
#include "tsRtm/frame/files/SystemFailures.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/types/Encodings.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

namespace {

constexpr char16_t oldEndOfFile = 26;

// Closes its handle on all ways out.
class OpenHandle {
 public:
    OpenHandle(HandleFiles& files, int32 handle) : files_(files), handle_(handle) {}
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
    HandleFiles& files_;
    int32 handle_;
};

// A file without a mark says nothing about its code page: then the DOS code page stays the caller's choice.
int32 detectedOr850(int32 detected, int32 asked) {
    return detected == ANSI1252 && asked == CP850 ? static_cast<int32>(CP850) : detected;
}

void needSupported(int32 encoding, TextView source, TextView name) {
    if (!encodings::supported(encoding)) encodings::raiseUnsupported(encoding, source, name);
}

Bytes readFrom(HandleFiles& files, int32 handle, int64 position, int64 count) {
    // A text is counted in int32.
    if (count > std::numeric_limits<int32>::max()) raise(6, u"clsRtm.GetContentAPI", failureText(6));
    Bytes bytes(static_cast<std::size_t>(std::max<int64>(count, 0)), '\0');
    if (!bytes.empty())
        bytes.resize(files.readBytes(handle, position, std::as_writable_bytes(std::span(bytes))));
    return bytes;
}

// Writes in place of all bytes from a position on. What lies behind the old end is written first: where there
// is no room for it, the file is cut at its old length and is as it was, since the bytes in front of that
// have their room on the medium.
void replaceTail(HandleFiles& files, int32 handle, int64 position, BytesView bytes) {
    const int64 length = files.LofAPI(handle);
    const auto inside =
        std::min(bytes.size(), static_cast<std::size_t>(std::max<int64>(length - position, 0)));
    const auto write = [&](std::size_t from, std::size_t count) {
        if (count == 0) return;
        files.writeBytes(handle, position + static_cast<int64>(from),
                         std::as_bytes(std::span(bytes.substr(from, count))));
    };
    try {
        write(inside, bytes.size() - inside);
        write(0, inside);
        files.SetEndAPI(handle, position + std::ssize(bytes));
    } catch (const Failure&) {
        // More than trying is not possible.
        static_cast<void>(files.handleFile(handle).resize(static_cast<uint64>(length)));
        throw;
    }
}

}  // namespace

Text readContent(HandleFiles& files, TextView name, int32& encoding, Date& changed) {
    Text text;
    {
        const OpenHandle handle(files, files.OpenBinaryAPI(name, true, true));
        if (handle == 0) return {};
        const int64 length = files.LofAPI(handle);
        Bytes bytes;
        if (length >= 1) {
            encoding = detectedOr850(files.DetectEncoding(handle), encoding);
            needSupported(encoding, u"clsRtm.GetContentAPI", name);
            const int64 begin = files.FilePosAPI(handle);
            bytes = readFrom(files, handle, begin, length - begin);
        }
        text = encodings::decode(bytes, encoding);
    }
    if (auto status = rtmMain::system().files.status(name)) changed = status->changed;
    text.resize(std::min(text.find(oldEndOfFile), text.size()));
    return text;
}

int64 writeContent(HandleFiles& files, TextView name, TextView content, int32 encoding, bool append,
                   Date& changed) {
    int64 position = 0;
    {
        const OpenHandle handle(files, files.OpenBinaryAPI(name, false, false));
        if (handle == 0)
            raise(75, u"clsRtm.PutContentAPI",
                  u"Die Datei \"" + Text(name) + u"\" kann nicht geöffnet werden.");
        if (append) position = files.LofAPI(handle);
        Bytes bytes;
        if (!content.empty()) {
            BytesView mark;
            if (position != 0 || encoding == ANSI1252) {
                encoding = detectedOr850(files.DetectEncoding(handle), encoding);
                // The file's mark stays in its place: without it the text would be read in another encoding.
                position = std::max(position, std::ssize(encodings::markBytes(encoding)));
            } else {
                mark = encodings::markBytes(encoding);
            }
            needSupported(encoding, u"clsRtm.PutContentAPI", name);
            bytes = Bytes(mark) + encodings::encode(content, encoding);
        }
        replaceTail(files, handle, position, bytes);
        position = files.FilePosAPI(handle);
    }
    if (auto status = rtmMain::system().files.status(name)) changed = status->changed;
    return position;
}

}  // namespace tsRtm
