// Several users on one database of a share, each in a process of his own; what they are answered is held
// against what was told as stored.
//
//     share_users office SECONDS FOLDER FOLDER FOLDER   three users, one of them is killed, and one who
//     reads;
//                                                       twice, with a reorganisation in between
//     share_users cut FOLDER FOLDER MOUNT COMMAND       two users, and a third one whose mount is taken away:
//                                                       COMMAND makes the mount MOUNT
//
// The folders are mounts of one volume. The last line sums up; the exit code is 1 where something was wrong.
#include <filesystem>
#include <string>
#include <thread>

#include "tests/stress/Users.hpp"

namespace tsRtm::test {
namespace {

using namespace std::chrono_literals;

constexpr Form kForm{100000, 60, DBAnsi};
constexpr auto kLongestWait = 30s;
constexpr int64 kWorkAfterwards = 20;  // by those who are left

void rest(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

Text officeIn(const std::string& folder) { return fromUtf8(folder + "/Office"); }

bool makeOffice(const std::string& folder) {
    std::filesystem::create_directories(folder);
    board->begin();
    return asOne(kForm, [&] { prepare(kForm, officeIn(folder)); }) && board->faults == 0;
}

// Users who begin together, each in the folder of his mount.
class Day {
 public:
    void begins(const std::string& folder, User::Kind kind = User::worker) {
        const auto user = static_cast<int32>(users_.size());
        users_.push_back(apart(kForm.windows, [&] {
            User(kForm, officeIn(folder), user, static_cast<uint32>(user) + 1, kind).work();
        }));
    }
    void kill(std::size_t user) {
        ::kill(users_[user], SIGKILL);
        ::waitpid(std::exchange(users_[user], 0), nullptr, 0);
        board->bury(static_cast<int32>(user));
    }
    // Whether each has worked, and all who live came to their end.
    bool ends() {
        board->stop = true;
        bool well = true;
        for (std::size_t user = 0; user < users_.size(); ++user) {
            int status = 0;
            if (users_[user] != 0) ::waitpid(users_[user], &status, 0);
            if (status == 0 && board->works[user] > 0) continue;
            std::printf("  user %zu did %lld works and ended with %d\n", user,
                        static_cast<long long>(board->works[user]), status);
            well = false;
        }
        return well;
    }

 private:
    std::vector<pid_t> users_;
};

int verdict(const char* what, bool worked, const char* more) {
    std::printf("%s: %lld works, %lld refused, %lld reorganised, %d faults%s\n", what,
                static_cast<long long>(board->worked()), static_cast<long long>(board->refusals),
                static_cast<long long>(board->reorganised), board->faults.load(), more);
    return worked && board->faults == 0 ? 0 : 1;
}

// Three users, one of whom is killed in the middle of it, and one who reads. Whether the others went on and
// ended well.
bool halfDay(std::chrono::milliseconds time, const std::vector<std::string>& folders) {
    Day day;
    board->stop = false;
    for (const auto& folder : folders) day.begins(folder);
    day.begins(folders.back(), User::reader);
    rest(time / 2);
    day.kill(1);
    const int64 then = board->worked();
    rest(time / 2);
    const bool wentOn = board->worked() > then + kWorkAfterwards;
    if (!wentOn) std::printf("  the others did not go on\n");
    return day.ends() && wentOn;
}

int office(const std::string& seconds, const std::vector<std::string>& folders) {
    if (!makeOffice(folders[0])) return 1;
    const auto time = std::chrono::milliseconds(std::stoi(seconds) * 500);
    // What is left is packed between the halves, on another mount than the database was made on.
    const bool worked = halfDay(time, folders) && verify(kForm, officeIn(folders[1])) &&
                        halfDay(time, folders) && verify(kForm, officeIn(folders[0]));
    return verdict("office", worked, ", packed twice, two killed");
}

// The process that serves a mount, 0 where there is none.
pid_t clientOf(const std::string& mount) {
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        std::ifstream in(entry.path() / "cmdline");
        std::string line((std::istreambuf_iterator<char>(in)), {});
        if (line.find("glusterfs") != std::string::npos && line.find(mount + '\0') != std::string::npos &&
            line.find("share_users") == std::string::npos)
            return static_cast<pid_t>(std::stoi(name));
    }
    return 0;
}

int cut(const std::vector<std::string>& folders, const std::string& mount, const std::string& command) {
    if (!makeOffice(folders[0]) || std::system((command + " " + mount).c_str()) != 0) return 1;
    Day day;
    for (const auto& folder : folders) day.begins(folder);
    const std::string below = std::filesystem::path(folders[0]).filename();
    day.begins(mount + "/" + below, User::leavesAtRefusal);
    rest(3s);
    const pid_t client = clientOf(mount);
    if (client == 0 || std::system(("umount -l " + mount).c_str()) != 0) return 1;
    rest(3s);
    ::kill(client, SIGKILL);
    const int64 then = board->worked();
    const auto start = Clock::now();
    const auto wentOn = [&] { return board->worked() > then + kWorkAfterwards; };
    while (!wentOn() && Clock::now() - start < kLongestWait) rest(100ms);
    const bool others = wentOn();
    rest(1s);
    const bool worked = day.ends() && others && verify(kForm, officeIn(folders[0]));
    return verdict("cut", worked, others ? ", one mount cut off" : ", the others did NOT go on");
}

int run(const std::vector<std::string>& words) {
    const std::string mode = words.empty() ? "" : words[0];
    const std::vector<std::string> rest(words.begin() + (words.empty() ? 0 : 1), words.end());
    if (mode == "office" && rest.size() == 4) return office(rest[0], {rest[1], rest[2], rest[3]});
    if (mode == "cut" && rest.size() == 4) return cut({rest[0], rest[1]}, rest[2], rest[3]);
    std::printf("share_users office|cut ...: see the head of its source\n");
    return 2;
}

}  // namespace
}  // namespace tsRtm::test

int main(int count, char** words) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    try {
        return tsRtm::test::run({words + 1, words + count});
    } catch (const std::exception& failure) {
        std::printf("share_users: %s\n", failure.what());
        return 1;
    }
}
