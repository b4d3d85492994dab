// A database from one character form into another.
#include "tests/database/ChainDatabase.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm::test {
namespace {

enum Fields : int32 { cNAME = 1, cTAG, cMENGE, cUTF8, cWEIT, cNOTIZ, cPOS, cPAAR };
constexpr TextView kWords = u"Öl äßü";
constexpr int32 kRecords = 45;
constexpr std::size_t kCharacters = 69;  // of a record
constexpr TextView kFar = u"Łódź";       // not in code page 1252

struct Case {
    const char* name;
    eDBTyp typ;
    bool dos;
    int32 max;
};

class Converting : public MemoryDatabase, public testing::WithParamInterface<Case> {
 protected:
    std::shared_ptr<clsTSDB> made(bool withFar = false) {
        const auto& form = GetParam();
        const TSIOArray fields = fieldsOf({{u"NAME", tsAlphanumerisch, 10},
                                           {u"TAG", tsDate, 8, 7},
                                           {u"MENGE", tsNumerisch, 8, 2},
                                           {u"UTF8", tsAlphanumerisch + 2048, 12},
                                           {u"WEIT", tsAlphanumerisch + 1024, 6},
                                           {u"NOTIZ", tsMemo, 60},
                                           {u"POS", tsKette, 5},
                                           {u"PAAR", tsKette, 8}});
        EXPECT_TRUE(rtm.DBCreateExt(form.typ, kFolder, {}, fields, form.max, u"  1  0  0  3  1  0"));
        const std::string head = form.dos ? "" : form.typ == DBUnicode ? "TS2," : "TS1,";
        for (const TextView name : {u"KetteCtl.007", u"KetteCtl.008"})
            put(name, head +
                          "2\r\n0,1,1,6,1,\"Text@@7TEXT\"\r\n0,2,1,60,22,\"Memo@@7MEMO\"\r\n"
                          "11,100,0\r\n0\r\n");
        if (form.dos) makeDos(u"Control.tsd");
        // Whole records of a database with single fields in UTF-16 are written by nobody.
        Bytes blank(kRecords * kCharacters, ' ');
        put(u"Data.tsd", form.typ == DBUnicode ? toUtf16Le(Text(blank.size(), u' ')) : blank);
        auto db = open();
        for (int32 n = 1; n <= kRecords; ++n) {
            const Text name = Text(kWords) + toText(n * 37 % 97);
            for (const auto& [field, text] : {std::pair{cNAME, n == 40 && withFar ? Text(kFar) : name},
                                              {cTAG, Text(u"0102200") + u'3'},
                                              {cMENGE, toText(n) + u".50"},
                                              {cUTF8, Text(kFar)},
                                              {cWEIT, Text(kFar)}})
                db->PutField(n, field, text);
            db->AktSatzNr(n);
            if (n % 5 == 0) db->Memo(1, Text(kFar) + toText(n));
            for (const int32 chain : {1, 2}) {
                TextTable rows;
                for (int32 i = 3; i > n % 3; --i) rows.push_back({Text(kWords.substr(0, 4)) + toText(i), {}});
                db->KetteSchreiben(chain, rows);
                if (n % 4 == 0) db->KetteSchreiben(chain, {});
            }
        }
        db->Delete(7);
        EXPECT_TRUE(db->Sort());
        return db;
    }
    // All that a reader sees, in the order of the first index.
    static std::vector<Text> content(clsTSDB& db) {
        std::vector<Text> out;
        db.SetIndex(1);
        for (int32 i = 1; i <= db.AnzahlDSaetze(); ++i) {
            const int32 n = db.Index(i);
            Text& line = out.emplace_back(toText(n));
            for (int32 field = 0; field <= cWEIT; ++field) line += u"|" + db.GetField(n, field);
            db.AktSatzNr(n);
            line += u"|" + db.Memo(1);
            for (const int32 chain : {1, 2}) {
                TextTable rows;
                db.KetteLesen(chain, rows);
                for (const auto& row : rows) line += u"|" + row[0];
            }
        }
        return out;
    }
    std::size_t recordBytes() const { return file(u"Data.tsd").size() / kRecords; }
};

TEST_P(Converting, KeepsAllThatAReaderSees) {
    auto db = made();
    ASSERT_EQ(db->Error(), 0);
    const auto before = content(*db);
    ASSERT_EQ(before.size(), std::size_t{kRecords});
    const auto held = db->Record(3);
    held->Fields(cNAME, u"not stored");
    const struct {
        bool (clsTSDB::*convert)();
        bool unicode;
    } steps[] = {{&clsTSDB::ConvertToWin, GetParam().typ == DBUnicode},
                 {&clsTSDB::ConvertToUnicode, true},
                 {&clsTSDB::ConvertToUnicode, true},
                 {&clsTSDB::ConvertToAnsi, false},
                 {&clsTSDB::ConvertToWin, false}};
    for (const auto& [convert, unicode] : steps) {
        EXPECT_TOLD("yes|0", (*db.*convert)(), db->Error());
        EXPECT_EQ(content(*db), before);
        EXPECT_TRUE(consistent(*db));
        EXPECT_NE(file(u"Control.tsd").find(unicode ? "TS2,8" : "TS1,8"), Bytes::npos);
        EXPECT_NE(file(u"KetteCtl.007").find(unicode ? "TS2,2" : "TS1,2"), Bytes::npos);
        // Two bytes a character; the field that always has them is not widened again but where it lies.
        EXPECT_EQ(recordBytes(), (unicode ? 2u : 1u) * kCharacters);
        EXPECT_TRUE(db->Exist(db->GetField(4, cNAME), 1));
    }
    EXPECT_EQ(held->Fields(cNAME), db->GetField(3, cNAME));
    // Free rows are given out again, and others read it.
    db->AktSatzNr(4);
    EXPECT_TOLD("0|yes", (db->KetteSchreiben(2, {{u"neu", {}}}), db->Error()), db->PackMemoKette());
    EXPECT_TRUE(consistent(*db));
    db.reset();
    EXPECT_EQ(content(*open(true)).size(), std::size_t{kRecords});
}

class Narrowing : public Converting {};

// What 1252 lacks is lost only with consent.
TEST_P(Narrowing, AsksBeforeItLosesCharacters) {
    const auto db = made(true);
    db->AktSatzNr(41);
    db->KetteSchreiben(1, {{Text(kFar), {}}});
    const auto before = disk.snapshot();
    const auto seen = content(*db);
    ground.ui.boxes.clear();
    ground.ui.defaultAnswer = 7;
    EXPECT_TOLD("no|0", db->ConvertToAnsi(), db->Error());
    ASSERT_EQ(ground.ui.boxes.size(), 1u);
    for (const Text& told : {Text(u"enthält 4 Zeichen"), Text(u"Satz 40, Feld 1")})
        EXPECT_NE(shown().find(told), Text::npos) << toUtf8(shown());
    EXPECT_EQ(content(*db), seen);
    EXPECT_EQ(file(u"Control.tsd").substr(3, 3), "TS2");
    ground.ui.defaultAnswer = 6;
    EXPECT_TOLD("yes|?ód?|Łódź|Łódź|Łódź40", db->ConvertToAnsi(), db->GetField(40, cNAME),
                db->GetField(40, cUTF8), db->GetField(40, cWEIT), (db->AktSatzNr(40), db->Memo(1)));
    EXPECT_TRUE(consistent(*db));
}

const Case kUnicode{"Unicode", DBUnicode, false, kNormal};
const Case kUnicodeTree{"UnicodeTree", DBUnicode, false, kBig};
std::string caseName(const testing::TestParamInfo<Case>& row) { return row.param.name; }

INSTANTIATE_TEST_SUITE_P(Forms, Converting,
                         testing::Values(Case{"Dos", DBAnsi, true, kNormal},
                                         Case{"Ansi", DBAnsi, false, kNormal}, kUnicode, kUnicodeTree),
                         caseName);
INSTANTIATE_TEST_SUITE_P(Forms, Narrowing, testing::Values(kUnicode, kUnicodeTree), caseName);

}  // namespace
}  // namespace tsRtm::test
