#include "tests/support/CrashingFiles.hpp"

#include <algorithm>

namespace tsRtm::test {

using namespace platform;

namespace {
constexpr auto kGone = SystemError::deviceError;
}

class CrashingFiles::Opening final : public File {
 public:
    Opening(CrashingFiles& files, std::unique_ptr<File> inner)
        : files_(files), inner_(std::move(inner)), name_(inner_->name()) {
        files_.openings_.push_back(this);
    }
    ~Opening() override { std::erase(files_.openings_, this); }

    void close() { inner_.reset(); }

    Result<std::size_t> readAt(uint64 offset, std::span<std::byte> into) override {
        if (!inner_) return kGone;
        return inner_->readAt(offset, into);
    }
    SystemError writeAt(uint64 offset, std::span<const std::byte> bytes) override {
        if (!inner_) return kGone;
        if (bytes.empty()) return inner_->writeAt(offset, bytes);
        if (files_.dueNow() && files_.last_ == LastWrite::firstHalf)
            static_cast<void>(inner_->writeAt(offset, bytes.first(bytes.size() / 2)));
        return files_.alive() ? inner_->writeAt(offset, bytes) : kGone;
    }
    Result<uint64> size() override {
        if (!inner_) return kGone;
        return inner_->size();
    }
    SystemError resize(uint64 size) override {
        return inner_ && files_.alive() ? inner_->resize(size) : kGone;
    }
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
    FileWindow* window() override { return nullptr; }
    const Text& name() const noexcept override { return name_; }

 private:
    CrashingFiles& files_;
    std::unique_ptr<File> inner_;  // nullptr after the death
    Text name_;
};

void CrashingFiles::dieAt(int64 n, LastWrite last, Manner manner) {
    changes_ = 0;
    at_ = n;
    last_ = last;
    manner_ = manner;
}

bool CrashingFiles::alive() {
    if (died_) return false;
    if (!dueNow()) {
        ++changes_;
        return true;
    }
    die();
    return false;
}

void CrashingFiles::die() {
    died_ = true;
    for (auto* opening : openings_) opening->close();
    if (manner_ == Manner::throws) throw ProcessDied{};
}

bool CrashingFiles::changesDisk(TextView name, Disposition disposition) {
    if (disposition == Disposition::openExisting) return false;
    return disposition == Disposition::createEmpty || !inner_.status(name).ok();
}

Result<std::unique_ptr<File>> CrashingFiles::open(TextView name, OpenRequest request) {
    if (died_) return kGone;
    if (changesDisk(name, request.disposition) && !alive()) return kGone;
    auto opened = inner_.open(name, request);
    if (!opened) return opened.error();
    return std::unique_ptr<File>(std::make_unique<Opening>(*this, std::move(*opened)));
}

Result<FileStatus> CrashingFiles::status(TextView name) {
    if (died_) return kGone;
    return inner_.status(name);
}

SystemError CrashingFiles::remove(TextView name) { return alive() ? inner_.remove(name) : kGone; }

SystemError CrashingFiles::rename(TextView from, TextView to, bool replace) {
    return alive() ? inner_.rename(from, to, replace) : kGone;
}

SystemError CrashingFiles::exchange(TextView from, TextView to) {
    return alive() ? inner_.exchange(from, to) : kGone;
}

SystemError CrashingFiles::copyAccess(TextView from, TextView to) {
    return alive() ? inner_.copyAccess(from, to) : kGone;
}

SystemError CrashingFiles::makeFolder(TextView name) { return alive() ? inner_.makeFolder(name) : kGone; }

Result<std::vector<FolderEntry>> CrashingFiles::list(TextView folder) {
    if (died_) return kGone;
    return inner_.list(folder);
}

SystemError CrashingFiles::recycle(TextView name) { return alive() ? inner_.recycle(name) : kGone; }

}  // namespace tsRtm::test
