// tsrtm holidays, easter and workday.
#include "tests/cli/Tool.hpp"

namespace tsRtm::test {
namespace {

using Holidays = Tool;

// Dates of the holidays, apart by a blank.
std::string datesIn(const nlohmann::json& answer) {
    std::string dates;
    for (const auto& day : answer["days"])
        if (day["holiday"]) dates += (dates.empty() ? "" : " ") + day["date"].get<std::string>().substr(5);
    return dates;
}

TEST_F(Holidays, OfAStateAndALaw) {
    for (const auto& [arguments, dates] :
         {std::pair{"2025 --land MV",
                    "01-01 03-08 04-18 04-20 04-21 05-01 05-29 06-08 06-09 10-03 10-31 11-30 12-07 "
                    "12-14 12-21 12-25 12-26"},
          {"2025 --land mecklenburg-vorpommern --law 12.7.2022",
           "01-01 04-18 04-20 04-21 05-01 05-29 06-08 06-09 10-03 10-31 11-30 12-07 12-14 12-21 12-25 "
           "12-26"}})
        EXPECT_EQ(datesIn(json(std::string("holidays ") + arguments)), dates) << arguments;
    const auto all = json("holidays 2026 --all --land 2");
    EXPECT_TRUE(all["land"] == "BAYERN" && all["days"].back()["name"] == "Silvester");
    EXPECT_EQ(all["days"][0], parsed(R"({"date":"2026-01-01","weekdayName":"Donnerstag",
        "name":"Neujahr","holiday":true,"remark":null,"law":null})"));
    shows("holidays 2025 --land Berlin",
          "08.05.2025  Donnerstag  80 Jahre Befreiung        Berlin, Gesetz vom 10.7.2024");
    shows("holidays 2026 --land by", "only in Augsburg");
}

TEST_F(Holidays, TakeTheStoredState) {
    EXPECT_HOLDS(run("holidays 2026").err, "any state counts");
    EXPECT_EQ(run("workday 4.6.2026").out, "05.06.2026 Freitag\n  not 04.06.2026 Donnerstag: Fronleichnam\n");
    ok("options set Bundesland Berlin");
    const auto stored = ok("workday 4.6.2026 --json");
    EXPECT_EQ(stored.err, "");
    EXPECT_EQ(stored.json()["date"], "2026-06-04");
    EXPECT_EQ(json("workday 4.6.2026 --land NRW")["land"], "NRW");
    ok("options set Bundesland Preussen");
    refused("workday 4.6.2026", 1, "no state 'Preussen'; there are BADENW, BAYERN");
}

TEST_F(Holidays, AsACalendarFile) {
    const std::string file = ok("holidays 2025 --land Berlin --ics").out;
    EXPECT_TRUE(file.starts_with("BEGIN:VCALENDAR\r\nVERSION:2.0\r\n"));
    EXPECT_TRUE(file.ends_with("END:VEVENT\r\nEND:VCALENDAR\r\n"));
    EXPECT_HOLDS(file,
                 "\r\nDTSTART;VALUE=DATE:20250508\r\nSUMMARY:80 Jahre Befreiung\r\nCATEGORIES:Feiertag\r\n"
                 "DESCRIPTION:Berlin\\, Gesetz vom 10.7.2024 (GVBl. S. 460)\r\n");
    for (std::size_t at = 0; at < file.size();) {
        const auto end = file.find("\r\n", at);
        ASSERT_NE(end, std::string::npos);
        EXPECT_LE(end - at, 75u);
        at = end + 2;
    }
    const std::string all = ok("holidays 2025 --land MV --all --ics").out;
    EXPECT_HOLDS(all, "\r\n ") << "a long line is folded";
}

TEST_F(Holidays, WorkdaysOnAndBack) {
    for (const auto& [arguments, out] :
         {std::pair{"25.12.2026", "28.12.2026 Montag\n  not 25.12.2026 Freitag: 1. Weihnachtstag\n"},
          {"25.12.2026 -1", "24.12.2026 Donnerstag\n"},
          {"31.12.2026 +1m +1", "01.02.2027 Montag\n"},
          {"23.12.2026 +3 --working", "29.12.2026 Dienstag\n  not 25.12.2026 Freitag: 1. Weihnachtstag\n"},
          {"2026-11-21", "23.11.2026 Montag\n"}})
        EXPECT_EQ(ok(std::string("workday --land NRW ") + arguments).out, out) << arguments;
    refusedEach("workday ", 1,
                "31.12.9999 +1 --land NRW -> the calendar ends | 31.02.2026 --land NRW -> there is no "
                "31.2.2026 | 1.1.2026 -3 --working --land NRW -> forward | 1.1.2026 .. 2.1.2026 -> one date");
    refusedEach("holidays 2026 --land ", 1, "XX -> no state 'XX' | NRW --zone Europe/Bonn -> no time zone");
    refusedEach("holidays ", 2, "100 -> YEAR | 2026 --json --ics -> --ics");
}

// Summer time is that of Germany on every machine.
TEST_F(Holidays, EasterAndTheClock) {
    prints("easter 2024",
           "Easter Sunday    31.03.2024\northodox Easter  05.05.2024\nfirst Advent     01.12.2024\n");
    shows("easter 2026", "14.04.2026  two days late by the library's rule; the churches have 12.04.2026");
    EXPECT_EQ(json("easter 2026")["easter"], "2026-04-05");
    ::setenv("TZ", "America/New_York", 1);
    shows("holidays 2024 --all --land NRW", "31.03.2024  Sonntag              Beginn Sommerzeit");
    shows("holidays 2024 --all --land NRW --zone America/New_York",
          "10.03.2024  Sonntag              Beginn Sommerzeit");
    ::unsetenv("TZ");
}

}  // namespace
}  // namespace tsRtm::test
