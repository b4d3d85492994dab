// Check digits and countries of IBANs, held against the examples of the registry and the plain rule.
#include "tsRtm/banking/checks/CheckDigits.hpp"

#include <gtest/gtest.h>

#include <random>

#include "tests/support/Table.hpp"
#include "tsRtm/banking/checks/Countries.hpp"

namespace tsRtm {
namespace {

// The examples of the IBAN registry for the countries of the checker.
constexpr TextView kExamples =
    u"BE68539007547034 BG80BNBG96611020345678 DK5000400440116243 DE89370400440532013000 EE382200221020145685 "
    u"FI2112345600000785 FR1420041010050500013M02606 "
    u"MC5811222000010123456789030 GR1601101250000000012300695 GB29NWBK60161331926819 IE29AIBK93115212345678 "
    u"IS140159260076545510730339 IT60X0542811101000000123456 HR1210010051863000160 "
    u"LV80BANK0000435195001 LI21088100002324013AA LT121000011101001000 LU280019400644750000 "
    u"MT84MALT011000012345MTLCAST001S NL91ABNA0417164300 NO9386011117947 AT611904300234573201 "
    u"PL61109010140000071219812874 PT50000201231234567890154 RO49AAAA1B31007593840000 "
    u"SE4550000000058398257466 SK3112000000198742637541 SI56191000000123438 ES9121000418450200051332 "
    u"CZ6508000000192000145399 HU42117730161111101800000000 CY17002001280000001200527600 "
    u"CH9300762011623852957 SM86U0322509800000000270100";

// Country and check digits moved to the end, letters as numbers: the whole leaves 1 when divided by 97.
int32 remainderOf(TextView iban) {
    std::string digits;
    for (const char16_t c : Text(iban.substr(4)) + Text(iban.substr(0, 4)))
        digits += std::to_string(c <= u'9' ? c - u'0' : c - u'A' + 10);
    int32 remainder = 0;
    for (const char digit : digits) remainder = (remainder * 10 + digit - '0') % 97;
    return remainder;
}

TEST(CheckDigits, TheExamplesOfTheRegistryAreRight) {
    for (const TextView iban : test::split(kExamples, u" ")) {
        EXPECT_TRUE(checkDigits::fit(iban)) << toUtf8(iban);
        const auto format = countries::checked(iban.substr(0, 2));
        ASSERT_TRUE(format) << toUtf8(iban);
        EXPECT_EQ(format->length, static_cast<int32>(iban.size())) << toUtf8(iban);
        EXPECT_FALSE(format->onlyDigits && !checkDigits::of(iban).onlyDigits) << toUtf8(iban);
        EXPECT_EQ(countries::paymentLength(iban.substr(0, 2)).value_or(format->length), format->length);
    }
}

TEST(CheckDigits, AgreeWithTheRuleOfTheStandard) {
    std::mt19937 random(7);
    constexpr TextView kLetters = u"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    for (int i = 0; i < 5000; ++i) {
        Text iban = u"XX00";
        for (std::size_t j = 0; j < 2; ++j) iban[j] = kLetters[10 + random() % 26];
        for (auto length = 1 + random() % 30; length > 0; --length)
            iban += kLetters[random() % (i % 2 ? 10 : 36)];
        const auto wanted = checkDigits::of(iban);
        ASSERT_GE(wanted.number, 2);
        EXPECT_EQ(wanted.onlyDigits, IstZiffern(TextView(iban).substr(4)));
        iban.replace(2, 2, checkDigits::twoDigits(wanted.number));
        EXPECT_EQ(remainderOf(iban), 1) << toUtf8(iban);
        EXPECT_TRUE(checkDigits::fit(iban)) << toUtf8(iban);
        iban[3] = iban[3] == u'9' ? u'0' : static_cast<char16_t>(iban[3] + 1);
        EXPECT_FALSE(checkDigits::fit(iban)) << toUtf8(iban);
    }
}

TEST(CheckDigits, AnyCharactersCountByTheirCode) {
    const std::tuple<TextView, int32, bool> cases[] = {
        {u"DE00210501700012345678", 68, true},
        {u"DE00370400440532013000", 89, true},
        {u"", 98, true},
        {u"D", 98 - 1300 % 97, true},
        {u"DE00/", 98 - 8131400 % 97, false},   // "/" is -8: 0, 8
        {u"DE00a", 98 - 42131400 % 97, false},  // "a" is 42, as no letter is folded
        {u"DE00\uFFFF", static_cast<int32>(98 - 65480131400 % 97), false},
    };
    for (const auto& [iban, number, onlyDigits] : cases) {
        const auto found = checkDigits::of(iban);
        EXPECT_EQ(std::pair(found.number, found.onlyDigits), std::pair(number, onlyDigits)) << toUtf8(iban);
    }
    // Its check number is 2, and "2D" is not that number.
    EXPECT_EQ(checkDigits::of(u"DE2D370400440000000024").number, 2);
    for (const TextView no : {u"DE2D370400440000000024", u"DE", u"", u"DE+2370400440000000024"})
        EXPECT_FALSE(checkDigits::fit(no)) << toUtf8(no);
    EXPECT_EQ(checkDigits::twoDigits(7), u"07");
}

TEST(Countries, CodesAreFoundAtAnyPlace) {
    const std::tuple<TextView, int32, bool> found[] = {
        {u"DE", 22, true},  {u"GB", 22, false},
        {u"SM", 27, false}, {u"E!", 6, false},  // of "BE!", and of its length "16."
        {u"!B", 0, false},                      // ".2"
    };
    for (const auto& [code, length, onlyDigits] : found) {
        const auto format = countries::checked(code);
        ASSERT_TRUE(format) << toUtf8(code);
        EXPECT_EQ(std::pair(format->length, format->onlyDigits), std::pair(length, onlyDigits))
            << toUtf8(code);
    }
    for (const TextView code : {u"de", u"US", u"TR", u"??"})
        EXPECT_FALSE(countries::checked(code)) << toUtf8(code);

    EXPECT_TRUE(countries::inEU(u"RO") && countries::inEU(u"E.") && countries::inEU(u""));
    EXPECT_FALSE(countries::inEU(u"CH") || countries::inEU(u"RO."));
    const std::pair<TextView, int32> lengths[] = {
        {u"", 22}, {u"BE", 16}, {u"CH", 21}, {u"TR", 26}, {u"E.", 2}};
    for (const auto& [code, length] : lengths)
        EXPECT_EQ(countries::paymentLength(code), length) << toUtf8(code);
    EXPECT_FALSE(countries::paymentLength(u"US"));
}

}  // namespace
}  // namespace tsRtm
