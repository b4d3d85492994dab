// The key table that is shipped: found where it lies, and never changed.
#include <gtest/gtest.h>

#include "tests/support/TestGround.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/frame/text/ConversionsTopic.hpp"
#include "tsRtm/platform/posix/PosixPlatform.hpp"
#include "tsRtm/services/clsTSCrypt.hpp"

namespace tsRtm::test {
namespace {

// The real files and the real place of the installation; the machine's settings stay out of it.
class ShippedKeyTable : public ::testing::Test {
 protected:
    static std::unique_ptr<TestGround> prepared() {
        using platform::FolderId;
        auto ground = std::make_unique<TestGround>();
        ground->system.folders[FolderId::commonProgramFiles] =
            platform::posixPlatform().system.folder(FolderId::commonProgramFiles, false);
        ground->system.access = [](TextView, int32) { return false; };  // nothing is made anew
        return ground;
    }

    std::unique_ptr<TestGround> ground = prepared();
    StartedLibrary library{*ground, platform::posixPlatform().files};
};

TEST_F(ShippedKeyTable, IsFoundFromTheBuildTree) {
    const clsTSCrypt crypt;
    // Stored texts can be read with this very table only.
    EXPECT_EQ(
        crypt.TextToHex(crypt.GetHashFromFile(rtmMain::state().runtimeDir + u"/KeyTS.dat", CALG_SHA256)),
        u"41482481109C29407AF9623AF51FA7D3CF69500A3D1238E7F6CFC4A160DBFBF6");
}

TEST_F(ShippedKeyTable, ScramblesAsEver) {
    ConversionsTopic topic;
    const clsTSCrypt crypt;
    const std::tuple<TextView, int32, TextView> rows[] = {
        {u"Müller & Söhne", 0x00050011, u"4278C82B04745FBBA35712D80540"},
        {u"x", 255, u"9C"},
    };
    for (const auto& [original, start, scrambled] : rows) {
        Text text(original);
        topic.Schluessel(text, start);
        EXPECT_EQ(crypt.TextToHex(text), scrambled);
        topic.Schluessel(text, start);
        EXPECT_EQ(text, original);
    }
    EXPECT_TRUE(ground->ui.boxes.empty());
    EXPECT_EQ(rtmMain::state().F, 0);
}

}  // namespace
}  // namespace tsRtm::test
