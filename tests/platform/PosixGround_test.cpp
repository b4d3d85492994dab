// Locale, console, folders and rights of this machine.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <optional>
#include <sstream>

#include "tests/support/TempFolder.hpp"
#include "tsRtm/platform/posix/ConsoleUserInterface.hpp"
#include "tsRtm/platform/posix/PosixLocale.hpp"
#include "tsRtm/platform/posix/PosixPlatform.hpp"

namespace tsRtm::test {
namespace {

using namespace platform;
namespace fs = std::filesystem;

// Sets an environment variable (nullptr: unsets it) until the end of the object.
class Variable {
 public:
    Variable(const char* name, const char* value) : name_(name) {
        if (const char* old = ::getenv(name)) old_ = old;
        set(value);
    }
    ~Variable() { set(old_ ? old_->c_str() : nullptr); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

 private:
    void set(const char* value) { value ? ::setenv(name_, value, 1) : ::unsetenv(name_); }
    const char* name_;
    std::optional<std::string> old_;
};

TEST(PosixLocale, EnvironmentNamesTheLocale) {
    struct Row {
        const char *all, *lang;
        std::string locale;
    };
    for (const auto& row :
         {Row{nullptr, nullptr, "de_DE"}, Row{"", "C.UTF-8", "de_DE"}, Row{"POSIX", "fr_FR", "de_DE"},
          Row{nullptr, "fr_FR.UTF-8", "fr_FR"}, Row{"de_AT@euro", "fr_FR", "de_AT"}}) {
        const Variable all("LC_ALL", row.all), lang("LANG", row.lang);
        EXPECT_EQ(posix::environmentLocale(), row.locale);
    }
}

struct LocaleRow {
    const char* name;
    int32 lcid;
    TextView country, decimal, thousands, symbol, currencyForm, dateMark, dateForm, timeMark, timeForm,
        firstDay, firstWeek, monday, january;
};

// The home locale is a table of our own; ICU reads the same locale under the name with a hyphen.
TEST(PosixLocale, TheHomeLocaleAgreesWithIcu) {
    posix::PosixLocale own("de_DE");
    posix::PosixLocale icu("de-DE");
    EXPECT_EQ(own.lcid(), icu.lcid());
    for (const int32 number : {4, 5, 6, 14, 15, 20, 25, 27, 29, 30, 33, 35, 4105, 4108, 4109}) {
        const auto item = static_cast<LocaleItem>(number);
        EXPECT_EQ(own.item(item), icu.item(item)) << number;
    }
    for (int32 day = 0; day < 7; ++day) EXPECT_EQ(own.weekdayName(day), icu.weekdayName(day));
    for (int32 month = 1; month <= 12; ++month) EXPECT_EQ(own.monthName(month), icu.monthName(month));
}

TEST(PosixLocale, ItemsFollowTheLocale) {
    const LocaleRow rows[] = {
        {"de_DE", 1031, u"49", u",", u".", u"€", u"3", u".", u"1", u":", u"1", u"0", u"2", u"Montag",
         u"Januar"},
        {"de", 1031, u"49", u",", u".", u"€", u"3", u".", u"1", u":", u"1", u"0", u"2", u"Montag", u"Januar"},
        {"de_AT", 3079, u"43", u",", u"\u00A0", u"€", u"2", u".", u"1", u":", u"1", u"0", u"2", u"Montag",
         u"Jänner"},
        {"en_US", 1033, u"1", u".", u",", u"$", u"0", u"/", u"0", u":", u"0", u"6", u"0", u"Monday",
         u"January"},
        {"en_GB", 2057, u"44", u".", u",", u"£", u"0", u"/", u"1", u":", u"1", u"0", u"2", u"Monday",
         u"January"},
        {"fr_FR", 1036, u"33", u",", u"\u00A0", u"€", u"3", u"/", u"1", u":", u"1", u"0", u"2", u"lundi",
         u"janvier"},
        {"sv_SE", 1053, u"46", u",", u"\u00A0", u"kr", u"3", u"-", u"2", u":", u"1", u"0", u"2", u"måndag",
         u"januari"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        posix::PosixLocale locale(row.name);
        EXPECT_EQ(locale.lcid(), row.lcid);
        EXPECT_EQ(locale.item(LocaleItem::country), row.country);
        EXPECT_EQ(locale.item(LocaleItem::decimalMark), row.decimal);
        EXPECT_EQ(locale.item(LocaleItem::thousandsMark), row.thousands);
        EXPECT_EQ(locale.item(LocaleItem::currencySymbol), row.symbol);
        EXPECT_EQ(locale.item(LocaleItem::currencyForm), row.currencyForm);
        EXPECT_EQ(locale.item(LocaleItem::currencyDigits), u"2");
        EXPECT_EQ(locale.item(LocaleItem::dateMark), row.dateMark);
        EXPECT_EQ(locale.item(LocaleItem::dateForm), row.dateForm);
        EXPECT_EQ(locale.item(LocaleItem::timeMark), row.timeMark);
        EXPECT_EQ(locale.item(LocaleItem::timeForm), row.timeForm);
        EXPECT_EQ(locale.item(LocaleItem::firstDayOfWeek), row.firstDay);
        EXPECT_EQ(locale.item(LocaleItem::firstWeekOfYear), row.firstWeek);
        EXPECT_EQ(locale.weekdayName(0), row.monday);
        EXPECT_EQ(locale.monthName(1), row.january);
        EXPECT_EQ(locale.weekdayName(7), u"");
        EXPECT_EQ(locale.monthName(0), u"");
    }
    posix::PosixLocale german("de_DE");
    EXPECT_EQ(german.item(LocaleItem::countryName), u"Deutschland");
    EXPECT_EQ(german.weekdayName(6), u"Sonntag");
    EXPECT_EQ(german.monthName(12), u"Dezember");
    EXPECT_EQ(posix::PosixLocale("xx_YY").lcid(), 4096);
}

MessageBox boxWith(std::vector<int32> answers, int32 defaultAnswer) {
    MessageBox box;
    box.body = u"eins\r\nzwei";
    box.answers = std::move(answers);
    box.defaultAnswer = defaultAnswer;
    return box;
}

int32 answerAt(const MessageBox& box, bool terminal, const std::string& typed,
               std::string* printed = nullptr) {
    std::istringstream in(typed);
    std::ostringstream out;
    const int32 answer = posix::ConsoleUserInterface(in, out, terminal).show(box);
    if (printed) *printed = out.str();
    return answer;
}

TEST(Console, WithoutATerminalTheAnswerLosesNothing) {
    struct Row {
        std::vector<int32> answers;
        int32 defaultAnswer, expected;
    };
    for (const auto& row :
         {Row{{6, 7}, 6, 7}, Row{{6, 7, 2}, 6, 7}, Row{{1, 2}, 1, 2}, Row{{4, 2}, 4, 2}, Row{{1}, 1, 1},
          Row{{3, 4, 5}, 4, 3}, Row{{2, 10, 11}, 10, 2}, Row{{}, 1, 1}, Row{{20, 21}, 21, 21}}) {
        auto box = boxWith(row.answers, row.defaultAnswer);
        box.title = u"Titel";
        box.checkBox = u"Nicht mehr";
        std::string printed;
        EXPECT_EQ(answerAt(box, false, "1\n", &printed), row.expected);
        EXPECT_EQ(printed, "Titel\neins\nzwei\n");
    }
}

TEST(Console, TerminalAsksUntilAnAnswerFits) {
    const auto box = boxWith({6, 7, 2}, 7);
    EXPECT_EQ(answerAt(box, true, "1\n"), 6);
    EXPECT_EQ(answerAt(box, true, "x\n4\n0\n3\n"), 2);
    EXPECT_EQ(answerAt(box, true, "\n"), 7);
    EXPECT_EQ(answerAt(box, true, ""), 7) << "a closed terminal is nobody";
    auto ticked = box;
    ticked.checkBox = u"Nicht mehr zeigen";
    EXPECT_EQ(answerAt(ticked, true, "1\nj\n"), 6 + 2048);
    EXPECT_EQ(answerAt(ticked, true, "1\n\n"), 6);
}

TEST(Console, StatusLinesAreForATerminalAndPrintedOnce) {
    for (const bool terminal : {true, false}) {
        std::istringstream in;
        std::ostringstream out;
        posix::ConsoleUserInterface console(in, out, terminal);
        for (const TextView text : {u"Warte", u"Warte", u"", u"Fertig"}) console.status(text);
        EXPECT_EQ(out.str(), terminal ? "Warte\nFertig\n" : "");
    }
}

TEST(PosixSystem, FoldersFollowTheEnvironment) {
    TempFolder temp;
    auto& system = posixPlatform().system;
    const auto path = [&](const char* entry) { return (temp.path() / entry).string(); };
    const Variable home("HOME", path("heim/").c_str()), config("XDG_CONFIG_HOME", "relativ"),
        tmp("TMPDIR", path("tmp/").c_str());
    EXPECT_EQ(system.tempFolder(), temp.name(u"tmp"));
    EXPECT_EQ(system.folder(FolderId::applicationData, false), u"") << "there is none yet";
    EXPECT_EQ(system.folder(FolderId::applicationData, true), temp.name(u"heim/.config"))
        << "a relative path counts not";
    EXPECT_EQ(system.folder(FolderId::documents, false), temp.name(u"heim"));
    std::ofstream(temp.path() / "heim/.config/user-dirs.dirs")
        << "# XDG_DOCUMENTS_DIR=\"$HOME/Nein\"\nXDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n";
    EXPECT_EQ(system.folder(FolderId::documents, true), temp.name(u"heim/Dokumente"));
    EXPECT_TRUE(fs::is_directory(temp.path() / "heim/Dokumente"));
    EXPECT_EQ(system.folder(FolderId::commonProgramFiles, false), u"/usr/lib");
    EXPECT_EQ(system.folder(static_cast<FolderId>(99), true), u"");
}

TEST(PosixSystem, AccessMasksAskTheRightRights) {
    TempFolder temp;
    auto& system = posixPlatform().system;
    std::ofstream(temp.path() / "frei") << "x";
    std::ofstream(temp.path() / "fest") << "x";
    fs::permissions(temp.path() / "fest", fs::perms::owner_read);
    for (const int32 mask : {1, 2, 4, 64, 70, 0x120089, 0x120116}) {
        EXPECT_TRUE(system.checkAccess(temp.name(), mask)) << mask;
        EXPECT_FALSE(system.checkAccess(temp.name(u"fehlt"), mask)) << mask;
    }
    EXPECT_TRUE(system.checkAccess(temp.name(u"FREI"), 0x120116));
    EXPECT_TRUE(system.checkAccess(temp.name(u"fest"), 0x120089));
    EXPECT_FALSE(system.checkAccess(temp.name(u"fest"), 0x120116));
}

TEST(PosixSystem, TellsTheHostAndTheVolume) {
    auto& system = posixPlatform().system;
    EXPECT_TRUE(system.hostPath().ends_with(u"/test_platform")) << toUtf8(system.hostPath());
    EXPECT_EQ(system.volumeInfo(u"/proc").maxComponent, 255);
    EXPECT_NE(system.volumeInfo(u"").fileSystem, u"");
    EXPECT_NE(system.userName(), u"");
    EXPECT_EQ(posixPlatform().files.driveKind(u"/proc"), DriveKind::unknown);
}

TEST(PosixClock, ElapsedOnlyGrowsAndNowIsLocal) {
    auto& clock = posixPlatform().clock;
    const auto before = clock.elapsed();
    clock.sleep(std::chrono::milliseconds(20));  // more than a tick of the coarse clock
    EXPECT_GE(clock.elapsed() - before, std::chrono::milliseconds(10));
    const Variable zone("TZ", "XXX-5");
    ::tzset();
    const auto east = clock.now();
    {
        const Variable west("TZ", "XXX+5");
        ::tzset();
        EXPECT_NEAR(east.serial() - clock.now().serial(), 10.0 / 24, 0.01);
    }
    ::tzset();
}

}  // namespace
}  // namespace tsRtm::test
