#include "bench/support/Gate.hpp"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include "bench/support/Measure.hpp"

namespace tsRtm::bench {
namespace {

void send(int end) {
    if (const char token = 1; ::write(end, &token, 1) != 1) die("gate: write");
}

bool receive(int end) {
    char token = 0;
    return ::read(end, &token, 1) == 1;
}

}  // namespace

Gate::Gate(int processes) {
    if (::pipe(ready_.data()) != 0 || ::pipe(start_.data()) != 0 || ::pipe(done_.data()) != 0)
        die("gate: pipe");
    std::fflush(stdout);
    for (int i = 1; i <= processes; ++i) {
        const pid_t pid = ::fork();
        if (pid < 0) die("gate: fork");
        if (pid == 0) {
            child_ = i;
            // Only the parent holds these ends then: should it die, the children hear of it.
            ::close(ready_[0]);
            ::close(start_[1]);
            ::close(done_[0]);
            return;
        }
        children_.push_back(pid);
    }
    // Only the children hold these ends now: the parent reads an end of file once all have died.
    ::close(ready_[1]);
    ::close(done_[1]);
}

void Gate::waitForStart() {
    send(ready_[1]);
    ::close(ready_[1]);
    if (!receive(start_[0])) die("gate: no start");
}

void Gate::endOfChild() {
    send(done_[1]);
    ::_exit(0);
}

void Gate::expectFromAll(const Pipe& pipe, const char* otherwise) const {
    for (std::size_t i = 0; i < children_.size(); ++i)
        if (!receive(pipe[0])) die(otherwise);
}

double Gate::run() {
    expectFromAll(ready_, "a process died before the start");
    const Stopwatch watch;
    for (std::size_t i = 0; i < children_.size(); ++i) send(start_[1]);
    expectFromAll(done_, "a process died at work");
    const double seconds = watch.seconds();
    for (const pid_t pid : children_) {
        int status = 0;
        ::waitpid(pid, &status, 0);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) die("a process failed");
    }
    return seconds;
}

Victim::Victim(const std::function<void()>& work) {
    if (::pipe(go_.data()) != 0) bench::die("victim: pipe");
    std::fflush(stdout);
    pid_ = ::fork();
    if (pid_ < 0) bench::die("victim: fork");
    if (pid_ != 0) return;
    ::close(go_[1]);
    if (receive(go_[0])) work();
    bench::die("the victim lives");
}

void Victim::die() {
    send(go_[1]);
    int status = 0;
    ::waitpid(pid_, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) bench::die("the victim failed before its death");
}

}  // namespace tsRtm::bench
