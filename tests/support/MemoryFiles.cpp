#include "tests/support/MemoryFiles.hpp"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "tsRtm/platform/posix/PosixFileWindow.hpp"
#include "tsRtm/platform/posix/PosixHandle.hpp"

namespace tsRtm::test {

using namespace platform;
using lockRanges::lockable;
using lockRanges::overlap;

namespace {

constexpr uint64 kLargestFile = uint64{1} << 31;

// One spelling for each name: "/" between the components, none at the end, none twice.
Text plain(TextView name) {
    Text out;
    for (const char16_t given : name) {
        const char16_t c = given == u'\\' ? u'/' : given;
        if (c != u'/' || out.empty() || out.back() != u'/') out += c;
    }
    if (out.size() > 1 && out.back() == u'/') out.pop_back();
    return out;
}

Text keyOf(TextView name) { return upper(plain(name)); }

Text folderOf(const Text& plainName) {
    const auto slash = plainName.rfind(u'/');
    return slash == Text::npos ? Text() : plainName.substr(0, slash);
}

Text lastOf(const Text& plainName) { return plainName.substr(plainName.rfind(u'/') + 1); }

// What is there without being made: the root, and the roots of drives.
bool isRoot(const Text& plainName) {
    return plainName.empty() || plainName == u"/" || (plainName.size() == 2 && plainName[1] == u':');
}

bool badName(TextView name) { return name.empty() || name.find(u'\0') != TextView::npos; }

}  // namespace

// A run of bytes that grows and shrinks. From the first window on they lie in a file of the system's memory
// that has no name, and the windows are those of the ground: what a test sees through them is what an
// application sees through the window of a local file, also when the content is cut short below it.
class MemoryFiles::Content {
 public:
    uint64 size() const { return size_; }
    // Fewer than asked for at the end, 0 behind it.
    std::size_t read(uint64 offset, std::span<std::byte> into) const {
        if (offset >= size_ || into.empty()) return 0;
        const auto count = std::min<std::size_t>(into.size(), size_ - offset);
        if (mapped_)
            mustBe(::pread(mapped_.get(), into.data(), count, static_cast<off_t>(offset)) ==
                   static_cast<ssize_t>(count));
        else
            std::memcpy(into.data(), plain_.data() + offset, count);
        return count;
    }
    // The part of them that lies below size().
    void write(uint64 offset, std::span<const std::byte> bytes) {
        if (offset >= size_ || bytes.empty()) return;
        const auto count = std::min<std::size_t>(bytes.size(), size_ - offset);
        if (mapped_)
            mustBe(::pwrite(mapped_.get(), bytes.data(), count, static_cast<off_t>(offset)) ==
                   static_cast<ssize_t>(count));
        else
            std::memcpy(plain_.data() + offset, bytes.data(), count);
    }
    void resize(uint64 size) {
        if (mapped_)
            mustBe(::ftruncate(mapped_.get(), static_cast<off_t>(size)) == 0);
        else
            plain_.resize(size);
        size_ = size;
    }
    void assign(BytesView bytes) {
        resize(bytes.size());
        write(0, std::as_bytes(std::span(bytes)));
    }
    Bytes all() const {
        Bytes bytes(size_, '\0');
        read(0, std::as_writable_bytes(std::span(bytes)));
        return bytes;
    }
    // A new window; nullptr where the system has no room for one.
    std::unique_ptr<FileWindow> window(bool writable) {
        return map() ? posix::PosixFileWindow::open(mapped_.get(), writable) : nullptr;
    }

 private:
    // Memory does not fail but by a fault of the test.
    static void mustBe(bool done) {
        if (!done) throw std::runtime_error("no memory for the content of a file");
    }
    bool map() {
        if (mapped_) return true;
        posix::Handle file(::memfd_create("content", MFD_CLOEXEC));
        if (!file) return false;
        const Bytes bytes = std::exchange(plain_, {});
        mapped_ = std::move(file);
        assign(bytes);
        return true;
    }

    uint64 size_ = 0;
    Bytes plain_;           // until the first window
    posix::Handle mapped_;  // from then on
};

struct MemoryFiles::Node {
    Text name;  // whole, as it was made
    FileStatus status;
    Content content;
    std::vector<Opening*> openings;
};

class MemoryFiles::Opening final : public File {
 public:
    Opening(MemoryFiles& files, std::shared_ptr<Node> node, OpenRequest request)
        : files_(files), node_(std::move(node)), request_(request) {
        node_->openings.push_back(this);
    }
    ~Opening() override { std::erase(node_->openings, this); }

    Result<std::size_t> readAt(uint64 offset, std::span<std::byte> into) override {
        return node_->content.read(offset, into);
    }

    SystemError writeAt(uint64 offset, std::span<const std::byte> bytes) override {
        if (!writable()) return SystemError::accessDenied;
        if (bytes.empty()) return SystemError::none;
        if (offset > kLargestFile || bytes.size() > kLargestFile - offset) return SystemError::fileTooLarge;
        const uint64 end = offset + bytes.size();
        const auto error = end > node_->content.size() ? growTo(end) : SystemError::none;
        node_->content.write(offset, bytes);
        touch();
        return error;
    }

    Result<uint64> size() override { return node_->content.size(); }

    SystemError resize(uint64 size) override {
        if (!writable()) return SystemError::accessDenied;
        if (size > kLargestFile) return SystemError::fileTooLarge;
        const uint64 present = node_->content.size();
        if (size > present && !files_.grow(size - present)) return SystemError::diskFull;
        if (size < present) files_.shrink(present - size);
        node_->content.resize(size);
        touch();
        return SystemError::none;
    }

    SystemError flush() override { return SystemError::none; }
    FileWindow* window() override {
        if (!std::exchange(windowTried_, true) && files_.hasWindows())
            window_ = node_->content.window(writable());
        return window_.get();
    }
    const Text& name() const noexcept override { return node_->name; }
    Result<bool> inPlace() override { return files_.find(node_->name) == node_; }

    SystemError tryLock(ByteRange range) override {
        if (!lockable(range)) return SystemError::invalidParameter;
        if (!writable()) return SystemError::accessDenied;
        for (const auto* opening : node_->openings)
            if (opening->holds(range)) return SystemError::lockViolation;
        locks_.push_back(range);
        return SystemError::none;
    }

    SystemError unlock(ByteRange range) override {
        if (!lockable(range)) return SystemError::invalidParameter;
        std::vector<ByteRange> rest;
        const uint64 end = range.offset + range.length;
        for (const auto lock : locks_) {
            const uint64 lockEnd = lock.offset + lock.length;
            if (!overlap(lock, range)) {
                rest.push_back(lock);
                continue;
            }
            if (lock.offset < range.offset) rest.push_back({lock.offset, range.offset - lock.offset});
            if (end < lockEnd) rest.push_back({end, lockEnd - end});
        }
        locks_ = std::move(rest);
        return SystemError::none;
    }

    Result<bool> isLocked(ByteRange range) override {
        if (!lockable(range)) return SystemError::invalidParameter;
        return std::any_of(node_->openings.begin(), node_->openings.end(),
                           [&](const Opening* opening) { return opening != this && opening->holds(range); });
    }

    SystemError share(Sharing mode) override {
        const bool refused =
            std::any_of(node_->openings.begin(), node_->openings.end(), [&](const Opening* opening) {
                return opening != this && (mode == Sharing::none || opening->sharing() == Sharing::none);
            });
        if (refused) return SystemError::sharingViolation;
        request_.sharing = mode;
        return SystemError::none;
    }

    SystemError show(uint64 number) override {
        if (number > lockRanges::kGreatestSign) return SystemError::invalidParameter;
        shown_ = number;
        return SystemError::none;
    }

    Result<uint64> greatestShown(uint64 floor) override {
        uint64 greatest = 0;
        for (const auto* opening : node_->openings)
            if (opening != this && opening->shown_ > floor) greatest = std::max(greatest, opening->shown_);
        return greatest;
    }

    Result<bool> stands() override { return !cutOff_; }

    void cutOff() {
        cutOff_ = cutOff_ || !locks_.empty() || shown_ != 0;
        locks_.clear();
        shown_ = 0;
    }

    bool remote() const noexcept override {
        return files_.driveKind_ == DriveKind::remote || files_.driveKind_ == DriveKind::unknown;
    }

    SystemError refresh(RefreshAs) override { return SystemError::none; }

    Result<std::size_t> readServed(uint64 offset, std::span<std::byte> into) override {
        return readAt(offset, into);
    }

    Sharing sharing() const { return request_.sharing; }
    std::unique_ptr<FileWindow> takeWindow() { return std::move(window_); }

 private:
    bool writable() const { return request_.access == Access::readWrite; }
    bool holds(ByteRange range) const {
        return std::any_of(locks_.begin(), locks_.end(),
                           [&](ByteRange lock) { return overlap(lock, range); });
    }
    void touch() { node_->status.changed = files_.now_; }

    // As far as the disk has room.
    SystemError growTo(uint64 end) {
        const uint64 wanted = end - node_->content.size();
        const uint64 got = files_.freeSpace_ ? std::min(wanted, *files_.freeSpace_) : wanted;
        static_cast<void>(files_.grow(got));
        node_->content.resize(node_->content.size() + got);
        return got == wanted ? SystemError::none : SystemError::diskFull;
    }

    MemoryFiles& files_;
    std::shared_ptr<Node> node_;
    OpenRequest request_;
    std::vector<ByteRange> locks_;
    uint64 shown_ = 0;
    bool cutOff_ = false;
    bool windowTried_ = false;
    std::unique_ptr<FileWindow> window_;
};

bool MemoryFiles::Entry::operator==(const Entry& other) const {
    return name == other.name && content == other.content && status.folder == other.status.folder &&
           status.hidden == other.status.hidden && status.readOnly == other.status.readOnly;
}

MemoryFiles::MemoryFiles() = default;
MemoryFiles::~MemoryFiles() = default;

std::shared_ptr<MemoryFiles::Node> MemoryFiles::find(TextView name) const {
    const auto found = nodes_.find(keyOf(name));
    return found == nodes_.end() ? nullptr : found->second;
}

std::shared_ptr<MemoryFiles::Node> MemoryFiles::required(TextView name) const {
    auto node = find(name);
    if (!node) throw std::out_of_range("no file " + toUtf8(name));
    return node;
}

bool MemoryFiles::folderExists(TextView name) const {
    if (isRoot(plain(name))) return true;
    const auto node = find(name);
    return node && node->status.folder;
}

std::shared_ptr<MemoryFiles::Node> MemoryFiles::add(TextView name, bool folder) {
    auto node = std::make_shared<Node>();
    node->name = plain(name);
    node->status.folder = folder;
    node->status.changed = now_;
    // The folder keeps the spelling it was made in.
    if (const auto above = find(folderOf(node->name))) node->name = above->name + u"/" + lastOf(node->name);
    node->status.hidden = lastOf(node->name).starts_with(u'.');
    nodes_[keyOf(name)] = node;
    return node;
}

// As on a real ground: a network file has none.
bool MemoryFiles::hasWindows() const {
    return offersWindows_ && (driveKind_ == DriveKind::fixed || driveKind_ == DriveKind::ramDisk);
}

bool MemoryFiles::grow(uint64 bytes) {
    if (!freeSpace_) return true;
    if (bytes > *freeSpace_) return false;
    *freeSpace_ -= bytes;
    return true;
}

SystemError MemoryFiles::openable(const Node& node, OpenRequest request) const {
    const bool change =
        request.access == Access::readWrite || request.disposition == Disposition::createEmpty;
    if (node.status.folder || (change && node.status.readOnly)) return SystemError::accessDenied;
    const bool exclusive =
        std::any_of(node.openings.begin(), node.openings.end(),
                    [](const Opening* opening) { return opening->sharing() == Sharing::none; });
    const bool refused = exclusive || (request.sharing == Sharing::none && !node.openings.empty());
    return refused ? SystemError::sharingViolation : SystemError::none;
}

Result<std::unique_ptr<File>> MemoryFiles::open(TextView name, OpenRequest request) {
    if (badName(name)) return SystemError::invalidName;
    if (const auto error = openErrors_.find(keyOf(name)); error != openErrors_.end() && failed(error->second))
        return error->second;
    if (!folderExists(folderOf(plain(name)))) return SystemError::pathNotFound;
    auto node = find(name);
    if (!node && isRoot(plain(name))) return SystemError::accessDenied;
    if (!node && request.disposition == Disposition::openExisting) return SystemError::fileNotFound;
    if (!node) node = add(name, false);
    if (const auto error = openable(*node, request); failed(error)) return error;
    if (request.disposition == Disposition::createEmpty && node->content.size() != 0) {
        shrink(node->content.size());
        node->content.resize(0);
        node->status.changed = now_;
    }
    return std::unique_ptr<File>(std::make_unique<Opening>(*this, std::move(node), request));
}

Result<FileStatus> MemoryFiles::status(TextView name) {
    if (badName(name)) return SystemError::invalidName;
    if (isRoot(plain(name))) return FileStatus{.folder = true, .changed = now_};
    if (const auto node = find(name)) {
        auto status = node->status;
        status.size = node->content.size();
        return status;
    }
    return folderExists(folderOf(plain(name))) ? SystemError::fileNotFound : SystemError::pathNotFound;
}

SystemError MemoryFiles::remove(TextView name) {
    const auto found = status(name);
    if (!found) return found.error();
    if (found.value().folder || found.value().readOnly) return SystemError::accessDenied;
    const auto node = required(name);
    if (!node->openings.empty()) return SystemError::sharingViolation;
    shrink(node->content.size());
    nodes_.erase(keyOf(name));
    return SystemError::none;
}

SystemError MemoryFiles::rename(TextView from, TextView to, bool replace) {
    const auto found = status(from);
    if (!found) return found.error();
    if (badName(to)) return SystemError::invalidName;
    if (!folderExists(folderOf(plain(to)))) return SystemError::pathNotFound;
    const auto source = required(from);
    if (!source->openings.empty()) return SystemError::sharingViolation;
    const bool itself = keyOf(from) == keyOf(to);
    if (const auto target = find(to); target && !itself) {
        if (!replace) return SystemError::alreadyExists;
        if (const auto error = remove(to); failed(error)) return error;
    }
    // A folder takes along what lies in it.
    const Text oldKey = keyOf(from), newKey = keyOf(to), newName = plain(to);
    Nodes moved;
    for (auto it = nodes_.begin(); it != nodes_.end();) {
        const bool below = it->first == oldKey || it->first.starts_with(oldKey + u"/");
        if (below) {
            it->second->name = newName + it->second->name.substr(
                                             source == it->second ? it->second->name.size() : oldKey.size());
            moved[newKey + it->first.substr(oldKey.size())] = it->second;
        }
        it = below ? nodes_.erase(it) : std::next(it);
    }
    nodes_.merge(moved);
    source->status.hidden = source->status.hidden || lastOf(newName).starts_with(u'.');
    return SystemError::none;
}

SystemError MemoryFiles::exchange(TextView from, TextView to) {
    if (!exchanges_) return SystemError::notSupported;
    for (const TextView name : {from, to}) {
        const auto found = status(name);
        if (!found) return found.error();
        if (found->folder || found->readOnly) return SystemError::accessDenied;
        if (!required(name)->openings.empty()) return SystemError::sharingViolation;
    }
    std::swap(required(from)->name, required(to)->name);
    std::swap(nodes_[keyOf(from)], nodes_[keyOf(to)]);
    return SystemError::none;
}

SystemError MemoryFiles::makeFolder(TextView name) {
    if (badName(name)) return SystemError::invalidName;
    if (folderExists(name)) return SystemError::none;
    if (find(name)) return SystemError::alreadyExists;
    if (!folderExists(folderOf(plain(name)))) return SystemError::pathNotFound;
    add(name, true);
    return SystemError::none;
}

SystemError MemoryFiles::flushFolder(TextView name) {
    return folderExists(name) ? SystemError::none : SystemError::pathNotFound;
}

Result<std::vector<FolderEntry>> MemoryFiles::list(TextView folder) {
    if (!folderExists(folder)) return SystemError::pathNotFound;
    const Text above = keyOf(folder);
    std::vector<FolderEntry> entries;
    for (const auto& [key, node] : nodes_) {
        if (folderOf(key) != (above == u"/" ? u"" : above)) continue;
        entries.push_back({lastOf(node->name), node->status});
        entries.back().status.size = node->content.size();
    }
    return entries;
}

DriveKind MemoryFiles::driveKind(TextView name) {
    return folderExists(name) || folderExists(folderOf(plain(name))) ? driveKind_ : DriveKind::unknown;
}

void MemoryFiles::cutOff(TextView name) {
    for (auto* opening : required(name)->openings) opening->cutOff();
}

Bytes MemoryFiles::dump(TextView name) const { return required(name)->content.all(); }

void MemoryFiles::put(TextView name, BytesView content) {
    putFolder(folderOf(plain(name)));
    auto node = find(name);
    if (!node) node = add(name, false);
    node->content.assign(content);
    node->status.changed = now_;
}

void MemoryFiles::putFolder(TextView name) {
    if (folderExists(name)) return;
    putFolder(folderOf(plain(name)));
    add(name, true);
}

void MemoryFiles::setHidden(TextView name, bool hidden) { required(name)->status.hidden = hidden; }

void MemoryFiles::setReadOnly(TextView name, bool readOnly) { required(name)->status.readOnly = readOnly; }

void MemoryFiles::failOpening(TextView name, SystemError error) { openErrors_[keyOf(name)] = error; }

std::unique_ptr<FileWindow> MemoryFiles::close(std::unique_ptr<File> file) {
    return file ? static_cast<Opening&>(*file).takeWindow() : nullptr;
}

std::size_t MemoryFiles::openings() const {
    std::size_t count = 0;
    for (const auto& [key, node] : nodes_) count += node->openings.size();
    return count;
}

MemoryFiles::Snapshot MemoryFiles::snapshot() const {
    Snapshot all;
    for (const auto& [key, node] : nodes_) all[key] = {node->name, node->status, node->content.all()};
    return all;
}

void MemoryFiles::restore(const Snapshot& snapshot) {
    nodes_.clear();
    for (const auto& [key, entry] : snapshot) {
        auto node = std::make_shared<Node>();
        node->name = entry.name;
        node->status = entry.status;
        node->content.assign(entry.content);
        nodes_[key] = std::move(node);
    }
}

}  // namespace tsRtm::test
