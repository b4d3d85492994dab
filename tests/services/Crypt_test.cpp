// Hash values, random numbers, and what happens where there is no source of them. Scrambled texts: the key
// file that is shipped, found where it lies and never changed, and others.
#include <functional>
#include <limits>

#include "tests/support/FailingFiles.hpp"
#include "tests/support/MemoryFiles.hpp"
#include "tests/support/Raised.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/platform/posix/PosixPlatform.hpp"
#include "tsRtm/services/ScramblingTopic.hpp"
#include "tsRtm/services/clsTSCrypt.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm::test {
namespace {

using platform::SystemError;

class Crypt : public ::testing::Test {
 protected:
    MemoryFiles files;
    FailingFiles failing{files};
    StartedLibrary library{failing};
    clsTSCrypt crypt;
};

// That each number means its own algorithm, and bytes are those of code page 1252.
TEST_F(Crypt, HashesByTheirNumbers) {
    const std::tuple<int32, TextView, TextView> rows[] = {
        {0x8001, u"abc", u"DA853B0D3F88D99B"}, {0x8002, u"abc", u"A448017AAF21D852"},
        {0x8003, u"abc", u"900150983CD24FB0"}, {0x8003, u"ä", u"C15BCC5577F9FADE"},
        {0x8004, u"abc", u"A9993E364706816A"}, {0x800C, u"abc", u"BA7816BF8F01CFEA"},
        {0x800D, u"", u"38B060A751AC9638"},    {0x800E, u"", u"CF83E1357EEFB8BD"}};
    for (const auto& [number, text, begins] : rows) {
        const auto type = static_cast<HashType>(number);
        EXPECT_TRUE(crypt.TextToHex(crypt.GetHash(text, type)).starts_with(begins)) << number;
        files.put(u"datei", toAnsi(text));
        EXPECT_EQ(crypt.GetHashFromFile(u"datei", type), crypt.GetHash(text, type));
    }
    for (const auto& [number, digits] : {std::pair{32773, "8005"}, {0, "0"}, {-1, "FFFFFFFF"}})
        EXPECT_EQ(raised([&, type = static_cast<HashType>(number)] { crypt.GetHash(u"abc", type); }),
                  std::string("-2146893816|clsTSCrypt|DLL gab Fehler aus. Hash-Objekt für Typ ") + digits +
                      " kann nicht erstellt werden! (CryptCreateHash API)");
}

TEST_F(Crypt, AFileThatCannotBeReadHasNoHash) {
    EXPECT_EQ(crypt.GetHashFromFile(u"fehlt", CALG_MD5), u"");
    files.put(u"datei", Bytes(70000, 'x'));
    const auto hash = [&] { EXPECT_EQ(crypt.GetHashFromFile(u"datei", CALG_MD5), u""); };
    for (const int32 call : {1, 2, 3, 4}) {  // opening, size, two blocks
        failing.failAt(call, SystemError::deviceError);
        EXPECT_EQ(raised(hash), call == 1 ? ""
                                          : "1117|clsTSCrypt|DLL-Fehler: Daten konnten nicht in den Hash "
                                            "geschrieben werden (CryptHashData API)");
    }
}

TEST_F(Crypt, RandomBytesAndNumbers) {
    auto& bytes = library.ground.random.bytes;
    bytes = {0x41, 0x80, 0x00};
    EXPECT_EQ(crypt.TextToHex(crypt.ZufallBytes(3)), u"418000");
    EXPECT_EQ(crypt.ZufallBytes(0) + crypt.ZufallBytes(-1), u"");
    constexpr int32 kMin = std::numeric_limits<int32>::min(), kMax = std::numeric_limits<int32>::max();
    using Row = std::tuple<uint32, int32, int32, int32>;
    for (const auto& [draw, from, to, number] :
         {Row{0, 1, 255, 1}, Row{254, 1, 255, 255}, Row{255, 255, 1, 1}, Row{12345, 7, 7, 7},
          Row{0xFFFFFFFF, kMin, kMax, kMax}, Row{0, kMin, kMax, kMin}}) {
        for (int32 shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<uint8>(draw >> shift));
        EXPECT_EQ(crypt.Zufall(from, to), number);
    }
    // 2^32 = 3 * 1431655765 + 1: the last draw would make the 0 likelier than the others.
    bytes = {0xFF, 0xFF, 0xFF, 0xFF, 5, 0, 0, 0};
    EXPECT_EQ(crypt.Zufall(0, 2), 2);
    EXPECT_TRUE(bytes.empty());
    library.ground.random.failing = SystemError::deviceError;
    EXPECT_EQ(crypt.ZufallBytes(3), u"");
    EXPECT_EQ(raisedNumber([&] { crypt.Zufall(1, 255); }), 70) << "never a key that is none";
}

TEST_F(Crypt, WithoutASourceOnlyTheFormsWork) {
    EXPECT_TRUE(clsTSCrypt::Create());
    library.ground.random.missing = SystemError::notSupported;
    const clsTSCrypt poor;
    EXPECT_EQ(poor.GetHash(u"abc", CALG_MD5) + poor.GetHashFromFile(u"datei", CALG_MD5), u"");
    EXPECT_EQ(poor.Base64(u"a"), u"YQ==\r\n");
    const std::string none = "|Kein Cryptografie-Provider zur Erzeugung von ZufallBytes verfügbar.";
    EXPECT_EQ(raised([&] { poor.ZufallBytes(1); }), "70|clsTSCrypt.ZufallBytes" + none);
    EXPECT_EQ(raised([&] { poor.Zufall(1, 2); }), "70|clsTSCrypt.Zufall" + none);
    EXPECT_EQ(raised([] { clsTSCrypt::Create(); }),
              "50|clsTSCrypt|Fehler beim Erstellen des Handles (CryptAcquireContext API)\r\n"
              "DLL gab Fehler zurück: 50");
}

// The real files and the real place of the installation; the machine's settings stay out of it.
TEST(ShippedKeyTable, IsFoundFromTheBuildTreeAndScramblesAsStoredTextsWere) {
    TestGround ground;
    ground.system.folders[platform::FolderId::commonProgramFiles] =
        platform::posixPlatform().system.folder(platform::FolderId::commonProgramFiles, false);
    ground.system.access = [](TextView, int32) { return false; };  // nothing is made anew
    const StartedLibrary library(ground, platform::posixPlatform().files);
    const clsTSCrypt crypt;
    EXPECT_EQ(
        crypt.TextToHex(crypt.GetHashFromFile(rtmMain::state().runtimeDir + u"/KeyTS.dat", CALG_SHA256)),
        u"41482481109C29407AF9623AF51FA7D3CF69500A3D1238E7F6CFC4A160DBFBF6");
    MessagesTopic messages;
    ScramblingTopic topic(messages);
    for (const auto& [original, start, scrambled] :
         {std::tuple{u"Müller & Söhne", 0x00050011, u"4278C82B04745FBBA35712D80540"}, {u"x", 255, u"9C"}}) {
        Text text(original);
        topic.Schluessel(text, start);
        EXPECT_EQ(crypt.TextToHex(text), scrambled);
        topic.Schluessel(text, start);
        EXPECT_EQ(text, original);
    }
    EXPECT_TRUE(ground.ui.boxes.empty());
    EXPECT_EQ(rtmMain::state().F, 0);
}

// The key file in which byte n has the value 3n + 1.
Bytes keyFile() {
    Bytes bytes;
    for (int i = 0; i < 256; ++i) bytes.push_back(static_cast<char>(3 * i + 1));
    return bytes;
}

class Scrambling : public testing::Test {
 protected:
    Scrambling() { rtmMain::state().runtimeDir = u"/srv/rtm"; }
    // By an object of its own: each loads the key file once.
    Text scrambled(TextView text, int32 start) {
        Text result(text);
        ScramblingTopic(messages).Schluessel(result, start);
        return result;
    }
    MemoryFiles files;
    StartedLibrary library{files};
    ScriptedUi& ui = library.ground.ui;
    MessagesTopic messages;
};

TEST_F(Scrambling, XorsFromTheLastByteOn) {
    files.put(u"/opt/host/KeyTS.dat", keyFile());
    // Offset (K[2] xor 2) + 3 = (7 xor 2) + 3 = 8; K[8] = 25. Bits 8 to 15 of the start count nothing.
    EXPECT_EQ(scrambled(u"Ä", 2 + 3 * 65536 + 256 * 77), Text(1, ansiToUnicode(0xC4 ^ 25)));
    EXPECT_EQ(toAnsi(scrambled(u"ab", 2 + 3 * 65536)), Bytes({'a' ^ 28, 'b' ^ 25}));
    Text all;
    for (int i = 0; i < 300; ++i) all.push_back(ansiToUnicode(static_cast<uint8>(i)));
    for (const int32 start : {0, 1, -1, 0x00FF00FF, std::numeric_limits<int32>::min()}) {
        EXPECT_NE(scrambled(all, start), all);
        EXPECT_EQ(scrambled(scrambled(all, start), start), all);
    }
    ScramblingTopic topic(messages);
    EXPECT_THROW(topic.SchlAlt(all, 1), Failure);
}

TEST_F(Scrambling, TheHostsFileComesFirstAndMayBeShort) {
    files.put(u"/srv/rtm/KeyTS.dat", keyFile() + "more than a table");
    EXPECT_EQ(toAnsi(scrambled(u"a", 0)), Bytes(1, 'a' ^ 4)) << "K[K[0]] = K[1]";
    files.put(u"/opt/host/KeyTS.dat", Bytes(256, '\0'));
    EXPECT_EQ(toAnsi(scrambled(u"a", 0)), Bytes(1, 'a' ^ 4)) << "zeros alone are no table";
    files.put(u"/opt/host/KeyTS.dat", "\1\2");
    EXPECT_EQ(toAnsi(scrambled(u"ba", 0)), Bytes({'b', 'a' ^ 2})) << "K[1], then K[2], which is not there";
    EXPECT_TRUE(ui.boxes.empty());
    EXPECT_EQ(rtmMain::state().F, 0);
}

TEST_F(Scrambling, WithoutKeyFileTheTextStaysAndTheUserIsTold) {
    for (const int32 controls : {580, 610}) {
        ui.controls = controls;
        ui.defaultAnswer = 1;
        ui.boxes.clear();
        rtmMain::state().appHWnd = 4711;
        ScramblingTopic topic(messages);
        Text text;
        topic.Schluessel(text, 5);
        EXPECT_TRUE(ui.boxes.empty()) << "an empty text needs no key";
        text = u"geheim";
        topic.Schluessel(text, 5);
        topic.Schluessel(text, 5);
        ASSERT_EQ(ui.boxes.size(), 1u) << "once an object";
        const Text said = ui.boxes[0].headline + (controls == 580 ? u"" : u"\r") + ui.boxes[0].body;
        EXPECT_TOLD("geheim|53|SchluesselB|4711|/srv/rtm/KeyTS.dat\rDatei fehlt", text, rtmMain::state().F,
                    ui.boxes[0].title, ui.boxes[0].parent, said);
    }
}

}  // namespace
}  // namespace tsRtm::test
