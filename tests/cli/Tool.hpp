#pragma once
// The tool as a user starts it: a process, its output and its exit status.
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "tests/support/TempFolder.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/platform/posix/PosixSettings.hpp"

namespace tsRtm::test {

struct Answer {
    int status = -1;
    std::string out;
    std::string err;
    nlohmann::json json() const { return nlohmann::json::parse(out); }
};

// Runs the tool in a folder of its own, with settings of its own, apart from the terminal and the locale.
class Tool : public ::testing::Test {
 protected:
    // Waits for locks end after a second.
    Tool() {
        platform::posix::PosixSettings settings(path("config/tessarol"), path("etc/tessarol"));
        EXPECT_EQ(settings.set(platform::HKeys::currentUser, u"Software\\Tessarol", u"NetWait", u"1"),
                  platform::SystemError::none);
    }

    // Arguments as a shell takes them.
    Answer run(const std::string& arguments, const std::string& input = "/dev/null") {
        const std::string command =
            start(arguments) + " <'" + input + "' >'" + path("out") + "' 2>'" + path("err") + "'";
        Answer answer;
        const int status = std::system(command.c_str());
        answer.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        answer.out = read("out");
        answer.err = read("err");
        return answer;
    }
    // The same where nothing may go wrong.
    Answer ok(const std::string& arguments) {
        Answer answer = run(arguments);
        EXPECT_EQ(answer.status, 0) << arguments << '\n' << answer.err;
        return answer;
    }
    // A failure is one line that tells this.
    void refused(const std::string& arguments, int status, const std::string& tells) {
        const Answer answer = run(arguments);
        EXPECT_EQ(answer.status, status) << arguments;
        EXPECT_HOLDS(answer.err, tells) << arguments;
        EXPECT_TRUE(answer.err.starts_with("tsrtm: ")) << answer.err;
        EXPECT_EQ(answer.err.find('\n'), answer.err.size() - 1) << answer.err;
    }

    // The same for many arguments behind what they have in common: "arguments -> tells | arguments -> tells".
    void refusedEach(const std::string& command, int status, const std::string& all) {
        for (std::size_t at = 0, end = 0; end != std::string::npos; at = end + 3) {
            end = all.find(" | ", at);
            const std::string row = all.substr(at, end == std::string::npos ? end : end - at);
            const auto arrow = row.find("-> ");
            refused(command + row.substr(0, arrow), status, row.substr(arrow + 3));
        }
    }
    void prints(const std::string& arguments, const std::string& out) {
        EXPECT_EQ(ok(arguments).out, out) << arguments;
    }
    void shows(const std::string& arguments, const std::string& part) {
        const std::string out = ok(arguments).out;
        EXPECT_HOLDS(out, part) << arguments;
    }
    nlohmann::json json(const std::string& arguments) { return ok(arguments + " --json").json(); }
    // Numbers of the records that an answer has, each with a blank behind it.
    std::string numbers(const std::string& arguments) {
        std::string found;
        const auto answer = json(arguments);
        for (const auto& record : answer["records"]) found += record["nr"].dump() + " ";
        return found;
    }
    static nlohmann::json parsed(const char* text) { return nlohmann::json::parse(text); }

    std::string start(const std::string& arguments) const {
        const std::string folder = folder_.path().string();
        return "cd '" + folder + "' && env LC_ALL=C HOME='" + folder + "' XDG_CONFIG_HOME='" +
               path("config") + "' XDG_CONFIG_DIRS='" + path("etc") + "' '" TSRTM_TOOL "' " + arguments;
    }
    std::string path(const std::string& entry) const { return (folder_.path() / entry).string(); }
    void write(const std::string& entry, const std::string& content) const {
        std::ofstream(path(entry), std::ios::binary) << content;
    }
    std::string read(const std::string& entry) const { return contentOf(path(entry)); }
    bool exists(const std::string& entry) const { return std::filesystem::exists(path(entry)); }

    // Persons with a name, a place, an amount and a day.
    void makePersons(const std::string& more = "--max 1000") {
        ok("db create P --field NAME:text:20 --field ORT:text:20 --field BETRAG:zahl:10:2 --field TAG:datum "
           "--index NAME --index ORT,NAME --index TAG " +
           more);
    }
    void makePersonsNamed(std::initializer_list<const char*> names, const std::string& more = "--max 1000") {
        makePersons(more);
        for (const char* name : names) ok(std::string("db add P NAME=") + name);
    }

 private:
    TempFolder folder_;
};

}  // namespace tsRtm::test
