// Calendars on a real database: what is due, what is told, and what others do meanwhile.
#include "tsRtm/appointments/clsTerminkalender.hpp"

#include <set>

#include "tests/database/DatabaseFixture.hpp"
#include "tests/support/CrashingFiles.hpp"
#include "tests/support/Table.hpp"
#include "tsRtm/appointments/keys/DueRule.hpp"
#include "tsRtm/database/clsTSRecordSet.hpp"

namespace tsRtm::test {
namespace {

constexpr TextView kStore = u"/daten/Termine";

struct Workplace {
    explicit Workplace(platform::FileSystem& files) : library(ground, files) { ground.ui.defaultAnswer = 1; }
    std::shared_ptr<clsTerminkalender> open() {
        auto calendar = std::make_shared<clsTerminkalender>();
        EXPECT_TRUE(calendar->Init(kStore));
        return calendar;
    }
    TestGround ground;
    StartedLibrary library;
};

std::shared_ptr<clsTermin> add(clsTerminkalender& calendar, TextView key, TextView subject,
                               TextView time = {}, TextView from = {}, TextView to = {}) {
    const auto termin = calendar.Add(key, u"", time, u"01:00", subject, from, to);
    EXPECT_TRUE(termin && termin->Update());
    return termin;
}

std::string subjects(const std::shared_ptr<clsTermine>& list) {
    std::string out;
    for (int32 i = 1; list && i <= list->Count(); ++i)
        out += (i > 1 ? " " : "") + toUtf8(list->Item(i)->Betreff());
    return out;
}

class Kalender : public ::testing::Test {
 protected:
    // What another process does at the store.
    template <class Work>
    void others(Work work) {
        files.as(2);
        {
            Workplace there(files);
            work(*there.open());
        }
        files.as(0);
        here.library.restart();
    }

    MemoryFiles disk;
    CrashingFiles files{disk};
    Workplace here{files};
};

TEST_F(Kalender, MakesItsStoreOrTakesOver) {
    auto calendar = std::make_shared<clsTerminkalender>();
    EXPECT_FALSE(calendar->Init(kStore, nullptr, true, false));
    EXPECT_TRUE(!calendar->Termine() && !calendar->Add(u"20240101", u"", u"", u"", u""));
    int32 made = 0, bound = 0;
    const auto created = calendar->Created.connect([&] { ++made; });
    const auto changed = calendar->DBChange.connect([&] { ++bound; });
    EXPECT_TOLD("yes|yes|1|2", calendar->Init(kStore), calendar->Init(kStore), made, bound);
    EXPECT_EQ(calendar->FeldNummern().nummern,
              (std::array<int32, 13>{0, 2, 8, 9, 1, 4, 0, 6, 0, 0, 5, 3, 7}));
    EXPECT_EQ(calendar->DB()->MaxData(), 999999999);

    clsRtm rtm;
    ASSERT_TRUE(rtm.DBCreateExt(DBAnsi, u"/daten/Fremd", {}, addressFields(), 100, kAddressIndexes));
    EXPECT_FALSE(calendar->Init(u"/daten/Fremd")) << "no field for keys";
    EXPECT_EQ(calendar->DB(), nullptr);
}

// Another layout, whose fields go by caption.
TEST_F(Kalender, FindsRolesByNameThenByCaption) {
    clsRtm rtm;
    const auto titled = [](TextView titel) {
        auto field = std::make_shared<TSIO>();
        field->Laenge(10);
        field->Titel(Text(titel));
        return field;
    };
    ASSERT_TRUE(rtm.DBCreateExt(DBAnsi, u"/daten/Alt", {},
                                {titled(u"&TERMIN am@@7K"), titled(u"a&b Datum@@7A"), titled(u"Anla&ß@@7X"),
                                 titled(u"wann@@7uhrzeitbis"), titled(u"Tagung@@7Y")},
                                100, u"  1  0  0"));
    auto calendar = std::make_shared<clsTerminkalender>();
    ASSERT_TRUE(calendar->Init(u"/daten/Alt"));
    EXPECT_EQ(calendar->FeldNummern().nummern,
              (std::array<int32, 13>{0, 1, 2, 0, 0, 0, 4, 3, 0, 0, 0, 5, 0}));
}

// Every day of two years, against the rules by themselves, with and without a cache.
TEST_F(Kalender, TellsWhatIsDueOnADay) {
    const auto calendar = here.open();
    const auto rows = table<3>(
        u"20240229 ++++++31=01022024 +++++MO+==30062024 +++++FR9 ++++0229 *T000010=05012024=01032025 "
        u"*M000002=31012024 *T000007 ++++++++=10102024=12102024 2025++++==05012025");
    for (std::size_t i = 0; i < rows.size(); ++i)
        add(*calendar, rows[i][0], toText(static_cast<int64>(i)), i % 2 ? u"10:00" : u"", rows[i][1],
            rows[i][2]);
    const auto deleted = add(*calendar, u"+++++MO+", u"weg");
    deleted->Deleted(true);
    const clsDatum dates;
    const int32 first = dates.JulianDay(u"01012024");
    for (int32 number = first; number < first + 731; number += 1) {
        std::set<std::string> wanted;
        for (std::size_t i = 0; i < rows.size(); ++i)
            if (appointments::DueRule(rows[i][0], rows[i][1], rows[i][2]).on(appointments::dayOf(number)))
                wanted.insert(std::to_string(i));
        calendar->Cachable(number % 3 != 0);
        const auto list = calendar->Termine(dates.KalenderDay(number));
        std::set<std::string> found;
        int32 before = 0;
        for (int32 i = 1; i <= list->Count(); ++i) {
            found.insert(toUtf8(list->Item(i)->Betreff()));
            EXPECT_LE(before, list->Item(i)->MinuteStart());
            before = list->Item(i)->MinuteStart();
        }
        ASSERT_EQ(found, wanted) << toUtf8(dates.KalenderDay(number));
        ASSERT_EQ(static_cast<std::size_t>(list->Count()), wanted.size());
    }
}

TEST_F(Kalender, KeepsListsUpToDate) {
    const auto calendar = here.open();
    const auto monday = calendar->Termine(u"11.11.2024"), tuesday = calendar->Termine(u"12.11.2024");
    std::string heard;
    const auto note = [&heard](const char* name) {
        return [&heard, name](eChangeAction action, const std::shared_ptr<clsTermin>& termin) {
            heard +=
                std::string(name) + std::to_string(action) + (termin ? toUtf8(termin->Betreff()) : "") + " ";
        };
    };
    const auto one = monday->Change.connect(note("Mo")), two = tuesday->Change.connect(note("Di"));
    const auto days =
        calendar->DayChanged.connect([&](int32 day) { heard += std::to_string(day % 7) + " "; });
    const auto late = add(*calendar, u"20241111", u"b", u"15:00");
    const auto told = [&heard] { return std::exchange(heard, ""); };
    EXPECT_HOLDS(told(), "Mo1b 0 ");
    EXPECT_EQ(monday->Item(1), late) << "one object for one record";
    add(*calendar, u"+++++MO+", u"a", u"09:00");
    EXPECT_EQ(subjects(monday), "a b");
    told();

    late->Termin(u"20241112");
    EXPECT_EQ(subjects(monday), "a b") << "not stored";
    EXPECT_TOLD("yes|Mo2b Di1b 0 1 ", late->Update(), told());
    EXPECT_EQ(subjects(monday) + "|" + subjects(tuesday), "a|b");
    EXPECT_EQ(subjects(calendar->Termine(u"12.11.2024")), "b") << "the cache, too";
    late->Betreff(u"c");
    late->Update();
    EXPECT_EQ(told(), "Di0c 1 ");
    late->Deleted(true);
    EXPECT_HOLDS(told(), "Di2");
    EXPECT_EQ(tuesday->Count(), 0);

    EXPECT_TRUE(!monday->Item(0) && !monday->Item(2));
    EXPECT_EQ(monday->ItemByID(u"2"), monday->Item(1));
    EXPECT_EQ(calendar->Termin(u"00000002"), monday->Item(1));
    EXPECT_TRUE(!calendar->Termin(u"77") && !calendar->FindTermin(u"77"));
    calendar->DB(nullptr);
    EXPECT_TOLD("0|Mo3 Di3 ", monday->Count(), told());
    EXPECT_EQ(late->Betreff(), u"") << "let go with its store";
}

class Extending final : public iKalenderExtender {
 public:
    void Create(TSIOArray& IO, int32& MaxRecords, Text& Indizes) override {
        auto field = std::make_shared<TSIO>();
        field->Laenge(length);
        field->Titel(u"Raum@@7RAUM");
        IO.push_back(field);
        MaxRecords = 5000;
        Indizes += u"012000000";
    }
    std::shared_ptr<iKalenderExtension> EXTENSION(clsTermin&) override { return nullptr; }
    bool RecordChecker(clsTSRecord& R, TextView Extent) override {
        return Extent.empty() || R.NamedField(u"RAUM") == Extent;
    }
    bool Edit(clsTermin&) override { return false; }
    void KalenderDatum(TextView) override {}

    int32 length = 5;
};

TEST_F(Kalender, IsExtended) {
    const auto extender = std::make_shared<Extending>();
    const auto calendar = std::make_shared<clsTerminkalender>();
    extender->length = 0;
    EXPECT_FALSE(calendar->Init(kStore, extender));
    EXPECT_EQ(toUtf8(here.ground.ui.boxes.back().headline),
              "Die Termin-Datenbank kann nicht angelegt werden.");
    EXPECT_FALSE(files.status(Text(kStore) + u".DBD/Control.tsd"));
    extender->length = 5;
    ASSERT_TRUE(calendar->Init(kStore, extender));
    EXPECT_EQ(calendar->DB()->AnzahlIndizes(), 4) << "that of the ids, too";
    const auto hall = add(*calendar, u"+++++MO+", u"Saal");
    hall->Field(12, u"A");
    hall->Update();
    add(*calendar, u"+++++MO+", u"sonst");
    const auto inHall = calendar->Termine(u"11.11.2024", u"A"), all = calendar->Termine(u"11.11.2024");
    EXPECT_TOLD("Saal|2", subjects(inHall), all->Count());
    hall->Field(12, u"B");
    hall->Update();
    EXPECT_EQ(inHall->Count(), 0) << "each list by its own extent";
    EXPECT_EQ(all->Count(), 2);
    const auto selection = calendar->Selection(12, u"B", u"");
    EXPECT_EQ(subjects(selection), "Saal");

    // As sets of records, and as the condition of one.
    add(*calendar, u"+++++MO+", u"vorbei", u"", u"", u"01012024");
    add(*calendar, u"*T000007", u"alle sieben", u"", u"04112024");
    add(*calendar, u"*T000007", u"auch", u"", u"05112024");
    EXPECT_EQ(selection->Records()->Satznummern(), std::vector<int32>{1});
    const auto monday = calendar->Termine(u"11.11.2024");
    auto numbers = monday->Records()->Satznummern();
    std::sort(numbers.begin(), numbers.end());
    EXPECT_EQ(numbers, (std::vector<int32>{1, 2, 4}));
    EXPECT_EQ(calendar->DB()->Records()->GetSelectedRecords(calendar.get())->Satznummern(), numbers);
    calendar->Termine(u"11.11.2024", u"B");
    EXPECT_EQ(calendar->DB()->Records()->GetSelectedRecords(calendar.get())->Satznummern(),
              std::vector<int32>{1});
}

// Others at the same store give no notice: looking finds what they did.
TEST_F(Kalender, SeesWhatOthersDo) {
    const auto calendar = here.open();
    const auto mine = add(*calendar, u"20241111", u"mine");
    add(*calendar, u"20241111", u"both");
    const auto list = calendar->Termine(u"11.11.2024");
    others([](clsTerminkalender& other) {
        add(other, u"20241111", u"new");
        const auto both = other.Termine(u"11.11.2024")->Item(2);
        both->Termin(u"20241112");
        EXPECT_TRUE(both->Update());
        const auto ended = other.TerminAusSatz(1);
        ended->DatumBis(u"01012024");
        EXPECT_TRUE(ended->Update());
    });
    std::string heard;
    const auto told =
        list->Change.connect([&](eChangeAction action, const std::shared_ptr<clsTermin>& termin) {
            heard += std::to_string(action) + (termin ? toUtf8(termin->Betreff()) : "") + " ";
        });
    EXPECT_TOLD("new|new", subjects(calendar->Termine(u"11.11.2024")), subjects(list));
    EXPECT_HOLDS(heard, "1new", "2mine", "2both");
    EXPECT_EQ(subjects(calendar->Termine(u"12.11.2024")), "both");

    calendar->DB()->Delete(1);
    EXPECT_TRUE(calendar->DB()->Pack());
    EXPECT_EQ(mine->Betreff() + toText(list->Count()), u"0") << "numbers are new";
    EXPECT_EQ(subjects(calendar->Termine(u"12.11.2024")), "both");
}

// In a store that has ids in no order, where somebody else has added one.
TEST_F(Kalender, FindsIdsWithoutAnIndex) {
    ASSERT_TRUE(clsRtm().DBCreateExt(DBAnsi, kStore, {},
                                     fieldsOf({{u"ID", tsAlphanumerisch, 8},
                                               {u"TERMIN", tsAlphanumerisch, 8},
                                               {u"TEXT", tsAlphanumerisch, 20}}),
                                     100, u"  2  0  0"));
    const auto store = [](clsTerminkalender& calendar, TextView id) {
        const auto termin = calendar.Add(u"20241111", u"", u"", u"", u"Termin " + Text(id));
        termin->Field(1, id);
        EXPECT_TRUE(termin->Update());
    };
    const auto calendar = here.open();
    store(*calendar, u"7");
    EXPECT_EQ(calendar->Termin(u"007")->Betreff(), u"Termin 7");
    others([&](clsTerminkalender& other) { store(other, u"X9"); });
    EXPECT_EQ(calendar->Termin(u"1"), nullptr);
    const auto found = calendar->Termin(u"X9");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->Betreff(), u"Termin X9");
}

// One of two dies at each change while he stores a series; the other one goes on.
TEST_F(Kalender, SurvivesADeathInTheMiddleOfASeries) {
    {
        const auto calendar = here.open();
        for (int32 day = 10; day < 60; ++day) add(*calendar, u"202411" + toText(day % 20 + 10), u"x");
    }
    const auto before = disk.snapshot();
    int64 n = 1;
    for (bool died = true; died; ++n) {
        disk.restore(before);
        files.as(static_cast<int32>(2 * n));
        {
            Workplace dying(files);
            died = files.diesAt(n, [&] {
                const auto calendar = dying.open();
                const auto series =
                    calendar->Add(u"*T000007", u"", u"10:00", u"01:00", u"Serie", u"04112024");
                if (series) series->Memo(u"lang");
                if (series) series->Update();
            });
        }
        files.as(static_cast<int32>(2 * n + 1));
        Workplace surviving(files);
        const auto calendar = surviving.open();
        add(*calendar, u"+++++MO+", u"danach", u"08:00");
        const std::string due = subjects(calendar->Termine(u"11.11.2024"));
        const bool both = due.ends_with(" danach Serie");
        EXPECT_TRUE(both || due.ends_with("danach")) << n << ": " << due;
        if (!died) {
            EXPECT_TRUE(both);
        }
        EXPECT_TRUE(consistent(*calendar->DB())) << n;
    }
    EXPECT_GT(n, 10);
}

}  // namespace
}  // namespace tsRtm::test
