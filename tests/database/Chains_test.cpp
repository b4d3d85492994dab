// Chains by the face: what is in the files, what operations answer, what is found in damaged files.
#include "tests/database/ChainDatabase.hpp"

namespace tsRtm::test {
namespace {

class Chains : public MemoryDatabase {
 protected:
    // Afresh, with two records or more.
    std::shared_ptr<clsTSDB> make(const ChainForm& form = {}, int32 records = 2) {
        form_ = form;
        db.reset();
        disk.restore({});
        return db = makeChains(disk, rtm, form, records);
    }
    Bytes rows() const { return file(u"KetteDat.002"); }
    // A number as a pointer of the form.
    std::string at(int32 row) const {
        const auto width = static_cast<std::size_t>(form_.length < 8 ? form_.length : form_.length / 2);
        const std::string digits = std::to_string(row);
        return std::string(width - digits.size(), ' ') + digits;
    }
    std::string head(int32 hoch, int32 frei) const {
        std::string out = at(hoch) + at(frei);
        out.resize(static_cast<std::size_t>(form_.length) + 10, ' ');
        return out;
    }
    std::string row(int32 before, int32 next, const char* text, const char* number) const {
        std::string out = form_.length < 8 ? at(next) : at(before) + at(next);
        out.resize(static_cast<std::size_t>(form_.length), ' ');
        out += text;
        out.resize(static_cast<std::size_t>(form_.length) + 6, ' ');
        return out + std::string(4 - std::string(number).size(), ' ') + number;
    }
    // The field of record 1.
    std::string field() const { return file(u"Data.tsd").substr(9, static_cast<std::size_t>(form_.length)); }
    std::string field(int32 first, int32 last) const {
        const auto length = static_cast<std::size_t>(form_.length);
        if (first == 0) return std::string(length, ' ');
        std::string out = at(first);
        if (form_.length < 8) return out;
        return out + std::string(length - 2 * out.size(), ' ') + at(last);
    }

    // What one of the questions for all fields gives.
    template <class Answer>
    std::vector<Answer> told(void (clsTSDB::*ask)(std::vector<Answer>&) const) const {
        std::vector<Answer> answers;
        ((*db).*ask)(answers);
        return answers;
    }

    std::shared_ptr<clsTSDB> db;
    ChainForm form_;
};

TEST_F(Chains, EveryStepByteForByteInEveryWidth) {
    for (const int32 length : {2, 4, 5, 7, 8, 9, 10, 11, 16}) {
        SCOPED_TRACE(length);
        ASSERT_TRUE(make({.length = length}));
        EXPECT_EQ(writeChain(*db, 1, rowsOf({{u"ab", u"7"}, {u"cd", u"12"}})), 0);
        EXPECT_EQ(rows(), head(3, 4) + row(0, 3, "ab", "7") + row(2, 0, "cd", "12"));
        EXPECT_EQ(field(), field(2, 3));
        EXPECT_EQ(addRow(*db, 1, End::tail, {u"ef", u"3"}), 0);
        EXPECT_EQ(addRow(*db, 1, End::head, {u"gh", u"4"}), 0);
        EXPECT_EQ(rows(), head(5, 6) + row(5, 3, "ab", "7") + row(2, 4, "cd", "12") + row(3, 0, "ef", "3") +
                              row(0, 2, "gh", "4"));
        EXPECT_EQ(field(), field(5, 4));
        const auto all = rowsOf({{u"gh", u"4"}, {u"ab", u"7"}, {u"cd", u"12"}, {u"ef", u"3"}});
        EXPECT_EQ(chainAt(*db, 1), all);
        EXPECT_EQ(chainAt(*open(true), 1), all);
        // A shorter chain takes new rows; the old ones go to the list in the order of their chain.
        EXPECT_EQ(writeChain(*db, 1, rowsOf({{u"gh", u"4"}, {u"cd", u"12"}})), 0);
        EXPECT_EQ(field(), field(6, 7));
        EXPECT_EQ(rows().substr(0, head(7, 5).size()), head(7, 5));
        EXPECT_EQ(writeChain(*db, 2, rowsNamed(u"xyz")), 0);
        EXPECT_EQ(chainAt(*db, 2), rowsNamed(u"xyz"));
        EXPECT_EQ(rows().size(), 7 * head(7, 4).size());  // the free rows 5, 2, 3
        EXPECT_EQ(rows().substr(0, head(7, 4).size()), head(7, 4));
        EXPECT_EQ(writeChain(*db, 1, {}), 0);
        EXPECT_EQ(field(), field(0, 0));
        EXPECT_TRUE(consistent(*db));
    }
}

TEST_F(Chains, TextsInTheCharactersOfTheDatabase) {
    ASSERT_TRUE(make({.dos = true}));
    EXPECT_EQ(writeChain(*db, 1, rowsOf({{u"Müß", u"1"}})), 0);
    EXPECT_EQ(rows().substr(18 + 8, 6), "M\x81\xE1   ");
    EXPECT_EQ(chainAt(*db, 1), rowsOf({{u"Müß", u"1"}}));
    ASSERT_TRUE(make({.length = 9, .typ = DBUnicode}));
    const auto greek = rowsOf({{u"Łódź Ω", u"1"}, {u"b", u"2"}});
    EXPECT_TOLD("0|0", writeChain(*db, 1, greek), addRow(*db, 1, End::tail, {u"c", u"3"}));
    EXPECT_EQ(rows().substr(0, 16), BytesView("\x20\0\x20\0\x20\0\x34\0\x20\0\x20\0\x20\0\x35\0", 16));
    EXPECT_EQ(rows().size(), 4u * 2 * 19);
    EXPECT_EQ(chainAt(*db, 1), rowsOf({{u"Łódź Ω", u"1"}, {u"b", u"2"}, {u"c", u"3"}}));
    EXPECT_TRUE(consistent(*db));
}

TEST_F(Chains, OnlyWhatChangedIsWritten) {
    ASSERT_TRUE(make());
    EXPECT_EQ(writeChain(*db, 1, rowsNamed(u"ab")), 0);
    const auto before = disk.snapshot();
    EXPECT_EQ(writeChain(*db, 1, rowsOf({{u"a ", u" 1"}, {u"b", u"2"}})), 0);
    EXPECT_EQ(disk.snapshot(), before);
    // What grows keeps its rows.
    EXPECT_EQ(writeChain(*db, 1, rowsNamed(u"abcd")), 0);
    EXPECT_EQ(rows(), head(5, 6) + row(0, 3, "a", "1") + row(2, 4, "b", "2") + row(3, 5, "c", "3") +
                          row(4, 0, "d", "4"));
    EXPECT_EQ(field(), field(2, 5));
    // The last pointer lies across two pages, where a death could leave half of it: the chain gets new rows.
    const auto many = static_cast<std::size_t>(4096 / 18 - 1);
    TextTable filling(many - 4, {u"f", u"1"});
    EXPECT_EQ(writeChain(*db, 2, filling), 0);
    TextTable tail = chainAt(*db, 1);
    ASSERT_EQ((4096 - 18 * 227 + 4) % 18, 14u);  // row 228 begins 10 bytes before the page
    for (int32 n = 0; n < 3; ++n) {
        tail.push_back({u"g", toText(n)});
        EXPECT_EQ(addRow(*db, 1, End::tail, tail.back()), 0);
        EXPECT_EQ(chainAt(*db, 1), tail);
    }
    EXPECT_TRUE(consistent(*db));
}

TEST_F(Chains, ErrorsLeaveAllAsItWas) {
    ASSERT_TRUE(make({.length = 2}));
    TextTable rows_;
    EXPECT_TOLD("no|9|no|9|53", db->KetteLesen(0, rows_), db->Error(), db->KetteLesen(2, rows_), db->Error(),
                (db->KetteSchreiben(2, rows_), db->Error()));
    EXPECT_EQ(addRow(*db, 1, End::tail, {u"a", u"1"}), 0);
    // More rows than numbers of two digits.
    const auto before = disk.snapshot();
    EXPECT_EQ(writeChain(*db, 2, TextTable(98, {u"b", u"1"})), 61);
    EXPECT_EQ(disk.snapshot(), before);
    EXPECT_TOLD("0|61|1", writeChain(*db, 2, TextTable(96, {u"b", u"1"})),
                addRow(*db, 1, End::tail, {u"c", u"1"}), chainAt(*db, 1).size());
    // No row is given back before the new ones are had.
    EXPECT_TOLD("61|96|0|0", writeChain(*db, 2, rowsNamed(u"b")), chainAt(*db, 2).size(),
                writeChain(*db, 2, {}), writeChain(*db, 2, rowsNamed(u"b")));
    // A full disk takes nothing, and what was appended is cut off.
    ASSERT_TRUE(make());
    EXPECT_EQ(writeChain(*db, 1, rowsNamed(u"abc")), 0);
    const Bytes full = rows();
    disk.setFreeSpace(20);
    EXPECT_TOLD("61|0|61", writeChain(*db, 1, rowsNamed(u"xy")), addRow(*db, 1, End::tail, {u"d", u"1"}),
                addRow(*db, 1, End::head, {u"e", u"1"}));
    disk.setFreeSpace(std::nullopt);
    EXPECT_EQ(rows().size(), full.size() + 18);
    EXPECT_EQ(shownIn(*db, 1), u"a1 b2 c3 d1 ");
    EXPECT_TRUE(consistent(*db));
    // No record, nothing to write on, nowhere to write.
    db->AktSatzNr(0);
    const auto reader = open(true);
    EXPECT_EQ(writeChain(*reader, 1, {}), 5);
    for (const auto& [action, error] :
         {std::pair{1, 0}, {2, 54}, {3, 0}, {4, 54}, {5, 54}, {6, 54}, {7, 54}}) {
        TextTable table(2, std::vector<Text>(2));
        int32 count = 1;
        EXPECT_EQ((reader->KetteAction(action, fPOS, table, count), reader->Error()), error) << action;
    }
    EXPECT_EQ(chainAt(*reader, 1).size(), 4u);
    auto files = disk.snapshot();
    files.erase(upper(path(u"KetteDat.002")));
    disk.restore(files);
    EXPECT_TOLD("yes|no", chainAt(*open(true), 2).empty(), disk.exists(path(u"KetteDat.002")));
}

TEST_F(Chains, ARowOneTooShortForTheHeadIsRefused) {
    const TSIOArray fields = fieldsOf({{u"KEY", tsAlphanumerisch, 8}, {u"POS", tsKette, 7}});
    ASSERT_TRUE(rtm.DB_Create(kFolder, fields, 100, u""));
    put(u"KetteCtl.002", "TS1,1\r\n0,1,1,6,1,\"T\"\r\n7,9,0\r\n0\r\n");
    db = open();
    ASSERT_TRUE(db->Add()->Update());
    EXPECT_TOLD("9|9", addRow(*db, 1, End::tail, {u"a"}), writeChain(*db, 1, {{u"a"}}));
}

TEST_F(Chains, ActionGivesAndTakesRows) {
    ASSERT_TRUE(make());
    Text asked;
    const auto io = db->KetteIO.connect([&](int32 field, int32 n, std::vector<Text>& row, bool writing) {
        EXPECT_EQ(field, fPOS);
        if (!writing) return static_cast<void>(asked += toText(n) + u":" + row[0] + u" ");
        row = {u"e" + toText(n), toText(n)};
        if (n == 3) row = {u"e3" + Text(1, u'\0') + u"3"};
        db->AktSatzNr(2);  // what is written was settled before
    });
    const auto action = [&](int32 code, TextTable table, int32 count) {
        db->KetteAction(code, fPOS, table, count);
        return std::pair(table, count);
    };
    db->AktSatzNr(1);
    action(2, {{}, {u"a", u"1"}, {u"b", u"2"}, {u"c", u"3"}}, 2);
    EXPECT_EQ(chainAt(*db, 1), rowsNamed(u"ab"));
    // Row 0 has the description; an empty table is made to fit, another one keeps its bounds.
    auto [read, count] = action(1, {}, 0);
    const Text described = u"\x01" + Text(1, 0) + u"\x02" + Text(1, 0) + u"d" + Text(2, 0);
    EXPECT_EQ(read, (TextTable{{described, u""}, {u"a", u"1"}, {u"b", u"2"}}));
    EXPECT_EQ(count, 2);
    EXPECT_EQ(action(1, {{}, {u""}}, 0), std::pair(TextTable{{}, {u"a"}}, 1));
    // Packed.
    const Text nul(1, 0);
    EXPECT_EQ(action(1 + 16, {{}, {u"", u"x"}, {u""}}, 0).first,
              (TextTable{{}, {u"a" + nul + u"1", u"x"}, {u"b" + nul + u"2"}}));
    action(5 + 16, {{}, {u"p" + nul + u"9"}}, 1);
    action(7 + 32, {}, 0);
    EXPECT_TOLD("2|e11 a1 b2 p9 ", db->AktSatzNr(), shownIn(*db, 1));
    // By events, and the whole chain.
    EXPECT_EQ(action(1 + 32, {{u""}}, 0), std::pair(TextTable{{described}}, 4));
    EXPECT_EQ(asked, u"1:e1 2:a 3:b 4:p ");
    action(2 + 32 + 16, {}, 3);
    EXPECT_EQ(shownIn(*db, 1), u"e1 e2 e33 ");
    // What does nothing, and what is refused.
    const auto before = disk.snapshot();
    for (const int32 code : {0, 3, 4, 6}) action(code, {{}, {u"z"}}, 1);
    for (const auto& [field, error] : {std::pair{0, 0}, {fKEY + 0, 53}})
        EXPECT_EQ((db->KetteAction(5, field, read, count), db->Error()), error);
    for (const auto& [code, rows_] : {std::pair{2, 2}, {2, -1}, {5, 1}}) {
        action(code, code == 5 ? TextTable{{u"z"}} : TextTable{{}, {u"z"}}, rows_);
        EXPECT_EQ(db->Error(), 9);
    }
    EXPECT_EQ(disk.snapshot(), before);
    action(2, {}, 0);
    EXPECT_TRUE(chainAt(*db, 1).empty());
    // What the fields are.
    TSIOArray fields;
    db->KetteTSIO(fields);
    EXPECT_TOLD("Text,Zahl|,|1,5|6,4|0,0|2|100|2", told(&clsTSDB::KetteCaption), told(&clsTSDB::KetteHilfe),
                told(&clsTSDB::KetteTyp), told(&clsTSDB::KetteLaenge), told(&clsTSDB::KetteNachkomma),
                fields.size(), db->KetteMaxZeilen(), clsKette(db, fPOS, 1).Cols());
}

TEST_F(Chains, ARepairThatFailsKeepsNoLock) {
    ASSERT_TRUE(make());
    EXPECT_TOLD("0|0", writeChain(*db, 1, rowsNamed(u"abc")), writeChain(*db, 2, rowsNamed(u"de")));
    db->Schliesse();
    patch(u"Data.tsd", 17 + 9, field(2, 4));
    db = open();
    const auto other = open();
    disk.setFreeSpace(0);
    EXPECT_TOLD("no|61", db->Check(true, {}), db->Error());
    disk.setFreeSpace({});
    EXPECT_EQ(writeChain(*other, 1, rowsNamed(u"x")), 0);
}

// A chain ends before what is no row of it. What each damage is told as, and what is left when it is mended.
TEST_F(Chains, DamageEndsAChainAndIsFoundAndMended) {
    struct Row {
        const char* what;
        std::function<void()> damage;
        const char16_t *first, *second;  // what is read
        const char16_t* cut;             // of the second, after an end that was not clean
        const char16_t* repaired;
        bool found = true;
    };
    // Rows 2 to 4 are abc of record 1, 5 and 6 are de of record 2; 7 is free.
    const auto pointer = [this](int32 number, int32 to) {
        return [this, number, to] {
            patch(u"KetteDat.002", static_cast<std::size_t>(number - 1) * 18 + 4, at(to));
        };
    };
    const auto leads = [this](int32 first, int32 last) {
        return [this, first, last] { patch(u"Data.tsd", 17 + 9, field(first, last)); };
    };
    const auto headIs = [this](int32 hoch, int32 frei) {
        return [this, hoch, frei] { patch(u"KetteDat.002", 0, head(hoch, frei)); };
    };
    const Row table[] = {
        {"sound", [] {}, u"abc", u"de", u"de", u"de", false},
        {"a circle", pointer(6, 5), u"abc", u"de", u"de", u"de"},
        {"a row that is not there", pointer(6, 99), u"abc", u"de", u"de", u"de"},
        {"row 1", pointer(6, 1), u"abc", u"de", u"de", u"de"},
        {"a row of another chain", pointer(5, 3), u"abc", u"dbc", u"d", u"dbc"},
        {"and the number that its copy gets in a third record",
         [&] {
             pointer(5, 3)();
             patch(u"Data.tsd", 2 * 17 + 9, field(8, 8));
         },
         u"abc", u"dbc", u"d", u"dbc"},
        {"the first row of another chain", leads(2, 4), u"abc", u"abc", u"", u"abc"},
        {"a field that leads too far", leads(77, 6), u"abc", u"", u"", u""},
        {"a last row that lags", leads(5, 5), u"abc", u"de", u"de", u"de", false},
        {"a last row of another chain", leads(5, 4), u"abc", u"de", u"de", u"de"},
        {"a head of another time", headIs(4, 5), u"abc", u"de", u"de", u"de"},
        {"a list of living rows", headIs(7, 6), u"abc", u"de", u"de", u"de"},
    };
    // The rows of the first two records.
    const auto named = [this] {
        Text out;
        for (const auto& row_ : chainAt(*db, 1)) out += row_[0];
        out += u'|';
        for (const auto& row_ : chainAt(*db, 2)) out += row_[0];
        return out;
    };
    for (const auto& row_ : table) {
        SCOPED_TRACE(row_.what);
        ASSERT_TRUE(make({}, 3));
        db->Schliesse();
        put(u"KetteDat.002", head(7, 7) + row(0, 3, "a", "1") + row(2, 4, "b", "2") + row(3, 0, "c", "3") +
                                 row(0, 6, "d", "1") + row(5, 0, "e", "2") + row(8, 0, "y", "9"));
        patch(u"Data.tsd", 9, field(2, 4));
        patch(u"Data.tsd", 17 + 9, field(5, 6));
        row_.damage();
        const auto damaged = disk.snapshot();

        db = open();
        EXPECT_EQ(named(), row_.first + Text(u"|") + row_.second);
        EXPECT_TOLD(row_.found ? "no|no|no" : "yes|yes|yes", db->Check(false, {}), db->Befunde().empty(),
                    db->Check(true, {}));
        EXPECT_TRUE(consistent(*db));
        EXPECT_EQ(named(), row_.first + Text(u"|") + row_.repaired);
        EXPECT_TRUE(chainAt(*db, 3).empty());
        // Each owns its rows now.
        EXPECT_TOLD("0|0", addRow(*db, 1, End::tail, {u"n", u"1"}), addRow(*db, 2, End::tail, {u"m", u"1"}));
        EXPECT_EQ(named(), row_.first + Text(u"n|") + row_.repaired + u"m");
        EXPECT_TRUE(consistent(*db));
        db.reset();

        disk.restore(damaged);
        patch(u"Count.tsd", 9, "+");  // nobody is at work, and nobody left
        db = open();
        EXPECT_EQ(db->Befunde().empty(), !row_.found);
        EXPECT_EQ(named(), row_.first + Text(u"|") + row_.cut);
        EXPECT_EQ(rows().substr(0, 8), at(7) + at(8));
        EXPECT_TRUE(consistent(*db));
    }
}

}  // namespace
}  // namespace tsRtm::test
