#include "cli/shared/SideFields.hpp"

#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/database/clsTSRecordSet.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/services/bytes/ByteForms.hpp"

namespace tsRtm::cli {

namespace {

std::string hexadecimal(const Text& bytes) {
    return byteForms::hexDigits(toAnsi(bytes), byteForms::Case::lower);
}

}  // namespace

Text memoOf(Session& session, const FieldMap& map, int32 number, int32 field) {
    const auto record = session.db().Record(number);
    Text text = record ? record->Fields(field) : Text();
    session.check("cannot read the " + map.label(field) + " of record " + std::to_string(number));
    return text;
}

TextTable chainOf(Session& session, int32 number, int32 field) {
    const auto record = session.db().Record(number);
    const auto set = record ? record->Kette(field) : nullptr;
    TextTable rows = set ? set->Inhalt(MemoCells::texts) : TextTable();
    for (int32 i = 1; set && i <= set->Control()->Felder(); ++i) {
        if (!set->Control()->field(i).IsBlob()) continue;
        for (auto& row : rows) {
            Text& cell = row[static_cast<std::size_t>(i - 1)];
            cell = fromUtf8(hexadecimal(cell));
        }
    }
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
            record["blobs"][map.label(i)] = hexadecimal(text);
    }
}

std::optional<Bytes> bytesOfDigits(std::string_view digits) {
    return byteForms::decode(digits, CRYPT_STRING_HEXRAW);
}

}  // namespace tsRtm::cli
