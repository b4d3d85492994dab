#pragma once
// What lies beside a record as the tool shows and takes it: memos in UTF-8, blobs as hexadecimal digits,
// chains as rows of texts.
#include "cli/shared/Records.hpp"

namespace tsRtm::cli {

// Adds "memos", "blobs" and "chains" of a record to its JSON, each with the fields of it that the database
// has; nothing where it has none.
void addSideFields(Json& record, Session& session, const FieldMap& map, int32 number);
Text memoOf(Session& session, const FieldMap& map, int32 number, int32 field);
// The rows of a chain; cells of memos as their texts, of blobs as hexadecimal digits.
TextTable chainOf(Session& session, int32 number, int32 field);
Json rowJson(const std::vector<Text>& cells);
// The bytes of such digits; nothing where they are none.
std::optional<Bytes> bytesOfDigits(std::string_view digits);

}  // namespace tsRtm::cli
