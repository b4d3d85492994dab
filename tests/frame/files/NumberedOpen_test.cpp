#include "tests/frame/files/FilesFixture.hpp"

namespace tsRtm::test {
namespace {

using DbOpen = FilesTest;

struct WaitCase {
    int32 warten;
    seconds limit;
};
class SilentWait : public FilesTest, public ::testing::WithParamInterface<WaitCase> {};

TEST_P(SilentWait, EndsAtItsLimitWith70) {
    const Text name = write("a", "x");
    const auto holder = other(name, Sharing::none);
    F() = 0;
    EXPECT_EQ(open(name, 4, true, GetParam().warten), 0);
    EXPECT_EQ(F(), 70);
    EXPECT_GT(clock().elapsed(), GetParam().limit);
    EXPECT_LT(clock().elapsed(), GetParam().limit + milliseconds(6));
    EXPECT_GT(ui().eventRounds, 0);
    EXPECT_TRUE(ui().boxes.empty());
}
INSTANTIATE_TEST_SUITE_P(Warten, SilentWait,
                         ::testing::Values(WaitCase{-1, seconds(5)}, WaitCase{-2, seconds(10)},
                                           WaitCase{-12, seconds(60)}));

TEST_F(DbOpen, WaitZeroOutlastsEveryLimit) {
    const Text name = write("a", "x");
    auto holder = other(name, Sharing::none);
    clock().onSleep = [&] {
        if (clock().elapsed() > seconds(600)) holder.reset();
    };
    EXPECT_EQ(open(name, 4, true, 0), 1);
    EXPECT_EQ(F(), 0);
    EXPECT_GT(clock().elapsed(), seconds(600));
    EXPECT_TRUE(ui().boxes.empty());
}

TEST_F(DbOpen, WaitZeroEndsWhenTheLibraryStops) {
    const Text name = write("a", "x");
    const auto holder = other(name, Sharing::none);
    clock().onSleep = [&] { rtmMain::state().stopping = clock().elapsed() > seconds(60); };
    EXPECT_EQ(open(name, 4, true, 0), 0);
    EXPECT_EQ(F(), 70);
}

TEST_F(DbOpen, PositiveWaitAsksAtEveryLimit) {
    const Text name = write("a", "x");
    const auto holder = other(name, Sharing::none);
    ui().answers = {6, 6, 7};
    EXPECT_EQ(open(name, 4, true, 2), 0);
    EXPECT_EQ(F(), 70);
    EXPECT_EQ(ui().boxes.size(), 3u);
    EXPECT_GT(clock().elapsed(), seconds(30));
    EXPECT_EQ(toUtf8(ui().boxes[0].headline), "Kein Zugriff auf Datei /w/a. Weiter");
}

TEST_F(DbOpen, SucceedsAsSoonAsTheLockEnds) {
    const Text name = write("a", "x");
    auto holder = other(name, Sharing::none);
    clock().onSleep = [&] {
        if (clock().elapsed() > seconds(2)) holder.reset();
    };
    EXPECT_EQ(open(name, 4), 1);
    EXPECT_EQ(F(), 0);
    EXPECT_LT(clock().elapsed(), seconds(2) + milliseconds(10));
}

TEST_F(DbOpen, EventsInAWaitMayOpenFilesToo) {
    const Text name = write("a", "x"), second = write("b", "y");
    auto holder = other(name, Sharing::none);
    int32 inner = 0;
    ui().onEvents = [&] {
        if (inner == 0) inner = open(second, 1);
        holder.reset();
    };
    const int32 outer = open(name, 4);
    EXPECT_EQ(inner, 2);
    EXPECT_EQ(outer, 1);
    EXPECT_EQ(files.TS_LineInput(inner), u"y");
    EXPECT_NE(&files.file(outer), &files.file(inner));
}

struct ShareCase {
    int32 mode;
    bool shared;
    bool othersMayRead;
    bool makesFile;
};
class Modes : public FilesTest, public ::testing::WithParamInterface<ShareCase> {};

TEST_P(Modes, LockOutOthersAndMakeFilesByTheTable) {
    const auto [mode, shared, othersMayRead, makesFile] = GetParam();
    const int32 missing = open(path("new"), mode, shared);
    EXPECT_EQ(missing != 0, makesFile);
    EXPECT_EQ(F(), makesFile ? 0 : 53);
    const Text name = write("old", "abc");
    const int32 number = open(name, mode, shared);
    ASSERT_NE(number, 0);
    EXPECT_EQ(other(name, Sharing::all, Access::read) != nullptr, othersMayRead);
    EXPECT_EQ(read("old"), mode == 2 ? "" : "abc");
    EXPECT_EQ(files.TS_Seek(number), mode == 3 ? 4 : 1);
    EXPECT_TRUE(ui().boxes.empty());
}
INSTANTIATE_TEST_SUITE_P(Table, Modes,
                         ::testing::Values(ShareCase{0, true, true, true}, ShareCase{0, false, false, true},
                                           ShareCase{1, true, true, false}, ShareCase{1, false, false, false},
                                           ShareCase{2, true, false, true}, ShareCase{2, false, false, true},
                                           ShareCase{3, true, false, true}, ShareCase{3, false, false, true},
                                           ShareCase{4, true, true, true}, ShareCase{4, false, false, true},
                                           ShareCase{5, true, true, false},
                                           ShareCase{5, false, true, false}));

struct VerdictCase {
    SystemError error;
    int32 F;
};
class Verdict : public FilesTest, public ::testing::WithParamInterface<VerdictCase> {};

TEST_P(Verdict, ReturnsAtOnceWithoutABox) {
    disk.refuse = [](auto) { return GetParam().error; };
    EXPECT_EQ(open(path("a"), 4), 0);
    EXPECT_EQ(F(), GetParam().F);
    EXPECT_EQ(disk.opens, 1);
}
INSTANTIATE_TEST_SUITE_P(
    Table, Verdict,
    ::testing::Values(VerdictCase{SystemError::fileNotFound, 53}, VerdictCase{SystemError::pathNotFound, 76},
                      VerdictCase{SystemError::tooManyOpenFiles, 67},
                      VerdictCase{SystemError::accessDenied, 75},
                      VerdictCase{SystemError::writeProtected, 75}, VerdictCase{SystemError::invalidName, 64},
                      VerdictCase{SystemError::nameTooLong, 64}, VerdictCase{SystemError::notReady, 71}));

TEST_F(DbOpen, OtherFailuresAreShown) {
    ui().defaultAnswer = 1;
    EXPECT_EQ(open(path("a"), 6), 0);
    ASSERT_EQ(ui().boxes.size(), 1u);
    EXPECT_TRUE(ui().boxes[0].headline.starts_with(u"Fehler 54: "));
    disk.refuse = [](auto) { return SystemError::diskFull; };
    EXPECT_EQ(open(path("a"), 4), 0);
    EXPECT_EQ(F(), 61);
    EXPECT_EQ(ui().boxes.size(), 2u);
    // What was shown stays pending, and must not fail the next opening.
    disk.refuse = nullptr;
    EXPECT_EQ(open(path("a"), 4), 1);
    EXPECT_EQ(F(), 0);
    EXPECT_EQ(ui().boxes.size(), 2u);
}

TEST_F(DbOpen, RemovableDriveNotReadyIsAskedFor) {
    memory.setDriveKind(platform::DriveKind::removable);
    int32 refusals = 2;
    disk.refuse = [&](auto) { return refusals-- > 0 ? SystemError::notReady : SystemError::none; };
    ui().answers = {6, 6};
    EXPECT_EQ(open(path("a"), 4), 1);
    refusals = 1;
    ui().answers = {7};
    EXPECT_EQ(open(path("a"), 4), 0);
    EXPECT_EQ(F(), 71);
    EXPECT_EQ(toUtf8(ui().boxes[0].headline), "Laufwerk /w nicht bereit. Weiter");
}

TEST_F(DbOpen, WritingUnhidesAHiddenFileOnce) {
    const Text name = write("a", "old");
    memory.setHidden(name, true);
    EXPECT_EQ(open(name, 4), 1);
    files.TS_Close(1);
    disk.opens = 0;
    EXPECT_EQ(open(name, 2), 1);
    EXPECT_EQ(disk.opens, 2);
    EXPECT_FALSE(memory.status(name)->hidden);
    files.TS_Close(1);
    memory.setHidden(name, true);
    disk.unhideError = SystemError::accessDenied;
    EXPECT_EQ(open(name, 2), 0);
    EXPECT_EQ(F(), 75);
}

TEST_F(DbOpen, ReadOnlyMediumServesModeFiveForReading) {
    const Text name = write("a", "abc");
    disk.refuse = [](auto request) {
        return request.access == Access::readWrite ? SystemError::writeProtected : SystemError::none;
    };
    const int32 number = open(name, 5);
    ASSERT_EQ(number, 1);
    ByteText bytes(3, u' ');
    files.TS_Get(number, 1, bytes);
    EXPECT_EQ(bytes, u"abc");
    EXPECT_EQ(raisedBy([&] { files.TS_Put(number, 1, u"x"); }), 75);
    EXPECT_EQ(read("a"), "abc");
    EXPECT_EQ(open(name, 4), 0);
}

TEST_F(DbOpen, SaysWhenNoNumberIsFree) {
    const Text name = write("a", "x");
    for (int32 expected = 1; expected <= 511; ++expected) ASSERT_EQ(open(name, 1), expected);
    ui().defaultAnswer = 1;
    EXPECT_EQ(open(name, 1), 0);
    EXPECT_EQ(F(), 67);
    ASSERT_EQ(ui().boxes.size(), 1u);
    EXPECT_EQ(ui().boxes[0].title, u"clsRtm.DB_Open");
    files.TS_Close(200);
    EXPECT_EQ(open(name, 1), 200);
}

}  // namespace
}  // namespace tsRtm::test
