#include "tests/frame/files/FilesFixture.hpp"

namespace tsRtm::test {
namespace {

using namespace std::string_view_literals;
using ContentTest = FilesTest;

constexpr int32 untouched = 4711;

struct ReadCase {
    std::string_view bytes;
    int32 encoding;  // as found; 321 raised where negative
    TextView text;
};
class Reading : public FilesTest, public ::testing::WithParamInterface<ReadCase> {};

TEST_P(Reading, FindsEncodingAndText) {
    const auto& [bytes, encoding, text] = GetParam();
    const Text name = write("a", bytes);
    int32 found = untouched;
    Date changed;
    if (encoding < 0) {
        EXPECT_EQ(raisedBy([&] { files.GetContentAPI(name, found, changed); }), 321);
        EXPECT_EQ(found, -encoding);
        EXPECT_NE(other(name, Sharing::none), nullptr) << "the file is closed again";
    } else {
        EXPECT_EQ(files.GetContentAPI(name, found, changed), text);
        EXPECT_EQ(found, encoding);
        EXPECT_GT(changed.serial(), 40000);
    }
}
INSTANTIATE_TEST_SUITE_P(
    Marks, Reading,
    ::testing::Values(ReadCase{""sv, untouched, u""}, ReadCase{"a"sv, 1252, u"a"},
                      ReadCase{"\xEF"sv, 1252, u"ï"}, ReadCase{"\xEF\xBB"sv, 1252, u"ï»"},
                      ReadCase{"\xEF\xBB\xBF"sv, 65001, u""}, ReadCase{"\xEF\xBB\xBF\xC3\xA4"sv, 65001, u"ä"},
                      ReadCase{"\xFF\xFE"sv, 1200, u""}, ReadCase{"\xFF\xFE\0"sv, 1200, u""},
                      ReadCase{"\xFF\xFE\0\0"sv, -12000, u""}, ReadCase{"\xFF\xFE\0\0a\0\0\0"sv, -12000, u""},
                      ReadCase{"\xFF\xFE\0\1"sv, 1200, u"\u0100"}, ReadCase{"\xFF\xFE\xE4\0"sv, 1200, u"ä"},
                      ReadCase{"\xFF\xFE"
                               "a\0b"sv,
                               1200, u"a"},
                      ReadCase{"\xFE\xFF"sv, 1201, u""}, ReadCase{"\xFE\xFF\0\xE4\0"sv, 1201, u"ä"},
                      ReadCase{"\xFE\xFF\0\0"sv, 1201, TextView(u"\0", 1)},
                      ReadCase{"\0\0\xFE\xFF"sv, -12001, u""},
                      ReadCase{"\0\0\xFE"sv, 1252, TextView(u"\0\0þ", 3)},
                      ReadCase{"\x80\xE4"sv, 1252, u"€ä"}));
INSTANTIATE_TEST_SUITE_P(Hostile, Reading,
                         ::testing::Values(ReadCase{"\xEF\xBB\xBF"
                                                    "a\xC3"sv,
                                                    65001, u"a\uFFFD"},
                                           ReadCase{"\xEF\xBB\xBF"
                                                    "\xFF"
                                                    "b"sv,
                                                    65001,
                                                    u"\uFFFD"
                                                    u"b"},
                                           ReadCase{"\xFF\xFE\x3D\xD8"sv, 1200, TextView(u"\xD83D", 1)},
                                           ReadCase{"ab\x1A"
                                                    "cd"sv,
                                                    1252, u"ab"},
                                           ReadCase{"\x1A"sv, 1252, u""},
                                           ReadCase{"\xFF\xFE"
                                                    "a\0\x1A\0b\0"sv,
                                                    1200, u"a"},
                                           ReadCase{"\xFF\xFE\x1A\1"sv, 1200, u"\u011A"}));

TEST_F(ContentTest, WithoutAMarkTheCallerMayAskForTheDosCodePage) {
    int32 encoding = 850;
    Date changed;
    EXPECT_EQ(files.GetContentAPI(write("a", "\x84\xE1"), encoding, changed), u"äß");
    EXPECT_EQ(encoding, 850);
    EXPECT_EQ(files.GetContentAPI(write("a", "\xEF\xBB\xBF\xC3\xA4"), encoding, changed), u"ä");
    EXPECT_EQ(encoding, 65001);
}

TEST_F(ContentTest, OfAMissingOrLockedFileIsEmpty) {
    EXPECT_EQ(files.Content(path("none")), u"");
    EXPECT_EQ(F(), 53);
    const Text name = write("a", "x");
    const auto holder = other(name, Sharing::none);
    EXPECT_EQ(files.Content(name), u"");
    EXPECT_EQ(F(), 70);
}

struct WriteCase {
    std::string_view before;
    int32 encoding;
    bool append;
    TextView text;
    std::string_view after;
};
class Writing : public FilesTest, public ::testing::WithParamInterface<WriteCase> {};

TEST_P(Writing, KeepsOrSetsTheEncoding) {
    const auto& [before, encoding, append, text, after] = GetParam();
    const Text name = write("a", before);
    Date changed;
    EXPECT_EQ(files.PutContentAPI(name, text, encoding, append, changed), static_cast<int64>(after.size()));
    EXPECT_EQ(read("a"), after);
    EXPECT_EQ(changed, disk.status(name)->changed);
}
INSTANTIATE_TEST_SUITE_P(Fresh, Writing,
                         ::testing::Values(WriteCase{"", 65001, false, u"ä", "\xEF\xBB\xBF\xC3\xA4"},
                                           WriteCase{"", 1252, false, u"ä€Ω", "\xE4\x80?"},
                                           WriteCase{"", 1200, false, u"ä", "\xFF\xFE\xE4\0"sv},
                                           WriteCase{"", 1201, false, u"ä", "\xFE\xFF\0\xE4"sv},
                                           WriteCase{"", 850, false, u"ä", "\x84"},
                                           WriteCase{"", 65001, false, u"", ""},
                                           WriteCase{"", 65001, true, u"x", "\xEF\xBB\xBFx"},
                                           WriteCase{"a longer text", 65001, false, u"x", "\xEF\xBB\xBFx"}));
INSTANTIATE_TEST_SUITE_P(Existing, Writing,
                         ::testing::Values(WriteCase{"abc", 1252, false, u"x", "x"},
                                           WriteCase{"abc", 65001, true, u"ä", "abc\xE4"},
                                           WriteCase{"\xFF\xFE"
                                                     "a\0"sv,
                                                     65001, true, u"ä",
                                                     "\xFF\xFE"
                                                     "a\0\xE4\0"sv},
                                           WriteCase{"\xEF\xBB\xBF"
                                                     "abc",
                                                     1252, false, u"ä", "\xEF\xBB\xBF\xC3\xA4"},
                                           WriteCase{"\xFE\xFF\0a\0b"sv, 1252, false, u"x", "\xFE\xFF\0x"sv},
                                           WriteCase{"\x84", 850, true, u"ä", "\x84\x84"},
                                           WriteCase{"abc", 1252, true, u"", "abc"},
                                           WriteCase{"abc", 1252, false, u"", ""}));

TEST_F(ContentTest, RefusedWritingLeavesTheFileAsItWas) {
    Date changed;
    const auto put = [&](std::string_view before, int32 encoding, bool append, const Text& text) {
        const Text name = write("a", before);
        const int32 number = raisedBy([&] { files.PutContentAPI(name, text, encoding, append, changed); });
        EXPECT_EQ(read("a"), before);
        EXPECT_NE(other(name, Sharing::none), nullptr) << "the file is closed again";
        return number;
    };
    EXPECT_EQ(put("abc", 65000, false, u"x"), 321);
    EXPECT_EQ(put("\xFF\xFE\0\0a\0\0\0"sv, 1252, false, u"x"), 321);
    const Text large(1000, u'x');
    for (const bool append : {false, true}) {
        memory.setFreeSpace(100);
        EXPECT_EQ(put("old text", 1252, append, large), 5);
    }
    memory.setFreeSpace({});
    const Text name = write("a", "x");
    const auto holder = other(name, Sharing::all);
    EXPECT_EQ(raisedBy([&] { files.PutContentAPI(name, u"y", 1252, false, changed); }), 75);
}

TEST_F(ContentTest, WhatIsWrittenIsRead) {
    const Text text = u"Zeile 1\r\nä ö ü ß\r\n";
    Date changed;
    for (const int32 encoding : {1252, 65001, 1200, 1201, 850}) {
        static_cast<void>(memory.remove(path("a")));
        files.PutContentAPI(path("a"), text, encoding, false, changed);
        int32 found = encoding;
        EXPECT_EQ(files.GetContentAPI(path("a"), found, changed), text) << encoding;
        EXPECT_EQ(found, encoding);
    }
}

TEST_F(ContentTest, ReplacingIsAllOrNothing) {
    const Text name = write("a", "old");
    EXPECT_TRUE(files.safeReplace(name, "new"));
    EXPECT_EQ(read("a"), "new");
    EXPECT_TRUE(files.safeReplace(path("made"), ""));
    EXPECT_FALSE(files.safeReplace(path("no/folder"), "x"));
    memory.setFreeSpace(2);
    EXPECT_FALSE(files.safeReplace(name, "newer"));
    memory.setFreeSpace({});
    disk.renameError = SystemError::sharingViolation;
    EXPECT_FALSE(files.safeReplace(name, "newer"));
    EXPECT_EQ(read("a"), "new");
    EXPECT_EQ(entries(), 2) << "nothing is left beside it";
}

}  // namespace
}  // namespace tsRtm::test
