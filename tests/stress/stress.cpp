// Users of one database who are killed and stopped at random:
//
//     stress [seconds] [seed]
//
// Each user dies at a change of a file that was drawn for him. Both forms of an index, with windows on the
// files and without, long records among them. Ends with 1 where something was lost.
#include "tests/stress/Users.hpp"
#include "tests/support/TempFolder.hpp"

namespace tsRtm::test {
namespace {

struct Round {
    const char* name;
    Form form;
};
constexpr Round kRounds[] = {{"flat", {30000, 60, DBAnsi}},
                             {"tree", {100000, 60, DBAnsi}},
                             {"tree, long", {100000, 5000, DBAnsi}},
                             {"flat without windows", {30000, 60, DBUnicode, false}},
                             {"tree without windows", {100000, 60, DBAnsi, false}},
                             {"tree, long, without windows", {100000, 3000, DBUnicode, false}}};

class Office {
 public:
    Office(const Round& round, uint32 seed) : round_(round), random_(seed) {}

    void run(std::chrono::milliseconds duration) {
        board->begin();
        asOne(form_, [this] { prepare(form_, folder_); });
        for (int32 user = 0; user < kUsers; ++user) start(user);
        int32 deaths = 0, all = 0;
        for (const auto end = Clock::now() + duration; Clock::now() < end;) {
            // The others go on for a while, before somebody comes who looks what was left.
            ::usleep(static_cast<useconds_t>(random_() % 20000));
            for (int32 user = 0; user < kUsers; ++user) deaths += startAgain(user) ? 1 : 0;
            if (random_() % 8 == 0) pause(static_cast<int32>(random_() % kUsers));
            if (random_() % 100 != 0) continue;
            ++all;
            for (auto& dying : board->dying) dying = true;
            for (int32 user = 0; user < kUsers; ++user) {
                ::kill(users_[user], SIGKILL);
                bury(user, 0);
            }
            verify(form_, folder_);
            for (int32 user = 0; user < kUsers; ++user) start(user);
        }
        board->stop = true;
        for (const pid_t pid : users_) ::waitpid(pid, nullptr, 0);
        verify(form_, folder_);
        std::printf(
            "%-28s %8lld works, %5lld refused, %3lld reorganised, %4d died, %2d times all, longest %.0f ms, "
            "%d records\n",
            round_.name, static_cast<long long>(board->worked()), static_cast<long long>(board->refusals),
            static_cast<long long>(board->reorganised), deaths, all,
            static_cast<float64>(board->longest) / 1000, board->records.load());
        std::fflush(stdout);
    }

 private:
    void start(int32 user) {
        board->dying[user] = false;
        const auto seed = static_cast<uint32>(random_());
        users_[user] = apart(
            form_.windows, [&] { User(form_, folder_, user, seed).work(); }, &board->dying[user],
            1 + static_cast<int32>(random_() % 400));
    }
    // False where the user still lives.
    bool bury(int32 user, int options) {
        int status = 0;
        if (::waitpid(users_[user], &status, options) == 0) return false;
        if (!WIFSIGNALED(status) || WTERMSIG(status) != SIGKILL) fault("end of a user", status);
        board->bury(user);
        return true;
    }
    bool startAgain(int32 user) {
        if (!bury(user, WNOHANG)) return false;
        start(user);
        return true;
    }
    void pause(int32 user) {
        const pid_t pid = users_[user];
        ::kill(pid, SIGSTOP);
        ::usleep(static_cast<useconds_t>(random_() % 60000));
        ::kill(pid, SIGCONT);
    }

    const Round& round_;
    const Form& form_ = round_.form;
    std::mt19937 random_;
    TempFolder temp_;
    Text folder_ = temp_.name(u"stress");
    pid_t users_[kUsers]{};
};

}  // namespace
}  // namespace tsRtm::test

int main(int argc, char** argv) {
    using namespace tsRtm::test;
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 60;
    const auto seed = static_cast<unsigned>(argc > 2 ? std::atoi(argv[2]) : ::getpid());
    std::printf("seed %u\n", seed);
    std::fflush(stdout);
    for (const auto& round : kRounds) {
        if (board->faults != 0) break;
        Office(round, seed)
            .run(std::chrono::milliseconds(seconds * 1000 / static_cast<int>(std::size(kRounds))));
    }
    std::printf("%d faults\n", board->faults.load());
    return board->faults == 0 ? 0 : 1;
}
