// Banks by IBAN, places and appointments on the command line.
#include "tests/cli/Tool.hpp"

namespace tsRtm::test {
namespace {

using Places = Tool;

TEST_F(Places, BanksByIbanAndTheirRegister) {
    ok("banks import '" TSRTM_TEST_DATA "/banks-sample.txt' Banken");
    const auto code =
        ok("banks find 22 --limit 1 --json").json()["records"][0]["fields"]["BLZ"].get<std::string>();
    const auto made = ok("banks iban " + code + " 0532013").out;
    EXPECT_NE(made.find(code + "  "), std::string::npos) << made;
    const std::string iban = made.substr(0, made.find('\n'));
    EXPECT_EQ(ok("banks iban '" + iban + "'").out, made);
    refused("banks iban 99999999 1", 1, "no bank 99999999");
    refused("banks iban 123 1", 1, "eight digits");

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
    EXPECT_EQ(
        ok("places import places.csv").out,
        "imported 4 codes, 1 of them shared, of 4 places\nrejected 1 rows: see places.csv.rejects.csv\n");
    EXPECT_EQ(ok("plz 52062").out, "52062  Aachen  Nordrhein-Westfalen\n");
    EXPECT_EQ(ok("plz aach --json").json()["places"].size(), 2u);
    EXPECT_EQ(ok("plz 12345 --json").json()["places"].size(), 2u);
    refused("plz 99999", 1, "no place");
    refused("plz 1 --in nirgends", 1, "tsrtm places import");
    refused("db pack Orte", 1, "Index.tsd");
    write("more.csv", "country_code,zipcode,place,community_code\nDE,52062,Neu,05334\n");
    write("streets.csv", "place,community_code,street,zipcode\nNeu,05334,Weg,52062\nAlt,1,Weg,52062\n");
    const auto again = ok("places import more.csv --streets streets.csv").out;
    EXPECT_NE(again.find("imported 1 streets; left out 1"), std::string::npos) << again;
    EXPECT_EQ(ok("plz 52062").out, "52062  Neu  Nordrhein-Westfalen\n");
    refused("plz 52064", 1, "no place");
}

TEST_F(Places, AppointmentsThereAndBack) {
    refused("termine day T", 1, "termine create");
    ok("termine create T");
    ok("termine add T 24.12.2026 --time 18:00 --duration 02:00 --text Bescherung");
    ok("termine add T MO2 --time 10:00 --text Runde --from 01.01.2026");
    ok("termine add T '*2W' --text Zahltag --from 02.01.2026");
    refused("termine add T '*2W' --text x", 1, "--from");
    refused("termine add T 31.02.2026 --text x", 1, "no date");
    EXPECT_EQ(ok("termine day T 24.12.2026").out, "24.12.2026 Donnerstag\n  18:00-20:00  Bescherung\n");
    const auto week = ok("termine week T 14.12.2026 --json").json()["days"];
    ASSERT_EQ(week.size(), 7u);
    EXPECT_EQ(week[0]["appointments"][0]["text"], "Runde");
    EXPECT_EQ(ok("termine list T 01.01.2026 31.12.2026 --json").json()["days"].size(), 26u + 12u + 1u);
    EXPECT_NE(ok("termine what MO2 --from 01.12.2026").out.find("+++++MO2"), std::string::npos);

    ok("termine export T t.ics --from 01.01.2026");
    const std::string ics = read("t.ics");
    EXPECT_NE(ics.find("RRULE:FREQ=MONTHLY;BYDAY=2MO\r\n"), std::string::npos) << ics;
    EXPECT_NE(ics.find("DTSTART:20261224T180000\r\nDURATION:PT120M\r\n"), std::string::npos) << ics;
    ok("termine create U");
    EXPECT_EQ(ok("termine import U t.ics").out, "added 3 appointments\n");
    EXPECT_EQ(ok("termine import U t.ics").out, "added 0 appointments; 3 were there\n");
    EXPECT_EQ(ok("termine list T 01.01.2026 31.12.2026").out, ok("termine list U 01.01.2026 31.12.2026").out);
    write("odd.ics",
          "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nDTSTART:20260101T100000Z\r\nSUMMARY:UTC\r\nEND:VEVENT\r\n"
          "BEGIN:VEVENT\r\nDTSTART;VALUE=DATE:20260105\r\nDTEND;VALUE=DATE:20260108\r\nSUMMARY:drei\r\n  "
          "Tage\r\n"
          "BEGIN:VALARM\r\nDURATION:PT1H\r\nEND:VALARM\r\nEND:VEVENT\r\n"
          "BEGIN:VEVENT\r\nDTSTART:20260101T100000\r\nRRULE:FREQ=HOURLY\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
    const auto odd = ok("termine import U odd.ics");
    EXPECT_EQ(odd.out, "added 1 appointments; left out 2\n");
    EXPECT_NE(odd.err.find("UTC"), std::string::npos);
    EXPECT_EQ(ok("termine day U 07.01.2026").out,
              "07.01.2026 Mittwoch\n               drei Tage (jeden Tag)\n");
    write("none.ics", "hello");
    refused("termine import U none.ics", 1, "no iCalendar");
}

}  // namespace
}  // namespace tsRtm::test
