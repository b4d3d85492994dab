#include "tests/frame/files/FilesFixture.hpp"

namespace tsRtm::test {
namespace {

using Handles = FilesTest;

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
}

}  // namespace
}  // namespace tsRtm::test
