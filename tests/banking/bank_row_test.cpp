// Rows of the bank code file, good ones and hostile ones.
#include <gtest/gtest.h>

#include <random>

#include "tests/banking/BankColumns.hpp"
#include "tsRtm/banking/BankRow.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm {
namespace {

using Columns = test::BankColumns;

TEST(BankRow, ColumnsComeWithoutTheirBlanks) {
    Columns columns;
    columns.rest = "000123M112345679";
    BankRow row;
    ASSERT_EQ(decodeBankRow(columns.row(), BankFileEncoding::latin1, row), BankRowFault::none);
    const std::vector<Text> read = {row.code, row.name, row.postalCode,  row.place,    row.shortName,
                                    row.pan,  row.bic,  row.checkMethod, row.successor};
    EXPECT_EQ(read, (std::vector<Text>{u"12345678", u"Bank", u"10115", u"Berlin", u"Kurz", u"90001",
                                       u"ABCDDE12XXX", u"A7", u"12345679"}));
    EXPECT_EQ(row.mark, u'1');
    EXPECT_EQ(row.change, u'M');
    EXPECT_TRUE(row.toBeGivenUp);
}

TEST(BankRow, ColumnsCountCharactersInBothEncodings) {
    std::string name(58, '\xFC');  // the whole column in "ü"
    Columns columns;
    columns.name = name;
    BankRow latin1, utf8;
    ASSERT_EQ(decodeBankRow(columns.row(), BankFileEncoding::latin1, latin1), BankRowFault::none);
    ASSERT_EQ(decodeBankRow("\xEF\xBB\xBF" + toUtf8(fromAnsi(columns.row())), BankFileEncoding::utf8, utf8),
              BankRowFault::none);
    EXPECT_EQ(latin1.name, Text(58, u'ü'));
    EXPECT_EQ(utf8.name, latin1.name);
    EXPECT_EQ(utf8.bic, latin1.bic);
}

TEST(BankRow, WhatIsNoRowIsToldWhy) {
    const auto with = [](auto change) {
        Columns columns;
        change(columns);
        return columns.row();
    };
    const std::string good = Columns().row();
    const std::pair<std::string, BankRowFault> cases[] = {
        {"", BankRowFault::length},
        {good.substr(1), BankRowFault::length},
        {good + " ", BankRowFault::length},
        {std::string(168, '\0'), BankRowFault::characters},
        {with([](auto& c) { c.name = "Ba\tnk"; }), BankRowFault::characters},
        {with([](auto& c) { c.code = "1234567x"; }), BankRowFault::code},
        {with([](auto& c) { c.code = "1234567 "; }), BankRowFault::code},
        {with([](auto& c) { c.mark = "3"; }), BankRowFault::mark},
        {with([](auto& c) { c.name = ""; }), BankRowFault::name},
        {with([](auto& c) { c.postalCode = "1011"; }), BankRowFault::postalCode},
        {with([](auto& c) { c.postalCode = ""; }), BankRowFault::none},
        {with([](auto& c) { c.bic = "ABCDDE12X"; }), BankRowFault::bic},
        {with([](auto& c) { c.bic = "ABCD-E12"; }), BankRowFault::bic},
        {with([](auto& c) { c.bic = ""; }), BankRowFault::none},
        {with([](auto& c) { c.method = "1"; }), BankRowFault::checkMethod},
    };
    for (const auto& [line, fault] : cases) {
        BankRow row;
        row.name = u"from before";
        EXPECT_EQ(decodeBankRow(line, BankFileEncoding::latin1, row), fault) << line;
        EXPECT_TRUE(fault == BankRowFault::none || row.name.empty());
    }
    // 168 characters, of which one is malformed, or outside of the register's code page.
    BankRow row;
    EXPECT_EQ(decodeBankRow(with([](auto& c) { c.name = "B\xFFnk"; }), BankFileEncoding::utf8, row),
              BankRowFault::encoding);
    const std::string foreign = with([](auto& c) { c.name = "B\xC5\x81" + std::string(56, 'x'); });
    EXPECT_EQ(decodeBankRow(foreign, BankFileEncoding::utf8, row), BankRowFault::characters);
}

TEST(BankRow, AnyBytesGiveAnAnswer) {
    std::mt19937 random(5);
    BankRow row;
    for (int i = 0; i < 3000; ++i) {
        std::string line = Columns().row();
        for (int hits = 0; hits < 4; ++hits) line[random() % line.size()] = static_cast<char>(random() % 256);
        line.resize(i % 3 == 0 ? random() % 200 : line.size(), 'x');
        for (const auto encoding : {BankFileEncoding::latin1, BankFileEncoding::utf8})
            EXPECT_TRUE(decodeBankRow(line, encoding, row) != BankRowFault::none || row.code.size() == 8);
    }
}

TEST(BankEncodingDetector, TellsByTheMostFrequent) {
    const std::pair<std::vector<const char*>, BankFileEncoding> rows[] = {
        {{"abc"}, BankFileEncoding::latin1},
        {{"\xEF\xBB\xBFxyz"}, BankFileEncoding::utf8},
        {{"K\xF6ln"}, BankFileEncoding::latin1},
        {{"K\xC3", "\xB6ln"}, BankFileEncoding::utf8},
        {{"K\xC3\xB6ln M\xC3\xBCnchen \xFF"}, BankFileEncoding::utf8},
        {{"K\xF6ln M\xFCnchen \xC3\xBC"}, BankFileEncoding::latin1}};
    for (const auto& [portions, encoding] : rows) {
        BankEncodingDetector detector;
        for (const char* portion : portions) detector.feed(portion);
        EXPECT_EQ(detector.encoding(), encoding) << portions.front();
    }
}

}  // namespace
}  // namespace tsRtm
