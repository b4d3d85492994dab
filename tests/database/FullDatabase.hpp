#pragma once
// A database that has all there is: keys, a text, a memo, properties, a chain of rows.
#include <ostream>

#include "tests/database/DatabaseFixture.hpp"

namespace tsRtm::test {

enum FullField : int32 { uNAME = 1, uORT, uTAG, uTEXT, uNOTIZ, uEIGEN, uPOS };

struct FullForm {
    int32 max = kNormal;
    bool windows = true;
    int32 chain = 8;  // length of its field: one pointer below 8
    int32 text = 20;  // length of TEXT
};
// Indexes (NAME, ORT), (TAG). A row of a chain has TEXT of 30 characters and ZAHL of 4 digits.
inline std::shared_ptr<clsTSDB> makeFull(clsRtm& rtm, TextView folder, const FullForm& form) {
    const auto fields = fieldsOf({{u"NAME", tsAlphanumerisch, 12},
                                  {u"ORT", tsAlphanumerisch, 8},
                                  {u"TAG", tsDate, 8},
                                  {u"TEXT", tsAlphanumerisch, form.text},
                                  {u"NOTIZ", tsMemo, 60},
                                  {u"EIGEN", tsProperties, 60},
                                  {u"POS", tsKette, form.chain}});
    if (!rtm.DBCreateExt(DBAnsi, folder, {}, fields, form.max, u"  1  2  0  3  0  0")) return there(nullptr);
    static_cast<void>(rtm.safeReplace(Text(folder) + u".DBD/KetteCtl.007",
                                      "TS1,2\r\n0,1,1,30,1,\"Text@@7TEXT\"\r\n0,2,1,4,5,\"Zahl@@7ZAHL\"\r\n"
                                      "35,100,0\r\n0\r\n"));
    return there(rtm.OpenTSDB(folder));
}

struct FullRow {
    Text name, ort = {}, tag = {}, text = {}, notiz = {}, eigen = {};
    TextTable chain = {};
    bool deleted = false;

    bool operator==(const FullRow&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const FullRow& row) {
        for (const auto* cell : {&row.name, &row.ort, &row.tag, &row.text, &row.notiz, &row.eigen})
            out << toUtf8(cell->substr(0, 20)) << '|';
        for (const auto& cells : row.chain) out << toUtf8(cells.front()) << ',';
        return out << (row.deleted ? "*" : "");
    }
};
using FullRows = std::vector<FullRow>;

inline FullRow rowAt(clsTSDB& db, int32 number) {
    const auto record = db.Record(number);
    if (!record) return {};
    FullRow row{record->Fields(uNAME),
                record->Fields(uORT),
                record->Fields(uTAG),
                record->Fields(uTEXT),
                record->Fields(uNOTIZ),
                record->Fields(uEIGEN),
                {},
                record->Deleted()};
    db.AktSatzNr(number);
    db.KetteLesen(1, row.chain);
    return row;
}
// Record n at n - 1.
inline FullRows rowsOf(clsTSDB& db) {
    FullRows rows;
    for (int32 n = 1; n <= db.AnzahlDSaetze(); ++n) rows.push_back(rowAt(db, n));
    return rows;
}

// All but the chain, by an object that gives its lock back; whether it was told as stored.
inline bool store(const std::shared_ptr<clsTSRecord>& record, const FullRow& row) {
    const bool done = stored(record, {{uNAME, row.name},
                                      {uORT, row.ort},
                                      {uTAG, row.tag},
                                      {uTEXT, row.text},
                                      {uNOTIZ, row.notiz},
                                      {uEIGEN, row.eigen}});
    if (done) record->Entsperren();
    return done;
}

}  // namespace tsRtm::test
