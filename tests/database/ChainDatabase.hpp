#pragma once
// A database whose records have a name and a chain POS of rows (TEXT 6 characters, ZAHL 4 digits).
#include "tests/database/MemoryDatabase.hpp"

namespace tsRtm::test {

enum ChainFields : int32 { fKEY = 1, fPOS = 2 };

inline TextTable rowsOf(std::initializer_list<std::pair<TextView, TextView>> rows) {
    TextTable out;
    for (const auto& [text, number] : rows) out.push_back({Text(text), Text(number)});
    return out;
}
// Rows told apart by one text: "a1", "b2" ...
inline TextTable rowsNamed(TextView names) {
    TextTable out;
    for (std::size_t i = 0; i < names.size(); ++i)
        out.push_back({Text(1, names[i]), toText(static_cast<int64>(i) + 1)});
    return out;
}

struct ChainForm {
    int32 length = 8;  // of the field: one pointer below 8
    eDBTyp typ = DBAnsi;
    bool dos = false;
    int32 max = kNormal;
};

// `records` records named A, B, C ...; opened.
inline std::shared_ptr<clsTSDB> makeChains(MemoryFiles& disk, clsRtm& rtm, const ChainForm& form,
                                           int32 records) {
    const TSIOArray fields = fieldsOf({{u"KEY", tsAlphanumerisch, 8}, {u"POS", tsKette, form.length}});
    if (!rtm.DBCreateExt(form.typ, kFolder, {}, fields, form.max, u"  1  0  0")) return there(nullptr);
    const std::string head = form.dos ? "" : form.typ == DBUnicode ? "TS2," : "TS1,";
    disk.put(path(u"KetteCtl.002"), head +
                                        "2\r\n0,1,1,6,1,\"Text@@7TEXT\"\r\n0,2,1,4,5,\"Zahl@@7ZAHL\"\r\n"
                                        "11,100,0\r\n0\r\n");
    if (form.dos) disk.put(path(u"Control.tsd"), disk.dump(path(u"Control.tsd")).substr(4));
    auto db = there(rtm.OpenTSDB(kFolder));
    for (int32 n = 0; n < records; ++n)
        if (!addRecord(*db, {{fKEY, Text(1, static_cast<char16_t>(u'A' + n))}})) return there(nullptr);
    return db;
}

// `records` records of KEY 1, 2 ... and a chain POS whose rows have a NAME and a text.
enum RowFields : int32 { rNAME = 1, rTEXT = 2 };
inline std::shared_ptr<clsTSDB> makeTextRows(clsRtm& rtm, TextView folder, int32 records) {
    const TSIOArray fields = fieldsOf({{u"KEY", tsAlphanumerisch, 8}, {u"POS", tsKette, 8}});
    if (!rtm.DBCreateExt(DBAnsi, folder, {}, fields, kNormal, u"  1  0  0")) return there(nullptr);
    static_cast<void>(rtm.safeReplace(
        Text(folder) + u".DBD/KetteCtl.002",
        "TS1,2\r\n0,1,1,4,1,\"Name@@7NAME\"\r\n0,2,1,60,22,\"Text@@7TEXT\"\r\n7,100,0\r\n0\r\n"));
    auto db = there(rtm.OpenTSDB(folder));
    for (int32 n = 1; n <= records; ++n)
        if (!addRecord(*db, {{fKEY, toText(n)}})) return there(nullptr);
    return db;
}

inline TextTable chainAt(clsTSDB& db, int32 record) {
    TextTable rows;
    db.AktSatzNr(record);
    const bool any = db.KetteLesen(1, rows);
    EXPECT_EQ(any, !rows.empty());
    return rows;
}
// All cells of it, a blank behind each row.
inline Text shownIn(clsTSDB& db, int32 record) {
    Text out;
    for (const auto& row : chainAt(db, record)) {
        for (const auto& cell : row) out += cell;
        out += u" ";
    }
    return out;
}

}  // namespace tsRtm::test
