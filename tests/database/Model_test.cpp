// Thousands of random steps on the engine against a plain table and a sorted list.
#include <algorithm>
#include <random>

#include "tests/database/DatabaseFixture.hpp"
#include "tsRtm/calendar/days/DateText.hpp"
#include "tsRtm/frame/text/TextOrder.hpp"

namespace tsRtm::test {
namespace {

struct Setting {
    const char* name;
    int32 max;
    bool single;
    bool posix;
};

// The database as a table in memory.
class Model {
 public:
    std::vector<Address> rows;  // record n at n - 1

    // Record numbers in the order of (NAME, ORT).
    std::vector<int32> byName() const { return ordered(nameKey); }
    std::vector<int32> byBetrag() const {
        return ordered([](const Address& a) { return blankless(a.betrag); });
    }
    std::vector<int32> byTag() const {
        return ordered([](const Address& a) { return blankless(DateSort(a.tag)); });
    }
    static Text nameKey(const Address& a) { return blankless(a.name) + u" " + blankless(a.ort); }
    static Text blankless(const Text& text) { return text.empty() ? Text(u" ") : text; }

 private:
    template <class Key>
    std::vector<int32> ordered(Key key) const {
        std::vector<int32> numbers(rows.size());
        std::vector<Text> keys;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            numbers[i] = static_cast<int32>(i) + 1;
            keys.push_back(key(rows[i]));
        }
        std::stable_sort(numbers.begin(), numbers.end(), [&](int32 a, int32 b) {
            return compareText(keys[static_cast<std::size_t>(a - 1)], keys[static_cast<std::size_t>(b - 1)]) <
                   0;
        });
        return numbers;
    }
};

class EngineModel : public testing::TestWithParam<Setting> {
 protected:
    std::mt19937 random{20240917};
    int32 below(int32 n) { return static_cast<int32>(random() % static_cast<uint32>(n)); }

    Address anyAddress() {
        static const Text names[] = {u"Müller",    u"Mueller", u"Muller",  u"MÜLLER",  u"Meyer",
                                     u"Meyer-Lüd", u"O'Brien", u"Straße",  u"Strasse", u"Ångström",
                                     u"",          u"Zoë",     u"van Dyk", u"Weiß"};
        static const Text places[] = {u"Köln", u"Koln", u"Bonn", u"", u"Aachen", u"Übach"};
        Address out;
        out.name = names[below(static_cast<int32>(std::size(names)))];
        if (below(3) != 0) out.name += toText(below(40));
        out.ort = places[below(static_cast<int32>(std::size(places)))];
        out.betrag = below(10) == 0 ? Text() : toText(below(2000) - 500) + u".5" + toText(below(10));
        if (below(10) != 0) {
            const Text day = toText(101 + below(28)).substr(1);
            const Text month = toText(101 + below(12)).substr(1);
            out.tag = day + month + toText(1960 + below(60));
        }
        return out;
    }

    static std::vector<int32> orderOf(clsTSDB& db, int32 index) {
        std::vector<int32> out;
        db.SetIndex(index);
        for (int32 p = 1; p <= db.AnzahlDSaetze(); ++p) out.push_back(db.Index(p));
        return out;
    }
};

TEST_P(EngineModel, AgreesWithATableAndASortedList) {
    const auto& setting = GetParam();
    MemoryFiles memory;
    const TempFolder temp;
    TestGround ground;
    ground.system.folders[platform::FolderId::applicationData] = temp.name();
    StartedLibrary library(ground, setting.posix ? platform::posixPlatform().files : memory);
    clsRtm rtm;
    const Text folder = setting.posix ? temp.name(u"Adressen") : Text(u"/daten/Adressen");
    auto db = makeAddresses(rtm, folder, setting.max, setting.single);
    if (setting.single) {
        ASSERT_TRUE(db->LockDB(true));
    }
    Model model;
    const int32 steps = setting.max == kBig ? 4000 : 1500;
    for (int32 step = 0; step < steps; ++step) {
        const int32 action = below(100);
        const auto count = static_cast<int32>(model.rows.size());
        SCOPED_TRACE(testing::Message() << "step " << step << " action " << action);
        if (action < 45 || count < 3) {
            const Address row = anyAddress();
            ASSERT_EQ(addAddress(*db, row), count + 1);
            model.rows.push_back(row);
        } else if (action < 85) {
            const int32 n = 1 + below(count);
            const Address row = anyAddress();
            ASSERT_TRUE(db->Sperren(n, -1));
            ASSERT_EQ((db->AktSatzNr(n), db->AktSatzNr()), n);
            db->Fields(fNAME, row.name);
            db->Fields(fORT, row.ort);
            if (below(2) == 0) db->Fields(fBETRAG, row.betrag);
            db->Fields(fTAG, row.tag);
            auto& stored = model.rows[static_cast<std::size_t>(n - 1)];
            const Text betrag =
                db->Fields(fBETRAG).empty() ? Text() : replaceAll(db->Fields(fBETRAG), u",", u".");
            ASSERT_EQ((db->Update(), db->Error()), 0);
            ASSERT_TRUE(db->Entsperren(n));
            stored = row;
            stored.betrag = betrag;
            ASSERT_EQ(addressAt(*db, n), stored);
        } else if (action < 95) {
            db->SetIndex(1);
            const Address wanted =
                below(2) == 0 ? model.rows[static_cast<std::size_t>(below(count))] : anyAddress();
            const Text key = Model::nameKey(wanted);
            const auto order = model.byName();
            const auto at = std::find_if(order.begin(), order.end(), [&](int32 n) {
                return compareText(key, Model::nameKey(model.rows[static_cast<std::size_t>(n - 1)])) <= 0;
            });
            ASSERT_EQ(db->Rang(key), at - order.begin() + 1);
            ASSERT_EQ((db->Gehezu(key), db->LogSatz()), at - order.begin() + 1);
            ASSERT_TRUE(at == order.end() ? db->EOFile() : db->AktSatzNr() == *at);
        } else if (!setting.single && below(4) == 0) {
            db.reset();
            db = there(rtm.OpenTSDB(folder));
        }
        if (step % 250 == 0) {
            ASSERT_TRUE(consistent(*db));
        }
    }
    ASSERT_TRUE(consistent(*db));
    EXPECT_EQ(orderOf(*db, 1), model.byName());
    EXPECT_EQ(orderOf(*db, 2), model.byBetrag());
    EXPECT_EQ(orderOf(*db, 3), model.byTag());
    ASSERT_TRUE(db->Sort());
    EXPECT_TRUE(consistent(*db));
    EXPECT_EQ(orderOf(*db, 1), model.byName());
    for (std::size_t i = 0; i < model.rows.size(); ++i)
        ASSERT_EQ(addressAt(*db, static_cast<int32>(i) + 1), model.rows[i]);
}

INSTANTIATE_TEST_SUITE_P(Forms, EngineModel,
                         testing::Values(Setting{"flatMemory", kNormal, false, false},
                                         Setting{"treeMemory", kBig, false, false},
                                         Setting{"treeMemorySingle", kBig, true, false},
                                         Setting{"flatDisk", kNormal, false, true},
                                         Setting{"treeDisk", kBig, false, true}),
                         [](const auto& param) { return std::string(param.param.name); });

}  // namespace
}  // namespace tsRtm::test
