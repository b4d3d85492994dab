// Missing, empty, short and damaged files.
#include <cstring>
#include <random>

#include "tests/database/MemoryDatabase.hpp"
#include "tsRtm/database/index/NodeFormat.hpp"

namespace tsRtm::test {
namespace {

using platform::SystemError;

class HostileFiles : public MemoryDatabase {
 protected:
    static constexpr int32 kRecords = 100;

    // A tree of two levels in I001: keys NAME, ORT.
    void prepare(int32 max = kBig) {
        const auto db = make(max);
        for (int32 n = 1; n <= kRecords; ++n)
            ASSERT_EQ(addAddress(*db, {u"Name" + toText(1000 + n), u"Ort", toText(n), u""}), n);
    }
    static void set(Bytes& bytes, std::size_t offset, int32 value) {
        std::memcpy(bytes.data() + offset, &value, sizeof value);
    }
    // The node that an address at this place leads to.
    static std::size_t at(const Bytes& bytes, std::size_t offset) {
        int32 value = 0;
        std::memcpy(&value, bytes.data() + offset, sizeof value);
        return static_cast<std::size_t>(value - 1);
    }
    static std::size_t rootOf(const Bytes& bytes) { return at(bytes, 4); }
    static std::size_t leafOf(const Bytes& bytes) { return at(bytes, rootOf(bytes) + 4); }
    // Makes the tree say that it holds another number of entries.
    void falsifyTotal() {
        Bytes bytes = file(u"I001");
        set(bytes, rootOf(bytes) + 8, 3);
        put(u"I001", bytes);
    }
};

TEST_F(HostileFiles, OpeningTellsWhy) {
    prepare();
    clsTSDB db(rtm);
    EXPECT_TOLD("52|52|0", db.Oeffne(u"/daten/Fehlt"), db.Error(), db.AnzahlDSaetze());
    EXPECT_TOLD("no|52", rtm.OpenTSDB(u"/daten/Fehlt") != nullptr, rtmMain::state().F);
    const Bytes control = file(u"Control.tsd");
    put(u"Control.tsd", control.substr(0, 3));
    EXPECT_EQ(db.Oeffne(kFolder), 52);
    put(u"Control.tsd", control);
    // The object stayed closed: it bears to be asked, and opens another one.
    std::vector<Text> fields;
    EXPECT_TOLD("|||1|no", db.Satz(fields), fields, db.Fields(1), db.Rang(u"Abel"), db.Exist(u"Abel", 1));
    db.ClearRecord();
    EXPECT_TOLD("0|100|/DATEN/ADRESSEN.DBD|Adressen", db.Oeffne(kFolder), db.AnzahlDSaetze(), db.Pfad(),
                db.DBName());
    EXPECT_EQ(raised([&] { db.Oeffne(kFolder); }), "55|TSDB|Datenbank ist schon initialisiert");
    EXPECT_TOLD("55|100", db.Error(), db.AnzahlDSaetze());
    // Somebody else has it alone.
    disk.failOpening(path(u"Data.tsd"), SystemError::sharingViolation);
    EXPECT_EQ(clsTSDB(rtm).Oeffne(kFolder), 70);
    // Closed again, it answers with errors.
    db.SetIndex(1);
    db.AktSatzNr(1);
    db.Schliesse();
    EXPECT_TOLD("0||", db.ActiveIndex(), db.IndexName(), db.GetField(1, fNAME));
    const std::function<void()> works[] = {[&] { EXPECT_FALSE(db.LockDB(true)); },
                                           [&] { EXPECT_FALSE(db.Append()); }, [&] { db.Update(); },
                                           [&] { db.PutSatz(1); }};
    for (const auto& work : works) EXPECT_NE((work(), db.Error()), 0);
}

TEST_F(HostileFiles, TheFormFollowsTheLimit) {
    for (const auto& [max, told] : {std::pair{32767, "no|32767|10"}, {32768, "yes|32768|1024"}}) {
        const auto db = makeFive(max);
        EXPECT_TOLD(told, db->IsBig(), db->MaxData(), file(u"I001").size());
    }
}

TEST_F(HostileFiles, AMediumThatCannotBeWrittenMakesAReader) {
    prepare();
    disk.setReadOnly(path(u"Count.tsd"), true);
    for (const bool all : {false, true}) {
        const auto before = disk.snapshot();
        const auto db = open();
        EXPECT_TOLD("yes|100", db->IsReadOnly(), db->AnzahlDSaetze());
        db->SetIndex(1);
        db->Gehezu(u"Name1050");
        EXPECT_TOLD("50|5|no", db->AktSatzNr(), change(*db, 50, fNAME, u"x"), db->Add() != nullptr);
        EXPECT_EQ(disk.snapshot(), before) << all;
        for (const auto& [name, entry] : before)
            if (!entry.status.folder) disk.setReadOnly(entry.name, true);
    }
}

// Each row: what is done to the tree file, and what the search then raises.
TEST_F(HostileFiles, ADamagedTreeIsTold) {
    prepare();
    const Bytes sound = file(u"I001");
    const std::size_t root = rootOf(sound), leaf = leafOf(sound);
    const std::string opening = "|clsTSDB_IndexOpen|Indexdatei \"" + toUtf8(path(u"I001")) + "\"";
    char address[16];
    std::snprintf(address, sizeof address, "%zX", leaf + 1);
    std::vector<std::pair<std::string, Bytes>> rows;  // what is raised, and by which bytes
    const auto damaged = [&](const std::string& tells, auto damage) {
        Bytes bytes = sound;
        damage(bytes);
        rows.emplace_back(tells, bytes);
    };
    damaged("6" + opening + " ist leer", [](Bytes& b) { set(b, 4, 0); });
    for (const std::size_t size : {0u, 4u})
        damaged("6" + opening + " ist leer", [&](Bytes& b) { b.resize(size); });
    for (const int16 version : {int16{2}, int16{999}})
        damaged("461" + opening + " hat die falsche Version " + std::to_string(version),
                [&](Bytes& b) { std::memcpy(b.data() + 2, &version, 2); });
    for (const int32 keys : {41, -1, 2147483647})
        damaged("9|clsTSDB Locate|Node at &h " + std::string(address) +
                    " corrupt in Locating record in index on field #1",
                [&](Bytes& b) { set(b, leaf, keys); });
    damaged("28|clsTSDB Locate|Buffer overrun in Locating record \"Name1001 Ort\" in index on field #1",
            [&](Bytes& b) { set(b, root + 4, static_cast<int32>(root) + 1); });  // a cycle
    for (const auto& [tells, bytes] : rows) {
        SCOPED_TRACE(tells);
        put(u"I001", bytes);
        const auto db = open();
        EXPECT_EQ(raised([&] { db->Exist(u"Name1001 Ort", 1); }), tells);
        if (tells.starts_with("28")) {  // by position it is recorded, and not raised
            db->SetIndex(1);
            EXPECT_NO_THROW(db->MoveFirst());
            EXPECT_EQ(db->Error(), 28);
        }
        // Records are untouched, the check finds it, and a rebuild heals it.
        EXPECT_TOLD("Name1001|no", db->GetField(1, fNAME), db->Check(false, {}));
        EXPECT_TRUE(bytes.empty() || file(u"I001") == bytes);
        EXPECT_TOLD("yes|yes", db->Sort(1), db->Exist(u"Name1001 Ort", 1));
        EXPECT_TRUE(consistent(*db));
    }
    EXPECT_GE(ground.ui.beeps, 1);
}

// A tree whose total is wrong is rebuilt, and the user is told; a reader cannot rebuild.
TEST_F(HostileFiles, AWrongTotalIsHealed) {
    prepare();
    falsifyTotal();
    EXPECT_EQ(raised([&] { open(true)->Exist(u"Name1001 Ort", 1); }),
              "6|clsTSDB_IndexOpen|Indexdatei \"" + toUtf8(path(u"I001")) +
                  "\" hat die falsche Anzahl von Einträgen");
    {
        // With others at work, whose locks stand.
        const auto one = open(), two = open();
        EXPECT_TOLD("yes|yes|yes|yes", two->Sperren(9, -1), two->Exist(u"Name1001 Ort", 1),
                    one->Exist(u"Name1001 Ort", 1), one->Gesperrt(9));
        EXPECT_TRUE(consistent(*two));
    }
    falsifyTotal();
    ground.ui.windowTexts.clear();
    const auto db = open();
    ASSERT_TRUE(db->Sperren(7));
    EXPECT_FALSE(db->Check(false, {}));  // leaves no index open that is not healed
    db->SetIndex(1);
    EXPECT_EQ((db->Gehezu(u"Name1050"), db->LogSatz()), 50);
    EXPECT_TOLD("Reorganisation des Index NAME erforderlich, bitte einen Augenblick Geduld...|no",
                ground.ui.windowTexts, ground.ui.windowOpen);
    EXPECT_TRUE(consistent(*db));
    EXPECT_TRUE(open()->Gesperrt(7));  // its locks outlived the rebuild
}

TEST_F(HostileFiles, CheckTellsAndOnlyRepairsWhenAsked) {
    prepare();
    const Bytes sound = file(u"I001");
    const std::size_t root = rootOf(sound), leaf = leafOf(sound);
    const std::tuple<const char*, std::size_t, int32, TextView> rows[] = {
        {"count", root + 8, 3, u"Indexzählfehler: 1> Level 0 Eintrag 1:Count=3 - gezählt=20"},
        {"record twice", leaf + 12, 2, u"Mehrfachverweis auf Satz 2 Anzahl: 2"},
        {"record missing", leaf + 12, 2, u"Fehlender Pointer auf Satz 1"},
        {"record that is none", leaf + 12, 999, u"Fehlender Pointer auf Satz 1"},
        {"negative record", leaf + 12, -5, u"Fehlender Pointer auf Satz 1"},
        {"node outside", root + 4, 1 << 20, u":Defekt an Adresse 100000"}};
    for (const auto& [what, offset, value, finding] : rows) {
        SCOPED_TRACE(what);
        Bytes bytes = sound;
        set(bytes, offset, value);
        put(u"I001", bytes);
        auto db = open();
        EXPECT_FALSE(db->Check(false, u"Zusatz"));
        EXPECT_NE(Told{db->Befunde()}.out.find(toUtf8(finding)), Bytes::npos) << Told{db->Befunde()}.out;
        EXPECT_TOLD("yes|no", file(u"I001") == bytes, db->Check(true, {}));
        EXPECT_TRUE(consistent(*db));
    }
    // Who writes and misses the old entry builds it anew.
    Bytes bytes = sound;
    set(bytes, leaf + 12, 2);
    put(u"I001", bytes);
    const auto db = open();
    EXPECT_EQ(change(*db, 1, fNAME, u"Zorn"), 0);
    EXPECT_TRUE(consistent(*db));
}

// The flat array has no check at its opening: what it says wrong is told by the walk.
TEST_F(HostileFiles, AFlatArrayOfTheWrongLength) {
    prepare(kNormal);
    const Bytes sound = file(u"I001");
    ASSERT_EQ(sound.size(), 2u * kRecords);
    const std::tuple<const char*, Bytes, bool> rows[] = {{"too long", sound + Bytes(10, '\x07'), false},
                                                         {"odd", sound + "\x07", false},
                                                         {"short", sound.substr(0, 100), false},
                                                         {"odd and short", sound.substr(0, 101), false},
                                                         {"empty", {}, false},
                                                         {"garbage", Bytes(200, '\x7F'), true},
                                                         {"negative", Bytes(200, '\xFF'), true}};
    for (const auto& [what, bytes, wrong] : rows) {
        SCOPED_TRACE(what);
        put(u"I001", bytes);
        const auto db = open();
        db->SetIndex(1);
        db->Gehezu(u"Name1090 Ort");
        db->Exist(u"Name1001 Ort", 1);
        db->MoveLast();
        EXPECT_TOLD(wrong ? "28|no" : "0|yes", db->Error(), db->Check(false, {}));
        // Who writes and misses the old entry builds it anew.
        db->SetIndex(0);
        EXPECT_TOLD("0|Zorn", change(*db, 90, fNAME, u"Zorn"), db->GetField(90, fNAME));
        EXPECT_TRUE(consistent(*db));
        EXPECT_EQ(change(*db, 90, fNAME, u"Name1090"), 0);
    }
}

// Indexes that would share a file: the same first field again, none at all, and digits that another has.
TEST_F(HostileFiles, OneFileHasOneOrder) {
    ground.ui.defaultAnswer = 1;
    std::vector<FieldRow> rows(1002, {u"X", tsAlphanumerisch, 1});
    rows.back() = {u"NR", tsAutowert, 4};
    const auto bare = disk.snapshot();
    for (const int32 max : {kNormal, kBig}) {
        disk.restore(bare);
        ASSERT_TRUE(rtm.DB_Create(kFolder, fieldsOf(rows), max, u"  2  0  0"));
        auto control = file(u"Control.tsd");
        const auto at = control.rfind(",1\r\n  2,");
        ASSERT_NE(at, Bytes::npos);
        put(u"Control.tsd", control.replace(at, 4, ",6\r\n  2,3,0\r\n0,0,0\r\n0,4,0\r\n2,4,0\r\n5,0,0\r\n"));
        const auto db = open();
        EXPECT_TOLD("3|5", db->AnzahlIndizes(), db->IndexFeld(3));
        for (const auto* letter : {u"c", u"b", u"a"})
            ASSERT_TRUE(addRecord(*db, {{2, letter}, {3, letter}, {5, letter}}));
        db->SetIndex(3);
        db->MoveFirst();
        EXPECT_EQ(db->AktSatzNr(), 3);
        EXPECT_TRUE(consistent(*db));
    }
}

TEST_F(HostileFiles, SmallFilesMayBeEmptyOrTorn) {
    const TSIOArray fields = fieldsOf({{u"NAME", tsAlphanumerisch, 5}, {u"NR", tsAutowert, 4}});
    // What is told: how many records are there, and with one more its number, their count, the bytes of all.
    const std::tuple<const char*, TextView, Bytes, const char*> rows[] = {
        {"count empty", u"Count.tsd", {}, "3|0004|4|Dorn|40"},
        {"count of another kind", u"Count.tsd", Bytes(3, '\xFF'), "3|0004|4|Dorn|40"},
        {"counter empty", u"Autowert.tsd", {}, "3|0004|4|Dorn|40"},
        {"counter short", u"Autowert.tsd", "\x07", "3|0008|4|Dorn|40"},
        {"view empty", u"Standard.viw", {}, "3|0004|4|Dorn|40"},
        {"view of rubbish", u"Standard.viw", Bytes(50, '\x1A'), "3|0004|4|Dorn|40"},
        {"data empty", u"Data.tsd", {}, "0|0004|1|Dorn|10"},
        {"data torn", u"Data.tsd", " Abel 0001 Be", "1|0004|2|Dorn|20"},
        {"more than half a record", u"Data.tsd", " Abel 0001 Berg 0", "2|0004|3|Dorn|30"}};
    for (const auto& [what, name, bytes, told] : rows) {
        disk.restore({});
        auto db = make(fields, kNormal);
        for (const auto* each : {u"Abel", u"Berg", u"Cohn"}) ASSERT_TRUE(addRecord(*db, {{1, each}}));
        db.reset();
        put(name, bytes);
        db = open();
        EXPECT_TOLD(told, db->AnzahlDSaetze(), addRecord(*db, {{1, u"Dorn"}})->Fields(2), db->AnzahlDSaetze(),
                    db->GetField(db->AnzahlDSaetze(), 1), file(u"Data.tsd").size())
            << what;
    }
}

// Whatever stands in an index file, the engine ends each work with an answer or a failure of its own, and
// no record is lost.
TEST_F(HostileFiles, RandomDamageOfAnIndexNeverLosesARecord) {
    std::mt19937 random(5);
    for (const int32 max : {kNormal, kBig}) {
        disk.restore({});
        prepare(max);
        const Bytes sound = file(u"I001");
        for (int32 round = 0; round < 250; ++round) {
            SCOPED_TRACE(round);
            Bytes bytes = sound;
            for (uint32 k = 0; k < 1 + random() % 6; ++k)
                bytes[random() % bytes.size()] = static_cast<char>(random());
            if (round % 10 == 0) bytes.resize(random() % bytes.size());
            put(u"I001", bytes);
            const auto db = open();
            db->SetIndex(1);
            const std::function<void()> works[] = {
                [&] { db->Exist(u"Name1050 Ort", 1); },
                [&] { db->Gehezu(u"Name1020"); },
                [&] {
                    for (db->MoveFirst(); db->Error() == 0; db->MoveNext()) continue;
                },
                [&] { db->AktSatzNr(40); },
                [&] { db->SetIndex(0), change(*db, 60, fNAME, u"Name1060"); },
                [&] {
                    addAddress(*db, {u"Name1101", u"Ort", u"101", u""});
                },
                [&] { db->Check(false, {}); },
            };
            for (const auto& work : works) static_cast<void>(raised(work));
            for (int32 n = 1; n <= kRecords; ++n)
                ASSERT_EQ(db->GetField(n, fNAME), u"Name" + toText(1000 + n));
            ASSERT_TRUE(db->Sort());
            ASSERT_TRUE(consistent(*db));
        }
    }
}

}  // namespace
}  // namespace tsRtm::test
