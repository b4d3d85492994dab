#include "tests/support/CrashingFiles.hpp"

namespace tsRtm::test {

using platform::SystemError;

class CrashingFiles::Opening final : public GuardedFile {
 public:
    Opening(std::unique_ptr<platform::File> inner, User& user)
        : GuardedFile(std::move(inner), user), user_(user) {
        user_.openings.push_back(this);
    }
    ~Opening() override { std::erase(user_.openings, this); }

    // The memory of a window is read to the last.
    void close() { left_ = MemoryFiles::close(std::move(inner_)); }

 private:
    User& user_;
    std::unique_ptr<platform::FileWindow> left_;
};

std::unique_ptr<platform::File> CrashingFiles::guarded(std::unique_ptr<platform::File> opened) {
    return std::make_unique<Opening>(std::move(opened), *now_);
}

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

// Counts a change, which may be the last.
SystemError CrashingFiles::User::pass(Step step, const Half& half) {
    constexpr auto kGone = SystemError::deviceError;
    if (died) return kGone;
    if (step != Step::change) return SystemError::none;
    if (const auto interrupting = std::exchange(others, nullptr)) {
        if (half && part == LastWrite::firstHalf) half();
        auto* const working = files.now_;
        interrupting();
        files.now_ = working;
        others = interrupting;
        if (died) return kGone;
    }
    if (diesAt == 0 || changes + 1 != diesAt) {
        ++changes;
        return SystemError::none;
    }
    if (half && last == LastWrite::firstHalf) half();
    end();
    if (manner == Manner::throws) throw ProcessDied{};
    return kGone;
}

void CrashingFiles::User::end() {
    if (std::exchange(died, true)) return;
    for (auto* opening : openings) opening->close();
}

}  // namespace tsRtm::test
