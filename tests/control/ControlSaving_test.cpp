// Writing structure files.
#include "tests/control/ControlTest.hpp"
#include "tests/support/CrashingFiles.hpp"
#include "tests/support/Raised.hpp"
#include "tsRtm/control/clsMasken.hpp"

namespace tsRtm::test {
namespace {

using ControlSaving = FieldsTest;

int32 failureOf(clsControl& control) {
    const std::string told = raised([&] { control.Save(); });
    EXPECT_TRUE(told.empty() || told.find("|clsControl.Save|") != told.npos) << told;
    return told.empty() ? 0 : std::stoi(told);
}

TEST_F(ControlSaving, GivesEveryFormBackByteForByte) {
    const std::pair<const char*, Bytes> rows[] = {
        {"example", Bytes(kExample)},
        {"DOS", "2\r\n0,1,1,8,1,\"Stra\xE1\x65\"\r\n0,2,1,4,1,\"\x81\"\r\n13,7,0\r\n0\r\n"},
        {"Unicode",
         "\xEF\xBB\xBFTS2,1\r\n0,1,1,8,1,\"\xE2\x82\xAC \xCE\xB1 "
         "\xF0\x9D\x84\x9E\"\r\n9,7,1\r\n1,0,0\r\n0\r\n"},
        {"an index over three fields",
         "TS1,3\r\n0,1,1,1,1,\"A\"\r\n0,1,1,1,1,\"B\"\r\n0,1,1,1,1,\"C\"\r\n4,7,1\r\n3,1,2\r\n0\r\n"},
        {"no fields", "TS1,0\r\n1,0,0\r\n0\r\n"},
        {"negative numbers and blanks", "TS1,1\r\n-1,-2,-3,0,-4,\"  A@ h @7N\"\r\n1,-5,0\r\n0\r\n"},
        {"memo with its block length", "TS1,2\r\n0,1,1,3,1,\"A\"\r\n0,1,1,60,22,\"M\"\r\n9,7,0\r\n0\r\n"}};
    for (const auto& [what, bytes] : rows) {
        SCOPED_TRACE(what);
        const auto control = structure(bytes);
        control->Save();
        EXPECT_EQ(read(u"Control.tsd"), bytes);
        EXPECT_EQ(read(u"Control.tmp"), std::nullopt);
    }
}

TEST_F(ControlSaving, WritesWhatChangedAndOldVersionsAsOne) {
    const auto control = structure("TS0,1\n0,1,1,8,1,\"Lang_\"\n\"er Titel\"\n1,10,0");
    write(u"Params.tsd", "veraltet");
    control->MaxRecords(20);
    EXPECT_TRUE(control->IndexHinzu(1));
    control->Save();
    EXPECT_EQ(read(u"Control.tsd"), "TS1,1\r\n0,1,1,8,1,\"Langer Titel\"\r\n9,20,1\r\n1,0,0\r\n0\r\n");
    EXPECT_EQ(read(u"Params.tsd"), std::nullopt);
}

// A name that nobody knows is not lost.
TEST_F(ControlSaving, MasksKeepTheNamesOfTheirFields) {
    write(u"Kopf.MASKE", "TS1,3\r\n0,1,1,8,1,NAME,\"A\"\r\n0,2,1,8,1,3,\"B\"\r\n0,1,1,8,1,FEHLT,\"C\"\r\n");
    const auto control = structure(kExample);
    control->Maske(u"Kopf")->Save();
    EXPECT_EQ(read(u"Kopf.MASKE"),
              "TS1,3\r\n0,1,1,8,1,1,\"A\"\r\n0,2,1,8,1,3,\"B\"\r\n0,1,1,8,1,FEHLT,\"C\"\r\n");
}

TEST_F(ControlSaving, RefusesTitlesThatTheFileCannotHold) {
    const auto control = structure(kExample);
    for (const TextView title :
         {u"zwei\r\nZeilen", u"LF\n", u"Fortsetzung_", u"Ende\u001A", u"Alpha \u03B1"}) {
        control->Feld(2)->Titel(title);
        EXPECT_EQ(failureOf(*control), 380) << toUtf8(title);
        EXPECT_EQ(read(u"Control.tsd"), kExample);
        EXPECT_EQ(read(u"Control.tmp"), std::nullopt);
    }
    // What the data file looks like does not change the form of the control file.
    control->IstUnicode(true);
    EXPECT_EQ(failureOf(*control), 380);
    control->Feld(2)->Titel(u"Alpha");
    EXPECT_EQ(failureOf(*control), 0);
    EXPECT_FALSE(opened(u"Control.tsd")->IstUnicode());
}

TEST_F(ControlSaving, ASecondWriterIsKeptOut) {
    const auto control = structure(kExample);
    write(u"Control.tmp", "");
    {
        const auto other =
            files.open(inDir(u"Control.tmp"), {platform::Access::readWrite, platform::Sharing::none});
        ASSERT_TRUE(other.ok());
        EXPECT_EQ(failureOf(*control), 70);
        EXPECT_EQ(read(u"Control.tsd"), kExample);
    }
    EXPECT_EQ(failureOf(*control), 0) << "a temporary file left over is no obstacle";
}

// What stands at the end of a Save that did not go through: the old file, whole, and no temporary one.
TEST_F(ControlSaving, AFailureAtAnyCallLeavesTheOldFile) {
    const auto control = structure(kExample);
    control->MaxRecords(2000);
    for (int64 n = 1;; ++n) {
        SCOPED_TRACE(n);
        failing.failAt(n, platform::SystemError::diskFull);
        const auto number = failureOf(*control);
        const bool reached = failing.failures() > 0;
        failing.disarm();
        if (number == 0) {
            EXPECT_GT(n, 4) << "opening, writing, flushing and renaming can fail";
            EXPECT_EQ(opened(u"Control.tsd")->MaxRecords(), 2000);
            if (!reached) break;  // beyond the last call
            write(u"Control.tsd", kExample);
            continue;  // only the clean-up of old files failed
        }
        EXPECT_EQ(number, 61);
        EXPECT_EQ(read(u"Control.tsd"), kExample);
        EXPECT_EQ(read(u"Control.tmp"), std::nullopt);
        EXPECT_EQ(files.openings(), 0u);
    }
}

TEST_F(ControlSaving, AProcessKilledAnywhereLeavesAWholeFile) {
    const auto control = structure(kExample);
    control->MaxRecords(2000);
    auto expected = Bytes(kExample);
    expected.replace(expected.find(",1000,"), 6, ",2000,");
    for (int64 n = 1;; ++n) {
        SCOPED_TRACE(n);
        write(u"Control.tsd", kExample);
        CrashingFiles process(files);
        auto ground = library.ground.on(process);
        rtmMain::TEST_restart(ground);
        const bool died = process.diesAt(n, CrashingFiles::LastWrite::firstHalf,
                                         CrashingFiles::Manner::throws, [&] { control->Save(); });
        library.restart();
        const auto found = read(u"Control.tsd");
        EXPECT_TRUE(found == kExample || found == expected);
        if (!died) break;
    }
    EXPECT_EQ(read(u"Control.tsd"), expected);
    EXPECT_EQ(read(u"Control.tmp"), std::nullopt) << "what a killed one left is taken over";
}

}  // namespace
}  // namespace tsRtm::test
