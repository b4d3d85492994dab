#pragma once
// Owners of what the system lends.
#include <dirent.h>
#include <unistd.h>

#include <memory>
#include <utility>

namespace tsRtm::platform::posix {

// Closes its descriptor at its end of life, and with the last descriptor of an opening its locks. Move-only.
class Handle {
 public:
    Handle() = default;
    explicit Handle(int descriptor) noexcept : descriptor_(descriptor) {}
    Handle(Handle&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~Handle() {
        // A failed close has closed all the same: there is nothing to repeat.
        if (descriptor_ >= 0) ::close(descriptor_);
    }

    int get() const noexcept { return descriptor_; }
    explicit operator bool() const noexcept { return descriptor_ >= 0; }

 private:
    int descriptor_ = -1;
};

struct FolderCloser {
    void operator()(DIR* folder) const noexcept { ::closedir(folder); }
};
// A folder being listed.
using FolderHandle = std::unique_ptr<DIR, FolderCloser>;

}  // namespace tsRtm::platform::posix
