// Several users on one database of a share, each in a process of his own; what they are answered is held
// against what was told as stored.
//
//     share_users office SECONDS FOLDER FOLDER FOLDER   three users, one of them is killed, and one who
//     reads;
//                                                       twice, with a reorganisation in between
//     share_users cut FOLDER FOLDER MOUNT COMMAND       two users, and a third one whose mount is taken away:
//                                                       COMMAND makes the mount MOUNT
//     share_users cost FOLDER [FOLDER]                  what adds and searches cost; a writer on the second
//     one
//
// The folders are mounts of one volume. The last line sums up; the exit code is 1 where something was wrong.
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "tests/share/ShareUser.hpp"
#include "tests/support/ChildProcess.hpp"

namespace tsRtm::test {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Process = std::unique_ptr<ChildProcess>;

constexpr auto kMeasured = 4s;
constexpr auto kLongestWait = 30s;
constexpr int64 kWorkAfterwards = 5;  // adds by those who are left

void rest(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

bool makeDatabase(const std::string& folder, int32 records = 0) {
    std::filesystem::create_directories(folder);
    ChildProcess maker([&](ChildProcess::Line&) {
        TestGround ground;
        auto real = ground.on(platform::posixPlatform().files, platform::posixPlatform().clock);
        rtmMain::TEST_restart(real);
        clsRtm rtm;
        const auto db = makeOffice(rtm, folder);
        if (!db) return 1;
        for (int32 n = 0; n < kFixed; ++n)
            if (addAddress(*db, fixedRow(n)) < 1) return 1;
        for (int32 n = 0; n < records; ++n)
            if (addAddress(*db, {u"viel" + toText(10000 + (n * 7919) % 9973), u"Ort", u"", u""}) < 1)
                return 1;
        db->Schliesse();
        return 0;
    });
    if (maker.wait() == 0) return true;
    std::printf("  cannot make a database in %s\n", folder.c_str());
    return false;
}

Process start(Board& board, const std::string& folder, int32 user, bool readOnly,
              bool endsAtRefusal = false) {
    return std::make_unique<ChildProcess>([&, user, readOnly, endsAtRefusal](ChildProcess::Line& line) {
        ShareUser own(board, folder, user, readOnly);
        line.say(own ? 'O' : 'X');
        if (!own) return 1;
        own.work(endsAtRefusal);
        return 0;
    });
}

// Until the process is at work; false where it could not open the database.
bool works(const Process& process) { return process->line().hear() == 'O'; }

// What is left when all have ended.
bool holds(Board& board, const std::string& folder) {
    ChildProcess last([&](ChildProcess::Line&) {
        ShareUser user(board, folder, 0, false);
        return user && user.holdsAll() ? 0 : 1;
    });
    return last.wait() == 0;
}

int verdict(const Board& board, const char* what, bool whole, const std::string& more) {
    if (board.said > 0) std::printf("  the last message: %s\n", board.message);
    std::printf(
        "%s: %lld adds, %lld changes, %lld marks, %lld memos with rows, %lld searches, %lld by who only "
        "reads; %lld refused, "
        "%lld wrong, %s%s\n",
        what, static_cast<long long>(board.adds), static_cast<long long>(board.changes),
        static_cast<long long>(board.marks), static_cast<long long>(board.noted),
        static_cast<long long>(board.searches), static_cast<long long>(board.looks),
        static_cast<long long>(board.refused), static_cast<long long>(board.wrong),
        whole ? "nothing lost, no lock left, sound" : "NOT WHOLE", more.c_str());
    return whole && board.wrong == 0 ? 0 : 1;
}

// Between two halves of a day, on another mount than the database was made on.
bool packs(Board& board, const std::string& folder) {
    ChildProcess packer([&](ChildProcess::Line&) {
        ShareUser user(board, folder, 1, false);
        return user && user.holdsAll() && user.settleAndPack() ? 0 : 1;
    });
    return packer.wait() == 0;
}

// Three users, one of whom is killed in the middle of it, and one who reads. Whether the others went on and
// ended well.
bool halfDay(Board& board, std::chrono::milliseconds time, const std::vector<std::string>& folders) {
    board.stop = false;
    std::vector<Process> users;
    for (int32 user = 0; user < kUsers; ++user)
        users.push_back(start(board, folders[static_cast<std::size_t>(user)], user, false));
    users.push_back(start(board, folders.back(), 0, true));
    bool opened = true;
    for (const auto& user : users) opened = works(user) && opened;
    rest(time / 2);
    users[1]->kill();
    const auto then = board.adds.load();
    rest(time / 2);
    const bool wentOn = board.adds > then;
    board.stop = true;
    bool ended = true;
    for (std::size_t i = 0; i < users.size(); ++i)
        if (i != 1) ended = users[i]->wait() == 0 && ended;
    if (!opened || !wentOn || !ended) std::printf("  somebody did not work to the end\n");
    return opened && wentOn && ended;
}

int office(const std::string& seconds, const std::vector<std::string>& folders) {
    Board& board = Board::make();
    if (!makeDatabase(folders[0])) return 1;
    const auto time = std::chrono::milliseconds(std::stoi(seconds) * 500);
    const bool worked = halfDay(board, time, folders);
    const bool packed = worked && packs(board, folders[1]);
    if (worked && !packed) std::printf("  could not be packed\n");
    const bool whole = packed && halfDay(board, time, folders) && holds(board, folders[0]);
    return verdict(board, "office", whole, ", packed once, two killed");
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
    Board& board = Board::make();
    if (!makeDatabase(folders[0])) return 1;
    if (std::system((command + " " + mount).c_str()) != 0) return 1;
    const std::string below = std::filesystem::path(folders[0]).filename();
    std::vector<Process> users;
    for (int32 user = 0; user < 2; ++user)
        users.push_back(start(board, folders[static_cast<std::size_t>(user)], user, false));
    users.push_back(start(board, mount + "/" + below, 2, false, true));
    bool opened = true;
    for (const auto& user : users) opened = works(user) && opened;
    rest(3s);
    const pid_t client = clientOf(mount);
    if (client == 0 || std::system(("umount -l " + mount).c_str()) != 0) return 1;
    rest(3s);
    const auto before = board.operations();
    ::kill(client, SIGKILL);
    const auto then = board.adds.load();
    const auto start = Clock::now();
    while (board.adds <= then + kWorkAfterwards && Clock::now() - start < kLongestWait) rest(100ms);
    const bool wentOn = board.adds > then + kWorkAfterwards;
    rest(1s);
    board.stop = true;
    bool ended = true;
    for (const auto& user : users) ended = user->wait() == 0 && ended;
    const bool whole = opened && wentOn && ended && before > 0 && holds(board, folders[0]);
    return verdict(board, "cut", whole, wentOn ? ", one mount cut off" : ", the others did NOT go on");
}

struct Pace {
    double a, median, slowest;  // a second; milliseconds, the 99th of a hundred
};

template <class Work>
Pace paceOf(Work work) {
    std::vector<double> times;
    const auto start = Clock::now();
    while (Clock::now() - start < kMeasured) {
        const auto before = Clock::now();
        if (!work()) break;
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - before).count());
    }
    if (times.empty()) return {};
    std::sort(times.begin(), times.end());
    const double all = std::chrono::duration<double>(Clock::now() - start).count();
    return {static_cast<double>(times.size()) / all, times[times.size() / 2], times[times.size() * 99 / 100]};
}

int cost(const std::vector<std::string>& folders) {
    Board& board = Board::make();
    if (!makeDatabase(folders[0], 100)) return 1;
    const auto report = [](const char* what, const Pace& pace) {
        std::printf("  %-28s %9.1f a second, median %8.3f ms, 99%% below %8.3f ms\n", what, pace.a,
                    pace.median, pace.slowest);
    };
    const auto search = [&](ShareUser& user) {
        const Address row = fixedRow(static_cast<int32>(board.looks++ % kFixed));
        user.db().Gehezu(keyOf(row));
        if (user.db().Error() != 0 || user.db().Fields(fNAME) != row.name) ++board.wrong;
        return true;
    };
    {
        ChildProcess alone([&](ChildProcess::Line&) {
            ShareUser user(board, folders[0], 0, false);
            if (!user) return 1;
            report("adds", paceOf([&] { return !user.full() && user.add(); }));
            report("searches", paceOf([&] { return search(user); }));
            return 0;
        });
        if (alone.wait() != 0) return 1;
    }
    const auto writer = std::make_unique<ChildProcess>([&](ChildProcess::Line& line) {
        ShareUser user(board, folders.back(), 1, false);
        line.say('O');
        while (user && !board.stop && !user.full() && user.add()) {
        }
        return 0;
    });
    if (!works(writer)) return 1;
    {
        ChildProcess reader([&](ChildProcess::Line&) {
            ShareUser user(board, folders[0], 0, true);
            if (!user) return 1;
            report("searches beside a writer", paceOf([&] { return search(user); }));
            return 0;
        });
        if (reader.wait() != 0) return 1;
    }
    board.stop = true;
    writer->wait();
    std::printf("cost: %lld wrong, %lld refused\n", static_cast<long long>(board.wrong),
                static_cast<long long>(board.refused));
    return board.wrong == 0 && board.refused == 0 ? 0 : 1;
}

int run(const std::vector<std::string>& words) {
    const std::string mode = words.empty() ? "" : words[0];
    const std::vector<std::string> rest(words.begin() + (words.empty() ? 0 : 1), words.end());
    if (mode == "office" && rest.size() == 4) return office(rest[0], {rest[1], rest[2], rest[3]});
    if (mode == "cut" && rest.size() == 4) return cut({rest[0], rest[1]}, rest[2], rest[3]);
    if (mode == "cost" && (rest.size() == 1 || rest.size() == 2)) return cost(rest);
    std::printf("share_users office|cut|cost ...: see the head of its source\n");
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
