// The doubles do what a test arms them to do.
#include "tests/platform/FileHelp.hpp"
#include "tests/support/CrashingFiles.hpp"
#include "tests/support/FailingFiles.hpp"
#include "tests/support/MemoryFiles.hpp"
#include "tsRtm/platform/LockProbe.hpp"

namespace tsRtm::test {
namespace {

using enum SystemError;

// Through its window, in the first bytes.
SystemError stored(File& file, BytesView text) {
    file.window()->store(0, std::as_bytes(std::span(text)));
    return file.window()->damaged() ? deviceError : none;
}

// Work in seven changes, the last of which only moves what the others wrote.
void replaceFile(FileSystem& files) {
    const auto folder = files.makeFolder(u"ordner");
    auto file = openFile(files, u"ordner/neu");
    if (failed(folder) || !file) return;
    static_cast<void>(file->tryLock({10, 1}));
    static_cast<void>(writeText(*file, 0, "abcdef"));
    static_cast<void>(stored(*file, "xy"));
    static_cast<void>(file->resize(8));
    file.reset();
    static_cast<void>(files.rename(u"ordner/neu", u"ordner/ziel", true));
    static_cast<void>(files.remove(u"alt"));
}

TEST(CrashingFiles, DiesBeforeEachChangeInItsTurn) {
    // "ordner/neu", and whether the folder, its target and the old file are there, he died, and left
    // something open.
    const Bytes rows[] = {"-|no|no|yes|yes|0",       "-|yes|no|yes|yes|0",
                          "|yes|no|yes|yes|0",       "abcdef|yes|no|yes|yes|0",
                          "xycdef|yes|no|yes|yes|0", Bytes("xycdef\0\0|yes|no|yes|yes|0", 25),
                          "-|yes|yes|yes|yes|0",     "-|yes|yes|no|no|0"};
    for (int64 n = 1; n <= 8; ++n) {
        MemoryFiles disk;
        disk.put(u"alt", "x");
        CrashingFiles files(disk);
        files.dieAt(n);
        SCOPED_TRACE(n);
        try {
            replaceFile(files);
        } catch (const ProcessDied&) {
        }
        const bool there = disk.exists(u"ordner/neu");
        EXPECT_TOLD(rows[n - 1], there ? disk.dump(u"ordner/neu") : "-", disk.exists(u"ordner"),
                    disk.exists(u"ordner/ziel"), disk.exists(u"alt"), files.died(), disk.openings());
    }
}

TEST(CrashingFiles, LastWriteMayBeHalfDone) {
    for (const bool inPlace : {false, true}) {
        MemoryFiles disk;
        CrashingFiles files(disk);
        const auto file = openFile(files, u"datei");
        const auto write = [&](BytesView text) {
            return inPlace ? stored(*file, text) : writeText(*file, 0, text);
        };
        ASSERT_EQ(writeText(*file, 0, "------"), none);
        files.dieAt(2, CrashingFiles::LastWrite::firstHalf);
        ASSERT_EQ(write("++++++"), none);
        EXPECT_THROW(static_cast<void>(write("abcdef")), ProcessDied);
        EXPECT_EQ(disk.dump(u"datei"), "abc+++");
    }
}

// Three users have a file open; the second has a lock and a sign, and dies. His cleaning up changes nothing.
TEST(CrashingFiles, DeathOfOneUserFreesWhatHeHeldAndTouchesNoOther) {
    MemoryFiles disk;
    disk.put(u"datei", "abc");
    CrashingFiles files(disk);
    std::unique_ptr<File> of[3];
    for (int32 user = 0; user < 3; ++user) {
        files.as(user);
        of[user] = openFile(files, u"datei");
        ASSERT_EQ(of[user]->tryLock({10 + static_cast<uint64>(user), 1}), none);
        ASSERT_EQ(of[user]->show(9 - static_cast<uint64>(user)), none);
    }
    files.as(1);
    auto* const window = of[1]->window();
    files.dieAt(1, CrashingFiles::LastWrite::none, CrashingFiles::Manner::silently);
    for (const auto error : {writeText(*of[1], 0, "xyz"), of[1]->unlock({12, 1}), files.remove(u"datei"),
                             files.open(u"neu", kShared).error()})
        EXPECT_EQ(error, deviceError);
    EXPECT_EQ(stored(*of[1], "xyz"), none) << "nobody is told";
    EXPECT_EQ(Bytes(reinterpret_cast<const char*>(window->data()), 3), "abc");
    files.as(2);
    EXPECT_FALSE(files.died());
    EXPECT_EQ(of[2]->tryLock({12, 1}), lockViolation) << "a survivor lost his lock";
    EXPECT_EQ(stored(*of[0], "A"), none);
    EXPECT_TOLD("yes|no|7|Abc", of[2]->isLocked({10, 1}), of[2]->isLocked({11, 1}), of[0]->greatestShown(0),
                disk.dump(u"datei"));
}

TEST(CrashingFiles, OthersWorkWithinEachChange) {
    for (const auto part : {CrashingFiles::LastWrite::none, CrashingFiles::LastWrite::firstHalf}) {
        MemoryFiles disk;
        disk.put(u"datei", "----");
        CrashingFiles files(disk);
        files.as(1);
        const auto reader = openFile(files, u"datei");
        files.as(2);
        const auto writer = openFile(files, u"datei");
        std::vector<Bytes> seen;
        const auto others = [&] {
            files.as(1);
            seen.push_back(readText(*reader));
            static_cast<void>(writeText(*reader, 3, "!"));
        };
        files.interrupt(others, part);
        EXPECT_EQ(writeText(*writer, 0, "ab"), none);
        EXPECT_EQ(stored(*writer, "xy"), none);
        EXPECT_EQ(writer->resize(6), none);
        EXPECT_EQ(files.changes(), 3) << "the work of the others was counted for this user";
        const bool half = part == CrashingFiles::LastWrite::firstHalf;
        EXPECT_EQ(seen, (half ? std::vector<Bytes>{"a---", "xb-!", "xy-!"}
                              : std::vector<Bytes>{"----", "ab-!", "xy-!"}));
        files.interrupt(nullptr);
        EXPECT_EQ(writeText(*writer, 0, "ab"), none);
        EXPECT_EQ(seen.size(), 3u);
    }
}

// A file whose locks are all granted, as in a network folder that is mounted without locks.
class Lockless final : public GuardedFile {
 public:
    Lockless(std::unique_ptr<File> inner, Gate& gate) : GuardedFile(std::move(inner), gate) {}
    SystemError tryLock(ByteRange) override { return none; }
    SystemError unlock(ByteRange) override { return none; }
};

TEST(LockProbe, FindsOutWhereLocksDoNotWork) {
    struct Open final : Gate {
        SystemError pass(Step, const Half&) override { return none; }
    } open;
    MemoryFiles files;
    Lockless file(openFile(files, u"datei"), open);
    EXPECT_EQ(probeLocks(files, file), notSupported);
}

}  // namespace
}  // namespace tsRtm::test
