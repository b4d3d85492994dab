// Keys of appointments: made from what is typed, found for a date, told in words.
#include "tsRtm/appointments/keys/TerminKeys.hpp"

#include "tests/calendar/CalendarTest.hpp"

namespace tsRtm::test {
namespace {

using namespace appointments;
using TerminKeys = CalendarTest;

std::vector<Text> keysOf(TextView date) {
    const Text all = dateKeys(date);
    EXPECT_EQ(all.size() % kKeyLength, 0u);
    std::vector<Text> keys;
    for (std::size_t at = 0; at < all.size(); at += kKeyLength) keys.push_back(all.substr(at, kKeyLength));
    return keys;
}

bool has(TextView date, TextView key) {
    const auto keys = keysOf(date);
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

TEST_F(TerminKeys, OfADateAreAllThatAreDueOnIt) {
    EXPECT_EQ(keysOf(u"29.02.2024"), (std::vector<Text>{u"20240229", u"++++0229", u"++++++29", u"++++++30",
                                                        u"++++++31", u"+++++DO5", u"+++++DO+", u"+++++DO9",
                                                        u"++++++++", u"2024++++", u"202402++", u"++++02++"}));
    EXPECT_EQ(dateKeys(u"29.2.24"), dateKeys(u"29022024")) << "a short year is widened";
    EXPECT_EQ(dateKeys(u""), u"");
    for (const auto& [date, lacking] : {std::pair{u"28.02.2023", true},
                                        {u"28.02.2024", false},
                                        {u"30.04.2024", true},
                                        {u"30.05.2024", false},
                                        {u"31.05.2024", true}})
        EXPECT_EQ(has(date, u"++++++31"), lacking) << toUtf8(date);
    for (const auto& [date, last] :
         {std::pair{u"24.06.2024", true}, {u"23.06.2024", false}, {u"17.06.2024", false}})
        EXPECT_EQ(has(date, Text(keysOf(date)[3].substr(0, 7)) + u"9"), last) << toUtf8(date);
}

// What one types says the same day as the day says itself.
TEST_F(TerminKeys, AreMadeFromWhatIsTyped) {
    const std::pair<TextView, TextView> rows[] = {
        {u"", u"++++++++"},
        {u"24.12.2024", u"20241224"},
        {u"1.1.2024", u"20240101"},
        {u"241224", u"20241224"},
        {u"24.12.24", u"20241224"},
        {u"24122024", u"20241224"},
        {u"31.02.2024", u""},
        {u"310224", u""},
        {u"24.12.", u"++++1224"},
        {u"1.2.", u"++++0201"},
        {u"2412", u"++++1224"},
        {u"2913", u""},
        {u"2900", u""},
        {u"0012", u""},
        {u"31", u"++++++31"},
        {u"5.", u"++++++05"},
        {u"32", u""},
        {u"5", u""},
        {u".12", u"++++12++"},
        {u".20", u"++++20++"},  // not tested, never due
        {u".2024", u"2024++++"},
        {u".122024", u"202412++"},
        {u".12.2024", u"202412++"},
        {u".1.2024", u""},
        {u".1a", u""},
        {u".", u""},
        {u"mo", u"+++++MO+"},
        {u"So1", u"+++++SO1"},
        {u"mo.2", u"+++++MO2"},
        {u"MO5", u"+++++MO5"},
        {u"MO6", u"+++++MO9"},
        {u"MO9", u"+++++MO9"},
        {u"MO0", u""},
        {u"OD", u""},
        {u"XX2", u""},
        {u"*2W", u"*T000014"},
        {u"*W2", u"*T000014"},
        {u"*1j", u"*M000012"},
        {u"*T000014", u"*T000014"},
        {u"*14t", u"*T000014"},
        {u"*W", u"*T000000"},
        {u"*0T", u"*T000000"},
        {u"*999999M", u"*M999999"},
        {u"*83334J", u""},
        {u"*1000000T", u""},
        {u"*-2W", u""},
        {u"*2X", u""},
        {u"*", u""},
        {u"Weihnachten", u""},
        {u"1234567", u""},
    };
    for (const auto& [typed, key] : rows) {
        EXPECT_EQ(toUtf8(createKey(typed)), toUtf8(key)) << toUtf8(typed);
    }
    for (const auto typed :
         {u"24.12.2024", u"24.12.", u"24", u".12", u".2024", u".122024", u"DI", u"DI4", u""})
        EXPECT_TRUE(has(u"24.12.2024", createKey(typed))) << toUtf8(typed);
    EXPECT_TRUE(has(u"31.12.2024", createKey(u"DI7")));
}

TEST_F(TerminKeys, HaveAKindAndWords) {
    struct Row {
        TextView key;
        eTerminTypen kind;
        TextView words;
    };
    const Row rows[] = {
        {u"20241224", ttEinzel, u""},
        {u"", ttEinzel, u""},
        {u"++++++++", ttTaeglich, u"jeden Tag"},
        {u"++++++05", ttMonatlich, u"jeden Monat am 5."},
        {u"+++++MO+", ttWoechentlich, u"jeden Montag"},
        {u"+++++SO2", ttMonatlichWoche, u"jeden 2. Sonntag im Monat"},
        {u"+++++FR9", ttMonatlichWoche, u"jeden letzten Freitag im Monat"},
        {u"+++++XX+", ttWoechentlich, u"jeden "},
        {u"+++++W12", ttJaehrlichGanzeWoche, u"jeden 2. "},
        {u"++++0308", ttJaehrlich, u"jedes Jahr am 8. März"},
        {u"++++1308", ttJaehrlich, u"jedes Jahr am 8. "},
        {u"++++03++", ttJaehrlichGanzerMonat, u"jedes Jahr an jedem Tag des Monats März"},
        {u"2024++++", ttGanzesJahr, u"jeden Tag des Jahres 2024"},
        {u"202403++", ttGanzerMonat, u"jeder Tag im März des Jahres 2024"},
        {u"2024+308", ttGanzeWoche, u""},
        {u"2024011+", ttEinzel, u""},
        {u"*T000001", ttTagesAbstand, u"alle 1 Tage"},
        {u"*T001005", ttTagesAbstand, u"alle 5 Tage"},
        {u"*M000012", ttMonatsAbstand, u"alle 12 Monate"},
        {u"*X000012", ttEinzel, u""},
        {u"++++", ttJaehrlichGanzerMonat, u""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(kindOf(row.key), row.kind) << toUtf8(row.key);
        EXPECT_EQ(toUtf8(wordsOf(row.key)), toUtf8(row.words)) << toUtf8(row.key);
    }
}

TEST_F(TerminKeys, ComeRoundFromTheirStart) {
    struct Row {
        TextView key, day, start;
        bool due;
    };
    const Row rows[] = {
        {u"*T000014", u"15.01.2024", u"01.01.2024", true},
        {u"*T000014", u"14.01.2024", u"01.01.2024", false},
        {u"*T000014", u"01.01.2024", u"01.01.2024", true},
        {u"*T000014", u"15.01.2024", u"", false},
        {u"*T000000", u"15.01.2024", u"15.01.2024", false},
        {u"*T00001x", u"15.01.2024", u"15.01.2024", false},
        {u"*M000001", u"29.02.2024", u"29.01.2024", true},
        {u"*M000001", u"30.04.2024", u"31.03.2024", false},
        {u"*M000001", u"31.05.2024", u"31.03.2024", true},
        {u"*M000012", u"29.02.2025", u"29.02.2024", false},  // cut to the 28th
        {u"*M000003", u"01.03.2024", u"01.01.2024", false},
        {u"*J000001", u"01.01.2025", u"01.01.2024", false},
        {u"++++++++", u"01.01.2025", u"01.01.2024", false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(comesRound(row.key, row.day, row.start), row.due)
            << toUtf8(row.key) << ' ' << toUtf8(row.day);
    EXPECT_TRUE(isValid(u"01.01.2024", u"", u""));
    EXPECT_TRUE(isValid(u"01.01.2024", u"01.01.2024", u"01.01.2024"));
    EXPECT_FALSE(isValid(u"01.01.2024", u"02.01.2024", u""));
    EXPECT_FALSE(isValid(u"01.01.2024", u"", u"31.12.2023"));
}

}  // namespace
}  // namespace tsRtm::test
