// Bytes written as text and read back.
#include "tsRtm/services/bytes/ByteForms.hpp"

#include <gtest/gtest.h>

#include <random>

#include "tests/support/Table.hpp"
#include "tests/support/TestGround.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/services/clsTSCrypt.hpp"

namespace tsRtm::test {
namespace {

constexpr CryptStringFlags kShort = CRYPT_STRING_BASE64 | CRYPT_STRING_SHORT;

class ByteForms : public ::testing::Test {
 protected:
    StartedLibrary library;
    clsTSCrypt crypt;
};

TEST_F(ByteForms, HaveTheirLayout) {
    struct Row {
        CryptStringFlags flags;
        TextView bytes, text;
    };
    const TextView lines = u"0123456789abcdefgh";
    const TextView fifty = u"01234567890123456789012345678901234567890123456789";
    const Row rows[] = {
        {CRYPT_STRING_BASE64, u"f", u"Zg==\r\n"},
        {CRYPT_STRING_BASE64, fifty,
         u"MDEyMzQ1Njc4OTAxMjM0NTY3ODkwMTIzNDU2Nzg5MDEyMzQ1Njc4OTAxMjM0NTY3\r\nODk=\r\n"},
        {CRYPT_STRING_BASE64 | CRYPT_STRING_NOCR, u"f", u"Zg==\n"},
        {CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF, u"f", u"Zg=="},
        {kShort, u"a", u"YQ"},
        {kShort, fifty, u"MDEyMzQ1Njc4OTAxMjM0NTY3ODkwMTIzNDU2Nzg5MDEyMzQ1Njc4OTAxMjM0NTY3ODk"},
        {CRYPT_STRING_BASE64HEADER, u"f",
         u"-----BEGIN CERTIFICATE-----\r\nZg==\r\n-----END CERTIFICATE-----\r\n"},
        {CRYPT_STRING_BASE64REQUESTHEADER | CRYPT_STRING_NOCR, u"f",
         u"-----BEGIN NEW CERTIFICATE REQUEST-----\nZg==\n-----END NEW CERTIFICATE REQUEST-----\n"},
        {CRYPT_STRING_BINARY | CRYPT_STRING_SHORT, u"a==", u"a"},  // the short form cuts "=" of every form
        {CRYPT_STRING_HEXRAW, u"aÿ\n", u"61ff0a\r\n"},
        {CRYPT_STRING_HEX, lines, u"30 31 32 33 34 35 36 37  38 39 61 62 63 64 65 66\r\n67 68\r\n"},
        {CRYPT_STRING_HEX | CRYPT_STRING_NOCRLF, lines,
         u"30 31 32 33 34 35 36 37  38 39 61 62 63 64 65 66 67 68"},
        {CRYPT_STRING_HEXADDR, lines,
         u"0000\t30 31 32 33 34 35 36 37  38 39 61 62 63 64 65 66\r\n0010\t67 68\r\n"},
        {CRYPT_STRING_HEXASCII, lines,
         u"30 31 32 33 34 35 36 37  38 39 61 62 63 64 65 66   0123456789abcdef\r\n"
         u"67 68                                              gh\r\n"},
        {CRYPT_STRING_HEXASCIIADDR, u"\x01 ä\x7F",
         u"0000\t01 20 e4 7f                                        . ..\r\n"},
        {CRYPT_STRING_ANY, u"a", u""},  // for reading only
        {static_cast<CryptStringFlags>(99), u"a", u""}};
    for (const auto& row : rows)
        EXPECT_EQ(crypt.Base64(row.bytes, row.flags), row.text) << row.flags << ": " << toUtf8(row.bytes);
    EXPECT_EQ(crypt.TextToHex(u"\nÿ€"), u"0AFF80");
}

TEST_F(ByteForms, WhatIsNotOfTheFormGivesNothing) {
    constexpr auto kStrict = CRYPT_STRING_BASE64 | CRYPT_STRING_STRICT;
    // By flags: a text and its bytes. "Zh==" has bits left over; "BEGIN -----END ABCDE" is one rule of two,
    // and no body; a wide gap hides nothing, nor do blanks, which have no characters to be seen.
    const std::pair<CryptStringFlags, TextView> forms[] = {
        {CRYPT_STRING_ANY, u" Z m\t9\r\nv |foo;Z|;Zg=|f;Zg===|;Zh==|;Zg==Zg==|;ZmÄv|"},
        {kStrict, u"Zg|;Zg==|f"},
        {CRYPT_STRING_BASE64HEADER,
         u"Zg==|;-----BEGIN X-----\nZg==\n|;mail\n-----BEGIN X-----\nZg==\n-----END X-----\nend|f"},
        {CRYPT_STRING_BASE64_ANY, u"-----BEGIN -----END -----|;-----BEGIN -----END ABCDE|"},
        {CRYPT_STRING_HEX, u"30\t31\r\n32|012;30 3|;30 3G|"},
        {CRYPT_STRING_HEXASCII, u"30 31                                              0X|"},
        {CRYPT_STRING_HEX_ANY,
         u"30   31|01;20202020202020202020202020202020202020202020202020|                         "},
        {CRYPT_STRING_SHORT, u"Zg|"},
        {static_cast<CryptStringFlags>(99), u"Zg==|"}};
    for (const auto& [flags, rows] : forms)
        for (const auto& [text, bytes] : table<2>(rows, u";", u"|"))
            EXPECT_EQ(crypt.FromBase64(text, flags), bytes) << flags << ": " << toUtf8(text);
}

// Whatever is read from a stranger gives bytes that can be written and read again, or nothing; and all that
// was written comes back.
TEST(ByteFormsAtRandom, ReadWhatTheyWroteAndNeverFail) {
    constexpr BytesView kPieces[] = {"-----BEGIN ", "-----END ", "-----", "0000\t", "30 31", "   ",
                                     "Zg==",        "\r\n",      " ",     "\t",     "\n",    "=",
                                     "2",           "a",         "/",     "\xFF"};
    constexpr int32 kAny[] = {CRYPT_STRING_BASE64_ANY, CRYPT_STRING_ANY, CRYPT_STRING_HEX_ANY, 99};
    std::mt19937 draw(1);
    const auto below = [&](std::size_t limit) { return draw() % limit; };
    for (int round = 0; round < 3000; ++round) {
        Bytes bytes(1 + below(80), ' '), text;
        for (char& byte : bytes)  // many blanks and digits, which a form may take for its own
            if (below(3) > 0) byte = static_cast<char>(below(2) > 0 ? draw() : '0' + below(10));
        for (auto pieces = below(30); pieces > 0; --pieces) text += kPieces[below(std::size(kPieces))];
        for (const int32 form : {0, 1, 2, 3, 4, 5, 9, 10, 11, 12}) {
            const int32 ends[] = {0, CRYPT_STRING_NOCR, CRYPT_STRING_NOCRLF};
            const auto flags = static_cast<CryptStringFlags>(form | ends[below(3)]);
            const Bytes written = byteForms::encode(bytes, flags);
            ASSERT_EQ(byteForms::decode(written, flags), bytes) << flags << ": " << written;
            const bool hex = form == 4 || form == 5 || form >= 10;
            if (form != CRYPT_STRING_BINARY) {
                const auto any = hex ? CRYPT_STRING_HEX_ANY : CRYPT_STRING_ANY;
                ASSERT_EQ(byteForms::decode(written, any), bytes) << flags << ": " << written;
            }
            for (const BytesView odd :
                 {BytesView(text), BytesView(written).substr(below(written.size())), BytesView(bytes)}) {
                const auto read = byteForms::decode(odd, flags);
                if (!read || read->empty()) continue;
                ASSERT_EQ(byteForms::decode(byteForms::encode(*read, flags), flags), read) << flags << odd;
            }
        }
        for (const int32 form : kAny)
            static_cast<void>(byteForms::decode(text, static_cast<CryptStringFlags>(form)));
    }
}

}  // namespace
}  // namespace tsRtm::test
