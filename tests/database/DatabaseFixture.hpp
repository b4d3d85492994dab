#pragma once
// A small address database on a ground of one's choice.
#include <gtest/gtest.h>

#include "tests/support/MemoryFiles.hpp"
#include "tests/support/TempFolder.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/platform/posix/PosixPlatform.hpp"
#include "tsRtm/tsRtm.hpp"

namespace tsRtm::test {

inline constexpr TextView kFolder = u"/daten/Adressen";
inline Text path(TextView name) { return Text(kFolder).append(u".DBD/").append(name); }

// A disk in memory, and the files of that database on it.
struct DatabaseFiles {
    MemoryFiles disk;
    Bytes file(TextView name) const { return disk.dump(path(name)); }
    void put(TextView name, BytesView content) { disk.put(path(name), content); }
    // Other bytes at a place, in open files, too.
    void patch(TextView name, std::size_t at, BytesView bytes) {
        put(name, file(name).replace(at, bytes.size(), bytes));
    }
    // A file of the structure in the form of older programs.
    void makeDos(TextView name) { put(name, file(name).substr(file(name).find(',') + 1)); }
};

// The library on real files with the clock of this machine: real processes wait for each other.
struct RealFiles {
    RealFiles() { ground.ui.defaultAnswer = 1; }

    const TempFolder temp;
    TestGround ground;
    const StartedLibrary library{ground, platform::posixPlatform().files, platform::posixPlatform().clock};
    clsRtm rtm;
};

struct FieldRow {
    TextView name;
    int32 typ;
    int32 length;
    int32 decimals = 0;
};

inline TSIOArray fieldsOf(const std::vector<FieldRow>& rows) {
    TSIOArray fields;
    for (const auto& row : rows) {
        auto field = std::make_shared<TSIO>();
        field->Typ(row.typ);
        field->Laenge(row.length);
        field->NachKomma(row.decimals);
        field->Titel(Text(row.name).append(u"@@7").append(row.name));
        fields.push_back(field);
    }
    return fields;
}

// NAME 12, ORT 8, BETRAG 10.2, TAG date 8; indexes (NAME, ORT), (BETRAG), (TAG).
enum AddressField : int32 { fNAME = 1, fORT = 2, fBETRAG = 3, fTAG = 4 };
inline TSIOArray addressFields() {
    return fieldsOf({{u"NAME", tsAlphanumerisch, 12},
                     {u"ORT", tsAlphanumerisch, 8},
                     {u"BETRAG", tsNumerisch, 10, 2},
                     {u"TAG", tsDate, 8}});
}
inline constexpr TextView kAddressIndexes = u"  1  2  0  3  0  0  4  0  0";
inline constexpr int32 kNormal = 5000;
inline constexpr int32 kBig = 100000;

// Suites that run on both forms of an index.
inline const auto kBothForms = testing::Values(kNormal, kBig);
inline std::string formName(const testing::TestParamInfo<int32>& info) {
    return info.param == kBig ? "tree" : "flat";
}

// What the rest of a test stands on: without it the test ends.
inline std::shared_ptr<clsTSDB> there(std::shared_ptr<clsTSDB> db) {
    if (!db) throw std::runtime_error("no database: " + std::to_string(rtmMain::state().F));
    return db;
}
// Makes the database in `folder` and opens it.
inline std::shared_ptr<clsTSDB> makeAddresses(clsRtm& rtm, TextView folder, int32 max, bool single = false,
                                              eDBTyp typ = DBAnsi) {
    const bool made = rtm.DBCreateExt(typ, folder, {}, addressFields(), max, kAddressIndexes);
    return there(made ? rtm.OpenTSDB(folder, false, single) : nullptr);
}

struct Address {
    Text name, ort, betrag, tag;
    auto operator<=>(const Address&) const = default;
};

using FieldTexts = std::initializer_list<std::pair<int32, Text>>;
// Gives fields of a record these texts and stores it; whether it was told as stored.
inline bool stored(const std::shared_ptr<clsTSRecord>& record, FieldTexts fields) {
    if (!record) return false;
    for (const auto& [field, text] : fields) record->Fields(field, text);
    return record->Update();
}
// A new record with these fields; nothing where it was not stored.
inline std::shared_ptr<clsTSRecord> addRecord(clsTSDB& db, FieldTexts fields) {
    auto record = db.Add();
    return stored(record, fields) ? record : nullptr;
}
// Number of the new record, 0 where it was not stored.
inline int32 addAddress(clsTSDB& db, const Address& address) {
    const auto record = addRecord(
        db, {{fNAME, address.name}, {fORT, address.ort}, {fBETRAG, address.betrag}, {fTAG, address.tag}});
    return record ? record->Satznummer() : 0;
}

// The order of NAME, ORT: 3 Abel, 5 Berg Aachen, 2 Berg Bonn, 4 Cohn, 1 Dorn. None of them is locked.
inline void addFive(clsTSDB& db) {
    const Address rows[] = {{u"Dorn", u"Bonn", u"5.00", u"01022003"},
                            {u"Berg", u"Bonn", u"4.00", u"01022004"},
                            {u"Abel", u"Bonn", u"3.00", u"28021999"},
                            {u"Cohn", u"Bonn", u"2.00", u""},
                            {u"Berg", u"Aachen", u"1.00", u"31122003"}};
    for (const auto& row : rows) ASSERT_TRUE(db.Entsperren(addAddress(db, row)));
}

inline Address addressAt(clsTSDB& db, int32 number) {
    return {db.GetField(number, fNAME), db.GetField(number, fORT), db.GetField(number, fBETRAG),
            db.GetField(number, fTAG)};
}

// Changes a field of a record through the cursor of the database; gives `Error`.
inline int32 change(clsTSDB& db, int32 number, int32 field, TextView text) {
    db.AktSatzNr(number);
    db.Fields(field, text);
    db.Update();
    return db.Error();
}

// The public consistency check, its findings in the message of a failure.
inline testing::AssertionResult consistent(clsTSDB& db) {
    if (db.Check(false, {})) return testing::AssertionSuccess();
    auto out = testing::AssertionFailure();
    std::size_t shown = 0;
    for (const auto& line : db.Befunde())
        if (++shown < 8) out << toUtf8(line) << "; ";
    return out;
}

// The first chain of a record; `Error` of the write.
inline int32 writeChain(clsTSDB& db, int32 record, const TextTable& rows) {
    db.AktSatzNr(record);
    db.KetteSchreiben(1, rows);
    return db.Error();
}
// Codes of `KetteAction`.
enum class End : int32 { tail = 5, head = 7 };
inline int32 addRow(clsTSDB& db, int32 record, End end, const std::vector<Text>& row) {
    db.AktSatzNr(record);
    TextTable table{{}, row};
    int32 count = 1;
    db.KetteAction(static_cast<int32>(end), db.Control()->KetteFeld(1), table, count);
    return db.Error();
}

}  // namespace tsRtm::test
