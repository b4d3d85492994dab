// What one user sees while another one works on the same database.
#include "tests/database/MemoryDatabase.hpp"

namespace tsRtm::test {
namespace {

// `db` looked at the database before `other` came.
class SeveralUsers : public FiveAddresses {
 protected:
    std::shared_ptr<clsTSDB> other = open();
};

// The entry that an update takes out of an index is that of the record as it is under the database lock, not
// as it was before the wait for it.
TEST_P(SeveralUsers, AnUpdateThatWaitedMovesTheEntryThatIsThere) {
    const std::pair<int32, TextView> meanwhile[] = {
        {fNAME, u"Mitte"}, {fORT, u"Ulm"}, {fNAME, u"Zorn"}, {fTAG, u"31121999"}};
    ASSERT_TRUE(other);
    for (const auto& [field, text] : meanwhile) {
        SCOPED_TRACE(toUtf8(text));
        ASSERT_TRUE(other->LockDB(true));
        db->AktSatzNr(3);
        db->Fields(fNAME, u"Zorn");
        db->Fields(fTAG, u"01012001");
        bool first = true;
        ground.clock.onSleep = [&, field = field, text = text] {
            if (!std::exchange(first, false)) return;
            EXPECT_EQ(change(*other, 3, field, text), 0);
            other->LockDB(false);
        };
        db->Update();
        EXPECT_EQ(db->Error(), 0);
        EXPECT_FALSE(first) << "it did not wait";
        ground.clock.onSleep = nullptr;
        EXPECT_EQ(addressAt(*other, 3), (Address{u"Zorn", u"Bonn", u"3.00", u"01012001"}));
        EXPECT_TRUE(other->Exist(u"Zorn Bonn", 1));
        EXPECT_FALSE(other->Exist(Text(text).append(u" Bonn"), 1) && text != u"Zorn");
        EXPECT_TRUE(consistent(*other));
        EXPECT_EQ(change(*db, 3, fNAME, u"Abel"), 0);
    }
}

// Five records come in front of all others: what was there is found all the same, by whatever way, also by
// who counted the records before.
TEST_P(SeveralUsers, RecordsThatOthersAddHideNothing) {
    struct Row {
        const char* name;
        std::function<int32(clsTSDB&)> record;  // where it stands then
        int32 number, position;
    };
    // The order is now 6 to 10, then 3, 5, 2, 4, 1.
    const Row rows[] = {
        {"Gehezu", [](clsTSDB& d) { return d.Gehezu(u"Dorn Bonn"), d.AktSatzNr(); }, 1, 10},
        {"Gehezu the middle", [](clsTSDB& d) { return d.Gehezu(u"Berg Aachen"), d.AktSatzNr(); }, 5, 7},
        {"MoveFirst", [](clsTSDB& d) { return d.MoveFirst(), d.AktSatzNr(); }, 6, 1},
        {"MoveLast", [](clsTSDB& d) { return d.MoveLast(), d.AktSatzNr(); }, 1, 10},
        {"Index", [](clsTSDB& d) { return d.Index(1); }, 6, 1},
        {"Index of the last", [](clsTSDB& d) { return d.Index(10); }, 1, 10},
        {"AktSatzNr", [](clsTSDB& d) { return d.AktSatzNr(1), d.AktSatzNr(); }, 1, 10},
        {"Finde", [](clsTSDB& d) { return d.Finde(u"Dorn") ? d.AktSatzNr() : 0; }, 1, 10},
    };
    ASSERT_TRUE(other);
    std::vector<std::shared_ptr<clsTSDB>> readers;
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        readers.push_back(open());
        readers.back()->SetIndex(1);
        readers.back()->MoveFirst();
        ASSERT_EQ(readers.back()->AktSatzNr(), 3);
    }
    for (const auto* name : {u"Aa", u"Ab", u"Ac", u"Ad", u"Ae"})
        ASSERT_GT(addAddress(*other, {name, u"Bonn", u"", u""}), 0);
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        SCOPED_TRACE(rows[i].name);
        auto& reader = *readers[i];
        EXPECT_EQ(rows[i].record(reader), rows[i].number);
        EXPECT_EQ(reader.LogSatz(), rows[i].position);
        EXPECT_TOLD("no|0", reader.EOFile(), reader.Error());
    }
}

INSTANTIATE_TEST_SUITE_P(Forms, SeveralUsers, kAllForms, nameOfForm);

}  // namespace
}  // namespace tsRtm::test
