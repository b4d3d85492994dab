#include "tests/support/Table.hpp"
#include "tests/tables/TablesTest.hpp"
#include "tsRtm/tables/ShortcutsTopic.hpp"

namespace tsRtm::test {
namespace {

class ShortcutsTest : public TablesTest {
 protected:
    ShortcutsTest() {
        rtmMain::state().userDir = u"/user";
        rtmMain::state().runtimeDataDir = u"/d";
        library.ground.clock.set(Date::of(2024, 2, 28, 9, 5, 7));
        table(
            "mfg\r\nMit freundlichen Gr\xFC\xDF"
            "en\r\n"
            "zz\r\n  Zeile 1^MZeile 2  \r\n"
            "bs\r\n~065~000~128^~9x~66~255\r\n"
            "zu lang\r\nnie\r\n\r\nnie\r\n"
            "tag\r\n#D0\r\n"
            "raus\r\n#U\r\n"
            "mfg\r\nder zweite\r\n");
    }
    void table(BytesView bytes) { disk.put(u"/d/Tabelle.iom", bytes); }
    // The text that the input becomes; "=" in front where it was not replaced.
    static std::string after(TextView input) {
        Text text(input);
        const bool replaced = ShortcutsTopic().Table(text, 0);
        return (replaced ? "" : "=") + toUtf8(text);
    }
};

// Five characters of an offset count, the sign is one; a day that no calendar has gives an empty text.
TEST_F(ShortcutsTest, Expand) {
    for (const auto& [input, output] : test::table<2>(
             u"mfg>Mit freundlichen Grüßen; MFG>=MFG; >=; zz>Zeile 1\rZeile 2; bs>A~000€^\t66ÿ; zu "
             u"lang>=zu lang; nie>=nie; tag>28022024; raus>; #X>=#X; #U>; #Z>09:05; #Z0>0905; "
             u"#Z8>09:05:07; #Z7>=#Z7; #D>28.02.2024; #D+7>06.03.2024; #D8+2 Tage>01.03.2024; "
             u"#DZ>28.02.2024 09:05; #D0+1>29022024; #D6>28.02.24; #DT>28. Februar 2024; "
             u"#DW-2>Montag, 26. Februar 2024; #DX>=#DX; #D+12345>16.07.2027",
             u"; ", u">"))
        EXPECT_EQ(after(input), toUtf8(output)) << toUtf8(input);
    for (const auto& input :
         split(u"#D+ #D+- #D-+-+-+-+ #D+9E99 #D-9E9 #D6-9E9 #DW+9E9 #DT-9999999 #D----------------+", u" "))
        EXPECT_NO_THROW(after(input)) << toUtf8(input);
}

TEST_F(ShortcutsTest, TheTableIsOneForTheProcess) {
    EXPECT_EQ(after(u"mfg"), "Mit freundlichen Grüßen");
    table("mfg\r\nneu\r\n");
    EXPECT_EQ(after(u"mfg"), "Mit freundlichen Grüßen");
    EXPECT_EQ(after(TextView(u"\0", 1)), "=" + std::string(1, '\0'));  // reads anew
    EXPECT_EQ(after(u"mfg"), "neu");
    ShortcutsTopic().TableStopped(true);
    EXPECT_EQ(after(u"mfg"), "=mfg");
    EXPECT_EQ(after(u"#D"), "=#D");
    ShortcutsTopic().TableStopped(false);
    // Without a row nothing is expanded, and each call looks for the table again.
    table("");
    ShortcutsTopic().TableInit();
    EXPECT_EQ(after(u"#D"), "=#D");
    table("x\r\ny\r\n");
    EXPECT_EQ(after(u"x"), "y");
}

TEST_F(ShortcutsTest, TheUsersTableComesFirst) {
    EXPECT_EQ(ShortcutsTopic().TablePath(), u"/d");
    disk.put(u"/user/Tabelle.iom", "a\r\nuser\r\n");
    EXPECT_EQ(ShortcutsTopic().TablePath(), u"/user");
    EXPECT_EQ(after(u"a"), "user");
    ShortcutsTopic().TablePath(u"/d");
    EXPECT_EQ(ShortcutsTopic().TablePath(), u"/d");
    ShortcutsTopic().TableInit();
    EXPECT_EQ(after(u"a"), "=a");
}

}  // namespace
}  // namespace tsRtm::test
