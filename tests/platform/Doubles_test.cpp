// The doubles do what a test arms them to do.
#include "tests/platform/Grounds.hpp"
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
        SCOPED_TRACE(n);
        const bool died = files.diesAt(n, [&] { replaceFile(files); });
        const bool there = disk.exists(u"ordner/neu");
        EXPECT_TOLD(rows[n - 1], there ? disk.dump(u"ordner/neu") : "-", disk.exists(u"ordner"),
                    disk.exists(u"ordner/ziel"), disk.exists(u"alt"), died, disk.openings());
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
