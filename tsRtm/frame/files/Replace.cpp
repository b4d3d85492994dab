#include "tsRtm/frame/files/Replace.hpp"

#include <memory>
#include <span>
#include <vector>

#include "tsRtm/frame/files/FolderLists.hpp"
#include "tsRtm/frame/files/Paths.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm {

namespace {

using platform::failed;

constexpr std::size_t copyBlock = 64 * 1024;

// A new file beside another one, open to the same users as `like`, where there is such a file; deleted again
// unless it takes a place of its own.
class FileBeside {
 public:
    FileBeside(TextView target, TextView like) : target_(target), name_(freeName(paths::folder(target))) {
        using platform::Access, platform::Disposition, platform::Sharing;
        auto opened = files().open(name_, {Access::readWrite, Sharing::none, Disposition::createEmpty});
        if (opened) file_ = std::move(*opened);
        made_ = file_ != nullptr;
        // As long as it is empty nobody reads in it what is not for him. Where the rights cannot be kept, the
        // content counts for more.
        if (made_) static_cast<void>(files().copyAccess(like, name_));
    }
    ~FileBeside() {
        file_.reset();
        if (made_) static_cast<void>(files().remove(name_));
    }
    FileBeside(const FileBeside&) = delete;
    FileBeside& operator=(const FileBeside&) = delete;

    bool write(std::span<const std::byte> bytes) {
        if (!file_ || failed(file_->writeAt(written_, bytes))) return false;
        written_ += bytes.size();
        return true;
    }
    bool takePlace() {
        if (!file_ || failed(file_->flush())) return false;
        file_.reset();
        made_ = failed(files().rename(name_, target_, true));
        return !made_;
    }

 private:
    static Text freeName(const Text& folder) {
        Text name;
        do name = paths::join({folder, paths::temporary()});
        while (files().status(name).ok());
        return name;
    }
    static platform::FileSystem& files() { return rtmMain::system().files; }
    Text target_;
    Text name_;
    std::unique_ptr<platform::File> file_;
    bool made_ = false;
    uint64 written_ = 0;
};

// A copy rather than the file itself: so its place is never empty, whatever happens in between.
bool copyInto(TextView from, TextView to) {
    auto source = rtmMain::system().files.open(from, {});
    if (!source) return false;
    FileBeside copy(to, from);
    std::vector<std::byte> block(copyBlock);
    for (uint64 offset = 0;;) {
        auto read = (*source)->readAt(offset, block);
        if (!read) return false;
        if (*read == 0) return copy.takePlace();
        if (!copy.write(std::span(block).first(*read))) return false;
        offset += *read;
    }
}

}  // namespace

bool replaceContent(TextView name, BytesView content) {
    FileBeside file(name, name);
    return file.write(std::as_bytes(std::span(content))) && file.takePlace();
}

bool replaceFile(TextView replaced, TextView by, bool keepCopy) {
    if (!fileExists(by)) return false;
    auto& files = rtmMain::system().files;
    if (!fileExists(replaced)) return !failed(files.rename(by, replaced, false));
    if (keepCopy) {
        const Text backup = paths::join({paths::folder(replaced), paths::base(replaced) + u".sik"});
        if (!copyInto(replaced, backup)) return false;
    }
    static_cast<void>(files.copyAccess(replaced, by));
    return !failed(files.rename(by, replaced, true));
}

}  // namespace tsRtm
