// The worked examples of docs/file-formats.md against what the library writes, and older forms against what
// it reads.
#include "tests/database/ChainDatabase.hpp"
#include "tests/support/Examples.hpp"

namespace tsRtm::test {
namespace {

std::string hex(BytesView bytes) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string out;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        (out += kDigits[byte >> 4]) += kDigits[byte & 15];
        out += ' ';
    }
    return out;
}

TSIOArray exampleFields() {
    const TSIOArray fields = fieldsOf({{u"Name", tsAlphanumerisch, 8}, {u"Zahl", tsNumerisch, 4}});
    for (const auto& [line, title] : {std::pair{1, u"Name@@7NAME"}, {2, u"Zahl@@7ZAHL"}}) {
        auto& field = *fields[static_cast<std::size_t>(line - 1)];
        field.Zeile(line);
        field.Spalte(1);
        field.Titel(title);
    }
    return fields;
}

struct Form {
    eDBTyp typ = DBAnsi;
    int32 max = 40000;
    bool dos = false;
};

class Formats : public MemoryDatabase {
 protected:
    void make(Form form) {
        disk.restore({});
        ASSERT_TRUE(rtm.DBCreateExt(form.typ, kFolder, {}, exampleFields(), form.max, u"  1  0  0  2  0  0"));
        expect(u"Count.tsd", "count-new");
        if (form.dos) makeDos(u"Control.tsd");
        const auto db = open();
        for (const auto& [name, number] : {std::pair{u"Müller", u"7"}, {u"Abel", u"12"}, {u"Straße", u"5"}})
            ASSERT_TRUE(addRecord(*db, {{1, name}, {2, number}}));
        EXPECT_TRUE(consistent(*db));
    }
    // A file, or a part of it, is what the page shows.
    void expect(TextView name, const char* shown, std::size_t from = 0, std::size_t count = Bytes::npos) {
        EXPECT_EQ(hex(file(name).substr(from, count)), hex(example(shown))) << shown;
    }
};

TEST_F(Formats, ATreeDatabaseByteForByte) {
    make({});
    for (const auto& [name, shown] : {std::pair{u"Control.tsd", "control"},
                                      {u"Data.tsd", "data-ansi"},
                                      {u"Count.tsd", "count"},
                                      {u"Stand.tsd", "changes"}})
        expect(name, shown);
    const Bytes tree = file(u"I001");
    ASSERT_EQ(tree.size(), 1024u);
    expect(u"I001", "tree-header", 0, 16);
    expect(u"I001", "tree-root", 512, 40);
    // A rebuild writes the same tree here.
    ASSERT_TRUE(open()->Sort());
    EXPECT_EQ(hex(file(u"I001")), hex(tree));
}

TEST_F(Formats, AMemoByteForByte) {
    ground.ui.defaultAnswer = 1;
    const auto db = MemoryDatabase::make(fieldsOf({{u"NAME", tsAlphanumerisch, 8}, {u"NOTIZ", tsMemo, 60}}),
                                         kBig, u"  1  0  0");
    ASSERT_TRUE(db->Append());
    db->Memo(1, u"Grüße");
    expect(u"Memo-000.002", "memo");
}

TEST_F(Formats, AChainByteForByte) {
    const auto db = makeChains(disk, rtm, {}, 1);
    expect(u"KetteCtl.002", "chain-control");
    EXPECT_EQ(writeChain(*db, 1, rowsOf({{u"Müll", u"7"}, {u"ab", u"12"}})), 0);
    expect(u"KetteDat.002", "chain-rows");
    expect(u"Data.tsd", "chain-field", 9);
}

TEST_F(Formats, AFlatDatabaseByteForByteAndThatOfDos) {
    for (const bool dos : {false, true}) {
        make({DBAnsi, 1000, dos});
        expect(u"I001", "flat");
        expect(u"Data.tsd", dos ? "data-dos" : "data-ansi");
    }
    const auto db = open();
    EXPECT_TOLD("no|Müller", db->IsAnsi(), db->GetField(1, 1));
    db->SetIndex(1);
    // The hit is to the byte, though the order ignores case.
    EXPECT_TOLD("yes|no", db->Exist(u"Straße", 1), db->Exist(u"STRASSE", 1));
    db->Gehezu(u"müller");
    EXPECT_TOLD("Müller| Straße     5", db->Fields(1), db->GetSatz(3));
}

TEST_F(Formats, AUnicodeDatabaseByteForByte) {
    make({DBUnicode});
    expect(u"Data.tsd", "data-unicode", 0, 26);
    const auto db = open();
    ASSERT_TRUE(addRecord(*db, {{1, u"Łódź Ω"}}));
    db->SetIndex(1);
    db->Gehezu(u"Łódź Ω");
    EXPECT_TOLD("Łódź Ω|4", db->GetField(4, 1), db->AktSatzNr());
    EXPECT_TRUE(consistent(*db));
}

TEST_F(Formats, TheSerialNumberFile) {
    TSIOArray fields = exampleFields();
    fields[1]->Typ(tsAutowert);
    ASSERT_TRUE(rtm.DB_Create(kFolder, fields, 40000, u"  1  0  0"));
    const auto db = open();
    ASSERT_TRUE(addRecord(*db, {{1, u"Abel"}}));
    auto second = db->Add();
    expect(u"Autowert.tsd", "serial");
    second.reset();
    EXPECT_EQ(file(u"Autowert.tsd")[0], 1) << "given up, and its number with it";
    // An index on the serial number comes by itself.
    EXPECT_TOLD("2|yes", db->IndexNr(2), db->Exist(u"0001", 2));
}

}  // namespace
}  // namespace tsRtm::test
