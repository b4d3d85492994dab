#include "tsRtm/control/files/NewFields.hpp"

namespace tsRtm {

TSIOArray newFields(std::span<const NewField> rows) {
    TSIOArray out;
    for (const auto& row : rows) {
        auto field = std::make_shared<TSIO>();
        field->Zeile(static_cast<int32>(out.size()) + 1);
        field->Spalte(1);
        field->Laenge(row.length);
        field->Typ(row.typ);
        field->Caption(row.caption);
        field->Hilfe(row.help);
        field->Name(row.name);
        out.push_back(std::move(field));
    }
    return out;
}

}  // namespace tsRtm
