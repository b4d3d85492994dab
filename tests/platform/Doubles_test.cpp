// The doubles do what a test arms them to do.
#include "tests/platform/FileHelp.hpp"
#include "tests/support/CrashingFiles.hpp"
#include "tests/support/FailingFiles.hpp"
#include "tests/support/MemoryFiles.hpp"
#include "tsRtm/platform/LockProbe.hpp"

namespace tsRtm::test {
namespace {

using enum SystemError;

TEST(MemoryFiles, FullDiskTakesWhatFits) {
    MemoryFiles files;
    files.setFreeSpace(10);
    const auto file = openFile(files, u"datei");
    EXPECT_EQ(writeText(*file, 0, "1234"), none);
    EXPECT_EQ(writeText(*file, 4, "567890ABC"), diskFull);
    EXPECT_EQ(files.dump(u"datei"), "1234567890");
    EXPECT_EQ(writeText(*file, 0, "xy"), none) << "bytes in place need no room";
    EXPECT_EQ(file->resize(11), diskFull);
    EXPECT_EQ(file->resize(4), none);
    EXPECT_EQ(files.freeSpace(), 6u);
}

TEST(MemoryFiles, SnapshotBringsTheWholeTreeBack) {
    MemoryFiles files;
    files.put(u"a/b/datei", "eins");
    files.setHidden(u"a/b/datei", true);
    const auto before = files.snapshot();
    ASSERT_EQ(files.rename(u"a/b", u"a/c", false), none);
    EXPECT_EQ(files.dump(u"a/c/datei"), "eins") << "a folder takes along what lies in it";
    files.put(u"a/c/datei", "zwei");
    files.put(u"neu", "");
    EXPECT_FALSE(files.snapshot() == before);
    files.restore(before);
    EXPECT_TRUE(files.snapshot() == before);
    EXPECT_EQ(files.dump(u"a/b/datei"), "eins");
    EXPECT_TRUE(files.status(u"a/b/datei").value().hidden);
    EXPECT_FALSE(files.exists(u"neu"));
}

// Through its window, in the first bytes.
SystemError stored(File& file, BytesView text) {
    file.window()->store(0, std::as_bytes(std::span(text)));
    return file.window()->damaged() ? deviceError : none;
}

// One call of every kind; the errors they gave, in order.
std::vector<SystemError> everyCall(FileSystem& files) {
    std::byte buffer[4];
    auto file = files.open(u"datei", kShared);
    std::vector<SystemError> errors{file.error()};
    if (file) {
        File& open = **file;
        for (const auto error :
             {writeText(open, 0, "abcd"), open.readAt(0, buffer).error(), open.size().error(), open.resize(3),
              open.flush(), open.tryLock({9, 1}), open.isLocked({9, 1}).error(), open.unlock({9, 1}),
              open.share(Sharing::none), open.show(7), open.greatestShown(0).error(),
              open.window()->reserve(1) ? none : deviceError, stored(open, "xy")})
            errors.push_back(error);
        file = none;  // closes
    }
    for (const auto error :
         {files.status(u"datei").error(), files.rename(u"datei", u"neu", false), files.makeFolder(u"ordner"),
          files.list(u"ordner").error(), files.recycle(u"neu"), files.remove(u"neu")})
        errors.push_back(error);
    return errors;
}

TEST(FailingFiles, EachCallFailsInItsTurn) {
    constexpr int64 kCalls = 20;
    for (int64 n = 2; n <= kCalls; ++n) {
        MemoryFiles memory;
        memory.offerWindows(true);
        FailingFiles files(memory);
        files.failAt(n, deviceError);
        const auto errors = everyCall(files);
        ASSERT_EQ(errors.size(), static_cast<std::size_t>(kCalls));
        EXPECT_EQ(errors[static_cast<std::size_t>(n - 1)], deviceError) << n;
        EXPECT_EQ(files.calls(), kCalls);
        EXPECT_EQ(files.failures(), 1);
    }
}

TEST(FailingFiles, FailsFromThenOnUntilDisarmed) {
    MemoryFiles memory;
    FailingFiles files(memory);
    const auto file = openFile(files, u"datei");
    files.failAt(2, diskFull, FailingFiles::Times::fromThenOn);
    EXPECT_EQ(writeText(*file, 0, "a"), none);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(writeText(*file, 1, "b"), diskFull);
    files.disarm();
    EXPECT_EQ(writeText(*file, 1, "c"), none);
    EXPECT_EQ(memory.dump(u"datei"), "ac");
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
    struct Row {
        std::optional<Bytes> content;  // of "ordner/neu"
        bool folder, target, old;
    };
    const Row rows[] = {{{}, false, false, true},      {{}, true, false, true},
                        {"", true, false, true},       {"abcdef", true, false, true},
                        {"xycdef", true, false, true}, {Bytes("xycdef\0\0", 8), true, false, true},
                        {{}, true, true, true},        {{}, true, true, false}};
    for (int64 n = 1; n <= 8; ++n) {
        MemoryFiles disk;
        disk.offerWindows(true);
        disk.put(u"alt", "x");
        CrashingFiles files(disk);
        files.dieAt(n);
        SCOPED_TRACE(n);
        if (n <= 7)
            EXPECT_THROW(replaceFile(files), ProcessDied);
        else
            replaceFile(files);
        EXPECT_EQ(files.died(), n <= 7);
        const auto& row = rows[n - 1];
        const bool there = disk.exists(u"ordner/neu");
        EXPECT_EQ(there ? std::optional(disk.dump(u"ordner/neu")) : std::nullopt, row.content);
        EXPECT_EQ(disk.exists(u"ordner"), row.folder);
        EXPECT_EQ(disk.exists(u"ordner/ziel"), row.target);
        EXPECT_EQ(disk.exists(u"alt"), row.old);
        EXPECT_EQ(disk.openings(), 0u);
    }
}

TEST(CrashingFiles, LastWriteMayBeHalfDone) {
    for (const bool inPlace : {false, true}) {
        MemoryFiles disk;
        disk.offerWindows(true);
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

// Three users with the same file open; the second has a lock and a sign, and dies.
TEST(CrashingFiles, DeathOfOneUserFreesWhatHeHeldAndTouchesNoOther) {
    MemoryFiles disk;
    disk.offerWindows(true);
    CrashingFiles files(disk);
    std::unique_ptr<File> of[3];
    FileWindow* windows[3];
    for (int32 user = 0; user < 3; ++user) {
        files.as(user);
        of[user] = openFile(files, u"datei");
        windows[user] = of[user]->window();
        ASSERT_EQ(of[user]->tryLock({10 + static_cast<uint64>(user), 1}), none);
        ASSERT_EQ(of[user]->show(7 + static_cast<uint64>(user)), none);
    }
    ASSERT_EQ(writeText(*of[2], 0, "abc"), none);
    files.as(1);
    const auto alone = openFile(files, u"allein", kExclusive);
    files.dieAt(1, CrashingFiles::LastWrite::none, CrashingFiles::Manner::silently);
    EXPECT_EQ(writeText(*of[1], 0, "xyz"), deviceError);
    EXPECT_TRUE(files.died());

    // The cleaning up of the dead one changes nothing, by whatever way.
    EXPECT_EQ(of[1]->unlock({12, 1}), deviceError);
    EXPECT_EQ(files.remove(u"datei"), deviceError);
    EXPECT_EQ(files.open(u"neu", kShared).error(), deviceError);
    stored(*of[1], "xyz");
    EXPECT_EQ(Bytes(reinterpret_cast<const char*>(windows[1]->data()), 3), "abc");

    files.as(2);
    EXPECT_FALSE(files.died());
    EXPECT_TRUE(of[2]->isLocked({10, 1}).value());
    EXPECT_FALSE(of[2]->isLocked({11, 1}).value());
    EXPECT_EQ(of[2]->tryLock({12, 1}), lockViolation) << "a survivor lost his lock";
    EXPECT_EQ(of[0]->greatestShown(7).value(), 9u);
    of[2].reset();
    EXPECT_EQ(of[0]->greatestShown(0).value(), 0u);
    EXPECT_NE(openFile(files, u"allein"), nullptr);
    EXPECT_EQ(stored(*of[0], "A"), none);
    EXPECT_EQ(disk.dump(u"datei"), "Abc");
    EXPECT_EQ(files.remove(u"allein"), none);
}

TEST(CrashingFiles, OthersWorkWithinEachChange) {
    for (const auto part : {CrashingFiles::LastWrite::none, CrashingFiles::LastWrite::firstHalf}) {
        MemoryFiles disk;
        disk.offerWindows(true);
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
class Lockless final : public File {
 public:
    Result<std::size_t> readAt(uint64, std::span<std::byte>) override { return notSupported; }
    SystemError writeAt(uint64, std::span<const std::byte>) override { return notSupported; }
    Result<uint64> size() override { return notSupported; }
    SystemError resize(uint64) override { return notSupported; }
    SystemError flush() override { return notSupported; }
    FileWindow* window() override { return nullptr; }
    const Text& name() const noexcept override { return name_; }
    Result<bool> inPlace() override { return true; }
    SystemError tryLock(ByteRange) override { return none; }
    SystemError unlock(ByteRange) override { return none; }
    Result<bool> isLocked(ByteRange) override { return false; }
    SystemError share(Sharing) override { return none; }
    SystemError show(uint64) override { return none; }
    Result<uint64> greatestShown(uint64) override { return uint64{0}; }
    bool remote() const noexcept override { return true; }
    SystemError refresh(RefreshAs) override { return none; }

 private:
    Text name_ = u"datei";
};

TEST(LockProbe, FindsOutWhereLocksDoNotWork) {
    MemoryFiles files;
    files.put(u"datei", "");
    Lockless file;
    EXPECT_EQ(probeLocks(files, file), notSupported);
}

}  // namespace
}  // namespace tsRtm::test
