// Banks by IBAN, places and appointments on the command line.
#include "tests/cli/Tool.hpp"

namespace tsRtm::test {
namespace {

using Places = Tool;

TEST_F(Places, BanksByIbanAndTheirRegister) {
    ok("banks import '" TSRTM_TEST_DATA "/banks-sample.txt' Banken");
    const auto code = json("banks find 22 --limit 1")["records"][0]["fields"]["BLZ"].get<std::string>();
    const auto made = ok("banks iban " + code + " 0532013").out;
    EXPECT_HOLDS(made, code + "  ");
    const std::string iban = made.substr(0, made.find('\n'));
    EXPECT_EQ(ok("banks iban '" + iban + "'").out, made);
    refusedEach("banks iban ", 1, "99999999 1 -> no bank 99999999 | 123 1 -> eight digits");

    std::string plain = iban;
    std::erase(plain, ' ');
    EXPECT_FALSE(
        ok("check iban " + plain + " --banks Banken --json").json()["bank"].get<std::string>().empty());
    EXPECT_EQ(run("check blz 89999999 --banks Banken --error").status, 4);
    refused("check blz 89999999 --banks Nirgends", 1, "no bank register");

    ok("banks import '" TSRTM_TEST_DATA "/banks-sample.txt' Banken --replace");
}

TEST_F(Places, PlacesFromATable) {
    write("places.csv",
          "country_code,zipcode,place,community_code\n"
          "DE,52062,Aachen,05334\nDE,52064,Aachen,05334\nDE,20095,Hamburg,02000\nAT,1010,Wien,9\n"
          "DE,1234,Kurz,05\nDE,12345,Neustadt,09373\nDE,12345,Altstadt,09373\n");
    prints("places import places.csv",
           "imported 4 codes, 1 of them shared, of 4 places\nrejected 1 row: see places.csv.rejects.csv\n");
    prints("plz 52062", "52062  Aachen  Nordrhein-Westfalen\n");
    EXPECT_EQ(json("plz aach")["places"].size(), 2u);
    EXPECT_EQ(json("plz 12345")["places"].size(), 2u);
    refusedEach("plz ", 1, "99999 -> no place | 1 --in nirgends -> tsrtm places import");
    refused("db pack Orte", 1, "Index.tsd");
    write("more.csv", "country_code,zipcode,place,community_code\nDE,52062,Neu,05334\n");
    write("streets.csv", "place,community_code,street,zipcode\nNeu,05334,Weg,52062\nAlt,1,Weg,52062\n");
    const auto again = ok("places import more.csv --streets streets.csv").out;
    EXPECT_HOLDS(again, "imported 1 streets; left out 1");
    prints("plz 52062", "52062  Neu  Nordrhein-Westfalen\n");
    refused("plz 52064", 1, "no place");
}

TEST_F(Places, AppointmentsThereAndBack) {
    refused("termine day T", 1, "termine create");
    ok("termine create T");
    ok("termine add T 24.12.2026 --time 18:00 --duration 02:00 --text Bescherung");
    ok("termine add T MO2 --time 10:00 --text Runde --from 01.01.2026");
    ok("termine add T '*2W' --text Zahltag --from 02.01.2026");
    refusedEach("termine add T --text x ", 1, "'*2W' -> --from | 31.02.2026 -> no date");
    prints("termine day T 24.12.2026", "24.12.2026 Donnerstag\n  18:00-20:00  Bescherung\n");
    const auto week = json("termine week T 14.12.2026")["days"];
    ASSERT_EQ(week.size(), 7u);
    EXPECT_EQ(week[0]["appointments"][0]["text"], "Runde");
    EXPECT_EQ(json("termine list T 01.01.2026 31.12.2026")["days"].size(), 26u + 12u + 1u);
    shows("termine what MO2 --from 01.12.2026", "+++++MO2");

    ok("termine export T t.ics --from 01.01.2026");
    const std::string ics = read("t.ics");
    EXPECT_HOLDS(ics, "RRULE:FREQ=MONTHLY;BYDAY=2MO\r\n", "DTSTART:20261224T180000\r\nDURATION:PT120M\r\n");
    ok("termine create U");
    prints("termine import U t.ics", "added 3 appointments\n");
    prints("termine import U t.ics", "added 0 appointments; 3 were there\n");
    EXPECT_EQ(ok("termine list T 01.01.2026 31.12.2026").out, ok("termine list U 01.01.2026 31.12.2026").out);
    write("odd.ics",
          "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nDTSTART;TZID=Nirgends:20260101T100000\r\nEND:VEVENT\r\n"
          "BEGIN:VEVENT\r\nDTSTART;VALUE=DATE:20260105\r\nDTEND;VALUE=DATE:20260108\r\nSUMMARY:drei\r\n  "
          "Tage\r\n"
          "BEGIN:VALARM\r\nDURATION:PT1H\r\nEND:VALARM\r\nEND:VEVENT\r\n"
          "BEGIN:VEVENT\r\nDTSTART:20260101T100000\r\nRRULE:FREQ=HOURLY\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
    const auto odd = ok("termine import U odd.ics");
    EXPECT_EQ(odd.out, "added 1 appointments; left out 2\n");
    EXPECT_HOLDS(odd.err, "'Nirgends'");
    prints("termine day U 07.01.2026", "07.01.2026 Mittwoch\n               drei Tage (jeden Tag)\n");
    write("none.ics", "hello");
    refused("termine import U none.ics", 1, "no iCalendar");
}

// Of other zones, and series with exceptions.
TEST_F(Places, AppointmentsOfOthers) {
    const auto event = [](const std::string& lines) {
        std::string out = "BEGIN:VEVENT\r\n";
        for (const char c : lines) out += c == '|' ? std::string("\r\n") : std::string(1, c);
        return out + "\r\nEND:VEVENT\r\n";
    };
    write(
        "others.ics",
        "BEGIN:VCALENDAR\r\nBEGIN:VTIMEZONE\r\nTZID:Ost\r\n"
        "BEGIN:DAYLIGHT\r\nDTSTART:20070311T020000\r\nRRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=2SU\r\n"
        "TZOFFSETFROM:-0500\r\nTZOFFSETTO:-0400\r\nEND:DAYLIGHT\r\n"
        "BEGIN:STANDARD\r\nDTSTART:20071104T020000\r\nRRULE:FREQ=YEARLY;BYMONTH=11;BYDAY=1SU\r\n"
        "TZOFFSETFROM:-0400\r\nTZOFFSETTO:-0500\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n" +
            event("DTSTART;TZID=Ost:20260302T100000|RRULE:FREQ=WEEKLY;COUNT=6|SUMMARY:Ost|"
                  "EXDATE;TZID=Ost:20260316T100000") +
            event("DTSTART:20260701T223000Z|DTEND:20260702T000000Z|SUMMARY:Nacht") +
            event("DTSTART;TZID=Europe/London:20260105T090000|RRULE:FREQ=WEEKLY|SUMMARY:London|"
                  "EXDATE:20260105T090000Z,20260112T090000Z") +
            event("DTSTART:20260105T230000Z|RRULE:FREQ=DAILY;UNTIL=20260107T225959Z|SUMMARY:spaet") +
            event(
                "UID:a|DTSTART:20260106T100000|RRULE:FREQ=WEEKLY;COUNT=3|SUMMARY:Rat|RDATE:20260108T120000") +
            event("UID:a|RECURRENCE-ID:20260113T100000|DTSTART:20260114T140000|SUMMARY:Rat verlegt") +
            event("UID:a|RECURRENCE-ID:20260120T100000|STATUS:CANCELLED") +
            event("DTSTART:20260105T090000Z|RRULE:FREQ=WEEKLY|SUMMARY:ohne Ende") + "END:VCALENDAR\r\n");
    ok("termine create V");
    const auto read = ok("termine import V others.ics");
    EXPECT_EQ(read.out, "added 10 appointments; left out 1\n") << read.err;
    EXPECT_HOLDS(read.err, "'ohne Ende': its clocks");
    prints("termine import V others.ics", "added 0 appointments; 10 were there; left out 1\n");
    std::string found;
    const auto days = json("termine list V 01.01.2026 31.07.2026")["days"];
    for (const auto& day : days)
        for (const auto& one : day["appointments"])
            if (one["text"] != "London" || found.find("London") == std::string::npos)
                found += day["date"].get<std::string>().substr(0, 10) + " " + one["from"].get<std::string>() +
                         " " + one["text"].get<std::string>() + "\n";
    EXPECT_EQ(found,
              "2026-01-06 00:00 spaet\n2026-01-06 10:00 Rat\n2026-01-07 00:00 spaet\n2026-01-08 12:00 Rat\n"
              "2026-01-14 14:00 Rat verlegt\n2026-01-19 10:00 London\n2026-03-02 16:00 Ost\n"
              "2026-03-09 15:00 Ost\n2026-03-23 15:00 Ost\n2026-03-30 16:00 Ost\n2026-04-06 16:00 Ost\n"
              "2026-07-02 00:30 Nacht\n");
}

}  // namespace
}  // namespace tsRtm::test
