#include "cli/shared/SideFields.hpp"

#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/services/bytes/ByteForms.hpp"

namespace tsRtm::cli {

Text memoOf(Session& session, const FieldMap& map, int32 number, int32 field) {
    const auto record = session.db().Record(number);
    const Text text = record ? record->Fields(field) : Text();
    session.check("cannot read the " + map.label(field) + " of record " + std::to_string(number));
    return text;
}

void addSideFields(Json& record, Session& session, const FieldMap& map, int32 number) {
    for (int32 i = 1; i <= session.control().Felder(); ++i) {
        const TSIO& field = session.control().field(i);
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
