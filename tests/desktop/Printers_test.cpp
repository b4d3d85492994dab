// A real printer behind the library: what a job asks for arrives there.
#include <arpa/inet.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QThread>
#include <QTimer>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "tests/desktop/Paper.hpp"

namespace tsRtm::test {
namespace {

// A program that runs until the object ends. Nothing of it is seen.
class Program {
 public:
    explicit Program(std::vector<std::string> words) {
        std::vector<char*> list;
        for (auto& word : words) list.push_back(word.data());
        list.push_back(nullptr);
        posix_spawn_file_actions_t quiet;
        posix_spawn_file_actions_init(&quiet);
        for (const int stream : {1, 2})
            posix_spawn_file_actions_addopen(&quiet, stream, "/dev/null", O_WRONLY, 0);
        if (posix_spawnp(&id_, list[0], &quiet, nullptr, list.data(), environ) != 0) id_ = 0;
        posix_spawn_file_actions_destroy(&quiet);
    }
    ~Program() { stop(); }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    void stop() {
        if (id_ <= 0) return;
        kill(id_, SIGTERM);
        waitpid(std::exchange(id_, 0), nullptr, 0);
    }

 private:
    pid_t id_ = 0;
};

template <class Condition>
bool comes(Condition condition) {
    for (int tries = 0; tries < 200; ++tries, QThread::msleep(50))
        if (condition()) return true;
    return false;
}

template <class Address>
bool connects(const Address& address) {
    const int socket = ::socket(*reinterpret_cast<const sa_family_t*>(&address), SOCK_STREAM, 0);
    const bool connected = connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(socket);
    return connected;
}

// Whether somebody listens there: the socket's name alone stays behind, too.
bool listens(const std::string& name) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    name.copy(address.sun_path, sizeof address.sun_path - 1);
    return connects(address);
}

sockaddr_in local(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int freePort() {
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = local(0);
    socklen_t size = sizeof address;
    const bool got = bind(socket, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                     getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    close(socket);
    return got ? ntohs(address.sin_port) : 0;
}

// A printer of A4, Letter and some more, both sides, three bins, and any paper between A6 and A3. Each
// document it gets lies as N.pdf in its folder, with what was asked of it in N.txt.
class IppPrinter {
 public:
    // Why there is none; empty: it runs.
    std::string start() {
        namespace fs = std::filesystem;
        if (system("command -v ippeveprinter >/dev/null") != 0) return "cups-ipp-utils is not installed";
        // It makes itself known by avahi, which needs the system's bus.
        const std::pair<std::string, std::vector<std::string>> served[] = {
            {"/run/dbus/system_bus_socket", {"dbus-daemon", "--system", "--nofork", "--nopidfile"}},
            {"/run/avahi-daemon/socket", {"avahi-daemon", "--no-drop-root", "--no-rlimits"}}};
        for (const auto& [socket, command] : served) {
            if (listens(socket)) continue;
            if (geteuid() != 0) return "no system bus with avahi, and not root";
            fs::create_directories(fs::path(socket).parent_path());
            helpers_.push_back(std::make_unique<Program>(command));
            if (!comes([&, &name = socket] { return listens(name); })) return command[0] + " does not start";
        }
        const auto command = path("arrive");
        std::ofstream(command) << "#!/bin/sh\nn=1\nwhile [ -e '" << path("")
                               << "'$n.pdf ]; do n=$((n+1)); done\n"
                               << "env | grep ^IPP_ > '" << path("") << "'$n.txt\n"
                               << "cp \"$1\" '" << path("") << "'$n.new && mv '" << path("") << "'$n.new '"
                               << path("") << "'$n.pdf\n";
        fs::permissions(command, fs::perms::owner_all);
        port_ = freePort();
        printer_ = std::make_unique<Program>(std::vector<std::string>{
            "ippeveprinter", "-2", "-p", std::to_string(port_), "-n", "localhost", "-f", "application/pdf",
            "-d", path(""), "-k", "-c", command, "Zimmer " + std::to_string(port_)});
        return comes([&] { return connects(local(port_)); }) ? "" : "ippeveprinter does not start";
    }
    void stop() { printer_.reset(); }
    Text address() const { return u"ipp://localhost:" + toText(port_) + u"/ipp/print"; }
    // What was asked of the document of that number, which is waited for.
    std::map<std::string, std::string> asked(int number) const {
        std::map<std::string, std::string> found;
        if (!comes([&] { return std::filesystem::exists(document(number)); })) return found;
        std::ifstream file(path(std::to_string(number) + ".txt"));
        for (std::string line; std::getline(file, line);)
            found[line.substr(0, line.find('='))] = line.substr(line.find('=') + 1);
        return found;
    }
    std::string document(int number) const { return path(std::to_string(number) + ".pdf"); }

 private:
    std::string path(const std::string& name) const { return toUtf8(folder_.name()) + "/" + name; }

    TempFolder folder_;
    std::vector<std::unique_ptr<Program>> helpers_;
    std::unique_ptr<Program> printer_;
    int port_ = 0;
};

TEST(Printers, GetWhatTheJobAsksFor) {
    IppPrinter real;
    if (const auto reason = real.start(); !reason.empty()) GTEST_SKIP() << reason;
    MessagesTopic messages;
    desktop::Desktop desk;
    // Reads each message, and closes it.
    std::string told;
    QTimer reader;
    QObject::connect(&reader, &QTimer::timeout, [&] {
        auto* window = QApplication::activeModalWidget();
        if (!window) return;
        for (auto* label : window->findChildren<QLabel*>()) told += label->text().toStdString();
        window->findChild<QPushButton*>(QStringLiteral("answer1"))->click();
    });
    reader.start(20);
    Druck job(messages);
    job.Device(u"ipp://localhost:1/ipp/print");  // where nobody answers
    EXPECT_NE(job.Device(), u"ipp://localhost:1/ipp/print");
    job.Device(real.address());
    ASSERT_EQ(job.Device(), real.address());
    job.Init(72, tsDuplexHorizontal + 3, 4, u"A4");  // bin 5, which this printer lacks
    EXPECT_TOLD("Manueller Einzug|Schacht ID 77", job.PaperBinName(4), job.PaperBinName(77));
    job.JobName(u"Ladung für Müller");
    job.Collate(false);
    job.PaperBin(4);
    job.mm(30, 25, u"Seite 1");
    job.Ausgabe();
    job.mm(30, 25, u"Seite 2");
    job.Ende();
    EXPECT_FALSE(job.Abbruch());
    auto asked = real.asked(1);
    EXPECT_TOLD("Ladung für Müller|3|two-sided-long-edge", asked["IPP_JOB_NAME"], asked["IPP_COPIES"],
                asked["IPP_SIDES"]);
    EXPECT_HOLDS(asked["IPP_MEDIA_COL"], "x-dimension=21000", "media-source=manual");
    EXPECT_TRUE(whole(contentOf(real.document(1))));

    // The first sheet from another bin: two jobs of one name.
    job.Init(72, 1, 1, u"A4");
    job.PaperBin(4);
    job.mm(30, 25, u"Kopfbogen");
    job.Ausgabe();
    job.PaperBin(7);
    job.mm(30, 25, u"Folgebogen");
    job.Ende();
    auto head = real.asked(2), next = real.asked(3);
    EXPECT_HOLDS(head["IPP_MEDIA_COL"], "media-source=manual");
    EXPECT_HOLDS(next["IPP_MEDIA_COL"], "media-source=auto");
    EXPECT_EQ(next["IPP_COPIES"] + next["IPP_SIDES"], "1one-sided");

    // Two jobs at once, page by page: each is a document of its own.
    {
        Druck other(messages);
        other.Device(real.address());
        for (auto* one : {&job, &other}) one->Init(72, 1, 1, u"A4");
        for (int page = 1; page <= 2; ++page)
            for (auto* one : {&job, &other}) {
                one->mm(30, 25, u"Seite");
                if (page == 1 || one == &job) one->Ausgabe();
            }
        job.Ende();
        other.Ende();
        for (const int number : {4, 5}) {
            real.asked(number);
            const auto info = run("pdfinfo '" + real.document(number) + "'").second;
            EXPECT_HOLDS(info, "Pages:           2");
        }
    }

    // A printer that has gone when the document is to reach it.
    job.Init(72, 1, 1, u"A4");
    job.mm(30, 25, u"verloren");
    job.Ausgabe();
    real.stop();
    job.mm(30, 25, u"auch");
    job.Ende();
    EXPECT_TRUE(job.Abbruch());
    EXPECT_HOLDS(told, "nimmt das Dokument nicht an");
    // And for the next one there is nobody.
    told.clear();
    job.Init(72, 1, 1, u"A4");
    job.mm(30, 25, u"noch einmal");
    job.Ende();
    EXPECT_HOLDS(told, "antwortet nicht");
}

}  // namespace
}  // namespace tsRtm::test
