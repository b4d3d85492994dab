#pragma once
// Files in front of other files, whose calls pass a gate: what is common to the doubles that fail and die.
#include <functional>

#include "tsRtm/platform/FileSystem.hpp"

namespace tsRtm::test {

// Lets calls pass, or not.
class Gate {
 public:
    enum class Step { free, look, change };  // free: costs nothing; change: of what lies on the disk
    using Half = std::function<void()>;      // does the first half of a write

    virtual ~Gate() = default;
    // none: the call is to be done. Any other error is its outcome.
    [[nodiscard]] virtual platform::SystemError pass(Step step, const Half& half = {}) = 0;
    // Whether a window is damaged by a store that did not pass, or does not know of it.
    virtual bool damagesWindows() const { return true; }

    template <class Work>
    auto through(Step step, Work work, const Half& half = {}) -> decltype(work()) {
        if (const auto error = pass(step, half); platform::failed(error)) return error;
        return work();
    }
};

class GuardedWindow final : public platform::FileWindow {
 public:
    GuardedWindow(platform::FileWindow& inner, Gate& gate) : inner_(inner), gate_(gate) {}

    const std::byte* data() const noexcept override { return inner_.data(); }
    uint64 capacity() const noexcept override { return inner_.capacity(); }
    bool reserve(uint64 size) override {
        return !failed(gate_.pass(Gate::Step::look)) && inner_.reserve(size);
    }
    void store(uint64 offset, std::span<const std::byte> bytes) override {
        const auto half = [&] { inner_.store(offset, bytes.first(bytes.size() / 2)); };
        const auto error = gate_.pass(bytes.empty() ? Gate::Step::look : Gate::Step::change, half);
        if (!failed(error)) return inner_.store(offset, bytes);
        damaged_ = damaged_ || gate_.damagesWindows();
    }
    bool damaged() const noexcept override { return damaged_ || inner_.damaged(); }
    bool renew() noexcept override {
        damaged_ = false;
        return inner_.renew();
    }

 private:
    platform::FileWindow& inner_;
    Gate& gate_;
    bool damaged_ = false;
};

// Its gate outlives it.
class GuardedFile : public platform::File {
    using Inner = platform::File;
    using Step = Gate::Step;
    using Error = platform::SystemError;
    template <class T>
    using Result = platform::Result<T>;

    template <class Member, class... Arguments>
    auto handOn(Step step, Member member, const Arguments&... arguments) {
        return gate_.through(step, [&] { return ((*inner_).*member)(arguments...); });
    }

 public:
    GuardedFile(std::unique_ptr<platform::File> inner, Gate& gate)
        : inner_(std::move(inner)), gate_(gate), name_(inner_->name()) {}

    Result<std::size_t> readAt(uint64 offset, std::span<std::byte> into) override {
        return handOn(Step::look, &Inner::readAt, offset, into);
    }
    Error writeAt(uint64 offset, std::span<const std::byte> bytes) override {
        const auto write = [&](std::size_t count) { return inner_->writeAt(offset, bytes.first(count)); };
        return gate_.through(
            bytes.empty() ? Step::look : Step::change, [&] { return write(bytes.size()); },
            [&] { static_cast<void>(write(bytes.size() / 2)); });
    }
    Result<uint64> size() override { return handOn(Step::look, &Inner::size); }
    Error resize(uint64 size) override { return handOn(Step::change, &Inner::resize, size); }
    Error flush() override { return handOn(Step::look, &Inner::flush); }
    Error tryLock(platform::ByteRange range) override { return handOn(Step::look, &Inner::tryLock, range); }
    Error unlock(platform::ByteRange range) override { return handOn(Step::look, &Inner::unlock, range); }
    Result<bool> isLocked(platform::ByteRange range) override {
        return handOn(Step::look, &Inner::isLocked, range);
    }
    Error share(platform::Sharing mode) override { return handOn(Step::look, &Inner::share, mode); }
    Error show(uint64 number) override { return handOn(Step::look, &Inner::show, number); }
    Result<uint64> greatestShown(uint64 floor) override {
        return handOn(Step::look, &Inner::greatestShown, floor);
    }
    Result<bool> stands() override { return handOn(ofShare(), &Inner::stands); }
    bool remote() const noexcept override { return inner_ && inner_->remote(); }
    Error refresh(platform::RefreshAs standing) override {
        return handOn(ofShare(), &Inner::refresh, standing);
    }
    Result<std::size_t> readServed(uint64 offset, std::span<std::byte> into) override {
        return handOn(Step::look, &Inner::readServed, offset, into);
    }
    platform::FileWindow* window() override {
        auto* const inner = !window_ && inner_ ? inner_->window() : nullptr;
        if (inner) window_ = std::make_unique<GuardedWindow>(*inner, gate_);
        return window_.get();
    }
    const Text& name() const noexcept override { return name_; }
    Result<bool> inPlace() override { return handOn(Step::free, &Inner::inPlace); }

 protected:
    std::unique_ptr<platform::File> inner_;  // may go away once nothing passes any more

 private:
    Step ofShare() const { return remote() ? Step::look : Step::free; }

    Gate& gate_;
    Text name_;
    std::unique_ptr<GuardedWindow> window_;
};

// Hands all on to another file system, which outlives it.
class GuardedFiles : public platform::FileSystem {
    using Inner = platform::FileSystem;
    using Step = Gate::Step;
    using Error = platform::SystemError;
    template <class T>
    using Result = platform::Result<T>;
    using Opened = Result<std::unique_ptr<platform::File>>;

    template <class Member, class... Arguments>
    auto handOn(Step step, Member member, const Arguments&... arguments) {
        return gate().through(step, [&] { return (inner_.*member)(arguments...); });
    }

 public:
    explicit GuardedFiles(platform::FileSystem& inner) : inner_(inner) {}

    Opened open(TextView name, platform::OpenRequest request) override {
        using enum platform::Disposition;
        const auto how = request.disposition;
        const bool changes = how == createEmpty || (how == openOrCreate && !inner_.status(name).ok());
        return gate().through(changes ? Step::change : Step::look, [&]() -> Opened {
            auto opened = inner_.open(name, request);
            return opened ? Opened(guarded(std::move(*opened))) : Opened(opened.error());
        });
    }
    Result<platform::FileStatus> status(TextView name) override {
        return handOn(Step::look, &Inner::status, name);
    }
    Result<std::vector<platform::FolderEntry>> list(TextView folder) override {
        return handOn(Step::look, &Inner::list, folder);
    }
    platform::DriveKind driveKind(TextView name) override { return inner_.driveKind(name); }
    Error remove(TextView name) override { return handOn(Step::change, &Inner::remove, name); }
    Error rename(TextView from, TextView to, bool replace) override {
        return handOn(Step::change, &Inner::rename, from, to, replace);
    }
    Error exchange(TextView from, TextView to) override {
        return handOn(Step::change, &Inner::exchange, from, to);
    }
    Error makeFolder(TextView name) override { return handOn(Step::change, &Inner::makeFolder, name); }
    Error flushFolder(TextView name) override { return handOn(Step::look, &Inner::flushFolder, name); }
    Error recycle(TextView name) override { return handOn(Step::change, &Inner::recycle, name); }
    Error copyAccess(TextView from, TextView to) override {
        return handOn(Step::change, &Inner::copyAccess, from, to);
    }
    Error unhide(TextView name) override { return handOn(Step::change, &Inner::unhide, name); }

 protected:
    virtual Gate& gate() = 0;  // of the calls by name
    virtual std::unique_ptr<platform::File> guarded(std::unique_ptr<platform::File> opened) {
        return std::make_unique<GuardedFile>(std::move(opened), gate());
    }

 private:
    platform::FileSystem& inner_;
};

}  // namespace tsRtm::test
