// One appointment on a real record, in stores of two layouts.
#include "tsRtm/appointments/clsTermin.hpp"

#include "tests/database/MemoryDatabase.hpp"

namespace tsRtm::test {
namespace {

enum StoreField : int32 { kID = 1, kTERMIN, kVON, kZEIT, kTEXT, kAB, kBIS, kWER };

// A store that has, for kZEIT, a duration or an end.
TerminFelder roles(TerminFelder::Rolle time) {
    TerminFelder fields;
    fields.nummern = {0, kTERMIN, kAB, kBIS, 0, kVON, 0, kTEXT, 0, kWER, 0, 0, 0};
    fields.nummern[time] = kZEIT;
    return fields;
}

class Look final : public iKalenderExtension {
 public:
    void Record(const std::shared_ptr<clsTSRecord>& value) override { record = value; }
    tsRtm::Text Text(eKalenderAnzeigen Typ, TextView StdText) override {
        return Typ == TagesDruck ? tsRtm::Text() : u"[" + tsRtm::Text(StdText) + u"]";
    }
    tsRtm::Text Title(eKalenderAnzeigen) override { return u"Titel"; }
    int32 DisplayColor(eColorElement Element) override { return 100 + Element; }
    eTerminIcons Icons() override { return tiHaus; }
    bool ReadOnly() override { return closed; }
    std::vector<tsRtm::Text> ContextMenu() override { return {}; }
    bool Command(int32) override { return false; }
    bool Validate(const std::shared_ptr<tsRtm::Object>&) override { return true; }
    std::shared_ptr<tsRtm::Object> Object(int32&) override { return nullptr; }

    std::weak_ptr<clsTSRecord> record;
    bool closed = false;
};

class Termine : public MemoryDatabase {
 protected:
    std::shared_ptr<clsTSDB> db = make(fieldsOf({{u"ID", tsAlphanumerisch, 8},
                                                 {u"TERMIN", tsAlphanumerisch, 8},
                                                 {u"UHRZEIT", 39, 5, 2},
                                                 {u"DAUER", 39, 5, 2},
                                                 {u"TEXT", tsAlphanumerisch, 40},
                                                 {u"ABDATUM", tsDate, 8},
                                                 {u"BISDATUM", tsDate, 8},
                                                 {u"WER", tsAlphanumerisch, 5}}),
                                       5000, u"  2  0  0");
};

TEST_F(Termine, ReckonTheEndFromTheDurationAndBack) {
    clsTermin lasting(db->Add(), roles(TerminFelder::dauer));
    lasting.Uhrzeitbis(u"10:30");
    EXPECT_EQ(lasting.Dauer(), u"") << "without a start";
    lasting.Uhrzeitvon(u"10:00");
    lasting.Uhrzeitbis(u"10:30");
    EXPECT_EQ(lasting.Field(kZEIT), u"00:30");
    lasting.Uhrzeitbis(u"halb");
    EXPECT_EQ(lasting.Uhrzeitbis(), u"10:30") << "what is no time changes nothing";
    EXPECT_TOLD("600|630|30", lasting.MinuteStart(), lasting.MinuteEnd(), lasting.MinuteDuration());
    lasting.Uhrzeitbis(u"");
    EXPECT_EQ(lasting.Dauer() + lasting.Uhrzeitbis(), u"");

    clsTermin ending(db->Add(), roles(TerminFelder::uhrzeitBis));
    ending.Uhrzeitvon(u"22:00");
    ending.Dauer(u"03:00");
    EXPECT_TOLD("01:00|03:00", ending.Field(kZEIT), ending.Dauer());
    ending.Dauer(u"");
    EXPECT_EQ(ending.Uhrzeitbis(), u"");
}

TEST_F(Termine, TellWhatTheyAre) {
    clsTermin termin(db->Add(), roles(TerminFelder::dauer));
    EXPECT_TOLD("|yes", termin.What(), termin.Tagestermin());
    termin.Termin(u"20241224");
    termin.Uhrzeitvon(u"18:00");
    termin.Betreff(u"Bescherung");
    termin.DatumVon(u"01.12.2024");
    EXPECT_TOLD(" um 18:00 Uhr|18:00 Bescherung", toUtf8(termin.What()), termin.Text(WochenAnsicht));
    termin.Dauer(u"02:00");
    termin.Termin(u"+++++DI+");
    termin.DatumBis(u"31.12.2024");
    EXPECT_EQ(toUtf8(termin.What()),
              "jeden Dienstag um 18:00 Uhr bis 20:00 Uhr beginnend am 01.12.2024 bis zum 31.12.2024");
    EXPECT_EQ(termin.SerienTyp(), ttWoechentlich);
    termin.Prioritaet(3);
    termin.Ort(u"Köln");  // for which the store has no field
    EXPECT_TOLD("Bescherung|18:00-20:00 Bescherung||3|", termin.Text(TagesAnsicht), termin.Text(MonatsDruck),
                termin.Text(JahresAnsicht), termin.Prioritaet(), termin.Ort());
}

TEST_F(Termine, AreStoredAndLetGo) {
    const auto look = std::make_shared<Look>();
    clsTermin termin(db->Add(), roles(TerminFelder::dauer), look);
    EXPECT_EQ(look->record.lock(), termin.Record());
    int32 stored = 0;
    const auto heard = termin.Change.connect([&] { ++stored; });
    EXPECT_EQ(termin.ID(), u"") << "new";
    termin.Termin(u"20241224");
    termin.Betreff(u"x");
    EXPECT_TOLD("yes|1|1|20241224", termin.Update(), stored, termin.ID(), db->GetField(1, kTERMIN));

    // An empty answer does not count.
    EXPECT_TOLD("[x]|x|103|no", termin.Text(TagesAnsicht), termin.Text(TagesDruck), termin.TaskColor(),
                termin.ReadOnly());
    EXPECT_EQ(termin.Icons(), tiHaus);
    look->closed = true;
    EXPECT_TRUE(termin.ReadOnly());

    db->KillAllObjects();
    EXPECT_TOLD("yes|no", termin.ReadOnly(), termin.Update());
    termin.Betreff(u"y");
    EXPECT_EQ(termin.Betreff() + termin.What() + termin.Text(TagesAnsicht) + termin.Title(TagesAnsicht), u"");
    EXPECT_TOLD("-1|1", termin.ForeColor(), termin.ID());
    EXPECT_EQ(termin.Icons(), tiNone);
}

}  // namespace
}  // namespace tsRtm::test
