#pragma once
// A second process that runs a piece of a test, step by step with the first.
//
//     ChildProcess other([&](ChildProcess::Line& line) {
//         ... take a lock ...
//         line.say('L');                       // locked
//         return line.hear() == 'E' ? 0 : 1;   // until told to end
//     });
//     ASSERT_EQ(other.line().hear(), 'L');
//     ... see the lock ...
//     other.line().say('E');
//     EXPECT_EQ(other.wait(), 0);
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>
#include <utility>

namespace tsRtm::test {

// Made by fork(), so the work sees all that the test has made; it must not use what is not safe across a fork
// (an open SQLite database, an opening of a file whose locks it is to fight). Killed at the end of the object
// if it still runs.
class ChildProcess {
 public:
    // One end of a two-way line of single characters.
    class Line {
     public:
        Line(int in, int out) : in_(in), out_(out) {}
        ~Line() { hangUp(); }
        Line(const Line&) = delete;
        Line& operator=(const Line&) = delete;

        // False where nobody listens any more.
        bool say(char c) { return ::write(out_, &c, 1) == 1; }
        // '\0' where the other side is gone, or has said nothing for half a minute: a test fails then instead
        // of hanging.
        char hear() {
            struct pollfd wait {
                in_, POLLIN, 0
            };
            char c = '\0';
            return ::poll(&wait, 1, 30'000) == 1 && ::read(in_, &c, 1) == 1 ? c : '\0';
        }
        void hangUp() {
            for (int* end : {&in_, &out_})
                if (*end >= 0) ::close(std::exchange(*end, -1));
        }

     private:
        int in_;
        int out_;
    };

    // `work` is called with its end of the line; what it gives is the exit code, 99 if it throws.
    template <class Work>
    explicit ChildProcess(Work work) : ChildProcess(Pipes()) {
        if (process_ != 0) return;
        int code = 99;
        try {
            code = work(line_);
        } catch (...) {
        }
        ::_exit(code);  // no destructors: the parent's objects are not ours to end
    }
    ~ChildProcess() { kill(); }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    Line& line() { return line_; }

    // Exit code, or minus the signal that ended it.
    int wait() {
        int status = 0;
        const bool ended = process_ > 0 && ::waitpid(std::exchange(process_, -1), &status, 0) > 0;
        if (!ended) return -1000;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    // As when the user kills it: nothing of it runs any more.
    void kill() {
        if (process_ <= 0) return;
        ::kill(process_, SIGKILL);
        wait();
    }

 private:
    struct Pipes {
        Pipes() {
            if (::pipe(down) != 0 || ::pipe(up) != 0) throw std::runtime_error("no pipe");
            process = ::fork();
            if (process < 0) throw std::runtime_error("no process");
            const bool child = process == 0;
            ::close(child ? down[1] : down[0]);
            ::close(child ? up[0] : up[1]);
        }
        int in() const { return process == 0 ? down[0] : up[0]; }
        int out() const { return process == 0 ? up[1] : down[1]; }
        int down[2], up[2];
        pid_t process;
    };
    explicit ChildProcess(const Pipes& pipes) : process_(pipes.process), line_(pipes.in(), pipes.out()) {
        ::signal(SIGPIPE, SIG_IGN);
    }

    pid_t process_;
    Line line_;
};

}  // namespace tsRtm::test
