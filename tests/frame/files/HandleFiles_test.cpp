#include "tests/frame/files/FilesFixture.hpp"

namespace tsRtm::test {
namespace {

using Handles = FilesTest;

TEST_F(Handles, OpenTellsByFWhyNot) {
    EXPECT_NE(files.OpenBinaryAPI(path("new"), false, true), 0);
    EXPECT_EQ(read("new"), "");
    EXPECT_EQ(files.OpenBinaryAPI(path("none"), true, true), 0);
    EXPECT_EQ(F(), 53);
    EXPECT_EQ(files.OpenBinaryAPI(path("no/folder"), false, true), 0);
    EXPECT_EQ(F(), 76);
    disk.refuse = [](auto) { return SystemError::tooManyOpenFiles; };
    EXPECT_EQ(files.OpenBinaryAPI(path("new"), false, true), 0);
    EXPECT_EQ(F(), 67);
    disk.refuse = [](auto) { return SystemError::diskFull; };
    const auto open = [&] { files.OpenBinaryAPI(path("new"), false, true); };
    EXPECT_EQ(raisedBy(open), 445);
    EXPECT_TRUE(messageOf(open).starts_with("clsRtm.OpenBinaryAPI / Beim Öffnen von \"" +
                                            toUtf8(path("new")) + "\" ist der Fehler 112 ("));
}

TEST_F(Handles, OpenWaitsNetWaitForALock) {
    const Text name = write("a", "x");
    auto holder = other(name, Sharing::none);
    EXPECT_EQ(files.OpenBinaryAPI(name, true, true), 0);
    EXPECT_EQ(F(), 70);
    EXPECT_GT(clock().elapsed(), seconds(5));
    EXPECT_LT(clock().elapsed(), seconds(5) + milliseconds(6));
    clock().onSleep = [&] { holder.reset(); };
    EXPECT_NE(files.OpenBinaryAPI(name, true, true), 0);
}

TEST_F(Handles, ReadWriteSeekAndCut) {
    const int32 h = files.OpenBinaryAPI(path("a"), false, false);
    files.PutAPI(h, 0, u"0123456789");
    EXPECT_EQ(files.FilePosAPI(h), 10);
    files.SeekAPI(h, -3);
    EXPECT_EQ(files.FilePosAPI(h), 7);
    ByteText text(4, u'-');
    files.GetAPI(h, 7, text);
    EXPECT_EQ(text, u"789-");
    files.SetEndAPI(h, 5);
    EXPECT_EQ(files.LofAPI(h), 5);
    EXPECT_NO_THROW(files.SetEndAPI(0, 5));

    std::array<std::byte, 4> bytes{};
    files.GetBytesAPI(h, 1, bytes, 99);
    EXPECT_EQ(bytes[3], std::byte('4'));
    files.PutBytesAPI(h, 4, bytes, 2);
    files.PutBytesAPI(h, 0, bytes, 0);
    EXPECT_EQ(read("a"), "012312");
    EXPECT_TRUE(files.HandleFileName(h).ends_with(u"a"));
    files.CloseAPI(h);
    EXPECT_EQ(files.HandleFileName(h), u"");
}

TEST_F(DiskTest, HandlePositionsBeyondFourGigabytes) {
    const int32 h = files.OpenBinaryAPI(folder.name(u"a"), false, false);
    const int64 far = 5'000'000'000;
    files.PutIntegerAPI(h, far, 4, -7);
    int32 value = 0;
    files.GetIntegerAPI(h, far, 4, value);
    EXPECT_EQ(value, -7);
    EXPECT_EQ(files.LofAPI(h), far + 4);
}

TEST_F(Handles, IntegersAreLittleEndianAndSmallOnesUnsigned) {
    const int32 h = files.OpenBinaryAPI(path("a"), false, false);
    files.PutIntegerAPI(h, 0, 1, -1);
    files.PutIntegerAPI(h, 1, 2, -2);
    files.PutIntegerAPI(h, 3, 4, -3);
    EXPECT_EQ(read("a"), "\xFF\xFE\xFF\xFD\xFF\xFF\xFF");
    for (const auto& [position, size, value] :
         {std::tuple{0, 1, 0xFF}, {1, 2, 0xFFFE}, {3, 4, -3}, {99, 4, 0}}) {
        int32 got = 9;
        files.GetIntegerAPI(h, position, size, got);
        EXPECT_EQ(got, value);
    }
    int32 one = 0;
    EXPECT_EQ(messageOf([&] { files.GetIntegerAPI(h, 0, 3, one); }),
              "clsRtm / GetIntegerAPI: Size 3 not supported");
    EXPECT_EQ(raisedBy([&] { files.PutIntegerAPI(h, 0, 8, 1); }), 380);
}

TEST_F(Handles, FailuresNameTheCall) {
    const int32 h = files.OpenBinaryAPI(write("a", "abc"), false, true);
    memory.setFreeSpace(0);
    int32 value = 0;
    ByteText text(2, u' ');
    std::array<std::byte, 2> bytes{};
    const std::pair<std::string, std::function<void()>> rows[] = {
        {"CloseAPI (Handle 0): 6", [&] { files.CloseAPI(0); }},
        {"LofAPI (Handle 7): 6", [&] { files.LofAPI(7); }},
        {"FilePosAPI (Handle 7): 6", [&] { files.FilePosAPI(7); }},
        {"GetAPI (Handle 7 Position 3): 6", [&] { files.GetAPI(7, 3, text); }},
        {"GetBytesAPI (Handle 7 Position 3 Count 2): 6", [&] { files.GetBytesAPI(7, 3, bytes, 2); }},
        {"PutAPI (Handle 7): 6", [&] { files.PutAPI(7, 3, u"x"); }},
        {"PutBytesAPI (Handle 7): 6", [&] { files.PutBytesAPI(7, 3, bytes, 2); }},
        {"GetIntegerAPI (Handle 7 Position 3 Size 2): 6", [&] { files.GetIntegerAPI(7, 3, 2, value); }},
        {"PutIntegerAPI (Handle 7 Position 3 Size 2 Value 5): 6", [&] { files.PutIntegerAPI(7, 3, 2, 5); }},
        {"SeekAPI (Handle 1 Position -4): 87", [&] { files.SeekAPI(h, -4); }},
        {"PutAPI (Handle 1): 112", [&] { files.PutAPI(h, 3, u"xyz"); }},
    };
    for (const auto& [starts, work] : rows)
        EXPECT_TRUE(messageOf(work).starts_with("clsRtm / " + starts + " - ")) << messageOf(work);
    EXPECT_EQ(raisedBy([&] { files.PutAPI(h, 3, u"xyz"); }), 5);
    EXPECT_EQ(raisedBy([&] { files.handleFile(99); }), 52);
}

TEST_F(Handles, LocksExcludeOthersButAnswerWithoutRaising) {
    const Text name = write("a", "x");
    const int32 a = files.OpenBinaryAPI(name, false, true), b = files.OpenBinaryAPI(name, false, true);
    EXPECT_TRUE(files.LockAPI(a, 10, 1));
    EXPECT_FALSE(files.LockAPI(b, 8, 5));
    EXPECT_FALSE(files.LockAPI(a, 10, 1)) << "a second lock is refused";
    EXPECT_TRUE(files.LockAPI(b, 11, 1));
    EXPECT_TRUE(files.UnlockAPI(a, 10, 1));
    EXPECT_TRUE(files.LockAPI(b, 10, 1));
    EXPECT_FALSE(files.LockAPI(0, 10, 1));
    EXPECT_FALSE(files.LockAPI(a, -1, 1));
    files.CloseAPI(b);
    EXPECT_TRUE(files.LockAPI(a, 10, 2)) << "locks die with their opening";
}

TEST_F(Handles, AClosedHandleIsNeverReused) {
    const Text name = write("a", "x");
    const int32 first = files.OpenBinaryAPI(name, true, true);
    files.CloseAPI(first);
    const int32 second = files.OpenBinaryAPI(name, true, true);
    EXPECT_NE(first, second);
    EXPECT_EQ(raisedBy([&] { files.LofAPI(first); }), 5);
}

}  // namespace
}  // namespace tsRtm::test
