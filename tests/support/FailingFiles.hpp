#pragma once
// A file system whose n-th call fails, or is made when others have worked.
//
//     FailingFiles files(memory);
//     work(files);  // once through: files.calls() says how many calls there are
//     for (int n = 1; n <= calls; ++n) {
//         files.failAt(n, SystemError::deviceError);
//         work(files);
//         check();
//     }
#include <functional>
#include <utility>

#include "tests/support/GuardedFiles.hpp"

namespace tsRtm::test {

// Counts all calls but driveKind, of every open file all but remote, inPlace, name, window and, on a local
// drive, stands and refresh, and of a window reserve and store. A failing call is not handed on; a window
// that failed to store is damaged.
class FailingFiles final : public GuardedFiles, private Gate {
 public:
    enum class Times { once, fromThenOn };

    using GuardedFiles::GuardedFiles;

    // The n-th call from now on fails, 1-based; the count starts anew.
    void failAt(int64 n, platform::SystemError error, Times times = Times::once) {
        others_ = nullptr;
        calls_ = failures_ = 0;
        at_ = n;
        error_ = error;
        times_ = times;
    }
    // Before the n-th call from now on others work, who may call, too; the count starts anew.
    void beforeCall(int64 n, std::function<void()> others) {
        disarm();
        othersAt_ = n;
        others_ = std::move(others);
    }
    // That call has come.
    bool othersWorked() const { return !others_; }
    // Nothing fails and nobody else works; the count starts anew.
    void disarm() { failAt(0, platform::SystemError::none); }
    int64 calls() const { return calls_; }
    // How many calls have failed since it was armed.
    int64 failures() const { return failures_; }

 private:
    Gate& gate() override { return *this; }
    platform::SystemError pass(Gate::Step step, const Half&) override {
        if (step == Gate::Step::free) return platform::SystemError::none;
        ++calls_;
        if (others_ && calls_ == othersAt_) std::exchange(others_, nullptr)();
        const bool fails = at_ > 0 && (times_ == Times::once ? calls_ == at_ : calls_ >= at_);
        failures_ += fails ? 1 : 0;
        return fails ? error_ : platform::SystemError::none;
    }

    std::function<void()> others_;
    int64 othersAt_ = 0;
    int64 calls_ = 0;
    int64 failures_ = 0;
    int64 at_ = 0;
    Times times_ = Times::once;
    platform::SystemError error_ = platform::SystemError::none;
};

}  // namespace tsRtm::test
