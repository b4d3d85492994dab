// Memos and blobs: their bytes in the store, and their way into a record.
#include "tests/database/MemoryDatabase.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm::test {
namespace {

using namespace std::chrono_literals;

enum Field : int32 { mNAME = 1, mNOTIZ, mGEHEIM, mBILD, mWEIT, mUTF8 };

constexpr TextView kOther = u"Łódź";  // not in code page 1252

TSIOArray memoFields() {
    return fieldsOf({{u"NAME", tsAlphanumerisch, 12},
                     {u"NOTIZ", tsMemo, 60},
                     {u"GEHEIM", tsMemoEncrypted, 60},
                     {u"BILD", tsBlob, 60},
                     {u"WEIT", tsMemo, 60},
                     {u"UTF8", tsMemo + 2048, 60}});
}

Bytes padded(Bytes bytes) {
    bytes.resize((bytes.size() + 127) / 128 * 128, '\0');
    return bytes;
}

Bytes entry(char form, BytesView payload, char key = 0) {
    Bytes out{26, 0, form, key, static_cast<char>(payload.size()), 0, 0, 0};
    return padded(out.append(payload));
}

class Memos : public MemoryDatabase {
 protected:
    std::shared_ptr<clsTSDB> made(eDBTyp typ = DBAnsi) {
        ground.ui.defaultAnswer = 1;
        auto db = make(memoFields(), kBig, u"  1  0  0", typ);
        for (const auto* name : {u"Anna", u"Berta", u"Carl"})
            EXPECT_TRUE(addRecord(*db, {{mNAME, name}})->Entsperren());
        db->AktSatzNr(1);
        return db;
    }
    Bytes store(const char* field = "002") { return file(u"Memo-000." + fromUtf8(field)); }
    void giveKeys() {
        Bytes keys;
        for (int32 i = 0; i < 256; ++i) keys.push_back(static_cast<char>(i * 7 + 3));
        disk.put(rtmMain::state().runtimeDir + u"/KeyTS.dat", keys);
    }
};

TEST_F(Memos, EachKindOfFieldHasItsForm) {
    giveKeys();
    const auto db = made();
    db->Memo(1, u"Größe 5 €");
    EXPECT_EQ(store(), entry(0,
                             "Gr\xF6\xDF"
                             "e 5 \x80"));
    EXPECT_EQ(db->Fields(mNOTIZ), u"    1");
    db->Memo(2, u"geheim");
    EXPECT_EQ(store("003").substr(0, 3), Bytes("\x1A\0\x80", 3));
    EXPECT_NE(store("003")[3], '\0');
    EXPECT_EQ(store("003").find("geheim"), Bytes::npos);
    db->Blob(1, clsBlob(std::vector<uint8>(120, 255)));
    EXPECT_EQ(store("004"), entry(0, Bytes(120, '\xFF')));
    EXPECT_EQ(db->Blob(1).Bytes(), std::vector<uint8>(120, 255));
    EXPECT_TOLD("Größe 5 €|geheim", db->Memo(1), db->Memo(2));
    // What the code page lacks is kept all the same, and so is a text that looks like UTF-16.
    for (const Text& text : {Text(kOther), Text(u"a\0b\0", 4), Text(200, u'x')})
        EXPECT_EQ((db->Memo(1, text), db->Memo(1)), text);
    db->Memo(4, kOther);
    EXPECT_EQ(store("006"), entry(1,
                                  "\xC5\x81\xC3\xB3"
                                  "d\xC5\xBA"));
    EXPECT_TOLD("Łódź|0", db->Memo(4), db->Error());
    EXPECT_EQ(open(true)->Record(1)->Fields(mNOTIZ), Text(200, u'x'));
}

TEST_F(Memos, AUnicodeDatabasePointsInItsOwnForm) {
    const auto db = made(DBUnicode);
    db->Memo(1, kOther);
    EXPECT_EQ(store(), entry(2, toUtf16Le(kOther)));
    EXPECT_EQ(open()->Record(1)->Fields(mNOTIZ), kOther);
}

TEST_F(Memos, ScrambledTextsNeedTheirKeys) {
    const auto db = made();
    EXPECT_EQ((db->Memo(2, u"geheim"), db->Error()), 53);
    EXPECT_FALSE(disk.exists(path(u"Memo-000.003")) && !store("003").empty());
    // Nor is one that cannot be read taken away.
    put(u"Memo-000.003", entry('\x80', "xyz", 9));
    db->PutField(1, mGEHEIM, u"1");
    db->AktSatzNr(1);
    EXPECT_TOLD("|53|53", db->Memo(2), db->Error(), (db->Memo(2, u""), db->Error()));
    EXPECT_EQ(store("003"), entry('\x80', "xyz", 9));
}

// Forms that older programs left, and what is no entry at all.
TEST_F(Memos, OldAndDamagedEntriesAreRead) {
    const auto db = made();
    const auto reads = [&](const Bytes& content, TextView pointer = u"1") {
        put(u"Memo-000.002", content);
        db->PutField(1, mNOTIZ, pointer);
        db->AktSatzNr(1);
        return db->Memo(1);
    };
    Bytes empty = entry(0, "abc");
    std::fill_n(empty.begin() + 4, 4, ' ');
    EXPECT_TOLD("|Müller", reads(empty), reads("M\x81ller\x1Arest"));
    EXPECT_EQ(reads(Bytes(300, 'a') + "\x1A"), Text(300, u'a'));
    EXPECT_TOLD("ab|a\u2014|Ł", reads(entry(0, Bytes("a\0b\0", 4))), reads(entry(2, Bytes("a\0\x14 ", 4))),
                reads(entry(1, "\xC5\x81")));
    // Cut, none, and behind the end.
    EXPECT_TOLD("ab|||0", reads(entry(0, "abc").substr(0, 10)), reads(Bytes(128, '\0')),
                reads(entry(0, "abc"), u"9"), db->Error());
    // A length that leads into the neighbour or out of the file takes no more than its own block away.
    Bytes wrong = entry(0, "abc") + entry(0, "Nachbar");
    wrong[6] = 1;
    reads(wrong);
    db->Memo(1, u"neu");
    EXPECT_EQ(store().substr(0, 256), Bytes(128, '\0') + entry(0, "Nachbar"));
    // A store that ends in raw text goes on at the next block.
    reads("roh\x1A");
    db->Memo(1, u"neu");
    EXPECT_EQ(store(), padded("roh\x1A") + entry(0, "neu"));
}

TEST_F(Memos, ATextGoesToTheEndAndTheOldOneIsWipedOut) {
    const auto db = made();
    const auto stored = [&](TextView text) { return db->Memo(1, text), store(); };
    db->Memo(1, u"eins");
    ground.clock.advance(2s);
    EXPECT_EQ(stored(u"eins"), Bytes(128, '\0') + entry(0, "eins")) << "the same text moves, too";
    // The device is asked at most once a second, and at the end.
    EXPECT_EQ(stored(u"zwei").substr(128), entry(0, "eins") + entry(0, "zwei"));
    ground.clock.advance(2s);
    EXPECT_EQ(stored(u""), Bytes(384, '\0'));
    EXPECT_EQ(db->Fields(mNOTIZ), u"     ");
    db->LockDB(true);
    ground.clock.advance(2s);
    db->Memo(1, u"drei");
    EXPECT_EQ(stored(u"vier").substr(384), entry(0, "drei") + entry(0, "vier"));
    db->LockDB(false);
    EXPECT_EQ(store().substr(384), Bytes(128, '\0') + entry(0, "vier"));
    db->Memo(1, u"fünf");
    db->Schliesse();
    EXPECT_EQ(store().substr(512), Bytes(128, '\0') + entry(0, "f\xFCnf"));
}

TEST_F(Memos, RefusalsChangeNothing) {
    const auto db = made();
    const auto reader = open(true), fresh = open();
    reader->AktSatzNr(1);
    // No such field, nothing to write on, no store yet, and a place that is none.
    EXPECT_TOLD("9|9|5|0|63", (db->Memo(9), db->Error()), (db->Memo(0, u"x"), db->Error()),
                (reader->Memo(1, u"x"), reader->Error()), (reader->Memo(1), reader->Error()),
                (fresh->Memo(1, u"x"), fresh->Error()));
    db->Memo(1, u"steht");
    disk.setFreeSpace(20);
    EXPECT_EQ((db->Memo(1, Text(300, u'x')), db->Error()), 61);
    disk.setFreeSpace(std::nullopt);
    EXPECT_EQ(store(), entry(0, "steht"));
    EXPECT_EQ(db->Memo(1), u"steht");
    const auto record = db->Add();
    record->Fields(mNOTIZ, u"neu");
    disk.setFreeSpace(130);
    EXPECT_FALSE(record->Update());
    disk.setFreeSpace(std::nullopt);
    EXPECT_EQ(store(), entry(0, "steht")) << "no room for the record: the memo goes, too";
    EXPECT_TOLD("yes|neu", record->Update(), db->Record(4)->Fields(mNOTIZ));
    EXPECT_TRUE(consistent(*db));
}

TEST_F(Memos, ARecordObjectReadsLateAndStoresWhatWasAssigned) {
    const auto db = made();
    db->Memo(1, u"alt");
    const auto other = open();
    const auto record = db->Record(1), copy = other->Record(1);
    EXPECT_TOLD("alt|alt|no", record->Fields(mNOTIZ), copy->Fields(mNOTIZ), record->IsEmpty(mNOTIZ));
    EXPECT_TRUE(stored(copy, {{mNOTIZ, u"neu"}, {mBILD, u"\u00FF\u00FE"}}));
    // It was only read: others' text stays.
    EXPECT_TOLD("alt|yes|neu|\u00FF\u00FE", record->Fields(mNOTIZ), stored(record, {{mNAME, u"Änne"}}),
                record->Fields(mNOTIZ), db->Record(1)->Fields(mBILD));
    copy->Fields(mNOTIZ, u"fort");
    copy->Reset();
    EXPECT_EQ(copy->Fields(mNOTIZ), u"neu");
    // A field in memory never is a place.
    db->AktSatzNr(1);
    db->Fields(mNOTIZ, u"text");
    db->Fields(mNAME, u"Anna");
    db->Update();
    EXPECT_TOLD("neu|yes|", db->Memo(1), db->Append() != nullptr, db->Memo(1)) << "each place has one owner";
}

// Places that a cut of the power left, or two owners of one text: found, and mended without a loss.
TEST_F(Memos, WrongPlacesAreFoundAndMended) {
    auto db = made();
    for (const auto& [number, text] : {std::pair{1, u"eins"}, {2, u"zwei"}})
        db->AktSatzNr(number), db->Memo(1, text);
    EXPECT_TRUE(consistent(*db));
    db->PutField(3, mNOTIZ, u"2");
    db->PutField(1, mBILD, u"7");
    EXPECT_TOLD("no|2|no", db->Check(false, {}), db->Befunde().size(), db->Check(true, {}));
    EXPECT_TRUE(consistent(*db));
    for (const auto& [n, text] : {std::pair{1, u"eins"}, {2, u"zwei"}, {3, u"zwei"}})
        EXPECT_EQ(db->Record(n)->Fields(mNOTIZ), text);
    EXPECT_EQ(db->GetField(1, mBILD), u"");
    // Nobody left cleanly: what leads nowhere is cut before anybody can read a text of somebody else there.
    db->PutField(2, mNOTIZ, u"99");
    killAll(db);
    db = open();
    EXPECT_TRUE(consistent(*db));
    EXPECT_EQ(db->Record(2)->Fields(mNOTIZ), u"");
}

// Texts that nobody can read are not gone: neither a repair nor an opening after an unclean end cuts them,
// and the next opening looks again.
TEST_F(Memos, AStoreThatCannotBeOpenedKeepsItsTexts) {
    auto db = made();
    db->Memo(1, u"eins");
    db->PutField(2, mNOTIZ, u"99");
    killAll(db);
    auto held = disk.open(path(u"Memo-000.002"), {platform::Access::readWrite, platform::Sharing::none});
    db = open();
    const auto record = db->Record(1);
    EXPECT_TOLD("|70", record->Fields(mNOTIZ), db->Error());
    db->AktSatzNr(1);
    EXPECT_TOLD("|70|no|70", db->Memo(1), db->Error(), db->Check(true, {}), db->Error());
    *held = nullptr;
    db->SetIndex(77);  // an error that nobody has read yet
    EXPECT_TOLD("eins|53|99", record->Fields(mNOTIZ), db->Error(), db->GetField(2, mNOTIZ));
    db->Schliesse();
    db = open();
    EXPECT_TOLD("eins||yes", db->Record(1)->Fields(mNOTIZ), db->GetField(2, mNOTIZ), db->Check(false, {}));
}

}  // namespace
}  // namespace tsRtm::test
