#include "tests/frame/files/FilesFixture.hpp"

namespace tsRtm::test {
namespace {

using namespace std::string_view_literals;
using ContentTest = FilesTest;

constexpr int32 untouched = 4711;

TEST_F(ContentTest, ReadingFindsEncodingAndText) {
    struct Row {
        std::string_view bytes;
        int32 encoding;  // 321 is raised where negative
        TextView text;
    };
    const Row rows[] = {{""sv, untouched, u""},
                        {"\x80\xE4"sv, 1252, u"€ä"},
                        {"\xEF"sv, 1252, u"ï"},
                        {"\xEF\xBB\xBF"sv, 65001, u""},
                        {"\xEF\xBB\xBF\xC3\xA4"sv, 65001, u"ä"},
                        {"\xEF\xBB\xBF\xFFx\xC3"sv, 65001, u"\uFFFDx\uFFFD"},
                        {"\xFF\xFE\0"sv, 1200, u""},
                        {"\xFF\xFEx\0y"sv, 1200, u"x"},
                        {"\xFF\xFE\x3D\xD8"sv, 1200, TextView(u"\xD83D", 1)},
                        {"\xFF\xFE\0\0"sv, -12000, u""},
                        {"\xFE\xFF\0\xE4\0"sv, 1201, u"ä"},
                        {"\xFE\xFF\0\0"sv, 1201, TextView(u"\0", 1)},
                        {"\0\0\xFE\xFF"sv, -12001, u""},
                        {"\0\0\xFE"sv, 1252, TextView(u"\0\0þ", 3)},
                        {"xy\x1Az"sv, 1252, u"xy"},  // the mark of the end of a file
                        {"\xFF\xFEx\0\x1A\0y\0"sv, 1200, u"x"},
                        {"\xFF\xFE\x1A\1"sv, 1200, u"\u011A"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.bytes));
        const Text name = write("a", row.bytes);
        int32 found = untouched;
        Date changed;
        if (row.encoding < 0) {
            EXPECT_EQ(raisedNumber([&] { files.GetContentAPI(name, found, changed); }), 321);
            EXPECT_NE(other(name, Sharing::none), nullptr) << "the file is closed again";
        } else {
            EXPECT_EQ(files.GetContentAPI(name, found, changed), row.text);
            EXPECT_GT(changed.serial(), 40000);
        }
        EXPECT_EQ(found, std::abs(row.encoding));
    }
}

TEST_F(ContentTest, WithoutAMarkTheCallerMayAskForTheDosCodePage) {
    int32 encoding = 850;
    Date changed;
    EXPECT_TOLD("äß|850", files.GetContentAPI(write("a", "\x84\xE1"), encoding, changed), encoding);
    EXPECT_TOLD("ä|65001", files.GetContentAPI(write("a", "\xEF\xBB\xBF\xC3\xA4"), encoding, changed),
                encoding);
    EXPECT_TOLD("|53", files.Content(path("none")), F());
    const Text name = write("a", "x");
    const auto holder = other(name, Sharing::none);
    EXPECT_TOLD("|70", files.Content(name), F());
}

TEST_F(ContentTest, WritingKeepsOrSetsTheEncoding) {
    const std::tuple<std::string_view, int32, bool, TextView, std::string_view> rows[] = {
        {"", 65001, false, u"ä", "\xEF\xBB\xBF\xC3\xA4"},
        {"", 1252, false, u"ä€Ω", "\xE4\x80?"},
        {"", 1200, false, u"ä", "\xFF\xFE\xE4\0"sv},
        {"", 1201, false, u"ä", "\xFE\xFF\0\xE4"sv},
        {"", 850, false, u"ä", "\x84"},
        {"", 65001, true, u"x", "\xEF\xBB\xBFx"},
        {"a longer text", 65001, false, u"x", "\xEF\xBB\xBFx"},
        {"abc", 65001, true, u"ä", "abc\xE4"},  // what is there counts
        {"\xFF\xFEx\0"sv, 65001, true, u"ä", "\xFF\xFEx\0\xE4\0"sv},
        {"\xEF\xBB\xBFxyz", 1252, false, u"ä", "\xEF\xBB\xBF\xC3\xA4"},
        {"\xFE\xFF\0x\0y"sv, 1252, false, u"z", "\xFE\xFF\0z"sv},
        {"\x84", 850, true, u"ä", "\x84\x84"},
        {"abc", 1252, false, u"", ""}};
    for (const auto& [before, encoding, append, text, after] : rows) {
        SCOPED_TRACE(testing::PrintToString(after));
        const Text name = write("a", before);
        Date changed;
        EXPECT_EQ(files.PutContentAPI(name, text, encoding, append, changed),
                  static_cast<int64>(after.size()));
        EXPECT_EQ(read("a"), after);
        EXPECT_EQ(changed, disk.status(name)->changed);
    }
}

TEST_F(ContentTest, RefusedWritingLeavesTheFileAsItWas) {
    Date changed;
    const auto put = [&](std::string_view before, int32 encoding, bool append, const Text& text) {
        const Text name = write("a", before);
        const int32 number =
            raisedNumber([&] { files.PutContentAPI(name, text, encoding, append, changed); });
        EXPECT_EQ(read("a"), before);
        EXPECT_NE(other(name, Sharing::none), nullptr) << "the file is closed again";
        return number;
    };
    EXPECT_TOLD("321|321", put("abc", 65000, false, u"x"), put("\xFF\xFE\0\0a\0\0\0"sv, 1252, false, u"x"));
    const Text large(1000, u'x');
    for (const bool append : {false, true}) {
        memory.setFreeSpace(100);
        EXPECT_EQ(put("old text", 1252, append, large), 5);
    }
    memory.setFreeSpace({});
    const Text name = write("a", "x");
    const auto holder = other(name, Sharing::all);
    EXPECT_EQ(raisedNumber([&] { files.PutContentAPI(name, u"y", 1252, false, changed); }), 75);
}

// Nothing of it is read: it would not fit into memory.
TEST_F(DiskTest, AFileBeyondFourGigabytesTakesNumbersAndATextToo) {
    const Text name = folder.name(u"a");
    constexpr int64 kLength = 5'000'000'000;
    const int32 handle = files.OpenBinaryAPI(name, false, false);
    files.SetEndAPI(handle, kLength);
    files.PutIntegerAPI(handle, kLength - 4, 4, -7);
    int32 value = 0;
    files.GetIntegerAPI(handle, kLength - 4, 4, value);
    EXPECT_TOLD("-7|5000000000", value, files.LofAPI(handle));
    files.CloseAPI(handle);
    Date changed;
    EXPECT_EQ(files.PutContentAPI(name, u"ä", 1252, true, changed), kLength + 1);
    EXPECT_TOLD("1|x", files.PutContentAPI(name, u"x", 1252, false, changed), files.Content(name));
}

TEST_F(ContentTest, ReplacingIsAllOrNothing) {
    const Text name = write("a", "old");
    EXPECT_TOLD("yes|new|yes|no", files.safeReplace(name, "new"), read("a"),
                files.safeReplace(path("made"), ""), files.safeReplace(path("no/folder"), "x"));
    memory.setFreeSpace(2);
    EXPECT_FALSE(files.safeReplace(name, "newer"));
    memory.setFreeSpace({});
    disk.renameError = SystemError::sharingViolation;
    EXPECT_TOLD("no|new", files.safeReplace(name, "newer"), read("a"));
    EXPECT_EQ(entries(), 2) << "nothing is left beside it";
}

TEST_F(DiskTest, AReplacedFileStaysOpenToTheSameUsers) {
    using std::filesystem::perms;
    constexpr auto ownerAlone = perms::owner_read | perms::owner_write;
    const auto rights = [&](const char* name) {
        return std::filesystem::status(folder.path() / name).permissions();
    };
    ASSERT_TRUE(files.safeReplace(folder.name(u"a"), "old"));
    ASSERT_TRUE(files.safeReplace(folder.name(u"b"), "new"));
    ASSERT_NE(rights("a"), ownerAlone);
    std::filesystem::permissions(folder.path() / "a", ownerAlone);
    EXPECT_TRUE(files.safeReplace(folder.name(u"a"), "newer"));
    EXPECT_EQ(rights("a"), ownerAlone);
    EXPECT_TRUE(files.TSReplaceFile(folder.name(u"a"), folder.name(u"b"), true));
    EXPECT_EQ(rights("a"), ownerAlone);
    EXPECT_EQ(rights("a.sik"), ownerAlone);
}

}  // namespace
}  // namespace tsRtm::test
