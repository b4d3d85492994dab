// The window of a file, and what happens when the file is cut under it.
#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>

#include "tests/platform/Grounds.hpp"
#include "tests/support/ChildProcess.hpp"

namespace tsRtm::test {
namespace {

using enum SystemError;

#ifdef __SANITIZE_ADDRESS__
constexpr bool kSanitized = true;  // its handler was there before ours and ends the process with a report
#else
constexpr bool kSanitized = false;
#endif

class Window : public OnGround {
 protected:
    void SetUp() override {
        const auto kind = files.driveKind(folder);
        if (kind != DriveKind::fixed && kind != DriveKind::ramDisk)
            GTEST_SKIP() << "no local disk to test on";
    }
    using OnGround::open;
    std::unique_ptr<File> open(Access access = Access::readWrite) {
        return open(u"datei", {access, Sharing::all, Disposition::openOrCreate});
    }
    static Bytes seen(FileWindow& window, uint64 offset, std::size_t count) {
        return Bytes(reinterpret_cast<const char*>(window.data()) + offset, count);
    }
    static void store(FileWindow& window, uint64 offset, BytesView text) {
        window.store(offset, std::as_bytes(std::span(text)));
    }
};

TEST_P(Window, AgreesWithReadsAndWritesOfOtherOpenings) {
    const auto file = open();
    const auto other = open();
    ASSERT_EQ(writeText(*file, 0, "anfang"), none);
    auto* window = file->window();
    ASSERT_TRUE(window);
    EXPECT_EQ(file->window(), window);
    EXPECT_EQ(seen(*window, 0, 6), "anfang");
    ASSERT_EQ(writeText(*other, 2, "XY"), none);
    EXPECT_EQ(seen(*window, 0, 6), "anXYng");
    store(*window, 4, "!?");
    EXPECT_EQ(readText(*other), "anXY!?");
    EXPECT_EQ(seen(*open(Access::read)->window(), 0, 6), "anXY!?");
}

TEST_P(Window, SeesAGrowingFileWithoutMoving) {
    const auto file = open();
    auto* window = file->window();
    ASSERT_TRUE(window) << "an empty file has a window, too";
    const auto* before = window->data();
    const uint64 far = 3'000'000;
    ASSERT_LT(far, window->capacity());
    ASSERT_EQ(writeText(*open(), far, "ende"), none);
    EXPECT_EQ(seen(*window, far, 4), "ende");
    EXPECT_EQ(seen(*window, far - 2, 2), Bytes(2, '\0'));
    EXPECT_EQ(window->data(), before);
    EXPECT_FALSE(window->damaged());
}

TEST_P(Window, ReserveMakesRoomAndKeepsTheContent) {
    const auto file = open();
    ASSERT_EQ(writeText(*file, 0, "anfang"), none);
    auto* window = file->window();
    const uint64 size = window->capacity() + 5'000'000;
    ASSERT_EQ(file->resize(size), none);  // a sparse file: it takes no room on the disk
    ASSERT_TRUE(window->reserve(size));
    EXPECT_GE(window->capacity(), size);
    EXPECT_EQ(seen(*window, 0, 6), "anfang");
    EXPECT_EQ(seen(*window, size - 1, 1), Bytes(1, '\0'));
    EXPECT_FALSE(window->reserve(~uint64{0}));
    EXPECT_EQ(seen(*window, 0, 6), "anfang") << "a refused reserve took the old room away";
}

TEST_P(Window, SurvivesAFileCutUnderIt) {
    const auto file = open();
    const Bytes content(100'000, 'a');
    ASSERT_EQ(writeText(*file, 0, content), none);
    auto* window = file->window();
    const auto bystander = open(u"andere", kShared);
    auto* untouched = bystander->window();

    ASSERT_EQ(open()->resize(10), none);
    EXPECT_EQ(seen(*window, 0, 10), Bytes(10, 'a'));
    EXPECT_FALSE(window->damaged());
    EXPECT_EQ(seen(*window, 50'000, 3), Bytes(3, '\0'));
    EXPECT_TRUE(window->damaged());
    store(*window, 90'000, "weg");
    EXPECT_EQ(file->size().value(), 10u) << "a lost write came back";
    EXPECT_EQ(seen(*window, 0, 10), Bytes(10, 'a'));
    EXPECT_FALSE(untouched->damaged()) << "the damage belongs to one window";

    ASSERT_EQ(file->resize(100'000), none);
    EXPECT_TRUE(window->damaged()) << "a mended file does not mend its window";
    EXPECT_FALSE(open()->window()->damaged()) << "a new window starts sound";
    ASSERT_EQ(open()->writeAt(50'000, std::as_bytes(std::span("neu", 3))), none);
    ASSERT_TRUE(window->renew());
    EXPECT_FALSE(window->damaged());
    EXPECT_EQ(seen(*window, 50'000, 3), "neu");
}

TEST_P(Window, TheFirstAccessBehindTheEndMayBeAWriteOrByAReader) {
    for (const auto access : {Access::readWrite, Access::read}) {
        ASSERT_EQ(open()->resize(100'000), none);
        const auto file = open(access);
        auto* window = file->window();
        ASSERT_TRUE(window);
        ASSERT_EQ(open()->resize(0), none);
        if (access == Access::readWrite) store(*window, 60'000, "weg");
        EXPECT_EQ(seen(*window, 99'000, 2), Bytes(2, '\0'));
        EXPECT_TRUE(window->damaged());
    }
}

INSTANTIATE_TEST_SUITE_P(Grounds, Window, testing::Values(0, 1, 3, 4), groundName);

// What only the ground of this machine can show.
class PosixWindow : public Window {};

// A bus error that belongs to no window ends the process as it would have without us, or reaches the handler
// that was there before.
TEST_P(PosixWindow, ForeignBusErrorsArePassedOn) {
    const auto file = open();
    ASSERT_EQ(file->resize(4096), none);
    ASSERT_TRUE(file->window());
    ChildProcess victim([&](ChildProcess::Line&) {
        const int raw = ::open(toUtf8(at(u"datei")).c_str(), O_RDWR);
        void* const page = ::mmap(nullptr, 4096 * 4, PROT_READ, MAP_SHARED, raw, 0);
        return static_cast<const volatile char*>(page)[4096 * 3] == 0 ? 0 : 1;
    });
    ChildProcess sent([&](ChildProcess::Line&) { return ::raise(SIGBUS); });
    for (auto* process : {&victim, &sent}) {
        const int ended = process->wait();
        EXPECT_TRUE(ended == -SIGBUS || (kSanitized && ended > 0)) << ended;
    }
}

INSTANTIATE_TEST_SUITE_P(Posix, PosixWindow, testing::Values(0), groundName);

}  // namespace
}  // namespace tsRtm::test
