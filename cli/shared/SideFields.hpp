#pragma once
// Memos and blobs of a record as the tool shows and takes them: texts in UTF-8, bytes as hexadecimal digits.
#include "cli/shared/Records.hpp"

namespace tsRtm::cli {

// Adds "memos" and "blobs" of a record to its JSON, each with the fields of it that the database has; nothing
// where it has none.
void addSideFields(Json& record, Session& session, const FieldMap& map, int32 number);
Text memoOf(Session& session, const FieldMap& map, int32 number, int32 field);
// The bytes of such digits; nothing where they are none.
std::optional<Bytes> bytesOfDigits(std::string_view digits);

}  // namespace tsRtm::cli
