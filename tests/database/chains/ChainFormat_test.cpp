// Pointers in every width, and the rows that are given out.
#include <gtest/gtest.h>

#include "tests/support/MemoryFiles.hpp"
#include "tests/support/Raised.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/database/chains/RowMemos.hpp"
#include "tsRtm/database/chains/RowSupply.hpp"
#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"

namespace tsRtm::test {
namespace {

// A chain field of any length on files in memory, below the face of the database.
class ChainRoom : public testing::Test {
 protected:
    // The control of a chain with these field lines, of a record whose one field is the chain.
    std::shared_ptr<clsControl> chain(int32 length, const std::string& fields, bool unicode = false) {
        const std::string head = unicode ? "TS2," : "TS1,";
        disk.put(u"/d/X.DBD/Control.tsd",
                 head + "1\r\n0,1,1," + std::to_string(length) + ",38,\"K\"\r\n1,9,0\r\n0\r\n");
        const auto count = std::to_string(std::count(fields.begin(), fields.end(), '\n'));
        disk.put(u"/d/X.DBD/KetteCtl.001", head + count + "\r\n" + fields + "1,9,0\r\n0\r\n");
        control = std::make_shared<clsControl>(files);
        bool dos = false;
        if (!control->Oeffne(u"/d/X.DBD/Control.tsd", dos)) return nullptr;
        return control->Kette(1);
    }
    ChainFormat format(int32 length, bool unicode = false) {
        const auto rows = chain(length, "0,1,1,8,1,\"A\"\r\n", unicode);
        const RecordLayout record(*control, unicode, false);
        return {record.field(1), RecordLayout(*rows, unicode, false)};
    }

    MemoryFiles disk;
    StartedLibrary library{disk};
    MessagesTopic messages;
    FilesTopic files{messages};
    std::shared_ptr<clsControl> control;
};

// The field of a chain as pairs of texts: in 8-bit files each character is a byte.
Bytes wide(BytesView text) {
    Bytes out;
    for (const char c : text) (out += c) += '\0';
    return out;
}

TEST_F(ChainRoom, PointersStandInHalfOfTheFieldFromEightCharactersOn) {
    const std::tuple<int32, int32, const char*, int32> rows[] = {
        // length, width, the field that leads to 7 and 12, greatest number
        {1, 1, "7", 8},
        {2, 2, " 7", 98},
        {4, 4, "   7", 9998},
        {5, 5, "    7", 2147483646},
        {7, 7, "      7", 9999998},
        {8, 4, "   7  12", 9998},
        {9, 4, "   7   12", 9998},
        {10, 5, "    7   12", 2147483646},
        {11, 5, "    7    12", 2147483646},
        {25, 12, "           7           12", 2147483646}};
    for (const auto& [length, width, leads, greatest] : rows)
        for (const bool unicode : {false, true}) {
            SCOPED_TRACE(testing::Message() << length << (unicode ? " unicode" : ""));
            const auto stored = [&](const Bytes& text) { return unicode ? wide(text) : text; };
            const ChainFormat f = format(length, unicode);
            ASSERT_TRUE(f.usable());
            EXPECT_TRUE(f.width() == width && f.greatest() == greatest && f.paired() == (length >= 8));
            EXPECT_EQ(f.rowBytes(), (static_cast<uint32>(length) + 8) * (unicode ? 2 : 1));
            EXPECT_EQ(f.pointer(7), stored(Bytes(leads).substr(0, static_cast<std::size_t>(width))));
            Bytes field(stored(leads).size(), 'x');
            f.ends({7, 12}, field);
            EXPECT_EQ(field, stored(leads));
            EXPECT_TOLD(length < 8 ? "7|0" : "7|12", f.ends(field).first, f.ends(field).last);
            f.ends({}, field);
            EXPECT_EQ(field, stored(Bytes(static_cast<std::size_t>(length), ' ')));
            EXPECT_EQ(f.ends(field).first, 0);
            // The greatest number and the one behind it fit.
            for (const int32 number : {greatest, greatest + 1}) {
                Bytes bytes = f.blankRow();
                f.pointers(number, number, bytes);
                EXPECT_TRUE(f.next(bytes) == number && f.previous(bytes) == (length < 8 ? 0 : number));
            }
        }
    EXPECT_EQ(format(5).pointer(100000), "!!,>o");
    // What is no number leads nowhere.
    for (const auto& [length, text, row] : {std::tuple{4, Bytes(4, ' '), 0},
                                            {4, "  x ", 0},
                                            {4, " -1 ", 0},
                                            {4, "1.5 ", 0},
                                            {4, "12  ", 12},
                                            {4, Bytes(4, '\0'), 0},
                                            {5, Bytes(5, '\0'), 0},
                                            {25, "99999999999                    ", 0}})
        EXPECT_EQ(format(length).link(text), row) << text;
    // Row 1 has to hold two numbers.
    const auto rows7 = chain(7, "0,1,1,6,1,\"A\"\r\n");
    const RecordLayout record(*control, false, false);
    EXPECT_FALSE(ChainFormat(record.field(1), RecordLayout(*rows7, false, false)).usable());
}

// A chain file of rows of 12 characters with one pointer of 4, or two.
class Supply : public ChainRoom {
 protected:
    void start(int32 length, BytesView content) {
        disk.put(u"/d/KetteDat.001", content);
        opened = std::move(*disk.open(u"/d/KetteDat.001", {.access = platform::Access::readWrite}));
        file = ChainFile(*opened, format(length));
        file.refresh();
    }
    Bytes content() const { return disk.dump(u"/d/KetteDat.001"); }

    std::unique_ptr<platform::File> opened;
    ChainFile file;
    RowSupply supply{file};
};

TEST_F(Supply, GivesFreeRowsFirstAndTakesThemBack) {
    start(4, "");
    auto taken = supply.take(2);
    EXPECT_EQ(taken.rows, (std::vector{2, 3}));
    EXPECT_EQ(content(), "   3   4    ");
    file.write(taken.rows, "   3AAAAAAAA   0BBBBBBBB");
    EXPECT_TRUE(supply.stands(taken));
    supply.free(taken.rows);
    EXPECT_EQ(content(), "   3   2       3AAAAAAAA   4BBBBBBBB");
    taken = supply.take(3);
    EXPECT_EQ(taken.rows, (std::vector{2, 3, 4}));
    file.write(taken.rows, "   3CCCCCCCC   4DDDDDDDD   0EEEEEEEE");
    supply.takeBack(taken);
    EXPECT_EQ(content(), "   3   2       3CCCCCCCC   4DDDDDDDD");
    EXPECT_EQ(supply.take(1).rows, std::vector{2});
    // Somebody else was given rows since: nothing is taken back.
    taken = supply.take(1);
    supply.take(1);
    const Bytes before = content();
    supply.takeBack(taken);
    EXPECT_EQ(content(), before);
}

TEST_F(Supply, NeverGivesOutARowThatMayLive) {
    const std::string row = "   0xxxxxxxx";
    const auto free = [](int32 to) { return "   " + std::to_string(to) + "xxxxxxxx"; };
    const std::tuple<const char*, std::string, std::string, std::vector<int32>> rows[] = {
        {"a blank head", "            ", row + row, {4, 5}},
        {"a head of zeros", std::string(12, '\0'), row, {3, 4}},
        {"a torn head", "   ", "", {2, 3}},
        {"a head of another time", "   2   3    ", row + row + row, {5, 6}},
        {"a begun row counts", "   2   3    ", row + "   ", {4, 5}},
        {"no next row", "   3   0    ", row + row, {4, 5}},
        {"the next row is row 1", "   3   1    ", row + row, {4, 5}},
        {"the next row is too far", "   3   5    ", row + row, {4, 5}},
        {"a list", "   4   3    ", row + free(4) + free(5), {3, 4}},
        {"a list that ends in 0", "   3   3    ", row + row, {3, 4}},
        {"a free row leads to itself", "   3   3    ", row + free(3), {4, 5}},
        {"free rows lead in a circle", "   4   3    ", row + free(4) + free(3), {3, 5}},
        {"a free row leads too far", "   3   3    ", row + free(7), {4, 5}},
        {"a free row leads to the head", "   3   3    ", row + free(1), {4, 5}},
    };
    for (const auto& [what, head, rest, given] : rows) {
        start(4, head + rest);
        EXPECT_EQ(supply.take(2).rows, given) << what;
    }
}

TEST_F(Supply, EndsWhereTheNextNumberWouldNotFit) {
    start(1, "");
    EXPECT_EQ(supply.take(7).rows.back(), 8);
    const Bytes full = content();
    EXPECT_EQ(raisedNumber([&] { supply.take(1); }), 61);
    EXPECT_EQ(content(), full);
    file.write(std::vector{2}, "0xxxxxxxx");
    supply.free(std::vector{2});
    EXPECT_EQ(raisedNumber([&] { supply.take(2); }), 61);
    EXPECT_EQ(supply.take(1).rows, std::vector{2});
}

// --- The fields of a row

TEST_F(ChainRoom, NumbersStandRightAndAllElseLeft) {
    const auto rows_ = chain(
        8,
        "0,1,1,4,1,\"A\"\r\n0,1,1,8,7,\"B\"\r\n7,1,1,8,7,\"C\"\r\n2,1,1,6,5,\"D\"\r\n0,1,1,9,22,\"E\"\r\n");
    const ChainRows rows(RecordLayout(*rows_, false, false));
    const std::vector<Text> cells{u"ab", u"1.1.24", u"01012000", u"1.5", u"12"};
    const Bytes row = rows.encode(cells);
    EXPECT_EQ(row, "        ab  1.1.24  01012000   1.512   ");
    std::vector<Text> back;
    rows.decode(row, back);
    EXPECT_EQ(back, cells);
    // Too long a text is cut, missing cells are empty, and blanks at either end are no content.
    EXPECT_EQ(rows.encode(std::vector<Text>{u"abcdef"}), Bytes(8, ' ') + "abcd" + Bytes(27, ' '));
    rows.decode(Bytes(8, ' ') + " x  " + Bytes(27, ' '), back);
    EXPECT_EQ(back[0], u"x");
    EXPECT_TRUE(
        rows.sameCells(Bytes(8, '1') + "x   " + Bytes(27, ' '), Bytes(8, '2') + " x  " + Bytes(27, ' ')));
}

// --- Memos of rows

class Blocks : public RowMemos {
 public:
    void write(int32, TextView, std::span<char>) override {}
    bool isFresh(int32, int32 block) const override { return block >= 100; }
    int32 copy(int32, int32 block) override { return block * 10; }
    void drop(int32, int32) noexcept override {}
    void ended(bool) noexcept override {}
    void eachFile(const std::function<void(platform::File&)>&) override {}
    void close() noexcept override {}
};

TEST_F(ChainRoom, ABlockHasOneOwner) {
    const auto rows_ = chain(4, "0,1,1,2,1,\"A\"\r\n0,1,1,9,22,\"M\"\r\n");
    const ChainRows rows(RecordLayout(*rows_, false, false));
    const auto of = [&](std::initializer_list<int32> blocks) {
        Bytes out;
        for (const int32 block : blocks)
            out += rows.encode(std::vector<Text>{u"a", block == 0 ? Text() : toText(block)});
        return out;
    };
    struct Row {
        std::initializer_list<int32> stay, go, fresh, with, without;
        std::vector<RowBlock> dropped;
    };
    const Row table[] = {{{}, {1, 2, 0}, {2, 1}, {2, 1}, {2, 1}, {}},
                         {{}, {1, 2}, {1, 1}, {1, 10}, {1, 0}, {{2, 2}}},
                         {{}, {1}, {7, 0}, {0, 0}, {0, 0}, {{2, 1}}},
                         {{3}, {}, {3}, {30}, {0}, {}},
                         {{}, {}, {100, 100}, {100, 1000}, {0, 0}, {}}};
    for (const auto& row : table)
        for (const bool has : {true, false}) {
            Blocks memos;
            Bytes fresh = of(row.fresh);
            EXPECT_EQ(settleBlocks(rows, has ? &memos : nullptr, of(row.stay), of(row.go), fresh),
                      row.dropped);
            EXPECT_EQ(fresh, of(has ? row.with : row.without));
        }
}

}  // namespace
}  // namespace tsRtm::test
