// Stores of memos and chains that were lost, emptied or cut from outside, while records still name places in
// them.
#include "tests/database/ChainDatabase.hpp"

namespace tsRtm::test {
namespace {

enum class Loss { removed, emptied, cut };
constexpr Loss kLosses[] = {Loss::removed, Loss::emptied, Loss::cut};

class LostStores : public MemoryDatabase {
 protected:
    // Cut: so many bytes are left of it.
    void lose(TextView name, Loss loss, std::size_t left = 0) {
        if (loss == Loss::removed)
            EXPECT_EQ(disk.remove(path(name)), platform::SystemError::none);
        else
            put(name, loss == Loss::emptied ? Bytes() : file(name).substr(0, left));
    }
};

// What is new takes no place that another one still names: nobody sees a text of somebody else, and no text
// goes when somebody changes his own.
TEST_F(LostStores, NewTextsKeepClearOfPlacesThatAreNamed) {
    for (const Loss loss : kLosses) {
        SCOPED_TRACE(static_cast<int>(loss));
        disk.restore({});
        auto db = make(fieldsOf({{u"NAME", tsAlphanumerisch, 8}, {u"NOTIZ", tsMemo, 5}}), kNormal);
        for (const auto* text : {u"eins", u"zwei", u""}) {
            db->AktSatzNr(addRecord(*db, {{1, u"Name"}})->Satznummer());
            db->Memo(1, text);
        }
        db->Schliesse();
        lose(u"Memo-000.002", loss, 130);
        // What leads further than any file is damage, and keeps nothing clear.
        db = open();
        db->PutField(1, 2, u"$aaaa");
        const auto shows = [&](int32 record) { return db->Record(record)->Fields(2); };
        EXPECT_TOLD("|", shows(2), shows(3));
        EXPECT_EQ(FilesTopic::Exist(path(u"Memo-000.002")), loss != Loss::removed) << "made by a reader";
        db->AktSatzNr(3);
        db->Memo(1, u"drei");
        EXPECT_TOLD("|drei|0", shows(2), shows(3), db->Error());
        EXPECT_LT(file(u"Memo-000.002").size(), 1000U);
        db->AktSatzNr(2);
        db->Memo(1, u"anders");
        EXPECT_TOLD("anders|drei", shows(2), shows(3));
        db->Check(true, {});
        EXPECT_TRUE(consistent(*db));
        EXPECT_TOLD("anders|drei", shows(2), shows(3));
    }
}

TEST_F(LostStores, NewRowsKeepClearOfPlacesThatAreNamed) {
    for (const Loss loss : kLosses) {
        SCOPED_TRACE(static_cast<int>(loss));
        disk.restore({});
        auto db = makeChains(disk, rtm, {}, 3);
        EXPECT_TOLD("0|0", writeChain(*db, 1, rowsNamed(u"abc")), writeChain(*db, 2, rowsNamed(u"de")));
        db->Schliesse();
        lose(u"KetteDat.002", loss, 5);
        const auto lost = disk.snapshot();
        db = open();
        EXPECT_EQ(writeChain(*db, 3, rowsNamed(u"nm")), 0);
        const auto rows = [&](int32 record) { return chainAt(*db, record).size(); };
        EXPECT_TOLD("0|0|2", rows(1), rows(2), rows(3));
        EXPECT_EQ(writeChain(*db, 2, rowsNamed(u"x")), 0);
        EXPECT_TOLD("0|1|2|no", rows(1), rows(2), rows(3), db->Check(true, {}));
        EXPECT_TRUE(consistent(*db));
        EXPECT_TOLD("0|1|2", rows(1), rows(2), rows(3));
        // Nothing new: what leads nowhere is found, and mended where that is asked for.
        db.reset();
        disk.restore(lost);
        db = open();
        EXPECT_TOLD("no|no", db->Check(false, {}), db->Check(true, {}));
        EXPECT_TRUE(consistent(*db));
    }
}

TEST_F(LostStores, TextsOfRowsKeepClearOfPlacesThatAreNamed) {
    for (const Loss loss : kLosses) {
        SCOPED_TRACE(static_cast<int>(loss));
        disk.restore({});
        auto db = makeTextRows(rtm, kFolder, 2);
        ASSERT_EQ(writeChain(*db, 1, {{u"a", {}}, {u"b", {}}}), 0);
        ASSERT_EQ(writeChain(*db, 2, {{u"c", {}}}), 0);
        const auto row = [&](int32 record, int32 n) { return db->Record(record)->Kette(fPOS)->Record(n); };
        ASSERT_TRUE(stored(row(1, 1), {{rTEXT, u"eins"}}) && stored(row(1, 2), {{rTEXT, u"zwei"}}));
        db->Schliesse();
        lose(u"Memo-002.002", loss, 130);
        db = open();
        ASSERT_TRUE(stored(row(2, 1), {{rTEXT, u"neu"}}));
        const Text first = loss == Loss::cut ? u"eins" : u"";
        EXPECT_TOLD(toUtf8(first) + "||neu", row(1, 1)->Fields(rTEXT), row(1, 2)->Fields(rTEXT),
                    row(2, 1)->Fields(rTEXT));
        ASSERT_TRUE(stored(row(1, 1), {{rTEXT, u"anders"}}));
        EXPECT_TOLD("anders|neu", row(1, 1)->Fields(rTEXT), row(2, 1)->Fields(rTEXT));
        db->Check(true, {});
        EXPECT_TRUE(consistent(*db));
    }
}

// The store may come back from a backup: an opening after an unclean end leaves alone what names it.
TEST_F(LostStores, AreMissedAndNotCutOffAfterAnUncleanEnd) {
    auto db = makeTextRows(rtm, kFolder, 1);
    ASSERT_EQ(writeChain(*db, 1, {{u"a", {}}}), 0);
    const auto text = [&] { return db->Record(1)->Kette(fPOS)->Record(1)->Fields(rTEXT); };
    ASSERT_TRUE(stored(db->Record(1)->Kette(fPOS)->Record(1), {{rTEXT, u"eins"}}));
    const auto left = disk.snapshot();
    db->Schliesse();
    for (const auto* const name : {u"Memo-002.002", u"KetteDat.002"}) {
        SCOPED_TRACE(toUtf8(name));
        disk.restore(left);
        const Bytes store = file(name);
        lose(name, Loss::removed);
        db = open();
        EXPECT_TOLD("no|no", db->Befunde().empty(), db->Check(false, {}));
        db->Schliesse();
        put(name, store);
        db = open();
        EXPECT_TOLD("eins|yes", text(), db->Check(false, {}));
        db->Schliesse();
    }
}

}  // namespace
}  // namespace tsRtm::test
