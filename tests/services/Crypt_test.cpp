// Hash values, random numbers, and what happens where there is no source of them.
#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "tests/support/FailingFiles.hpp"
#include "tests/support/MemoryFiles.hpp"
#include "tests/support/TestGround.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/services/clsTSCrypt.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm::test {
namespace {

using platform::SystemError;

constexpr TextView kLetters = u"abcdefghijklmnopqrstuvwxyz";
constexpr TextView k448Bits = u"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq";
constexpr TextView k896Bits =
    u"abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmnhijklmnoijklmnopjklmnopqklmnopqrlmnopqrsmnopqrs"
    u"t"
    u"nopqrstu";

class Crypt : public ::testing::Test {
 protected:
    static Failure failureOf(const std::function<void()>& call) {
        try {
            call();
        } catch (const Failure& failure) {
            return failure;
        }
        ADD_FAILURE() << "nothing was raised";
        return Failure(0, u"", u"");
    }

    MemoryFiles files;
    FailingFiles failing{files};
    StartedLibrary library{failing};
    clsTSCrypt crypt;
};

// The vectors that were published with the algorithms.
TEST_F(Crypt, HashesAreThoseOfTheStandards) {
    struct Row {
        HashType type;
        TextView text, hash;
    };
    const Row rows[] = {
        {CALG_MD2, u"", u"8350E5A3E24C153DF2275C9F80692773"},  // RFC 1319, A.5
        {CALG_MD2, u"abc", u"DA853B0D3F88D99B30283A69E6DED6BB"},
        {CALG_MD2, kLetters, u"4E8DDFF3650292AB5A4108C3AA47940B"},
        {CALG_MD4, u"", u"31D6CFE0D16AE931B73C59D7E0C089C0"},  // RFC 1320, A.5
        {CALG_MD4, u"abc", u"A448017AAF21D8525FC10AE87AA6729D"},
        {CALG_MD4, kLetters, u"D79E1C308AA5BBCDEEA8ED63DF412DA9"},
        {CALG_MD5, u"", u"D41D8CD98F00B204E9800998ECF8427E"},  // RFC 1321, A.5
        {CALG_MD5, u"abc", u"900150983CD24FB0D6963F7D28E17F72"},
        {CALG_MD5, kLetters, u"C3FCD3D76192E4007DFB496CCA67E13B"},
        {CALG_SHA, u"abc", u"A9993E364706816ABA3E25717850C26C9CD0D89D"},  // FIPS 180-2, appendix A to D
        {CALG_SHA, k448Bits, u"84983E441C3BD26EBAAE4AA1F95129E5E54670F1"},
        {CALG_SHA256, u"abc", u"BA7816BF8F01CFEA414140DE5DAE2223B00361A396177A9CB410FF61F20015AD"},
        {CALG_SHA256, k448Bits, u"248D6A61D20638B8E5C026930C3E6039A33CE45964FF2167F6ECEDD419DB06C1"},
        {CALG_SHA384, u"abc",
         u"CB00753F45A35E8BB5A03D699AC65007272C32AB0EDED1631A8B605A43FF5BED8086072BA1E7CC2358BAECA134C825A7"},
        {CALG_SHA384, k896Bits,
         u"09330C33F71147E83D192FC782CD1B4753111B173B3B05D22FA08086E3B0F712FCC7C71A557E2DB966C3E9FA91746039"},
        {CALG_SHA512, u"abc",
         u"DDAF35A193617ABACC417349AE20413112E6FA4E89A97EA20A9EEEE64B55D39A2192992A274FC1A836BA3C23A3FEEBBD"
         u"454D4423643CE80E2A9AC94FA54CA49F"},
        {CALG_SHA512, k896Bits,
         u"8E959B75DAE313DA8CF4F72814FC143F8F7779C6EB9F7FA17299AEADB6889018501D289E4900F7E4331B99DEC4B5433A"
         u"C7D329EEB6DD26545E96E55B874BE909"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.type) + " of " + toUtf8(row.text));
        EXPECT_EQ(crypt.TextToHex(crypt.GetHash(row.text, row.type)), row.hash);
        files.put(u"datei", toAnsi(row.text));
        EXPECT_EQ(crypt.TextToHex(crypt.GetHashFromFile(u"datei", row.type)), row.hash);
    }
    // One byte a character: "ä" is E4.
    EXPECT_EQ(crypt.TextToHex(crypt.GetHash(u"ä", CALG_MD5)), u"C15BCC5577F9FADE4B4A3256190A59B0");
}

TEST_F(Crypt, FilesAreReadInBlocks) {
    for (const auto& [size, reads] :
         {std::pair{65535, 1}, {65536, 1}, {65537, 2}, {131072, 2}, {200000, 4}}) {
        SCOPED_TRACE(size);
        Bytes content(static_cast<std::size_t>(size), '\0');
        for (std::size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 7 + i / 256);
        files.put(u"datei", content);
        failing.disarm();
        EXPECT_EQ(crypt.GetHashFromFile(u"datei", CALG_SHA), crypt.GetHash(fromAnsi(content), CALG_SHA));
        EXPECT_EQ(failing.calls(), 2 + reads) << "opened, asked for its size, read";
    }
}

TEST_F(Crypt, AFileThatCannotBeReadHasNoHash) {
    EXPECT_EQ(crypt.GetHashFromFile(u"fehlt", CALG_MD5), u"");
    files.put(u"datei", Bytes(70000, 'x'));
    const int32 open = 1, last = 4;
    for (int32 call = open; call <= last; ++call) {
        SCOPED_TRACE(call);
        failing.failAt(call, SystemError::deviceError);
        if (call == open) {
            EXPECT_EQ(crypt.GetHashFromFile(u"datei", CALG_MD5), u"");
            continue;
        }
        const auto failure = failureOf([&] { crypt.GetHashFromFile(u"datei", CALG_MD5); });
        EXPECT_EQ(failure.Number(), 1117);
        EXPECT_EQ(failure.Source(), u"clsTSCrypt");
        EXPECT_EQ(failure.Description(),
                  u"DLL-Fehler: Daten konnten nicht in den Hash geschrieben werden (CryptHashData API)");
    }
}

TEST_F(Crypt, UnknownTypesAreRaisedByTheirNumber) {
    struct Row {
        int32 type;
        std::string digits;
    };
    for (const auto& row : {Row{32773, "8005"}, Row{0, "0"}, Row{-1, "FFFFFFFF"}}) {
        const auto failure = failureOf([&] { crypt.GetHash(u"abc", static_cast<HashType>(row.type)); });
        EXPECT_EQ(failure.Number(), -2146893816);
        EXPECT_EQ(toUtf8(failure.Description()), "DLL gab Fehler aus. Hash-Objekt für Typ " + row.digits +
                                                     " kann nicht erstellt werden! (CryptCreateHash API)");
    }
}

TEST_F(Crypt, RandomBytesComeAsAsked) {
    library.ground.random.bytes = {0x41, 0x80, 0x00};
    EXPECT_EQ(crypt.TextToHex(crypt.ZufallBytes(3)), u"418000");
    EXPECT_EQ(crypt.ZufallBytes(0), u"");
    EXPECT_EQ(crypt.ZufallBytes(-1), u"");
    library.ground.random.failing = SystemError::deviceError;
    EXPECT_EQ(crypt.ZufallBytes(3), u"");
    EXPECT_EQ(failureOf([&] { crypt.Zufall(1, 255); }).Number(), 70) << "never a key that is none";
}

TEST_F(Crypt, RandomNumbersKeepToTheirLimits) {
    auto& bytes = library.ground.random.bytes;
    const auto drawn = [&](uint32 draw, int32 from, int32 to) {
        for (int32 shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<uint8>(draw >> shift));
        return crypt.Zufall(from, to);
    };
    constexpr int32 kMin = std::numeric_limits<int32>::min(), kMax = std::numeric_limits<int32>::max();
    EXPECT_EQ(drawn(0, 1, 255), 1);
    EXPECT_EQ(drawn(254, 1, 255), 255);
    EXPECT_EQ(drawn(255, 255, 1), 1);
    EXPECT_EQ(drawn(12345, 7, 7), 7);
    EXPECT_EQ(drawn(0xFFFFFFFF, kMin, kMax), kMax);
    EXPECT_EQ(drawn(0, kMin, kMax), kMin);
    // 2^32 = 3 * 1431655765 + 1: the last draw would make the 0 likelier than the others.
    bytes = {0xFF, 0xFF, 0xFF, 0xFF, 5, 0, 0, 0};
    EXPECT_EQ(crypt.Zufall(0, 2), 2);
    EXPECT_TRUE(bytes.empty());
}

TEST_F(Crypt, WithoutASourceOnlyTheFormsWork) {
    EXPECT_TRUE(clsTSCrypt::Create());
    library.ground.random.missing = SystemError::notSupported;
    const clsTSCrypt poor;
    EXPECT_EQ(poor.GetHash(u"abc", CALG_MD5), u"");
    EXPECT_EQ(poor.GetHashFromFile(u"datei", CALG_MD5), u"");
    EXPECT_EQ(poor.Base64(u"a"), u"YQ==\r\n");
    struct Row {
        std::function<void()> call;
        int32 number;
        TextView source, description;
    };
    constexpr TextView kNone = u"Kein Cryptografie-Provider zur Erzeugung von ZufallBytes verfügbar.";
    for (const auto& row : {Row{[&] { poor.ZufallBytes(1); }, 70, u"clsTSCrypt.ZufallBytes", kNone},
                            Row{[&] { poor.Zufall(1, 2); }, 70, u"clsTSCrypt.Zufall", kNone},
                            Row{[] { clsTSCrypt::Create(); }, 50, u"clsTSCrypt",
                                u"Fehler beim Erstellen des Handles (CryptAcquireContext API)\r\n"
                                u"DLL gab Fehler zurück: 50"}}) {
        const auto failure = failureOf(row.call);
        EXPECT_EQ(failure.Number(), row.number);
        EXPECT_EQ(failure.Source(), row.source);
        EXPECT_EQ(failure.Description(), row.description);
    }
}

}  // namespace
}  // namespace tsRtm::test
