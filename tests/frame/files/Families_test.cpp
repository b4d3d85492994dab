// What the numbered and the handle family have in common, each in its own way: how long they wait for a
// locked file, what they record of an opening that fails, the bytes they lock, and how they say what failed.
#include "tests/frame/files/FilesFixture.hpp"

namespace tsRtm::test {
namespace {

class Families : public FilesTest {
 protected:
    int32 handle(const Text& name, bool readOnly = false) {
        return files.OpenBinaryAPI(name, readOnly, true);
    }
};

TEST_F(Families, ASilentWaitEndsWith70AtItsLimitOrWhenTheLibraryStops) {
    const Text name = write("a", "x");
    const auto holder = other(name, Sharing::none);
    for (const auto& [wait, limit] : {std::pair{0, 5}, {-1, 5}, {-2, 10}}) {  // 0: by handle
        const auto opened = [&, wait = wait] { return wait == 0 ? handle(name) : open(name, 4, true, wait); };
        const auto start = clock().elapsed();
        F() = 0;
        EXPECT_TOLD("0|70", opened(), F());
        EXPECT_GT(clock().elapsed() - start, seconds(limit));
        EXPECT_LT(clock().elapsed() - start, seconds(limit) + milliseconds(6));
        EXPECT_GT(std::exchange(ui().eventRounds, 0), 0);
        clock().onSleep = [&] { rtmMain::state().stopping = true; };
        const auto again = clock().elapsed();
        EXPECT_EQ(opened(), 0);
        EXPECT_LT(clock().elapsed() - again, milliseconds(6));
        rtmMain::state().stopping = false;
        clock().onSleep = nullptr;
    }
    EXPECT_TRUE(ui().boxes.empty());
}

TEST_F(Families, AWaitEndsWithTheLock) {
    const Text name = write("a", "x");
    for (const bool byHandle : {true, false}) {
        auto holder = other(name, Sharing::none);
        clock().onSleep = [&] { holder.reset(); };
        EXPECT_NE(byHandle ? handle(name) : open(name, 1), 0);
        if (byHandle) files.CloseAPI(1);
    }
}

TEST_F(Families, OpeningErrorsAreRecordedInF) {
    using enum SystemError;
    const Text name = path("new");
    EXPECT_NE(handle(name), 0) << "made where it is missing, but not for reading";
    EXPECT_TOLD("0|53", handle(path("none"), true), F());
    // A number that is raised is negative.
    const std::tuple<SystemError, int32, int32> rows[] = {
        {fileNotFound, 53, 53},  {pathNotFound, 76, 76},   {tooManyOpenFiles, 67, 67},
        {accessDenied, 75, 70},  {writeProtected, 75, 70}, {notReady, 71, 71},
        {invalidName, 64, -445}, {nameTooLong, 64, -445}};
    for (const auto& [error, numbered, byHandle] : rows) {
        disk.refuse = [e = error](auto) { return e; };
        disk.opens = 0;
        EXPECT_EQ(open(name, 4), 0);
        EXPECT_EQ(F(), numbered);
        EXPECT_EQ(disk.opens, 1) << "no other try, no box";
        F() = 0;
        const int32 raised = raisedNumber([&] { EXPECT_EQ(handle(name), 0); });
        EXPECT_EQ(raised == 0 ? F() : -raised, byHandle) << static_cast<int32>(error);
    }
    EXPECT_TRUE(raised([&] {
                    handle(name);
                }).starts_with("445|clsRtm.OpenBinaryAPI|Beim Öffnen von \"/w/new\" ist der Fehler 206 ("));
}

TEST_F(Families, RemovableDriveNotReadyIsAskedFor) {
    memory.setDriveKind(platform::DriveKind::removable);
    int32 refusals = 0;
    disk.refuse = [&](auto) { return refusals-- > 0 ? SystemError::notReady : SystemError::none; };
    for (const bool byHandle : {true, false}) {
        const auto opened = [&] { return byHandle ? handle(path("a")) : open(path("a"), 4); };
        refusals = 2;
        ui().answers = {6, 6};
        EXPECT_NE(opened(), 0);
        refusals = 1;
        ui().answers = {7};
        EXPECT_TOLD("0|71|Laufwerk /w nicht bereit. Weiter", opened(), F(),
                    toUtf8(ui().boxes.back().headline));
    }
}

// Handles count bytes from 0, numbers from 1.
TEST_F(Families, LocksExcludeOthersAndShow) {
    const Text name = write("a", "x");
    const int32 a = handle(name), b = handle(name), number = open(name, 4);
    EXPECT_TOLD("yes|no", files.LockAPI(a, 10, 1), files.LockAPI(b, 8, 5));
    EXPECT_FALSE(files.LockAPI(a, 10, 1)) << "a second lock is refused";
    for (const auto& [satz, locked] : {std::pair{11, true}, {10, false}, {0, false}})
        EXPECT_EQ(files.DB_IsLocked(number, satz), locked) << satz;
    EXPECT_TOLD("no|yes|yes", files.DB_IsLocked(77, 11), files.LockAPI(b, 11, 1), files.UnlockAPI(a, 10, 1));
    ASSERT_EQ(files.file(number).tryLock({10, 1}), SystemError::none);
    EXPECT_FALSE(files.DB_IsLocked(number, 11)) << "one's own lock does not show";
    EXPECT_FALSE(files.LockAPI(b, 10, 1));
    EXPECT_FALSE(files.LockAPI(0, 10, 1) || files.LockAPI(a, -1, 1) || files.UnlockAPI(0, 10, 1));
    files.CloseAPI(b);
    EXPECT_TRUE(files.LockAPI(a, 11, 1)) << "locks die with their opening";
}

TEST_F(Families, FailuresNameTheCallAndLeaveFAlone) {
    const Text name = write("a", "abc");
    const int32 h = handle(name), number = open(name, 1);
    memory.setFreeSpace(0);
    F() = 53;
    int32 value = 0;
    ByteText text(2, u' ');
    std::array<std::byte, 2> bytes{};
    const std::pair<std::string, std::function<void()>> rows[] = {
        {"5|clsRtm|CloseAPI (Handle 0): 6", [&] { files.CloseAPI(0); }},
        {"5|clsRtm|LofAPI (Handle 7): 6", [&] { files.LofAPI(7); }},
        {"5|clsRtm|FilePosAPI (Handle 7): 6", [&] { files.FilePosAPI(7); }},
        {"5|clsRtm|SeekAPI (Handle 1 Position -4): 87", [&] { files.SeekAPI(h, -4); }},
        {"5|clsRtm|GetAPI (Handle 7 Position 3): 6", [&] { files.GetAPI(7, 3, text); }},
        {"5|clsRtm|GetBytesAPI (Handle 7 Position 3 Count 2): 6", [&] { files.GetBytesAPI(7, 3, bytes, 2); }},
        {"5|clsRtm|GetIntegerAPI (Handle 7 Position 3 Size 2): 6",
         [&] { files.GetIntegerAPI(7, 3, 2, value); }},
        {"5|clsRtm|PutAPI (Handle 1): 112", [&] { files.PutAPI(h, 3, u"xyz"); }},
        {"5|clsRtm|PutBytesAPI (Handle 7): 6", [&] { files.PutBytesAPI(7, 3, bytes, 2); }},
        {"5|clsRtm|PutIntegerAPI (Handle 7 Position 3 Size 2 Value 5): 6",
         [&] { files.PutIntegerAPI(7, 3, 2, 5); }},
        {"380|clsRtm|GetIntegerAPI: Size 3 not supported", [&] { files.GetIntegerAPI(h, 0, 3, value); }},
        {"380|clsRtm|PutIntegerAPI: Size 8 not supported", [&] { files.PutIntegerAPI(h, 0, 8, 1); }},
        {"52|clsRtm|", [&] { files.handleFile(99); }},
        {"52|clsRtm:TS_Eof|Datei: 9: ", [&] { files.TS_Eof(9); }},
        {"52|clsRtm:TS_Close|Datei: 9: ", [&] { files.TS_Close(9); }},
        {"54|clsRtm:TS_Print|Datei: /w/a: ", [&] { files.TS_Print(number, u"x"); }},
        {"54|clsRtm:TS_Put|Datei: /w/a: ", [&] { files.TS_Put(number, 1, u"x"); }},
        {"62|clsRtm:TS_LineInput|Datei: /w/a: ",
         [&] { files.TS_LineInput(number), files.TS_LineInput(number); }},
        {"52|", [&] { files.file(9); }}};
    for (const auto& [starts, work] : rows) EXPECT_TRUE(raised(work).starts_with(starts)) << raised(work);
    EXPECT_EQ(F(), 53);
    files.CloseAPI(h);
    EXPECT_NE(handle(name, true), h) << "a stale handle finds nothing";
}

}  // namespace
}  // namespace tsRtm::test
