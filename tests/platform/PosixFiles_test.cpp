// What only the ground of this machine can show: processes, pipes, links, odd bytes in names, the basket.
#include <stdlib.h>
#include <sys/stat.h>

#include "tests/platform/Grounds.hpp"
#include "tests/support/ChildProcess.hpp"
#include "tsRtm/platform/posix/PosixPath.hpp"
#include "tsRtm/platform/posix/PosixReplacing.hpp"

namespace tsRtm::test {
namespace {

using enum SystemError;
namespace fs = std::filesystem;

class PosixFiles : public testing::Test {
 protected:
    std::unique_ptr<File> open(TextView entry, OpenRequest request = kShared) {
        return openFile(files, folder.name(entry), request);
    }
    SystemError openError(TextView entry, OpenRequest request) {
        return files.open(folder.name(entry), request).error();
    }
    void make(const fs::path& entry, std::string_view content = "") {
        std::ofstream(folder.path() / entry, std::ios::binary) << content;
    }
    struct stat statusOf(const char* entry) {
        struct stat status {};
        EXPECT_EQ(::stat((folder.path() / entry).c_str(), &status), 0);
        return status;
    }
    std::string found(TextView entry) {
        const auto path = posix::findPath(folder.name(entry));
        return path && path->exists ? fs::path(path->path).lexically_relative(folder.path()).string() : "";
    }

    FileSystem& files = posixPlatform().files;
    TempFolder folder;
};

TEST_F(PosixFiles, LocksExcludeAnotherProcessAndDieWithIt) {
    const auto file = open(u"datei");
    ASSERT_EQ(file->tryLock({20, 1}), none);
    ChildProcess other([&](ChildProcess::Line& line) {
        const auto mine = open(u"datei");
        if (mine->tryLock({20, 1}) != lockViolation || !mine->isLocked({20, 1}).value()) return 1;
        if (failed(mine->tryLock({10, 1}))) return 2;
        line.say('L');
        line.hear();
        return 3;
    });
    ASSERT_EQ(other.line().hear(), 'L');
    EXPECT_TRUE(file->isLocked({10, 1}).value());
    EXPECT_EQ(file->tryLock({10, 1}), lockViolation);
    other.kill();
    EXPECT_FALSE(file->isLocked({10, 1}).value());
    EXPECT_EQ(file->tryLock({10, 1}), none);
}

TEST_F(PosixFiles, ShareModesHoldBetweenProcesses) {
    ChildProcess other([&](ChildProcess::Line& line) {
        auto mine = open(u"datei", kExclusive);
        line.say('E');
        if (line.hear() != 'S') return 1;
        mine.reset();
        mine = open(u"datei");
        line.say('S');
        return line.hear() == 'Z' ? 0 : 2;
    });
    ASSERT_EQ(other.line().hear(), 'E');
    EXPECT_EQ(openError(u"datei", kShared), sharingViolation);
    EXPECT_EQ(files.remove(folder.name(u"datei")), sharingViolation);
    other.line().say('S');
    ASSERT_EQ(other.line().hear(), 'S');
    EXPECT_NE(open(u"datei"), nullptr);
    EXPECT_EQ(openError(u"datei", kExclusive), sharingViolation);
    other.line().say('Z');
    EXPECT_EQ(other.wait(), 0);
}

// While one process replaces a file, another one opens it: what it has is what lies in the place, since an
// open file is not replaced.
TEST_F(PosixFiles, AnOpenFileIsTheOneInItsPlace) {
    constexpr int32 kVersions = 500;
    const Text place = folder.name(u"datei"), beside = folder.name(u"neu");
    make("datei", "0");
    ChildProcess other([&](ChildProcess::Line& line) {
        line.hear();
        for (int32 version = 1; version <= kVersions; ++version) {
            make("neu", std::to_string(version));
            while (
                failed(version % 2 == 0 ? files.exchange(beside, place) : files.rename(beside, place, true)))
                ::sched_yield();
        }
        make("ende");
        return 0;
    });
    other.line().say('G');
    int32 stale = 0;
    while (!files.status(folder.name(u"ende")).ok()) {
        const auto mine = files.open(place, kReader);
        if (!mine) continue;
        if (readText(**mine) != contentOf(folder.path() / "datei")) ++stale;
    }
    EXPECT_TOLD("0|0", stale, other.wait());
}

TEST_F(PosixFiles, ASecondNameServesWhereNamesCannotBeExchanged) {
    make("alt", "alt");
    make("neu", "neu");
    EXPECT_EQ(posix::exchangeByLink(folder.path() / "neu", folder.path() / "alt"), none);
    EXPECT_EQ(readText(*open(u"alt", kReader)) + readText(*open(u"neu", kReader)), "neualt");
    EXPECT_EQ(posix::exchangeByLink(folder.path() / "fehlt", folder.path() / "alt"), fileNotFound);
    EXPECT_EQ(files.list(folder.name()).value().size(), 2u);
}

TEST_F(PosixFiles, CopyAccessMakesAFileOpenToTheSameUsers) {
    make("vorbild");
    for (const auto& [like, mode] :
         {std::pair{0600u, 0600u}, {0664u, 0664u}, {0444u, 0644u}, {04755u, 0755u}}) {
        make("neu");
        ASSERT_EQ(::chmod((folder.path() / "vorbild").c_str(), like), 0);
        EXPECT_EQ(files.copyAccess(folder.name(u"vorbild"), folder.name(u"neu")), none);
        EXPECT_EQ(statusOf("neu").st_mode & 07777, mode);
    }
    if (::geteuid() == 0) {  // who may give files away
        ASSERT_EQ(::chown((folder.path() / "vorbild").c_str(), 4711, 4712), 0);
        EXPECT_EQ(files.copyAccess(folder.name(u"vorbild"), folder.name(u"neu")), none);
        EXPECT_EQ(std::pair(statusOf("neu").st_uid, statusOf("neu").st_gid), std::pair(4711u, 4712u));
    }
    EXPECT_EQ(files.copyAccess(folder.name(u"fehlt"), folder.name(u"neu")), fileNotFound);
}

TEST_F(PosixFiles, PathsAreMatchedExactlyFirst) {
    fs::create_directories(folder.path() / "Kunden.DBD");
    for (const char* name : {"KetteDat", "kettedat", "ÄÖÜ.tsd"}) make(fs::path("Kunden.DBD") / name);
    using Row = std::pair<TextView, std::string>;  // of several that fit, the first by its bytes
    for (const auto& [asked, there] :
         {Row{u"KUNDEN.DBD/kettedat", "Kunden.DBD/kettedat"},
          Row{u"KUNDEN.DBD/KetteDat", "Kunden.DBD/KetteDat"},
          Row{u"KUNDEN.DBD/KETTEDAT", "Kunden.DBD/KetteDat"},
          Row{u"kunden.dbd/äöü.TSD", "Kunden.DBD/ÄÖÜ.tsd"},
          Row{u"./kunden.dbd/../KUNDEN.dbd/KetteDat", "./Kunden.DBD/../Kunden.DBD/KetteDat"}})
        EXPECT_EQ(found(asked), there);
    const auto missing = posix::findPath(folder.name(u"KUNDEN.dbd/Neu.Tsd"));
    ASSERT_TRUE(missing.ok() && !missing->exists);
    EXPECT_EQ(missing->path, (folder.path() / "Kunden.DBD/Neu.Tsd").string());
    EXPECT_EQ(posix::findPath(u"/").value().path, "/");
    EXPECT_EQ(posix::findPath(folder.name(Text(300, u'x'))).error(), nameTooLong);
}

TEST_F(PosixFiles, RelativeNamesShowTheirFullName) {
    const auto before = fs::current_path();
    fs::current_path(folder.path());
    make("Datei.txt", "x");
    const auto file = files.open(u"DATEI.TXT", {});
    const auto entries = files.list(u".");
    fs::current_path(before);
    ASSERT_TRUE(file.ok());
    EXPECT_EQ(file.value()->name(), fromUtf8((fs::canonical(folder.path()) / "Datei.txt").string()));
    EXPECT_EQ(entries.value().size(), 1u);
}

TEST_F(PosixFiles, OddEntriesAreListedFollowedOrRefused) {
    make("Gr\xFCn.txt", "inhalt");  // one byte a letter, no UTF-8
    EXPECT_TRUE(files.open(folder.name(files.list(folder.name())->front().name), {}).ok());
    ASSERT_EQ(::mkfifo((folder.path() / "rohr").c_str(), 0600), 0);
    for (const auto request : {kShared, kExclusive, OpenRequest{}})
        EXPECT_EQ(openError(u"rohr", request), accessDenied) << "without waiting";
    EXPECT_EQ(files.open(u"/dev/null", kShared).error(), accessDenied);
    EXPECT_EQ(files.remove(folder.name(u"rohr")), none);
    make("ziel", "inhalt");
    fs::create_symlink("ziel", folder.path() / "verweis");
    fs::create_symlink("nirgends", folder.path() / "kaputt");
    EXPECT_EQ(files.status(folder.name(u"verweis"))->size, 6u);
    EXPECT_EQ(files.status(folder.name(u"kaputt")).error(), fileNotFound);
    EXPECT_EQ(files.list(folder.name())->size(), 4u);
    const auto holder = open(u"ziel");
    EXPECT_EQ(openError(u"verweis", kExclusive), sharingViolation);
}

class Basket : public PosixFiles {
 protected:
    Basket() { ::setenv("XDG_DATA_HOME", (folder.path() / "daten").c_str(), 1); }
    ~Basket() override { ::unsetenv("XDG_DATA_HOME"); }
    Bytes text(const fs::path& entry) { return contentOf(folder.path() / "daten/Trash" / entry); }
};

TEST_F(Basket, KeepsTheFileAndWhereItCameFrom) {
    for (const char* content : {"eins", "zwei"}) {
        make("Alte Größe.tsd", content);
        ASSERT_EQ(files.recycle(folder.name(u"alte größe.TSD")), none);
    }
    EXPECT_FALSE(fs::exists(folder.path() / "Alte Größe.tsd"));
    EXPECT_EQ(text("files/Alte Größe.tsd") + text("files/Alte Größe.tsd.2"), "einszwei");
    const auto info = text("info/Alte Größe.tsd.trashinfo");
    const auto path = "Path=" + folder.path().string() + "/Alte%20Gr%C3%B6%C3%9Fe.tsd\nDeletionDate=2";
    EXPECT_TRUE(info.starts_with("[Trash Info]\n" + path)) << info;
    const auto file = open(u"datei");
    fs::create_directory(folder.path() / "ordner");
    for (const auto& [name, error] :
         {std::pair{u"datei", sharingViolation}, {u"ordner", accessDenied}, {u"fehlt", fileNotFound}})
        EXPECT_EQ(files.recycle(folder.name(name)), error);
    EXPECT_TRUE(fs::exists(folder.path() / "datei"));
}

}  // namespace
}  // namespace tsRtm::test
