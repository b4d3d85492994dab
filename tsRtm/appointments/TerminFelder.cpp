#include "tsRtm/appointments/TerminFelder.hpp"

#include "tsRtm/control/clsControl.hpp"

namespace tsRtm {
namespace {

struct RoleRow {
    TerminFelder::Rolle role;
    TextView names[3];
    TextView caption;  // that a caption holds; empty for none
};

constexpr RoleRow kRoles[] = {
    {TerminFelder::schluessel, {u"TERMIN"}, u"Termin"},
    {TerminFelder::gueltigAb, {u"TERMINSTART", u"ABDATUM"}, u"ab "},
    {TerminFelder::gueltigBis, {u"TERMINENDE", u"BISDATUM"}, u"bis "},
    {TerminFelder::id, {u"ID"}, {}},
    {TerminFelder::uhrzeitVon, {u"UHRZEIT", u"UHRZEITVON"}, u"Uhrzeit"},
    {TerminFelder::uhrzeitBis, {u"UHRZEITBIS"}, {}},
    {TerminFelder::betreff, {u"ANLASS", u"BETREFF", u"TEXT"}, u"Anla"},
    {TerminFelder::ort, {u"ORT", u"WO"}, {}},
    {TerminFelder::prioritaet, {u"PRIORITAET"}, {}},
    {TerminFelder::dauer, {u"DAUER"}, u"Dauer"},
    {TerminFelder::tag, {u"TAG", u"DATUM"}, u"Tag"},
    {TerminFelder::memo, {u"MEMO"}, u"Bemerkung"},
};

int32 fieldFor(const clsControl& control, const RoleRow& row) {
    for (const TextView name : row.names)
        for (int32 field = 1; !name.empty() && field <= control.Felder(); ++field)
            if (equalIgnoringCase(control.field(field).Name(), name)) return field;
    for (int32 field = 1; !row.caption.empty() && field <= control.Felder(); ++field)
        if (upper(replaceAll(control.field(field).Caption(), u"&", {})).find(upper(row.caption)) !=
            Text::npos)
            return field;
    return 0;
}

}  // namespace

TerminFelder TerminFelder::in(const clsControl& control) {
    TerminFelder fields;
    for (const auto& row : kRoles) fields.nummern[row.role] = fieldFor(control, row);
    return fields;
}

}  // namespace tsRtm
