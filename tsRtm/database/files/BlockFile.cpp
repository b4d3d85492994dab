#include "tsRtm/database/files/BlockFile.hpp"

#include <algorithm>
#include <cstring>

#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

using platform::SystemError;

int32 engineNumber(SystemError error) noexcept {
    switch (error) {
        case SystemError::diskFull:
        case SystemError::fileTooLarge:
            return 61;
        case SystemError::accessDenied:
        case SystemError::writeProtected:
        case SystemError::sharingViolation:
        case SystemError::lockViolation:
            return 70;
        default:
            return 57;
    }
}

}  // namespace

void raiseFileFailure(SystemError error, TextView fileName) {
    raise(engineNumber(error), kFileFailureSource,
          Text(u"Datei \"")
              .append(fileName)
              .append(u"\": Systemfehler ")
              .append(toText(static_cast<int32>(error))));
}

BlockFile::BlockFile(platform::File& file, bool inPlace) : file_(&file) {
    window_ = inPlace ? file.window() : nullptr;
    refreshSize();
}

void BlockFile::sizeIs(uint64 size) {
    size_ = size;
    if (!window_) return;
    if (size > window_->capacity() && !window_->reserve(size + size / 2 + (uint64{1} << 20))) {
        // No room in memory for a file of this size.
        useCalls();
        return;
    }
    base_ = reinterpret_cast<const char*>(window_->data());
    viewable_ = size;
}

// Positional calls serve from here on.
void BlockFile::useCalls() noexcept {
    window_ = nullptr;
    base_ = nullptr;
    viewable_ = 0;
}

uint64 BlockFile::refreshSize() {
    const auto size = file_->size();
    if (!size) raiseFileFailure(size.error(), file_->name());
    sizeIs(*size);
    return size_;
}

std::size_t BlockFile::read(uint64 offset, std::span<char> into) const {
    if (const char* bytes = view(offset, into.size())) {
        std::memcpy(into.data(), bytes, into.size());
        check();
        return into.size();
    }
    const auto count = file_->readAt(offset, std::as_writable_bytes(into));
    if (!count) raiseFileFailure(count.error(), file_->name());
    return *count;
}

void BlockFile::write(uint64 offset, BytesView bytes) {
    const auto error = file_->writeAt(offset, std::as_bytes(std::span(bytes.data(), bytes.size())));
    if (failed(error)) raiseFileFailure(error, file_->name());
    if (offset + bytes.size() > size_) sizeIs(offset + bytes.size());
}

void BlockFile::store(uint64 offset, BytesView bytes) {
    if (base_ && offset + bytes.size() <= viewable_) {
        window_->store(offset, std::as_bytes(std::span(bytes.data(), bytes.size())));
        check();
    } else {
        write(offset, bytes);
    }
}

void BlockFile::resize(uint64 size) {
    const auto error = file_->resize(size);
    if (failed(error)) raiseFileFailure(error, file_->name());
    sizeIs(size);
}

void BlockFile::renewAndRaise() const {
    if (const auto size = file_->size(); size && window_->renew())
        size_ = viewable_ = std::min(*size, window_->capacity());
    else
        viewable_ = 0;
    raiseFileFailure(SystemError::readFault, file_->name());
}

}  // namespace tsRtm
