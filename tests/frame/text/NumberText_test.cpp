#include "tsRtm/frame/text/NumberText.hpp"

#include <cmath>
#include <limits>

#include "tests/support/Table.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/text/Format.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

class NumberText : public testing::Test {
 protected:
    test::StartedLibrary library;
    rtmMain::LocaleBlock& locale = rtmMain::state().locale;
};

// By the locale a mark of thousands in front goes.
TEST_F(NumberText, ReadsByTheLocaleOnlyWithADecimalMark) {
    for (const auto& [text, value] :
         test::table<2>(u"1.234=1.234;1.234,50=1234.5;12,5=12.5;=0;abc=0; -12,5 kg=-12.5;7 "
                        u"Tage=7;,5=0.5;1.234.567,8=1234567.8;1,5e3=1500;1,2,3=1.2;12,345.67=12345.67",
                        u";"))
        EXPECT_DOUBLE_EQ(TSVal(text), Val(value)) << toUtf8(text);
    locale.sepDec = u".";
    locale.sep1000 = u",";
    EXPECT_TOLD("1234.5|1", TSVal(u"1,234.5"), TSVal(u"1,234"));
}

TEST_F(NumberText, RoundsHalfAwayFromZeroOnFifteenDigits) {
    using Row = std::tuple<float64, int32, bool, Text>;
    for (const auto& [value, decimals, thousands, text] :
         {Row{1234.5, 2, false, u"1234,50"}, Row{1234.5, 0, true, u"1.235"}, Row{-2.5, 0, false, u"-3"},
          Row{-1, -3, false, u"-1"}, Row{1.005, 2, false, u"1,01"},  // its float64 lies below
          Row{0.49999, 0, false, u"0"}, Row{9.995, 2, false, u"10,00"}, Row{999999.5, 0, true, u"1.000.000"},
          Row{-0.001, 2, false, u"0,00"},  // a rounded 0 has no sign
          Row{1e20, 1, true, u"100.000.000.000.000.000.000,0"},
          Row{0.1 + 0.2, 20, false, u"0,30000000000000000000"}, Row{1.5e-7, 7, false, u"0,0000002"},
          Row{0, 3, false, u"0,000"}})
        EXPECT_EQ(toUtf8(TSStr(value, decimals, thousands)), toUtf8(text)) << value;
}

TEST_F(NumberText, MachineForms) {
    EXPECT_EQ(TSString(1234.5), u"1234.50");
    for (auto [decimals, value, told] : {std::tuple{2, 1.005, "1.01|1.01"},
                                         {0, 1234.5, "1235|1235"},
                                         {-4, 7.6, "8|8"},
                                         {9, 1.123456789, "1.1234568|1.1234568"}}) {
        Text text;
        Runden(decimals, value, text);
        EXPECT_TOLD(told, text, value);
    }
    Text amount;
    Waehrung(-1234567.891, amount);
    EXPECT_EQ(amount, u"-1.234.567,89");
}

TEST_F(NumberText, Plain) {
    const std::pair<float64, Text> cases[] = {
        {0, u"0"},           {-12, u"-12"},           {0.1 + 0.2, u"0,3"},
        {1234.5, u"1234,5"}, {0.001, u"0,001"},       {1e14, u"100000000000000"},
        {1e15, u"1E+15"},    {-1.5e-20, u"-1,5E-20"}, {1.23456789012345678e17, u"1,23456789012346E+17"}};
    for (const auto& [value, text] : cases) EXPECT_EQ(toUtf8(plainNumber(value)), toUtf8(text));
}

TEST_F(NumberText, NoNumberIsRaised) {
    for (const float64 value : {std::numeric_limits<float64>::infinity(), std::nan("")})
        EXPECT_THROW(TSStr(value), Failure);
}

TEST_F(NumberText, HolZahlTakesWhatIsNumber) {
    const std::tuple<Text, int32, int32, float64, int32> cases[] = {
        {u"ab-12,5x", 3, 0, -12.5, 5}, {u"1-2", 1, 0, 1, 1},  {u"1,2,3", 1, 0, 1.2, 3},
        {u"1.5,2", 1, 0, 1.5, 3},      {u"x", 1, 0, 0, 0},    {u"12", 3, 0, 0, 0},
        {u"12", 0, 0, 0, 0},           {u"1-23", 1, 2, 1, 4},  // goes on behind the length handed in, its
                                                               // sign no longer counts
    };
    for (const auto& [text, position, lengthIn, value, lengthOut] : cases) {
        int32 length = lengthIn;
        EXPECT_DOUBLE_EQ(HolZahl(text, position, length), value) << toUtf8(text);
        EXPECT_EQ(length, lengthOut) << toUtf8(text);
    }
    int32 length = 0;
    EXPECT_DOUBLE_EQ(HolZahl(u"1234", 1, length, 2), 12);
}

TEST_F(NumberText, Formats) {
    EXPECT_TOLD("1.234,56|1.234,6 mm|3,125 Zeilen BV90", Format(1234.56, u"Standard"),
                Format(1234.56, u"#,##0.0 \\m\\m"),
                Format(3.125, u"#,##0.000 \\Z\\e\\i\\l\\e\\n \\B\\V\\9\\0"));
    EXPECT_TOLD("007|-# 5,5|1\\|1 open", Format(7, u"000"), Format(-5.5, u"\"# \"0.0#"), Format(1, u"0\\"),
                Format(1, u"0 \"open"));
    const Date moment = Date::of(2024, 2, 3, 8, 5, 9);
    EXPECT_TOLD("03.02.2024|08:05|08:05:09|3.2.24 8 U8r|18:00", Format(moment, u"SHORT DATE"),
                Format(moment, u"Short Time"), Format(moment, u"hh:nn:ss"), Format(moment, u"d/m/yy h \\Uhr"),
                Format(Date(0.75), u"Short Time"));
    locale.sepTime = u".";
    locale.dateForm = 2;
    EXPECT_TOLD("2024.02.03|08.05", Format(moment, u"Short Date"), Format(moment, u"hh:nn"));
}

}  // namespace
}  // namespace tsRtm
