#pragma once
// Work in processes of their own, which die at a change of a file that was drawn for them.
#include <sys/prctl.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdio>

#include "tests/support/GuardedFiles.hpp"
#include "tsRtm/frame/runtime/Lifetime.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/platform/posix/PosixPlatform.hpp"

namespace tsRtm::test {

// Real files, of which one change is the last that the process begins; with windows or without.
class Mortal final : public GuardedFiles, public Gate {
    class Windowless final : public GuardedFile {
     public:
        using GuardedFile::GuardedFile;
        platform::FileWindow* window() override { return nullptr; }
    };

 public:
    // Dies at the n-th change, 0 never.
    Mortal(platform::FileSystem& inner, bool windows, std::atomic<bool>* dying, int32 changes)
        : GuardedFiles(inner), windows_(windows), dying_(dying), left_(changes) {}

 private:
    Gate& gate() override { return *this; }
    platform::SystemError pass(Gate::Step step, const Half&) override {
        if (step != Gate::Step::change || left_ == 0 || --left_ > 0) return platform::SystemError::none;
        *dying_ = true;
        ::kill(::getpid(), SIGKILL);
        return platform::SystemError::deviceError;
    }
    std::unique_ptr<platform::File> guarded(std::unique_ptr<platform::File> file) override {
        if (windows_) return GuardedFiles::guarded(std::move(file));
        return std::make_unique<Windowless>(std::move(file), *this);
    }

    bool windows_;
    std::atomic<bool>* dying_;
    int32 left_;
};

// Work in a process of its own: the library of this one holds no files. It dies at the n-th change of a file,
// at 0 never.
template <class Work>
pid_t apart(bool windows, Work work, std::atomic<bool>* dying = nullptr, int32 changes = 0) {
    const pid_t pid = ::fork();
    if (pid != 0) return pid;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const auto& ground = platform::posixPlatform();
    Mortal files(ground.files, windows, dying, changes);
    platform::Platform own{files,          ground.clock, ground.locale, ground.settings, ground.settingsCare,
                           ground.system,  ground.user,  ground.screen, ground.ui,       ground.dialogs,
                           ground.choices, ground.texts, ground.random, ground.zones};
    rtmMain::TEST_restart(own);
    rtmMain::state().netWait = 2;
    work();
    std::fflush(stdout);
    ::_exit(0);
}

}  // namespace tsRtm::test
