#pragma once
// The files that are open under a handle.
#include <memory>
#include <unordered_map>

#include "tsRtm/platform/File.hpp"

namespace tsRtm {

struct HandleFile {
    std::unique_ptr<platform::File> file;
    uint64 position = 0;  // bytes from 0
};

// Handles are never used twice, so that a stale one finds nothing.
class HandleTable {
 public:
    int32 add(std::unique_ptr<platform::File> file) {
        files_.emplace(++last_, HandleFile{std::move(file), 0});
        return last_;
    }
    HandleFile* find(int32 handle) noexcept {
        const auto found = files_.find(handle);
        return found == files_.end() ? nullptr : &found->second;
    }
    bool close(int32 handle) noexcept { return files_.erase(handle) != 0; }

 private:
    std::unordered_map<int32, HandleFile> files_;
    int32 last_ = 0;
};

}  // namespace tsRtm
