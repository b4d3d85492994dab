// Locale, console, folders, rights, installation, random bytes and summer times of this machine.
#include <stdlib.h>

#include <algorithm>
#include <fstream>
#include <optional>
#include <sstream>

#include "tests/support/TempFolder.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/platform/posix/ConsoleUserInterface.hpp"
#include "tsRtm/platform/posix/PosixFolders.hpp"
#include "tsRtm/platform/posix/PosixInstallation.hpp"
#include "tsRtm/platform/posix/PosixLocale.hpp"
#include "tsRtm/platform/posix/PosixPlatform.hpp"
#include "tsRtm/platform/posix/PosixRandom.hpp"
#include "tsRtm/platform/posix/PosixTimeZones.hpp"

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
    using Row = std::tuple<const char*, const char*, std::string>;
    for (const auto& [all, lang, locale] :
         {Row{nullptr, nullptr, "de_DE"}, Row{"", "C.UTF-8", "de_DE"}, Row{"POSIX", "fr_FR", "de_DE"},
          Row{nullptr, "fr_FR.UTF-8", "fr_FR"}, Row{"de_AT@euro", "fr_FR", "de_AT"}}) {
        const Variable forAll("LC_ALL", all), forTexts("LANG", lang);
        EXPECT_EQ(posix::environmentLocale(), locale);
    }
}

// The home locale is a table of our own; ICU reads the same locale under the name with a hyphen.
TEST(PosixLocale, TheHomeLocaleAgreesWithIcu) {
    posix::PosixLocale own("de_DE");
    posix::PosixLocale icu("de-DE");
    EXPECT_EQ(own.lcid(), icu.lcid());
    for (const int32 number : {4, 5, 6, 14, 15, 20, 25, 27, 29, 30, 33, 35, 4105, 4108, 4109}) {
        const auto item = static_cast<LocaleItem>(number);
        EXPECT_EQ(own.item(item), icu.item(item)) << number;
    }
    for (int32 n = 0; n < 13; ++n)
        EXPECT_EQ(own.weekdayName(n) + own.monthName(n), icu.weekdayName(n) + icu.monthName(n));
}

TEST(PosixLocale, ItemsFollowTheLocale) {
    using enum LocaleItem;
    constexpr LocaleItem kItems[] = {country,      decimalMark,    thousandsMark,   currencySymbol,
                                     currencyForm, dateMark,       dateForm,        timeMark,
                                     timeForm,     firstDayOfWeek, firstWeekOfYear, currencyDigits};
    for (const auto& [name, told] : {std::pair{"de_DE", "1031|49,,,.,€,3,.,1,:,1,0,2,2|Montag|Januar|"},
                                     {"de_AT", "3079|43,,,\u00A0,€,2,.,1,:,1,0,2,2|Montag|Jänner|"},
                                     {"en_US", "1033|1,.,,,$,0,/,0,:,0,6,0,2|Monday|January|"},
                                     {"fr_FR", "1036|33,,,\u00A0,€,3,/,1,:,1,0,2,2|lundi|janvier|"},
                                     {"sv_SE", "1053|46,,,\u00A0,kr,3,-,2,:,1,0,2,2|måndag|januari|"}}) {
        posix::PosixLocale locale(name);
        std::vector<Text> items;
        for (const auto item : kItems) items.push_back(locale.item(item));
        EXPECT_TOLD(told, locale.lcid(), items, locale.weekdayName(0), locale.monthName(1),
                    locale.weekdayName(7) + locale.monthName(0));
    }
    EXPECT_EQ(posix::PosixLocale("de_DE").item(countryName), u"Deutschland");
    EXPECT_EQ(posix::PosixLocale("xx_YY").lcid(), 4096);
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
    EXPECT_EQ(system.folder(FolderId::documents, false), temp.name(u"heim")) << "the one named is not there";
    fs::create_directory(temp.path() / "heim/Dokumente");
    EXPECT_EQ(system.folder(FolderId::documents, false), temp.name(u"heim/Dokumente"));
    EXPECT_EQ(toUtf8(system.folder(FolderId::commonProgramFiles, false)), posix::installationFolder());
    EXPECT_EQ(system.folder(static_cast<FolderId>(99), true), u"");
}

// A desktop puts a folder of its own in front; the machine has one store for all sessions.
TEST(PosixSystem, MachineFolderIsTheCommonOneOfTheListedFolders) {
    for (const auto& [listed, folder] :
         {std::pair{"", "/etc/xdg"}, std::pair{"/etc/xdg/desktop:/etc/xdg/", "/etc/xdg"},
          std::pair{"/etc/xdg:/nix/etc", "/etc/xdg"}, std::pair{"/a:relativ:/b/", "/b"},
          std::pair{":relativ", "/etc/xdg"}}) {
        const Variable folders("XDG_CONFIG_DIRS", listed);
        EXPECT_EQ(posix::machineConfigFolder(), folder) << listed;
    }
}

TEST(PosixSystem, AccessMasksAskTheRightRights) {
    TempFolder temp;
    auto& user = posixPlatform().user;
    std::ofstream(temp.path() / "frei") << "x";
    std::ofstream(temp.path() / "fest") << "x";
    fs::permissions(temp.path() / "fest", fs::perms::owner_read);
    for (const int32 mask : {1, 2, 4, 64, 70, 0x120089, 0x120116}) {
        EXPECT_TRUE(user.checkAccess(temp.name(), mask)) << mask;
        EXPECT_FALSE(user.checkAccess(temp.name(u"fehlt"), mask)) << mask;
    }
    EXPECT_TRUE(user.checkAccess(temp.name(u"FREI"), 0x120116));
    EXPECT_TRUE(user.checkAccess(temp.name(u"fest"), 0x120089));
    EXPECT_FALSE(user.checkAccess(temp.name(u"fest"), 0x120116));
}

TEST(PosixSystem, TellsTheHostAndTheVolume) {
    auto& system = posixPlatform().system;
    EXPECT_TRUE(system.hostPath().ends_with(u"/test_platform")) << toUtf8(system.hostPath());
    EXPECT_EQ(system.volumeInfo(u"/proc").maxComponent, 255);
    EXPECT_NE(system.volumeInfo(u"").fileSystem, u"");
    EXPECT_NE(posixPlatform().user.userName(), u"");
    EXPECT_EQ(posixPlatform().files.driveKind(u"/proc"), DriveKind::unknown);
}

TEST(PosixNotices, ALocaleOfAnotherNameIsToldOnceWhileEventsAreHandled) {
    const Variable all("LC_ALL", "de_DE");
    posix::PosixLocale locale(posix::environmentLocale());
    posix::PosixNotices notices(locale);
    std::istringstream in;
    std::ostringstream out;
    posix::ConsoleUserInterface console(in, out, false, &notices);
    EXPECT_EQ(console.hearsNotices(), notices.hears());
    EXPECT_FALSE(posix::ConsoleUserInterface(in, out, false).hearsNotices()) << "where nothing is heard";
    std::string told;
    console.onNotice = [&](Notice notice, int32 parameter) {
        told += std::to_string(static_cast<int>(notice)) + ":" + std::to_string(parameter) + " " +
                toUtf8(locale.monthName(1));
    };
    console.processEvents();
    EXPECT_EQ(told, "");
    const Variable other("LC_ALL", "fr_FR");
    console.processEvents();
    console.processEvents();
    EXPECT_EQ(told, "1:0 janvier");
    console.onNotice = nullptr;
    EXPECT_NO_THROW(console.processEvents());
}

TEST(PosixClock, ElapsedOnlyGrowsAndNowIsLocal) {
    auto& clock = posixPlatform().clock;
    const auto before = clock.elapsed();
    while (clock.elapsed() == before) clock.sleep({});  // until it ticks
    EXPECT_GT(clock.elapsed(), before);
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

TEST(PosixInstallation, LiesBesideTheCodeOrInTheLibraryFolderOfIt) {
    const TempFolder temp;
    const auto root = fs::canonical(temp.path());
    for (const char* folder :
         {"tree/bin", "tree/lib/Tessarol", "tree/lib/x86_64-linux-gnu/Tessarol", "other"})
        fs::create_directories(root / folder);
    const auto found = [&](const char* code) {
        return posix::installationFolderFrom((root / code).string());
    };
    EXPECT_EQ(found("tree/lib"), (root / "tree/lib").string()) << "a shared library";
    const auto ofProgram = fs::path(found("tree/bin"));
    EXPECT_EQ(ofProgram.lexically_relative(root / "tree").begin()->string(), "lib") << "a program";
    const auto none = found("other");
    EXPECT_EQ(none, found("no such folder"));
    EXPECT_HOLDS(none, "/lib");
    EXPECT_TRUE(fs::is_regular_file(fs::path(posix::installationFolder()) / "Tessarol" / "KeyTS.dat"))
        << "the build tree is an installation, too";
}

TEST(PosixRandom, FillsEveryByte) {
    posix::PosixRandom random;
    ASSERT_EQ(random.check(), SystemError::none);
    // More than one call of the kernel gives; 256 equal bytes in a row come in no lifetime.
    std::vector<std::byte> bytes(1 << 16);
    ASSERT_EQ(random.fill(bytes), SystemError::none);
    for (std::size_t at = 0; at < bytes.size(); at += 256)
        EXPECT_FALSE(std::all_of(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                                 bytes.begin() + static_cast<std::ptrdiff_t>(at) + 256,
                                 [&](std::byte b) { return b == bytes[at]; }));
    EXPECT_EQ(random.fill({}), SystemError::none);
}

std::string shown(const std::optional<ZoneYear>& year) {
    if (!year) return "none";
    std::ostringstream out;
    out << year->bias << ' ' << year->standardBias << ' ' << year->daylightBias;
    for (const auto& rule : {year->daylight, year->standard})
        out << ' ' << rule.month << '/' << rule.dayOfWeek << '/' << rule.occurrence;
    return out.str();
}

TEST(PosixTimeZones, YearsHaveTheirOwnRulesOrThoseOfToday) {
    posix::PosixTimeZones zones;
    // Years without a summer time of their own: none at all, two hours ahead for a while, or not back.
    for (const int32 year : {2024, 9999, 1979, 1954, 1947, 1945, 1940, 1892, 1, 0})
        EXPECT_EQ(shown(zones.year(u"Europe/Berlin", year)), "-60 0 -60 3/0/5 10/0/5") << year;
    const std::tuple<TextView, int32, std::string> rows[] = {
        {u"Europe/Berlin", 1995, "-60 0 -60 3/0/5 9/0/5"},
        {u"Europe/Berlin", 1980, "-60 0 -60 4/0/1 9/0/5"},
        {u"Europe/Berlin", 1943, "-60 0 -60 3/1/5 10/1/1"},
        {u"Europe/Berlin", 1916, "-60 0 -60 4/0/5 10/0/1"},
        {u"Europe/London", 2024, "0 0 -60 3/0/5 10/0/5"},
        {u"America/New_York", 2024, "300 0 -60 3/0/2 11/0/1"},
        {u"Australia/Sydney", 2024, "-600 0 -60 10/0/1 4/0/1"},
        {u"Asia/Kolkata", 2024, "-330 0 0 0/0/0 0/0/0"},
        {u"Europe/Moscow", 2005, "-180 0 -60 3/0/5 10/0/5"},
        {u"Europe/Moscow", 2024, "-180 0 0 0/0/0 0/0/0"},
        {u"UTC", 2024, "0 0 0 0/0/0 0/0/0"},
        {u"Europe/Bonn", 2024, "none"}};
    for (const auto& [zone, year, rules] : rows)
        EXPECT_EQ(shown(zones.year(zone, year)), rules) << toUtf8(zone) << ' ' << year;
}

TEST(PosixTimeZones, TheMachinesZoneIsThatOfTheMoment) {
    for (const auto& [name, bias] :
         {std::pair{"Europe/Berlin", -60}, {"UTC", 0}, {"America/New_York", 300}}) {
        const Variable zone("TZ", name);
        EXPECT_EQ(posix::PosixTimeZones().year(u"", 2024)->bias, bias) << name;
    }
    ::tzset();
}

}  // namespace
}  // namespace tsRtm::test
