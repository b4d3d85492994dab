// Scrambled texts: the key file that is shipped, found where it lies and never changed, and others.
#include <gtest/gtest.h>

#include "tests/support/MemoryFiles.hpp"
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
