#pragma once
// A fresh folder on the real disk, and the content of real files.
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::test {

// Empty where there is none.
inline Bytes contentOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// Made at its creation, removed with all that is in it at its end.
class TempFolder {
 public:
    TempFolder() {
        auto pattern = (std::filesystem::temp_directory_path() / "tsrtm-test-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder: " + pattern);
        path_ = pattern;
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& path() const noexcept { return path_; }
    Text name() const { return fromUtf8(path_.string()); }
    // The full name of an entry.
    Text name(TextView entry) const { return name() + u"/" + Text(entry); }

 private:
    std::filesystem::path path_;
};

}  // namespace tsRtm::test
