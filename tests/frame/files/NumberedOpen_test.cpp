#include "tests/frame/files/FilesFixture.hpp"

namespace tsRtm::test {
namespace {

using DbOpen = FilesTest;

// Beyond every limit, until the lock or the library ends.
TEST_F(DbOpen, WaitZeroGoesOn) {
    const Text name = write("a", "x");
    auto holder = other(name, Sharing::none);
    clock().onSleep = [&] { rtmMain::state().stopping = clock().elapsed() > seconds(60); };
    EXPECT_TOLD("0|70", open(name, 4, true, 0), F());
    rtmMain::state().stopping = false;
    clock().onSleep = [&] {
        if (clock().elapsed() > seconds(100)) holder.reset();
    };
    EXPECT_TOLD("1|0", open(name, 4, true, 0), F());
    EXPECT_GT(clock().elapsed(), seconds(100));
    EXPECT_TRUE(ui().boxes.empty());
}

TEST_F(DbOpen, PositiveWaitAsksAtEveryLimit) {
    const Text name = write("a", "x");
    const auto holder = other(name, Sharing::none);
    ui().answers = {6, 6, 7};
    EXPECT_TOLD("0|70|3|Kein Zugriff auf Datei /w/a. Weiter", open(name, 4, true, 2), F(), ui().boxes.size(),
                ui().boxes[0].headline);
    EXPECT_GT(clock().elapsed(), seconds(30));
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
    EXPECT_TOLD("2|1|y", inner, outer, files.TS_LineInput(inner));
    EXPECT_NE(&files.file(outer), &files.file(inner));
}

TEST_F(DbOpen, ModesLockOutOthersAndMakeFilesByTheTable) {
    const std::tuple<int32, bool, bool, bool> rows[] = {
        {0, true, true, true},  {0, false, false, true}, {1, true, true, false}, {1, false, false, false},
        {2, true, false, true}, {2, false, false, true}, {3, true, false, true}, {3, false, false, true},
        {4, true, true, true},  {4, false, false, true}, {5, true, true, false}, {5, false, true, false}};
    for (const auto& [mode, shared, othersMayRead, makesFile] : rows) {
        SCOPED_TRACE(testing::Message() << mode << (shared ? " shared" : " alone"));
        const int32 missing = open(path("new"), mode, shared);
        EXPECT_EQ(missing != 0, makesFile);
        EXPECT_EQ(F(), makesFile ? 0 : 53);
        const Text name = write("old", "abc");
        const int32 number = open(name, mode, shared);
        ASSERT_NE(number, 0);
        EXPECT_EQ(other(name, Sharing::all, Access::read) != nullptr, othersMayRead);
        EXPECT_EQ(read("old"), mode == 2 ? "" : "abc");
        EXPECT_EQ(files.TS_Seek(number), mode == 3 ? 4 : 1);
        files.TS_Close(number);
        if (missing != 0) files.TS_Close(missing);
        static_cast<void>(memory.remove(path("new")));
    }
    EXPECT_TRUE(ui().boxes.empty());
}

TEST_F(DbOpen, OtherFailuresAreShown) {
    ui().defaultAnswer = 1;
    EXPECT_TOLD("0|1|Fehler 54: ", open(path("a"), 6), ui().boxes.size(),
                ui().boxes.back().headline.substr(0, 11));
    disk.refuse = [](auto) { return SystemError::diskFull; };
    EXPECT_TOLD("0|61|2", open(path("a"), 4), F(), ui().boxes.size());
    // What was shown stays pending, and must not fail the next opening.
    disk.refuse = nullptr;
    EXPECT_TOLD("1|0|2", open(path("a"), 4), F(), ui().boxes.size());
}

TEST_F(DbOpen, WritingUnhidesAHiddenFileOnce) {
    const Text name = write("a", "old");
    memory.setHidden(name, true);
    EXPECT_EQ(open(name, 4), 1);
    files.TS_Close(1);
    disk.opens = 0;
    EXPECT_TOLD("1|2|no", open(name, 2), disk.opens, memory.status(name)->hidden);
    files.TS_Close(1);
    memory.setHidden(name, true);
    disk.unhideError = SystemError::accessDenied;
    EXPECT_TOLD("0|75", open(name, 2), F());
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
    EXPECT_TOLD("abc|75|abc|0", bytes, raisedNumber([&] { files.TS_Put(number, 1, u"x"); }), read("a"),
                open(name, 4));
}

TEST_F(DbOpen, SaysWhenNoNumberIsFree) {
    const Text name = write("a", "x");
    for (int32 expected = 1; expected <= 511; ++expected) ASSERT_EQ(open(name, 1), expected);
    ui().defaultAnswer = 1;
    EXPECT_TOLD("0|67|1|clsRtm.DB_Open", open(name, 1), F(), ui().boxes.size(), ui().boxes.back().title);
    files.TS_Close(200);
    EXPECT_EQ(open(name, 1), 200);
}

}  // namespace
}  // namespace tsRtm::test
