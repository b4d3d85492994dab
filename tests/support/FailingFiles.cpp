#include "tests/support/FailingFiles.hpp"

namespace tsRtm::test {

using namespace platform;

class FailingFiles::Window final : public FileWindow {
 public:
    Window(FailingFiles& files, FileWindow& inner) : files_(files), inner_(inner) {}

    const std::byte* data() const noexcept override { return inner_.data(); }
    uint64 capacity() const noexcept override { return inner_.capacity(); }
    bool reserve(uint64 size) override { return !failed(files_.next()) && inner_.reserve(size); }
    void store(uint64 offset, std::span<const std::byte> bytes) override {
        if (failed(files_.next()))
            damaged_ = true;
        else
            inner_.store(offset, bytes);
    }
    bool damaged() const noexcept override { return damaged_ || inner_.damaged(); }
    bool renew() noexcept override {
        damaged_ = false;
        return inner_.renew();
    }

 private:
    FailingFiles& files_;
    FileWindow& inner_;
    bool damaged_ = false;
};

class FailingFiles::Opening final : public File {
 public:
    Opening(FailingFiles& files, std::unique_ptr<File> inner) : files_(files), inner_(std::move(inner)) {}

    Result<std::size_t> readAt(uint64 offset, std::span<std::byte> into) override {
        if (const auto error = files_.next(); failed(error)) return error;
        return inner_->readAt(offset, into);
    }
    SystemError writeAt(uint64 offset, std::span<const std::byte> bytes) override {
        const auto error = files_.next();
        return failed(error) ? error : inner_->writeAt(offset, bytes);
    }
    Result<uint64> size() override {
        if (const auto error = files_.next(); failed(error)) return error;
        return inner_->size();
    }
    SystemError resize(uint64 size) override {
        const auto error = files_.next();
        return failed(error) ? error : inner_->resize(size);
    }
    SystemError flush() override {
        const auto error = files_.next();
        return failed(error) ? error : inner_->flush();
    }
    SystemError tryLock(ByteRange range) override {
        const auto error = files_.next();
        return failed(error) ? error : inner_->tryLock(range);
    }
    SystemError unlock(ByteRange range) override {
        const auto error = files_.next();
        return failed(error) ? error : inner_->unlock(range);
    }
    Result<bool> isLocked(ByteRange range) override {
        if (const auto error = files_.next(); failed(error)) return error;
        return inner_->isLocked(range);
    }
    SystemError share(Sharing mode) override {
        const auto error = files_.next();
        return failed(error) ? error : inner_->share(mode);
    }
    SystemError show(uint64 number) override {
        const auto error = files_.next();
        return failed(error) ? error : inner_->show(number);
    }
    Result<uint64> greatestShown(uint64 floor) override {
        if (const auto error = files_.next(); failed(error)) return error;
        return inner_->greatestShown(floor);
    }
    bool remote() const noexcept override { return inner_->remote(); }
    SystemError refresh(RefreshAs standing) override {
        // It costs nothing on a local drive, so it does not count there.
        if (!remote()) return inner_->refresh(standing);
        const auto error = files_.next();
        return failed(error) ? error : inner_->refresh(standing);
    }
    FileWindow* window() override {
        auto* const inner = window_ ? nullptr : inner_->window();
        if (inner) window_ = std::make_unique<Window>(files_, *inner);
        return window_.get();
    }
    const Text& name() const noexcept override { return inner_->name(); }
    Result<bool> inPlace() override { return inner_->inPlace(); }

 private:
    FailingFiles& files_;
    std::unique_ptr<File> inner_;
    std::unique_ptr<Window> window_;
};

void FailingFiles::failAt(int64 n, SystemError error, Times times) {
    calls_ = 0;
    failures_ = 0;
    at_ = n;
    error_ = error;
    times_ = times;
}

SystemError FailingFiles::next() {
    ++calls_;
    const bool fails = at_ > 0 && (times_ == Times::once ? calls_ == at_ : calls_ >= at_);
    if (!fails) return SystemError::none;
    ++failures_;
    return error_;
}

Result<std::unique_ptr<File>> FailingFiles::open(TextView name, OpenRequest request) {
    if (const auto error = next(); failed(error)) return error;
    auto opened = inner_.open(name, request);
    if (!opened) return opened.error();
    return std::unique_ptr<File>(std::make_unique<Opening>(*this, std::move(*opened)));
}

Result<FileStatus> FailingFiles::status(TextView name) {
    if (const auto error = next(); failed(error)) return error;
    return inner_.status(name);
}

SystemError FailingFiles::remove(TextView name) {
    const auto error = next();
    return failed(error) ? error : inner_.remove(name);
}

SystemError FailingFiles::rename(TextView from, TextView to, bool replace) {
    const auto error = next();
    return failed(error) ? error : inner_.rename(from, to, replace);
}

SystemError FailingFiles::exchange(TextView from, TextView to) {
    const auto error = next();
    return failed(error) ? error : inner_.exchange(from, to);
}

SystemError FailingFiles::copyAccess(TextView from, TextView to) {
    const auto error = next();
    return failed(error) ? error : inner_.copyAccess(from, to);
}

SystemError FailingFiles::makeFolder(TextView name) {
    const auto error = next();
    return failed(error) ? error : inner_.makeFolder(name);
}

SystemError FailingFiles::flushFolder(TextView name) {
    const auto error = next();
    return failed(error) ? error : inner_.flushFolder(name);
}

SystemError FailingFiles::unhide(TextView name) {
    const auto error = next();
    return failed(error) ? error : inner_.unhide(name);
}

Result<std::vector<FolderEntry>> FailingFiles::list(TextView folder) {
    if (const auto error = next(); failed(error)) return error;
    return inner_.list(folder);
}

SystemError FailingFiles::recycle(TextView name) {
    const auto error = next();
    return failed(error) ? error : inner_.recycle(name);
}

}  // namespace tsRtm::test
