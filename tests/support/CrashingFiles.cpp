#include "tests/support/CrashingFiles.hpp"

#include <algorithm>

namespace tsRtm::test {

using namespace platform;

namespace {

constexpr auto kGone = SystemError::deviceError;

using ByteSpan = std::span<const std::byte>;
ByteSpan firstHalf(ByteSpan bytes) { return bytes.first(bytes.size() / 2); }

}  // namespace

class CrashingFiles::Window final : public FileWindow {
 public:
    Window(CrashingFiles& files, User& user, FileWindow& inner) : files_(files), user_(user), inner_(inner) {}

    const std::byte* data() const noexcept override { return inner_.data(); }
    uint64 capacity() const noexcept override { return inner_.capacity(); }
    bool reserve(uint64 size) override { return user_.died ? size <= capacity() : inner_.reserve(size); }
    void store(uint64 offset, ByteSpan bytes) override {
        if (bytes.empty() || files_.change(user_, [&] { inner_.store(offset, firstHalf(bytes)); }))
            inner_.store(offset, bytes);
    }
    bool damaged() const noexcept override { return inner_.damaged(); }
    bool renew() noexcept override { return inner_.renew(); }

 private:
    CrashingFiles& files_;
    User& user_;
    FileWindow& inner_;
};

class CrashingFiles::Opening final : public File {
 public:
    Opening(CrashingFiles& files, std::unique_ptr<File> inner)
        : files_(files), user_(*files.now_), inner_(std::move(inner)), name_(inner_->name()) {
        user_.openings.push_back(this);
    }
    ~Opening() override { std::erase(user_.openings, this); }

    // The memory of a window is read to the last.
    void close() { left_ = MemoryFiles::close(std::move(inner_)); }

    Result<std::size_t> readAt(uint64 offset, std::span<std::byte> into) override {
        if (!inner_) return kGone;
        return inner_->readAt(offset, into);
    }
    SystemError writeAt(uint64 offset, ByteSpan bytes) override {
        if (!inner_) return kGone;
        if (bytes.empty()) return inner_->writeAt(offset, bytes);
        const auto half = [&] { static_cast<void>(inner_->writeAt(offset, firstHalf(bytes))); };
        return files_.change(user_, half) ? inner_->writeAt(offset, bytes) : kGone;
    }
    Result<uint64> size() override {
        if (!inner_) return kGone;
        return inner_->size();
    }
    SystemError resize(uint64 size) override { return files_.change(user_) ? inner_->resize(size) : kGone; }
    SystemError flush() override { return inner_ ? inner_->flush() : kGone; }
    SystemError tryLock(ByteRange range) override { return inner_ ? inner_->tryLock(range) : kGone; }
    SystemError unlock(ByteRange range) override { return inner_ ? inner_->unlock(range) : kGone; }
    Result<bool> isLocked(ByteRange range) override {
        if (!inner_) return kGone;
        return inner_->isLocked(range);
    }
    SystemError share(Sharing mode) override { return inner_ ? inner_->share(mode) : kGone; }
    SystemError show(uint64 number) override { return inner_ ? inner_->show(number) : kGone; }
    Result<uint64> greatestShown(uint64 floor) override {
        if (!inner_) return kGone;
        return inner_->greatestShown(floor);
    }
    bool remote() const noexcept override { return inner_ && inner_->remote(); }
    SystemError refresh(RefreshAs standing) override { return inner_ ? inner_->refresh(standing) : kGone; }
    FileWindow* window() override {
        auto* const inner = !window_ && inner_ ? inner_->window() : nullptr;
        if (inner) window_ = std::make_unique<Window>(files_, user_, *inner);
        return window_.get();
    }
    const Text& name() const noexcept override { return name_; }
    Result<bool> inPlace() override {
        if (!inner_) return kGone;
        return inner_->inPlace();
    }

 private:
    CrashingFiles& files_;
    User& user_;
    std::unique_ptr<File> inner_;       // nullptr after the death
    std::unique_ptr<FileWindow> left_;  // its window then
    std::unique_ptr<Window> window_;
    Text name_;
};

void CrashingFiles::dieAt(int64 n, LastWrite last, Manner manner) {
    now_->changes = 0;
    now_->diesAt = n;
    now_->last = last;
    now_->manner = manner;
}

void CrashingFiles::interrupt(std::function<void()> others, LastWrite part) {
    now_->others = std::move(others);
    now_->part = part;
}

bool CrashingFiles::change(User& user, const std::function<void()>& half) {
    if (user.died) return false;
    if (const auto others = std::exchange(user.others, nullptr)) {
        if (half && user.part == LastWrite::firstHalf) half();
        auto* const working = now_;
        others();
        now_ = working;
        user.others = others;
        if (user.died) return false;
    }
    if (user.diesAt == 0 || user.changes + 1 != user.diesAt) {
        ++user.changes;
        return true;
    }
    if (half && user.last == LastWrite::firstHalf) half();
    end(user);
    if (user.manner == Manner::throws) throw ProcessDied{};
    return false;
}

void CrashingFiles::kill(int32 user) { end(users_[user]); }

void CrashingFiles::end(User& user) {
    if (std::exchange(user.died, true)) return;
    for (auto* opening : user.openings) opening->close();
}

bool CrashingFiles::changesDisk(TextView name, Disposition disposition) {
    if (disposition == Disposition::openExisting) return false;
    return disposition == Disposition::createEmpty || !disk_.status(name).ok();
}

Result<std::unique_ptr<File>> CrashingFiles::open(TextView name, OpenRequest request) {
    if (died()) return kGone;
    if (changesDisk(name, request.disposition) && !change(*now_)) return kGone;
    auto opened = disk_.open(name, request);
    if (!opened) return opened.error();
    return std::unique_ptr<File>(std::make_unique<Opening>(*this, std::move(*opened)));
}

Result<FileStatus> CrashingFiles::status(TextView name) {
    if (died()) return kGone;
    return disk_.status(name);
}

SystemError CrashingFiles::remove(TextView name) { return change(*now_) ? disk_.remove(name) : kGone; }

SystemError CrashingFiles::rename(TextView from, TextView to, bool replace) {
    return change(*now_) ? disk_.rename(from, to, replace) : kGone;
}

SystemError CrashingFiles::exchange(TextView from, TextView to) {
    return change(*now_) ? disk_.exchange(from, to) : kGone;
}

SystemError CrashingFiles::copyAccess(TextView from, TextView to) {
    return change(*now_) ? disk_.copyAccess(from, to) : kGone;
}

SystemError CrashingFiles::makeFolder(TextView name) {
    return change(*now_) ? disk_.makeFolder(name) : kGone;
}

SystemError CrashingFiles::flushFolder(TextView name) { return died() ? kGone : disk_.flushFolder(name); }

SystemError CrashingFiles::unhide(TextView name) { return change(*now_) ? disk_.unhide(name) : kGone; }

Result<std::vector<FolderEntry>> CrashingFiles::list(TextView folder) {
    if (died()) return kGone;
    return disk_.list(folder);
}

SystemError CrashingFiles::recycle(TextView name) { return change(*now_) ? disk_.recycle(name) : kGone; }

}  // namespace tsRtm::test
