#include "cli/shared/SideFields.hpp"

#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/services/bytes/ByteForms.hpp"

namespace tsRtm::cli {

Text memoOf(Session& session, const FieldMap& map, int32 number, int32 field) {
    const auto record = session.db().Record(number);
    Text text = record ? record->Fields(field) : Text();
    session.check("cannot read the " + map.label(field) + " of record " + std::to_string(number));
    return text;
}

TextTable chainOf(Session& session, int32 number, int32 field) {
    auto& db = session.db();
    if (db.AktSatzNr() != number) db.AktSatzNr(number);
    TextTable rows;
    db.KetteLesen(db.KetteNr(field), rows);
    session.check("cannot read the chain of record " + std::to_string(number));
    return rows;
}

Json rowJson(const std::vector<Text>& cells) {
    Json row = Json::array();
    for (const auto& cell : cells) row.push_back(toUtf8(cell));
    return row;
}

void addSideFields(Json& record, Session& session, const FieldMap& map, int32 number) {
    for (int32 i = 1; i <= session.control().Felder(); ++i) {
        const TSIO& field = session.control().field(i);
        if (field.IsKette()) {
            if (!session.db().Control()->Kette(i)) continue;
            Json& rows = record["chains"][map.label(i)] = Json::array();
            for (const auto& row : chainOf(session, number, i)) rows.push_back(rowJson(row));
        }
        if (!field.IsMemo() && !field.IsBlob()) continue;
        const Text text = memoOf(session, map, number, i);
        if (field.IsMemo())
            record["memos"][map.label(i)] = toUtf8(text);
        else
            record["blobs"][map.label(i)] = byteForms::hexDigits(toAnsi(text), byteForms::Case::lower);
    }
}

std::optional<Bytes> bytesOfDigits(std::string_view digits) {
    return byteForms::decode(digits, CRYPT_STRING_HEXRAW);
}

}  // namespace tsRtm::cli
