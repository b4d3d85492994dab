#include "tests/frame/files/FilesFixture.hpp"
#include "tsRtm/frame/files/StreamsTopic.hpp"

namespace tsRtm::test {
namespace {

using namespace std::string_view_literals;

class Streams : public FilesTest {
 protected:
    StreamsTopic streams{files};
};

struct PiecesCase {
    std::string_view content;
    std::vector<Text> pieces;
};
class CsvItems : public Streams, public ::testing::WithParamInterface<PiecesCase> {};
TEST_P(CsvItems, AreReadInOrder) {
    const auto reader = streams.OpenStreamReader(write("a", GetParam().content));
    std::vector<Text> items;
    while (!reader->EndOfStream()) items.push_back(reader->ReadItem());
    EXPECT_EQ(items, GetParam().pieces);
    EXPECT_EQ(raisedBy([&] { reader->ReadItem(); }), 62);
}
INSTANTIATE_TEST_SUITE_P(
    Table, CsvItems,
    ::testing::Values(PiecesCase{"a,b,c", {u"a", u"b", u"c"}}, PiecesCase{"\"a,b\",c", {u"a,b", u"c"}},
                      PiecesCase{"\"a\"\"b\"", {u"a\"b"}}, PiecesCase{"a,\"b", {u"a", u"\"b"}},
                      PiecesCase{"\"a\"\"b\",\"c\"\"\"", {u"a\"b", u"c\""}},
                      PiecesCase{"\"\",x", {u"", u"x"}}, PiecesCase{"\"a,b", {u"a,b"}},
                      PiecesCase{"\"a,b\"", {u"a,b"}}, PiecesCase{"\"a,b\"c", {u"a,b\"c"}},
                      PiecesCase{"\",\"\"\",x", {u",\"", u"x"}}, PiecesCase{"\"", {u"\""}},
                      PiecesCase{"\",", {u","}}, PiecesCase{"a,,\r\n,b\n", {u"a", u"", u"", u"", u"b"}},
                      PiecesCase{"\"a\r\nb\",c", {u"\"a", u"b\"", u"c"}},
                      PiecesCase{"a \"x\",b", {u"a \"x\"", u"b"}}));

TEST_F(Streams, SeparatorMayBeLongOrEmpty) {
    const auto reader = streams.OpenStreamReader(write("a", "a::\"b::c\"::d"));
    EXPECT_EQ(reader->FieldSeparator(), u",");
    reader->FieldSeparator(u"::");
    EXPECT_EQ(reader->ReadItem(), u"a");
    EXPECT_EQ(reader->ReadItem(), u"b::c");
    reader->FilePos(1);
    reader->FieldSeparator(u"");
    EXPECT_EQ(reader->ReadItem(), u"a::\"b::c\"::d");
    EXPECT_TRUE(reader->EndOfStream());
}

class StreamLines : public Streams, public ::testing::WithParamInterface<PiecesCase> {};
TEST_P(StreamLines, EndAtAnyLineEnd) {
    const auto reader = streams.OpenStreamReader(write("a", GetParam().content));
    std::vector<Text> lines;
    while (!reader->EndOfStream()) lines.push_back(reader->ReadLine());
    EXPECT_EQ(lines, GetParam().pieces);
    EXPECT_EQ(messageOf([&] { reader->ReadLine(); }),
              "clsStreamReader.ReadLine / Dateiende bei \"" + toUtf8(path("a")) + "\" erreicht.");
}
INSTANTIATE_TEST_SUITE_P(Table, StreamLines,
                         ::testing::Values(PiecesCase{"a\r\nb\nc\rd", {u"a", u"b", u"c", u"d"}},
                                           PiecesCase{"a\n\r\n\r\r\n", {u"a", u"", u"", u""}},
                                           PiecesCase{"rest", {u"rest"}},
                                           PiecesCase{"a\n\x1A"
                                                      "b",
                                                      {u"a"}},
                                           PiecesCase{"\xFE\xFF\0a\0\r\0\n\0b"sv, {u"a", u"b"}}));

TEST_F(Streams, PositionsCountFromBothEnds) {
    const auto reader = streams.OpenStreamReader(write("a", "12345"));
    EXPECT_EQ(reader->FileLength(), 5);
    reader->FilePos(-1);
    EXPECT_EQ(reader->FilePos(), 5);
    reader->FilePos(0);
    EXPECT_EQ(reader->FilePos(), 5);
    reader->FilePos(-99);
    EXPECT_EQ(reader->FilePos(), 1);
    reader->FilePos(4);
    EXPECT_EQ(reader->Peek(), u"4");
    EXPECT_EQ(reader->Read(-1), u"");
    EXPECT_EQ(reader->Read(5), u"45");
    EXPECT_EQ(reader->FilePos(), 9) << "moved by the whole count";
    EXPECT_TRUE(reader->EndOfStream());
    EXPECT_EQ(reader->Peek() + reader->Read(1), u"");
    reader->FilePos(2);
    EXPECT_EQ(reader->Read(std::numeric_limits<int32>::max()), u"2345");
    EXPECT_TRUE(reader->EndOfStream());
}

TEST_F(Streams, ReaderOfAnUnreadableFileStandsAtItsEnd) {
    write("empty", "");
    write("utf32", "\xFF\xFE\0\0a\0\0\0"sv);
    for (const char* name : {"none", "empty", "utf32"}) {
        clsStreamReader reader;
        EXPECT_FALSE(reader.Init(files, path(name))) << name;
        EXPECT_EQ(reader.FileLength(), 0);
        EXPECT_TRUE(reader.EndOfStream());
    }
    clsStreamReader reader;
    EXPECT_FALSE(reader.Init(files, u""));
    EXPECT_TRUE(reader.Init(files, write("a", "\xEF\xBB\xBFx")));
    EXPECT_EQ(reader.Encoding(), UTF8);
    EXPECT_EQ(reader.FileLength(), 1);
}

struct WriteCase {
    std::string_view before;
    Encodings encoding;
    bool appending;
    std::string_view after;
};
class StreamWriting : public Streams, public ::testing::WithParamInterface<WriteCase> {};
TEST_P(StreamWriting, SetsOrFindsTheEncoding) {
    const auto& [before, encoding, appending, after] = GetParam();
    const auto writer = streams.OpenStreamWriter(write("a", before), encoding, appending);
    EXPECT_EQ(read("a"), before) << "untouched before the first write";
    writer->WriteString(u"ä");
    writer->WriteString(u"b");
    EXPECT_EQ(writer->FileLength(), static_cast<int32>(after.size()));
    writer->Dispose();
    EXPECT_EQ(writer->FileLength(), 0);
    EXPECT_EQ(read("a"), after);
}
INSTANTIATE_TEST_SUITE_P(Table, StreamWriting,
                         ::testing::Values(WriteCase{"old", ANSI1252, false,
                                                     "\xE4"
                                                     "b"},
                                           WriteCase{"old", UTF8, false,
                                                     "\xEF\xBB\xBF\xC3\xA4"
                                                     "b"},
                                           WriteCase{"", UTF16LE, false, "\xFF\xFE\xE4\0b\0"sv},
                                           WriteCase{"", UTF16BE, false, "\xFE\xFF\0\xE4\0b"sv},
                                           WriteCase{"old", UTF8, true,
                                                     "old\xE4"
                                                     "b"},
                                           WriteCase{"", UTF8, true,
                                                     "\xEF\xBB\xBF\xC3\xA4"
                                                     "b"},
                                           WriteCase{"\xFF\xFEo\0"sv, ANSI1252, true,
                                                     "\xFF\xFEo\0\xE4\0b\0"sv}));

TEST_F(Streams, WriterRefusesWhatItCannotWriteBeforeTouchingTheFile) {
    for (const Encodings encoding : {CP850, UTF7, UTF32LE}) {
        const auto writer = streams.OpenStreamWriter(write("a", "old"), encoding);
        EXPECT_EQ(raisedBy([&] { writer->WriteLine(u"x"); }), 321);
        EXPECT_EQ(read("a"), "old");
    }
    const auto writer = streams.OpenStreamWriter(path("a"), CP850);
    EXPECT_EQ(messageOf([&] { writer->WriteString(u"x"); }),
              "clsStreamWriter.WriteString / Dieses Dateiformat (Encoding=850) wird in \"" +
                  toUtf8(path("a")) + "\" nicht unterstützt");
}

TEST_F(Streams, WriterIsInitialisedOnceAndLocksItsFile) {
    clsStreamWriter writer;
    writer.WriteString(u"nothing happens before Init");
    EXPECT_FALSE(writer.Init(files, u"", ANSI1252));
    EXPECT_TRUE(writer.Init(files, path("a"), ANSI1252));
    EXPECT_FALSE(writer.Init(files, path("b"), UTF8));
    EXPECT_FALSE(FilesTopic::Exist(path("a")));
    writer.LineSeparator(u"\n");
    writer.WriteLine(u"1");
    EXPECT_EQ(other(path("a"), Sharing::all), nullptr);
    writer.Dispose();
    EXPECT_NE(other(path("a"), Sharing::none), nullptr);
    writer.WriteLine(u"2");
    EXPECT_EQ(read("a"), "1\n2\n") << "a write after Dispose goes on";
    EXPECT_FALSE(FilesTopic::Exist(path("b")));
}

TEST_F(Streams, FullDiskLeavesWholePiecesOnly) {
    const auto writer = streams.OpenStreamWriter(path("a"));
    memory.setFreeSpace(8);
    writer->WriteLine(u"123");
    EXPECT_EQ(raisedBy([&] { writer->WriteLine(u"45678"); }), 5);
    EXPECT_EQ(read("a"), "123\r\n");
    memory.setFreeSpace({});
    writer->WriteLine(u"9");
    EXPECT_EQ(read("a"), "123\r\n9\r\n");
}

TEST_F(Streams, WriterOfALockedFileSaysSo) {
    const Text name = write("a", "old");
    const auto holder = other(name, Sharing::all);
    clsStreamWriter appending;
    EXPECT_FALSE(appending.Init(files, name, ANSI1252, true));
    const auto writer = streams.OpenStreamWriter(name);
    EXPECT_EQ(raisedBy([&] { writer->WriteString(u"x"); }), 75);
    EXPECT_EQ(read("a"), "old");
}

}  // namespace
}  // namespace tsRtm::test
