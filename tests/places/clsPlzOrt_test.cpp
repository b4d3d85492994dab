// Codes and names of places, settled by the databases and by the person at the desk.
#include "tsRtm/places/clsPlzOrt.hpp"

#include "tests/database/DatabaseFixture.hpp"
#include "tests/support/CrashingFiles.hpp"
#include "tests/support/Raised.hpp"
#include "tests/support/Table.hpp"
#include "tsRtm/database/clsTSRecordSet.hpp"
#include "tsRtm/places/PlaceImport.hpp"

namespace tsRtm::test {
namespace {

constexpr TextView kOrte = u"/daten/Orte", kStrassen = u"/daten/Strassen";

const std::vector<PlaceRow> kRows = {
    {u"Aachen, Stadt", u"05334", u"52062", u"52002"},
    {u"Aachen, Stadt", u"05334", u"52064", u"52003"},
    {u"Aachen, Stadt", u"05334", u"52064", u"52004"},
    {u"Neustadt", u"09373", u"12345", u""},
    {u"Neudorf", u"09374", u"12345", u"12000"},
    {u"Altdorf", u"09375", u"12345", u"12000"},
    {u"Hamburg", u"02000", u"20095", u""},
    {u"Grenzort", u"", u"87491", u""},
    {u"Links", u"05111", u"50000", u""},
    {u"Rechts", u"06111", u"50000", u""},
};

class PlzOrt : public ::testing::Test {
 protected:
    PlzOrt() {
        library.ground.ui.defaultAnswer = 1;
        rtmMain::state().runtimeDataDir = u"/daten";
    }
    PlaceImportResult import(const std::vector<PlaceRow>& rows) {
        placeRegister::createPlaces(rtm, kOrte);
        const auto db = rtm.OpenTSDB(kOrte);
        return db ? importPlaces(*db, rows) : PlaceImportResult{.error = 70};
    }
    // "code place key", or "-".
    Text look(TextView typed, TextView street = {}, bool codesOnly = false) {
        Text code = u"vorher", place, key;
        if (places.PLZOrt(typed, street, code, place, key, codesOnly))
            return code + u" " + place + u" " + key;
        EXPECT_EQ(code + place + key, u"vorher");
        return u"-";
    }
    void choose(int32 line) {
        library.ground.ui.choices.push_back([line](const platform::ChoiceList&) { return line; });
    }
    // What the next list shows, a line a cell row; nothing is chosen.
    void keepList() {
        library.ground.ui.choices.push_back([this](const platform::ChoiceList& list) {
            shown.clear();
            for (int32 line = 1; line <= list.count; ++line) {
                Text row;
                for (const auto& cell : list.cells(line)) row += cell + u" ";
                shown.push_back(row);
            }
            start = list.start;
            return 0;
        });
    }

    MemoryFiles disk;
    CrashingFiles files{disk};
    StartedLibrary library{files};
    clsRtm rtm;
    clsPlzOrt places;
    std::vector<Text> shown;
    int32 start = 0;
};

TEST_F(PlzOrt, OfACode) {
    EXPECT_EQ(look(u"52062"), u"-") << "no databases";
    EXPECT_FALSE(places.OrtsSatzAusGeschl(u"05334"));
    const auto result = import(kRows);
    EXPECT_EQ(result.error, 0);
    EXPECT_EQ((std::vector{result.stored, result.places, result.codes, result.sharedCodes}),
              (std::vector{10, 8, 10, 3}));
    for (const auto& [typed, found] : table<2>(
             u"52062=52062 Aachen 05334; 52003=52003 Aachen 05334; 1234=-; 52O62=-; 00000=-; 99999=-; =-; "
             u"12345=-; 12345 Neust=12345 Neustadt 09373; 12345neudorf am Berg=12345 Neudorf 09374; "
             u"12345 dorf=-",
             u"; "))
        EXPECT_EQ(toUtf8(look(typed)), toUtf8(found)) << toUtf8(typed);
    EXPECT_TOLD("12345 Altdorf 09375|-", look(u"12345", {}, true), look(u"Hamburg", {}, true));  // the first
    keepList();
    look(u"12345 dorf");
    EXPECT_TOLD("12345 Altdorf ,12345 Neudorf ,12345 Neustadt |1", shown, start);
    choose(2);
    EXPECT_EQ(look(u"12000"), u"12000 Neudorf 09374") << "boxes that two places share";
    Text both = u"52062";  // what comes in may be what goes out
    EXPECT_TOLD("yes|Aachen|Aachen|", places.PLZOrt(both, u"", both, both), both, places.OrtsName(u"52062"),
                places.OrtsName(u"12345"));
    for (const auto& [key, count] :
         {std::pair<TextView, int32>{u"05334", 3}, {u"0937", 3}, {u"09374", 1}, {u"04", 0}, {u"", 10}}) {
        const auto set = places.OrtsSatzAusGeschl(key);
        ASSERT_TRUE(set);
        EXPECT_EQ(set->Count(), count) << toUtf8(key);
        for (int32 n = 1; n <= set->Count(); ++n)
            EXPECT_TRUE(set->Record(n)->Fields(fOrteGemeindeSchluessel).starts_with(key));
    }
}

TEST_F(PlzOrt, OfAName) {
    import(kRows);
    Text asked;
    library.ground.ui.choices.push_back([&](const platform::ChoiceList& list) {
        asked = list.caption + u": " + list.cells(list.start).front();
        return list.start;
    });
    EXPECT_TOLD("20095 Hamburg 02000|Ortauswahl: Hamburg", look(u"hAMburg"), asked);
    choose(1);
    keepList();
    EXPECT_EQ(look(u"aachen"), u"-") << "a code has to be chosen";
    EXPECT_TOLD("52062   PF 52002  ,52064   PF 52003 -52004  , (Straßenverzeichnis)   ", shown);
    choose(1);
    choose(2);
    EXPECT_EQ(look(u"aachen"), u"52064 Aachen 05334");
    choose(1);
    choose(3);
    EXPECT_TOLD(" Aachen 05334|Bitte benutzen Sie das Straßenverzeichnis der Post.", look(u"aachen"),
                library.ground.ui.boxes.back().headline);

    ASSERT_TRUE(placeRegister::createStreets(rtm, kStrassen));
    {
        const auto streets = rtm.OpenTSDB(kStrassen), orte = rtm.OpenTSDB(kOrte);
        const auto result = importStreets(*streets, *orte,
                                          {{u"Aachen, Stadt", u"05334", u"Domhof", u"52062"},
                                           {u"Aachen, Stadt", u"05334", u"Theaterplatz", u"52064"},
                                           {u"Hamburg", u"02000", u"Jungfernstieg", u"20095"},
                                           {u"Nirgends", u"", u"Weg", u"11111"}});
        EXPECT_EQ((std::vector{result.stored, result.unknown, result.error}), (std::vector{3, 1, 0}));
    }
    choose(1);
    library.ground.ui.choices.push_back([](const platform::ChoiceList& list) { return list.start; });
    EXPECT_EQ(look(u"Aachen", u"Thea"), u"52064 Aachen 05334");
}

TEST_F(PlzOrt, StatesByMunicipality) {
    import(kRows);
    // All places of 12345 lie in one; those of 50000 in two, and nobody answers.
    EXPECT_TOLD("Hamburg|Bayern||", places.Bundesland(u"20095"), places.Bundesland(u"12345"),
                places.Bundesland(u"87491"), places.Bundesland(u"50000"));
    choose(1);
    EXPECT_TOLD("Nordrhein-Westfalen|Thüringen", places.Bundesland(u"50000"), clsPlzOrt::BundeslandName(16));
    EXPECT_EQ(raised([] { clsPlzOrt::BundeslandName(17); }),
              "9|clsPlzOrt.Bundeslandname|Bundesland 17 gibt es nicht");
}

// One number a code in a shorter file, two in a longer one; numbers that lead nowhere are unknown codes.
TEST_F(PlzOrt, ReadsBothFormsOfTheIndex) {
    import(kRows);
    constexpr std::size_t n = 70001;
    using Row = std::tuple<std::size_t, std::size_t, int32, bool>;
    for (const auto& [size, offset, number, found] :
         {Row{300000, n * 2 - 2, 3, true}, Row{300001, n * 4 - 4, 3, true},
          Row{400000, n * 4 - 2, 3, true},  // the second number
          Row{400000, n * 4 - 4, 11, false}, Row{400000, n * 4 - 4, 32767, false},
          Row{400000, n * 4 - 4, -32768, false}, Row{10, 2, 3, false}}) {  // which ends before it
        std::string bytes(size, '\0');
        bytes[offset] = static_cast<char>(number & 0xFF);
        bytes[offset + 1] = static_cast<char>(number >> 8 & 0xFF);
        disk.put(u"/daten/Orte.DBD/Index.tsd", bytes);
        EXPECT_EQ(look(u"70001") != u"-", found) << size << ' ' << number;
    }
    EXPECT_FALSE(failed(disk.remove(u"/daten/Orte.DBD/Index.tsd")));
    EXPECT_EQ(look(u"52062"), u"-");
}

TEST_F(PlzOrt, OfADatabaseThatIsNone) {
    import(kRows);
    const Bytes index = disk.dump(u"/daten/Orte.DBD/Index.tsd");
    for (const auto& entry : {u"Control.tsd", u"Data.tsd", u"I002"}) {
        const auto before = disk.snapshot();
        const Text name = Text(kOrte) + u".DBD/" + entry;
        disk.put(name, disk.dump(name).substr(0, 7));
        look(u"52062");
        look(u"12345 Neudorf");
        look(u"Hamburg");
        places.Bundesland(u"12345");
        disk.restore(before);
    }
    EXPECT_EQ(look(u"52062"), u"52062 Aachen 05334");
    // With fewer fields, and the index of another one.
    const Text other = u"/andere/Orte";
    rtmMain::state().runtimeDataDir = u"/andere";
    ASSERT_TRUE(rtm.DBCreateExt(DBAnsi, other, {}, fieldsOf({{u"X", tsAlles, 3}}), 10, u"  1  0  0"));
    disk.put(other + u".DBD/Index.tsd", index);
    ASSERT_TRUE(addRecord(*rtm.OpenTSDB(other), {{1, u"abc"}}));
    for (const TextView typed : {u"52062", u"12345", u"12345 Neudorf", u"Hamburg"})
        EXPECT_EQ(look(typed), u"-") << toUtf8(typed);
    EXPECT_EQ(places.Bundesland(u"12345") + places.OrtsName(u"52062"), u"");
    EXPECT_FALSE(places.OrtsSatzAusGeschl(u"05"));
}

// The index of codes never leads into other places than those it was made with.
TEST_F(PlzOrt, SurvivesADeathAtEveryChangeOfAnImport) {
    import(kRows);
    const auto prepared = disk.snapshot();
    const std::vector<PlaceRow> other = {{u"Zwei", u"05000", u"20095", u""},
                                         {u"Eins", u"05000", u"52062", u""}};
    int64 n = 1;
    for (bool died = true; died; ++n) {
        disk.restore(prepared);
        files.as(static_cast<int32>(n));
        died = files.diesAt(n, CrashingFiles::LastWrite::none, CrashingFiles::Manner::silently,
                            [&] { import(other); });
        files.as(0);
        // A reader may have to wait for somebody who may finish what was committed; he never sees a mixture.
        const auto seen = [&] { return places.OrtsName(u"20095") + u" " + places.OrtsName(u"52062"); };
        const Text before = seen();
        EXPECT_TRUE(before == u"Hamburg Aachen" || before == u"Zwei Eins" || before == u" ")
            << n << toUtf8(before);
        {
            const auto db = rtm.OpenTSDB(kOrte);
            ASSERT_TRUE(db && consistent(*db)) << n;
        }
        const Text after = seen();
        EXPECT_TRUE((after == u"Hamburg Aachen" && died) || after == u"Zwei Eins") << n << toUtf8(after);
    }
    EXPECT_GT(n, 20);
    places.Offenhalten(true);
    EXPECT_EQ(places.OrtsName(u"52062"), u"Eins");
    EXPECT_EQ(import(kRows).error, 70) << "somebody has it open";
    places.Offenhalten(false);
    EXPECT_EQ(import(kRows).error, 0);
}

}  // namespace
}  // namespace tsRtm::test
