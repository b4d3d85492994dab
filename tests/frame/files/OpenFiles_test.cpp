// Reading and writing of files that are open, by number and by handle.
#include "tests/frame/files/FilesFixture.hpp"

namespace tsRtm::test {
namespace {

using namespace std::string_view_literals;
using Numbered = FilesTest;
using Handles = FilesTest;

TEST_F(Numbered, LinesEndAtAnyLineEndAndItemsAtCommasToo) {
    const std::tuple<bool, std::string_view, std::vector<Text>> rows[] = {
        {false, "", {}},
        {false, "a", {u"a"}},
        {false, "a\r\nb\nc\rd", {u"a", u"b", u"c", u"d"}},
        {false, "\r\n\n\r", {u"", u"", u""}},
        {false, "\xE4\x80\r\n", {u"ä€"}},
        {false, "x\r\n\x1Ay\r\n", {u"x"}},  // the mark of the end of a file
        {true, "a,b\r\nc", {u"a", u"b", u"c"}},
        {true, "  a b ,,\nc", {u"a b ", u"", u"", u"c"}},
        {true, "\"a,b\r\nc\" , d", {u"a,b\r\nc", u"d"}},
        {true, "\"open", {u"open"}},
        {true, "\"\",x", {u"", u"x"}}};
    for (const auto& [items, content, expected] : rows) {
        const int32 number = open(write("a", content), 1);
        const auto next = [&, inItems = items] {
            return inItems ? files.TS_Input(number) : files.TS_LineInput(number);
        };
        std::vector<Text> pieces;
        while (!files.TS_Eof(number)) pieces.push_back(next());
        EXPECT_EQ(pieces, expected) << content;
        EXPECT_EQ(raisedNumber(next), 62);
        files.TS_Close(number);
    }
}

TEST_F(Numbered, LinesLongerThanTheReadAheadStayWhole) {
    const Bytes line(40000, 'x');
    const int32 number = open(write("a", line + "\r\n" + line), 1);
    EXPECT_TOLD("40000|40003|40000", files.TS_LineInput(number).size(), files.TS_Seek(number),
                files.TS_LineInput(number).size());
}

TEST_F(Numbered, SeekReportsSetsAndGoesBehindTheEnd) {
    const int32 number = open(write("a", Bytes(100, 'x')), 4);
    EXPECT_TOLD("1|7|7|105|yes", files.TS_Seek(number, 0), files.TS_Seek(number, 7), files.TS_Seek(number, 0),
                files.TS_Seek(number, -5), files.TS_Eof(number));
}

TEST_F(Numbered, GetAndPutWorkFromPositionOne) {
    const int32 number = open(write("a", "abcdef"), 4);
    files.TS_Put(number, 2, u"Ä\u0001");
    EXPECT_EQ(read("a"), Bytes("a\xC4\1def"));
    ByteText bytes(3, u'-');
    files.TS_Get(number, 5, bytes);
    EXPECT_EQ(bytes, u"ef-") << "bytes behind the end stay";
    files.TS_Put(number, 9, u"z");
    EXPECT_EQ(files.TS_Lof(number), 9);
    EXPECT_TOLD("63|63", raisedNumber([&] { files.TS_Get(number, 0, bytes); }),
                raisedNumber([&] { files.TS_Put(number, -1, u"x"); }));
}

TEST_F(Numbered, SequentialGetSeeksAndNeedsAllBytes) {
    const int32 number = open(write("a", "abcdef"), 1);
    EXPECT_EQ(files.TS_LineInput(number), u"abcdef");
    ByteText bytes(2, u' ');
    files.TS_Get(number, 3, bytes);
    EXPECT_EQ(bytes, u"cd");
    files.TS_Get(number, 0, bytes);
    EXPECT_TOLD("ef|62", bytes, raisedNumber([&] { files.TS_Get(number, 6, bytes); }));
}

TEST_F(Numbered, PrintEndsLinesWithCrLfAndAppendsBehindTheEnd) {
    const Text name = write("a", "old");
    int32 number = 0;
    files.OpenAppend(name, number);
    files.TS_Print(number, u"Grün");
    files.TS_Close(number);
    EXPECT_EQ(read("a"), "oldGr\xFCn\r\n");
    files.OpenRead(name, number);
    EXPECT_EQ(files.TS_LineInput(number), u"oldGrün");
    files.TS_Close(number);
    files.OpenWrite(name, number);
    files.TS_Print(number, u"");
    files.TS_Close(number);
    EXPECT_EQ(read("a"), "\r\n");
}

TEST_F(Numbered, FullDiskLeavesNoHalfLine) {
    const Text name = path("a");
    const int32 number = open(name, 2);
    memory.setFreeSpace(10);
    files.TS_Print(number, u"12345");
    EXPECT_TOLD("61|12345\r\n", raisedNumber([&] { files.TS_Print(number, u"67890"); }), read("a"));
    memory.setFreeSpace({});
    files.TS_Print(number, u"next");
    EXPECT_EQ(read("a"), "12345\r\nnext\r\n");
}

TEST_F(Numbered, OldRecordsComeAndGo) {
    int32 number = 0;
    files.OldOpenRandom(path("a"), number, 10, 3);
    const Bytes free = "\xFF\r        ";
    EXPECT_EQ(read("a"), free + free + free);

    std::vector<Text> fields(3, u"stale");
    files.OldGet(number, 2, 10, fields);
    EXPECT_EQ(fields, (std::vector<Text>{u"", u"", u""})) << "a free record";

    F() = 0;
    files.OldPut(number, 2, 10, {u"äx", u"c"});
    files.OldPut(number, 3, 10, {u"much too", u"long"});
    EXPECT_EQ(read("a"), free + "\xE4x\rc\r     much too\rl");
    files.OldGet(number, 2, 10, fields);
    EXPECT_EQ(fields, (std::vector<Text>{u"äx", u"c", u""}));
    files.OldGet(number, 3, 10, fields);
    EXPECT_EQ(fields, (std::vector<Text>{u"much too", u"", u""})) << "its last end is cut off";

    files.OldPut(number, 2, 10, {u"\u00FF", u"ignored"});
    F() = 70;
    files.OldPut(number, 1, 10, {u"x"});
    EXPECT_EQ(read("a").substr(0, 20), free + free) << "nothing is written while a failure is recorded";
    EXPECT_EQ(F(), 70);
    // A line feed behind a field's end belongs to it.
    files.TS_Put(number, 1, u"a\r\nb\r");
    files.OldGet(number, 1, 10, fields);
    EXPECT_EQ(fields, (std::vector<Text>{u"a", u"b", u""}));
}

TEST_F(Numbered, OldFileOnAFullDiskStaysEmptyAndIsShown) {
    memory.setFreeSpace(25);
    ui().defaultAnswer = 1;
    int32 number = 0;
    files.OldOpenRandom(path("a"), number, 10, 3);
    EXPECT_TOLD("61|1|", F(), ui().boxes.size(), read("a"));
}

TEST_F(Handles, ReadWriteSeekAndCut) {
    const int32 h = files.OpenBinaryAPI(path("a"), false, false);
    files.PutAPI(h, 0, u"0123456789");
    EXPECT_EQ(files.FilePosAPI(h), 10);
    files.SeekAPI(h, -3);
    EXPECT_EQ(files.FilePosAPI(h), 7);
    ByteText text(4, u'-');
    files.GetAPI(h, 7, text);
    files.SetEndAPI(h, 5);
    EXPECT_TOLD("789-|5", text, files.LofAPI(h));
    EXPECT_NO_THROW(files.SetEndAPI(0, 5));

    std::array<std::byte, 4> bytes{};
    files.GetBytesAPI(h, 1, bytes, 99);
    EXPECT_EQ(bytes[3], std::byte('4'));
    files.PutBytesAPI(h, 4, bytes, 2);
    files.PutBytesAPI(h, 0, bytes, 0);
    EXPECT_TOLD("012312|yes", read("a"), files.HandleFileName(h).ends_with(u"a"));
    files.CloseAPI(h);
    EXPECT_EQ(files.HandleFileName(h), u"");
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
