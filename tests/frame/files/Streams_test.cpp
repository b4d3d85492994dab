#include "tests/frame/files/FilesFixture.hpp"
#include "tsRtm/frame/StreamsTopic.hpp"

namespace tsRtm::test {
namespace {

using namespace std::string_view_literals;

class Streams : public FilesTest {
 protected:
    StreamsTopic streams{files};
};

TEST_F(Streams, CsvItemsAreReadInOrder) {
    using Row = std::pair<std::string_view, std::vector<Text>>;
    for (const auto& [content, expected] :
         {Row{"a,b,c", {u"a", u"b", u"c"}}, Row{"a,\"b", {u"a", u"\"b"}},
          Row{"\"a\"\"b\",\"c\"\"\"", {u"a\"b", u"c\""}}, Row{"\"\",x", {u"", u"x"}}, Row{"\"a,b", {u"a,b"}},
          Row{"\"a,b\"c", {u"a,b\"c"}}, Row{"\",\"\"\",x", {u",\"", u"x"}}, Row{"\"", {u"\""}},
          Row{"\",", {u","}}, Row{"a,,\r\n,b\n", {u"a", u"", u"", u"", u"b"}},
          Row{"\"a\r\nb\",c", {u"\"a", u"b\"", u"c"}}, Row{"a \"x\",b", {u"a \"x\"", u"b"}}}) {
        const auto reader = streams.OpenStreamReader(write("a", content));
        std::vector<Text> items;
        while (!reader->EndOfStream()) items.push_back(reader->ReadItem());
        EXPECT_EQ(items, expected) << content;
        EXPECT_EQ(raisedNumber([&] { reader->ReadItem(); }), 62);
    }
}

// Each item is looked for once: else this takes minutes.
TEST_F(Streams, ALineMayHaveAMillionItems) {
    constexpr std::size_t kItems = 1'000'000;
    Bytes line;
    for (std::size_t i = 0; i < kItems; ++i) line += "a,";
    const auto reader = streams.OpenStreamReader(write("a", line + "b\r\nc"));
    std::size_t items = 0;
    while (!reader->EndOfStream() && reader->ReadItem() != u"b") ++items;
    EXPECT_EQ(items, kItems);
    reader->FilePos(1);
    EXPECT_EQ(reader->ReadLine().size(), line.size() + 1);
    EXPECT_EQ(reader->ReadLine(), u"c");
}

TEST_F(Streams, SeparatorMayBeLongOrEmpty) {
    const auto reader = streams.OpenStreamReader(write("a", "a::\"b::c\"::d"));
    EXPECT_EQ(reader->FieldSeparator(), u",");
    reader->FieldSeparator(u"::");
    for (const TextView item : {u"a", u"b::c"}) EXPECT_EQ(reader->ReadItem(), item);
    reader->FilePos(1);
    reader->FieldSeparator(u"");
    EXPECT_EQ(reader->ReadItem(), u"a::\"b::c\"::d");
}

TEST_F(Streams, LinesEndAtAnyLineEnd) {
    const std::pair<std::string_view, std::vector<Text>> rows[] = {
        {"a\r\nb\nc\rd", {u"a", u"b", u"c", u"d"}},
        {"a\n\r\n\r\r\n", {u"a", u"", u"", u""}},
        {"rest", {u"rest"}},
        {"x\n\x1Ay", {u"x"}},
        {"\xFE\xFF\0a\0\r\0\n\0b"sv, {u"a", u"b"}}};
    for (const auto& [content, expected] : rows) {
        const auto reader = streams.OpenStreamReader(write("a", content));
        std::vector<Text> lines;
        while (!reader->EndOfStream()) lines.push_back(reader->ReadLine());
        EXPECT_EQ(lines, expected) << content;
        EXPECT_EQ(raised([&] { reader->ReadLine(); }),
                  "62|clsStreamReader.ReadLine|Dateiende bei \"/w/a\" erreicht.");
    }
}

TEST_F(Streams, PositionsCountFromBothEnds) {
    const auto reader = streams.OpenStreamReader(write("a", "12345"));
    EXPECT_EQ(reader->FileLength(), 5);
    for (const auto& [set, position] : {std::pair{-1, 5}, {0, 5}, {-99, 1}, {4, 4}}) {
        reader->FilePos(set);
        EXPECT_EQ(reader->FilePos(), position) << set;
    }
    EXPECT_TOLD("4||45", reader->Peek(), reader->Read(-1), reader->Read(5));
    EXPECT_TOLD("9|yes||", reader->FilePos(), reader->EndOfStream(), reader->Peek(), reader->Read(1))
        << "moved by the whole count";
    reader->FilePos(2);
    EXPECT_TOLD("2345|yes", reader->Read(std::numeric_limits<int32>::max()), reader->EndOfStream());
}

TEST_F(Streams, ReaderOfAnUnreadableFileStandsAtItsEnd) {
    write("empty", "");
    write("utf32", "\xFF\xFE\0\0a\0\0\0"sv);
    for (const char* name : {"none", "empty", "utf32"}) {
        clsStreamReader reader;
        EXPECT_TOLD("no|0|yes", reader.Init(files, path(name)), reader.FileLength(), reader.EndOfStream())
            << name;
    }
    clsStreamReader reader;
    EXPECT_TOLD("no|yes|1", reader.Init(files, u""), reader.Init(files, write("a", "\xEF\xBB\xBFx")),
                reader.FileLength());
    EXPECT_EQ(reader.Encoding(), UTF8);
    EXPECT_EQ(reader.ReadLine(), u"x");
    EXPECT_TRUE(reader.Init(files, write("b", "1;2"), u";"));
    EXPECT_TOLD("1|1252|3|1|2", reader.FilePos(), reader.Encoding(), reader.FileLength(), reader.ReadItem(),
                reader.ReadItem())
        << "of the first file nothing is left";
}

TEST_F(Streams, WritersSetOrFindTheEncoding) {
    const std::tuple<std::string_view, Encodings, bool, std::string_view> rows[] = {
        {"old", ANSI1252, false, "\xE4x"},
        {"old", UTF8, false, "\xEF\xBB\xBF\xC3\xA4x"},
        {"", UTF16BE, false, "\xFE\xFF\0\xE4\0x"sv},
        {"old", UTF8, true, "old\xE4x"},
        {"", UTF8, true, "\xEF\xBB\xBF\xC3\xA4x"},
        {"\xFF\xFEo\0"sv, ANSI1252, true, "\xFF\xFEo\0\xE4\0x\0"sv}};
    for (const auto& [before, encoding, appending, after] : rows) {
        const auto writer = streams.OpenStreamWriter(write("a", before), encoding, appending);
        EXPECT_EQ(read("a"), before) << "untouched before the first write";
        writer->WriteString(u"ä");
        writer->WriteString(u"x");
        EXPECT_EQ(writer->FileLength(), static_cast<int32>(after.size()));
        writer->Dispose();
        EXPECT_EQ(writer->FileLength(), 0);
        EXPECT_EQ(read("a"), after);
    }
    streams.OpenStreamWriter(path("missing"), UTF16BE, true)->WriteString(u"ä");
    EXPECT_EQ(read("missing"), "\xFE\xFF\0\xE4"sv);
}

TEST_F(Streams, WriterRefusesWhatItCannotWriteBeforeTouchingTheFile) {
    for (const Encodings encoding : {CP850, UTF7, UTF32LE}) {
        const auto writer = streams.OpenStreamWriter(write("a", "old"), encoding);
        EXPECT_EQ(raised([&] { writer->WriteString(u"x"); }),
                  "321|clsStreamWriter.WriteString|Dieses Dateiformat (Encoding=" + std::to_string(encoding) +
                      ") wird in \"/w/a\" nicht unterstützt");
        EXPECT_EQ(read("a"), "old");
    }
}

TEST_F(Streams, WriterIsInitialisedOnceAndLocksItsFile) {
    clsStreamWriter writer;
    writer.WriteString(u"nothing happens before Init");
    EXPECT_TOLD("no|yes|no|no", writer.Init(files, u"", ANSI1252), writer.Init(files, path("a"), ANSI1252),
                writer.Init(files, path("b"), UTF8), FilesTopic::Exist(path("a")));
    writer.LineSeparator(u"\n");
    writer.WriteLine(u"1");
    EXPECT_EQ(other(path("a"), Sharing::all), nullptr);
    writer.Dispose();
    {
        const auto holder = other(path("a"), Sharing::none);
        EXPECT_EQ(raisedNumber([&] { writer.WriteString(u"x"); }), 75) << "a locked file";
    }
    writer.WriteLine(u"2");
    EXPECT_EQ(read("a"), "1\n2\n") << "a write after Dispose goes on";
    EXPECT_FALSE(FilesTopic::Exist(path("b")));
}

TEST_F(Streams, FullDiskLeavesWholePiecesOnly) {
    const auto writer = streams.OpenStreamWriter(path("a"));
    memory.setFreeSpace(8);
    writer->WriteLine(u"123");
    EXPECT_EQ(raisedNumber([&] { writer->WriteLine(u"45678"); }), 5);
    EXPECT_EQ(read("a"), "123\r\n");
    memory.setFreeSpace({});
    writer->WriteLine(u"9");
    EXPECT_EQ(read("a"), "123\r\n9\r\n");
}

}  // namespace
}  // namespace tsRtm::test
