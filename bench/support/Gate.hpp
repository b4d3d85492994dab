#pragma once
// Starts several processes at one moment and takes the time until the last one is done.
#include <sys/types.h>

#include <array>
#include <functional>
#include <vector>

namespace tsRtm::bench {

//     Gate gate(4);
//     if (const int me = gate.child()) {
//         ... open, prepare ...
//         gate.waitForStart();
//         ... work ...
//         gate.endOfChild();
//     }
//     const double seconds = gate.run();
//
// A child that dies ends the parent, too.
class Gate {
 public:
    // Forks; the caller holds no open database and no thread.
    explicit Gate(int processes);
    // 1 .. processes in a child, 0 in the parent.
    int child() const noexcept { return child_; }

    // In a child: ready; back when all may start.
    void waitForStart();
    // In a child: done. Does not return.
    [[noreturn]] void endOfChild();
    // In the parent: seconds from the start to the end of the last child.
    double run();

 private:
    using Pipe = std::array<int, 2>;
    void expectFromAll(const Pipe& pipe, const char* otherwise) const;

    Pipe ready_{}, start_{}, done_{};
    std::vector<pid_t> children_;
    int child_ = 0;
};

// A process that works when it is told to, and is expected to die in the middle of it.
class Victim {
 public:
    // Forks; the caller holds no open database and no thread. `work` ends by _exit.
    explicit Victim(const std::function<void()>& work);
    // Lets it work; back when it has died.
    void die();

 private:
    std::array<int, 2> go_{};
    pid_t pid_ = 0;
};

}  // namespace tsRtm::bench
