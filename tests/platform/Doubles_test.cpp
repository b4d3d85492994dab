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
              open.share(Sharing::none), open.show(7), open.greatestShown(0).error()})
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
    constexpr int64 kCalls = 18;
    for (int64 n = 2; n <= kCalls; ++n) {
        MemoryFiles memory;
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

// Work in six changes, the last of which only moves what the others wrote.
void replaceFile(FileSystem& files) {
    const auto folder = files.makeFolder(u"ordner");
    auto file = openFile(files, u"ordner/neu");
    if (failed(folder) || !file) return;
    static_cast<void>(file->tryLock({10, 1}));
    static_cast<void>(writeText(*file, 0, "abcdef"));
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
    const Row rows[] = {{{}, false, false, true},
                        {{}, true, false, true},
                        {"", true, false, true},
                        {"abcdef", true, false, true},
                        {Bytes("abcdef\0\0", 8), true, false, true},
                        {{}, true, true, true},
                        {{}, true, true, false}};
    for (int64 n = 1; n <= 7; ++n) {
        MemoryFiles disk;
        disk.put(u"alt", "x");
        CrashingFiles files(disk);
        files.dieAt(n);
        SCOPED_TRACE(n);
        if (n <= 6)
            EXPECT_THROW(replaceFile(files), ProcessDied);
        else
            replaceFile(files);
        EXPECT_EQ(files.died(), n <= 6);
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
    MemoryFiles disk;
    CrashingFiles files(disk);
    const auto file = openFile(files, u"datei");
    files.dieAt(2, CrashingFiles::LastWrite::firstHalf);
    ASSERT_EQ(writeText(*file, 0, "------"), none);
    EXPECT_THROW(static_cast<void>(writeText(*file, 0, "abcdef")), ProcessDied);
    EXPECT_EQ(disk.dump(u"datei"), "abc---");
}

TEST(CrashingFiles, DeathFreesLocksAndSharesAndWhatFollowsDoesNothing) {
    MemoryFiles disk;
    CrashingFiles files(disk);
    const auto file = openFile(files, u"datei");
    ASSERT_EQ(file->tryLock({10, 1}), none);
    const auto next = openFile(disk, u"datei");
    EXPECT_TRUE(next->isLocked({10, 1}).value());
    files.dieAt(1, CrashingFiles::LastWrite::none, CrashingFiles::Manner::silently);
    EXPECT_EQ(writeText(*file, 0, "abc"), deviceError);
    EXPECT_TRUE(files.died());
    EXPECT_FALSE(next->isLocked({10, 1}).value());
    EXPECT_EQ(next->tryLock({10, 1}), none);
    // The cleaning up of the dead process must not free the lock of the next one.
    EXPECT_EQ(file->unlock({10, 1}), deviceError);
    EXPECT_EQ(files.remove(u"datei"), deviceError);
    EXPECT_EQ(next->tryLock({10, 1}), lockViolation);
    EXPECT_EQ(disk.dump(u"datei"), "");
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
