// Pointers in every width, and the rows that are given out.
#include "tests/database/chains/ChainRoom.hpp"

namespace tsRtm::test {
namespace {

TEST_F(ChainRoom, PointersStandInHalfOfTheFieldFromEightCharactersOn) {
    struct Row {
        int32 length, width;
        const char *pointer, *field, *none;  // row 7 and 12 (8 for one digit)
        int32 greatest;
    };
    const Row rows[] = {
        {1, 1, "7", "7", " ", 8},
        {2, 2, " 7", " 7", "  ", 98},
        {4, 4, "   7", "   7", "    ", 9998},
        {5, 5, "    7", "    7", "     ", 2147483646},
        {7, 7, "      7", "      7", "       ", 9999998},
        {8, 4, "   7", "   7  12", "        ", 9998},
        {9, 4, "   7", "   7   12", "         ", 9998},
        {10, 5, "    7", "    7   12", "          ", 2147483646},
        {11, 5, "    7", "    7    12", "           ", 2147483646},
        {25, 12, "           7", "           7           12", "                         ", 2147483646}};
    for (const auto& row : rows)
        for (const bool unicode : {false, true}) {
            SCOPED_TRACE(testing::Message() << row.length << (unicode ? " unicode" : ""));
            const auto stored = [&](const char* text) { return unicode ? wide(text) : Bytes(text); };
            const ChainFormat f = format(row.length, unicode);
            ASSERT_TRUE(f.usable());
            EXPECT_EQ(f.width(), row.width);
            EXPECT_EQ(f.paired(), row.length >= 8);
            EXPECT_EQ(f.rowBytes(), (static_cast<uint32>(row.length) + 8) * (unicode ? 2 : 1));
            EXPECT_EQ(f.pointer(7), stored(row.pointer));
            EXPECT_EQ(f.greatest(), row.greatest);
            Bytes field(stored(row.field).size(), 'x');
            f.ends({7, 12}, field);
            EXPECT_EQ(field, stored(row.field));
            EXPECT_EQ(f.ends(field).first, 7);
            EXPECT_EQ(f.ends(field).last, row.length < 8 ? 0 : 12);
            f.ends({}, field);
            EXPECT_EQ(field, stored(row.none));
            EXPECT_EQ(f.ends(field).first, 0);
            // The greatest number and the one behind it fit.
            for (const int32 number : {f.greatest(), f.greatest() + 1}) {
                Bytes bytes = f.blankRow();
                f.pointers(number, number, bytes);
                EXPECT_EQ(f.next(bytes), number);
                EXPECT_EQ(f.previous(bytes), row.length < 8 ? 0 : number);
            }
        }
    EXPECT_EQ(format(5).pointer(100000), "!!,>o");
    // What is no number leads nowhere.
    for (const char* text : {"    ", "  x ", " -1 ", "1.5 "}) EXPECT_EQ(format(4).link(text), 0) << text;
    EXPECT_EQ(format(4).link("12  "), 12);
    EXPECT_EQ(format(4).link(Bytes(4, '\0')), 0);
    EXPECT_EQ(format(5).link(Bytes(5, '\0')), 0);
    EXPECT_EQ(format(25).link("99999999999                    "), 0);
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
    struct Row {
        const char* what;
        std::string head, rest;
        std::vector<int32> given;
    };
    const std::string row = "   0xxxxxxxx";
    const auto free = [](int32 to) { return "   " + std::to_string(to) + "xxxxxxxx"; };
    const Row rows[] = {
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
    for (const auto& row_ : rows) {
        SCOPED_TRACE(row_.what);
        start(4, row_.head + row_.rest);
        EXPECT_EQ(supply.take(2).rows, row_.given);
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
