// The CSV reader by itself: the grammar, and files that mean harm.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "cli/shared/CsvReader.hpp"
#include "cli/shared/CsvWriter.hpp"

namespace tsRtm::cli {
namespace {

// Gives at most some bytes a call, so that every place lies at a border once.
class StringSource final : public ByteSource {
 public:
    explicit StringSource(std::string bytes, std::size_t portion = 1 << 16)
        : bytes_(std::move(bytes)), portion_(portion) {}
    std::size_t read(uint64 offset, std::span<char> into) override {
        if (offset >= bytes_.size()) return 0;
        return bytes_.copy(into.data(), std::min(into.size(), portion_), static_cast<std::size_t>(offset));
    }
    uint64 size() override { return bytes_.size(); }

 private:
    std::string bytes_;
    std::size_t portion_;
};

// "a|b" a row, "!fault: text" for a row that is none, with the line in front.
std::vector<std::string> rows(const std::string& bytes, CsvReader::Limits limits = {},
                              std::size_t portion = 1 << 16) {
    StringSource source(bytes, portion);
    CsvReader reader(source, ',', limits);
    std::vector<std::string> out;
    CsvRow row;
    while (reader.next(row)) {
        std::string text = std::to_string(row.line) + " " + (row.fault.empty() ? "" : "!" + row.fault + ": ");
        for (std::size_t i = 0; i < row.fields.size(); ++i) text += (i > 0 ? "|" : "") + row.fields[i];
        out.push_back(text);
    }
    return out;
}

using Rows = std::vector<std::string>;

TEST(CsvReader, ReadsTheGrammar) {
    using Row = std::pair<std::string, Rows>;
    for (const auto& [bytes, expected] :
         {Row{"", {}}, Row{"a,b\r\nc,d\r\n", {"1 a|b", "2 c|d"}}, Row{"a,b\nc,d", {"1 a|b", "2 c|d"}},
          Row{"\xEF\xBB\xBFx,y", {"1 x|y"}}, Row{",\r\n", {"1 |"}}, Row{"a,", {"1 a|"}},
          Row{"a\n\nb\n", {"1 a", "2 ", "3 b"}}, Row{"\"a,b\",\"c\"\"d\"\n", {"1 a,b|c\"d"}},
          Row{"\"a\r\nb\",c\r\nd,e\r\n", {"1 a\r\nb|c", "3 d|e"}}, Row{"\"\",x\n", {"1 |x"}},
          Row{"5\" pipe,x\n", {"1 5\" pipe|x"}}, Row{"a\rb,c\n", {"1 a\rb|c"}},
          Row{" \"a\",b\n", {"1  \"a\"|b"}}})
        for (const std::size_t portion : {1u, 2u, 3u, 1u << 16})
            EXPECT_EQ(rows(bytes, {}, portion), expected) << bytes;
}

TEST(CsvReader, ARowThatIsNoneLosesOneLine) {
    const std::string unclosed = "a quote that is never closed";
    const std::string behind = "text behind a closing quote";
    const std::pair<std::string, Rows> cases[] = {
        {"a,\"b\nc,d\n", {"1 !" + unclosed + ": a,\"b", "2 c|d"}},
        {"\"", {"1 !" + unclosed + ": \""}},
        {"\"a\"b,c\r\nd\r\n", {"1 !" + behind + ": \"a\"b,c", "2 d"}},
        {"\"a\nb\"c\nd\n", {"1 !" + behind + ": \"a", "2 b\"c", "3 d"}}};
    for (const auto& [bytes, expected] : cases)
        for (const std::size_t portion : {1u, 2u, 1u << 16})
            EXPECT_EQ(rows(bytes, {}, portion), expected) << bytes;
}

TEST(CsvReader, LimitsHoldAgainstEndlessFieldsAndRows) {
    const CsvReader::Limits limits{8, 3};
    EXPECT_EQ(rows("12345678,b\n123456789,b\nc\n", limits),
              (Rows{"1 12345678|b", "2 !a field of more than 8 bytes: 12345678", "3 c"}));
    EXPECT_EQ(rows("\"123456789\",b\nc\n", limits),
              (Rows{"1 !a field of more than 8 bytes, or a quote that is never closed: \"1234567", "2 c"}));
    EXPECT_EQ(rows("1,2,3\n1,2,3,4\nc\n", limits),
              (Rows{"1 1|2|3", "2 !more than 3 fields: 1,2,3,4", "3 c"}));
}

// Any bytes: every line is told of, and nothing is read for ever.
TEST(CsvReader, BearsAnyBytes) {
    std::mt19937 random(7);
    for (int i = 0; i < 2000; ++i) {
        std::string bytes(random() % 60, '\0');
        for (char& byte : bytes) byte = "\",\r\nab\xFF"[random() % 7];
        const auto found = rows(bytes, {16, 4}, 1 + random() % 5);
        EXPECT_LE(found.size(), bytes.size() + 1);
        EXPECT_EQ(found.empty(), bytes.empty()) << i;
    }
}

// What the writer writes the reader reads.
TEST(CsvWriter, QuotesWhatItMust) {
    std::string line = "x";
    appendCsvField(line, "a b", ',');
    appendCsvField(line, "a;b", ',');
    appendCsvField(line, "a;b", ';');
    EXPECT_EQ(line, "xa ba;b\"a;b\"");
    std::mt19937 random(3);
    for (int i = 0; i < 1000; ++i) {
        std::string field(random() % 12, '\0');
        for (char& byte : field) byte = "\",\r\nab "[random() % 7];
        line.clear();
        appendCsvField(line, field, ',');
        EXPECT_EQ(rows(line + ",x\r\n"), Rows{"1 " + field + "|x"});
    }
}

TEST(TextEncoding, NothingIsLostOnTheWay) {
    for (const auto encoding : {FileEncoding::utf8, FileEncoding::cp1252, FileEncoding::cp850})
        EXPECT_EQ(decodeText(*encodeText(u"Grüße, Ärger", encoding), encoding), u"Grüße, Ärger");
    EXPECT_EQ(*encodeText(u"é", FileEncoding::latin1), "\xE9");
    EXPECT_FALSE(encodeText(u"€", FileEncoding::latin1));
    EXPECT_FALSE(encodeText(u"Ł", FileEncoding::cp1252));
    EXPECT_FALSE(decodeText("\xC9", FileEncoding::cp850));  // a frame character
    for (const char* broken :
         {"\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF5\x80\x80\x80", "a\x80", "\xE0\x9F\xBF"})
        EXPECT_FALSE(decodeText(broken, FileEncoding::utf8)) << broken;
}

TEST(TextEncoding, IsDetectedByTheWholeFile) {
    const std::string block((1 << 16) - 1, 'a');
    const std::pair<std::string, FileEncoding> rows[] = {
        {"abc", FileEncoding::utf8},
        {"Grüße", FileEncoding::utf8},
        {block + "ü" + block + block + "€", FileEncoding::utf8},
        {block + block + "\xFC", FileEncoding::cp1252}};
    for (const auto& [bytes, encoding] : rows) {
        StringSource source(bytes);
        EXPECT_EQ(detectEncoding(source), encoding);
    }
}

}  // namespace
}  // namespace tsRtm::cli
