// The doubles do what a test arms them to do.
#include <gtest/gtest.h>

#include "tests/support/CrashingFiles.hpp"
#include "tests/support/FailingFiles.hpp"
#include "tests/support/MemoryFiles.hpp"
#include "tsRtm/platform/LockProbe.hpp"

namespace tsRtm::test {
namespace {

using namespace platform;

constexpr OpenRequest kShared{Access::readWrite, Sharing::all, Disposition::openOrCreate};

std::span<const std::byte> bytesOf(BytesView text) { return std::as_bytes(std::span(text)); }

std::unique_ptr<File> opened(FileSystem& files, TextView name) {
    auto file = files.open(name, kShared);
    return file ? std::move(*file) : nullptr;
}

TEST(MemoryFiles, FullDiskTakesWhatFits) {
    MemoryFiles files;
    files.setFreeSpace(10);
    const auto file = opened(files, u"datei");
    EXPECT_EQ(file->writeAt(0, bytesOf("1234")), SystemError::none);
    EXPECT_EQ(file->writeAt(4, bytesOf("567890ABC")), SystemError::diskFull);
    EXPECT_EQ(files.dump(u"datei"), "1234567890");
    EXPECT_EQ(file->writeAt(0, bytesOf("xy")), SystemError::none) << "bytes in place need no room";
    EXPECT_EQ(file->resize(11), SystemError::diskFull);
    EXPECT_EQ(file->resize(4), SystemError::none);
    EXPECT_EQ(files.freeSpace(), 6u);
}

TEST(MemoryFiles, OpeningFailsByName) {
    MemoryFiles files;
    files.put(u"C:/Daten/I001", "x");
    files.failOpening(u"c:\\daten\\i001", SystemError::tooManyOpenFiles);
    EXPECT_EQ(files.open(u"C:/Daten/I001", kShared).error(), SystemError::tooManyOpenFiles);
    files.failOpening(u"C:/Daten/I001", SystemError::none);
    EXPECT_TRUE(files.open(u"C:/Daten/I001", kShared).ok());
}

TEST(MemoryFiles, SnapshotBringsTheWholeTreeBack) {
    MemoryFiles files;
    files.put(u"a/b/datei", "eins");
    files.setHidden(u"a/b/datei", true);
    const auto before = files.snapshot();
    ASSERT_EQ(files.rename(u"a/b", u"a/c", false), SystemError::none);
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

TEST(MemoryFiles, RecycledFilesAreRemembered) {
    MemoryFiles files;
    files.put(u"Daten/Alt.tsd", "x");
    EXPECT_EQ(files.recycle(u"daten/alt.tsd"), SystemError::none);
    EXPECT_EQ(files.recycled(), std::vector<Text>{u"Daten/Alt.tsd"});
    EXPECT_EQ(files.recycle(u"daten/alt.tsd"), SystemError::fileNotFound);
}

// One call of every kind; the errors they gave, in order.
std::vector<SystemError> everyCall(FileSystem& files) {
    std::byte buffer[4];
    auto file = files.open(u"datei", kShared);
    std::vector<SystemError> errors{file.error()};
    if (file) {
        File& open = **file;
        for (const auto error : {open.writeAt(0, bytesOf("abcd")), open.readAt(0, buffer).error(),
                                 open.size().error(), open.resize(3), open.flush(), open.tryLock({9, 1}),
                                 open.isLocked({9, 1}).error(), open.unlock({9, 1})})
            errors.push_back(error);
        file = SystemError::none;  // closes
    }
    for (const auto error :
         {files.status(u"datei").error(), files.rename(u"datei", u"neu", false), files.makeFolder(u"ordner"),
          files.list(u"ordner").error(), files.recycle(u"neu"), files.remove(u"neu")})
        errors.push_back(error);
    return errors;
}

TEST(FailingFiles, EachCallFailsInItsTurn) {
    constexpr int64 kCalls = 15;
    for (int64 n = 2; n <= kCalls; ++n) {
        MemoryFiles memory;
        FailingFiles files(memory);
        files.failAt(n, SystemError::deviceError);
        const auto errors = everyCall(files);
        ASSERT_EQ(errors.size(), static_cast<std::size_t>(kCalls));
        EXPECT_EQ(errors[static_cast<std::size_t>(n - 1)], SystemError::deviceError) << n;
        EXPECT_EQ(files.calls(), kCalls);
        EXPECT_EQ(files.failures(), 1);
    }
}

TEST(FailingFiles, FailsFromThenOnUntilDisarmed) {
    MemoryFiles memory;
    FailingFiles files(memory);
    const auto file = opened(files, u"datei");
    files.failAt(2, SystemError::diskFull, FailingFiles::Times::fromThenOn);
    EXPECT_EQ(file->writeAt(0, bytesOf("a")), SystemError::none);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(file->writeAt(1, bytesOf("b")), SystemError::diskFull);
    files.disarm();
    EXPECT_EQ(file->writeAt(1, bytesOf("c")), SystemError::none);
    EXPECT_EQ(memory.dump(u"datei"), "ac");
}

// Work in six changes, the last of which only moves what the others wrote.
void replaceFile(FileSystem& files) {
    const auto folder = files.makeFolder(u"ordner");
    auto file = opened(files, u"ordner/neu");
    if (failed(folder) || !file) return;
    static_cast<void>(file->tryLock({10, 1}));
    static_cast<void>(file->writeAt(0, bytesOf("abcdef")));
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
        bool thrown = false;
        try {
            replaceFile(files);
        } catch (const ProcessDied&) {
            thrown = true;
        }
        EXPECT_EQ(thrown, n <= 6) << n;
        EXPECT_EQ(files.died(), n <= 6);
        const auto& row = rows[n - 1];
        EXPECT_EQ(disk.exists(u"ordner"), row.folder) << n;
        const bool there = disk.exists(u"ordner/neu");
        EXPECT_EQ(there ? std::optional(disk.dump(u"ordner/neu")) : std::nullopt, row.content) << n;
        EXPECT_EQ(disk.exists(u"ordner/ziel"), row.target) << n;
        EXPECT_EQ(disk.exists(u"alt"), row.old) << n;
        EXPECT_EQ(disk.openings(), 0u);
    }
}

TEST(CrashingFiles, LastWriteMayBeHalfDone) {
    MemoryFiles disk;
    CrashingFiles files(disk);
    const auto file = opened(files, u"datei");
    files.dieAt(2, CrashingFiles::LastWrite::firstHalf);
    ASSERT_EQ(file->writeAt(0, bytesOf("------")), SystemError::none);
    EXPECT_THROW(static_cast<void>(file->writeAt(0, bytesOf("abcdef"))), ProcessDied);
    EXPECT_EQ(disk.dump(u"datei"), "abc---");
}

TEST(CrashingFiles, DeathFreesLocksAndSharesAndWhatFollowsDoesNothing) {
    MemoryFiles disk;
    CrashingFiles files(disk);
    const auto file = opened(files, u"datei");
    ASSERT_EQ(file->tryLock({10, 1}), SystemError::none);
    const auto next = opened(disk, u"datei");
    EXPECT_TRUE(next->isLocked({10, 1}).value());
    files.dieAt(1, CrashingFiles::LastWrite::none, CrashingFiles::Manner::silently);
    EXPECT_EQ(file->writeAt(0, bytesOf("abc")), SystemError::deviceError);
    EXPECT_TRUE(files.died());
    EXPECT_FALSE(next->isLocked({10, 1}).value());
    EXPECT_EQ(next->tryLock({10, 1}), SystemError::none);
    // The cleaning up of the dead process must not free the lock of the next one.
    EXPECT_EQ(file->unlock({10, 1}), SystemError::deviceError);
    EXPECT_EQ(files.remove(u"datei"), SystemError::deviceError);
    EXPECT_EQ(next->tryLock({10, 1}), SystemError::lockViolation);
    EXPECT_EQ(disk.dump(u"datei"), "");
}

// A file system on which every lock is granted, as a network folder mounted without locks does.
class LocklessFiles final : public FileSystem {
 public:
    Result<std::unique_ptr<File>> open(TextView name, OpenRequest request) override {
        auto inner = memory_.open(name, request);
        if (!inner) return inner.error();
        return std::unique_ptr<File>(std::make_unique<Lockless>(std::move(*inner)));
    }
    Result<FileStatus> status(TextView name) override { return memory_.status(name); }
    SystemError remove(TextView name) override { return memory_.remove(name); }
    SystemError rename(TextView from, TextView to, bool replace) override {
        return memory_.rename(from, to, replace);
    }
    SystemError makeFolder(TextView name) override { return memory_.makeFolder(name); }
    Result<std::vector<FolderEntry>> list(TextView folder) override { return memory_.list(folder); }
    DriveKind driveKind(TextView name) override { return memory_.driveKind(name); }
    SystemError recycle(TextView name) override { return memory_.recycle(name); }

 private:
    class Lockless final : public File {
     public:
        explicit Lockless(std::unique_ptr<File> inner) : inner_(std::move(inner)) {}
        Result<std::size_t> readAt(uint64 at, std::span<std::byte> into) override {
            return inner_->readAt(at, into);
        }
        SystemError writeAt(uint64 at, std::span<const std::byte> b) override {
            return inner_->writeAt(at, b);
        }
        Result<uint64> size() override { return inner_->size(); }
        SystemError resize(uint64 size) override { return inner_->resize(size); }
        SystemError flush() override { return inner_->flush(); }
        FileWindow* window() override { return nullptr; }
        const Text& name() const noexcept override { return inner_->name(); }
        SystemError tryLock(ByteRange) override { return SystemError::none; }
        SystemError unlock(ByteRange) override { return SystemError::none; }
        Result<bool> isLocked(ByteRange) override { return false; }

     private:
        std::unique_ptr<File> inner_;
    };
    MemoryFiles memory_;
};

TEST(LockProbe, FindsOutWhereLocksDoNotWork) {
    LocklessFiles files;
    const auto file = opened(files, u"datei");
    EXPECT_EQ(probeLocks(files, *file), SystemError::notSupported);
}

}  // namespace
}  // namespace tsRtm::test
