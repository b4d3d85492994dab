#include "desktop/printers/PaperNumbers.hpp"

namespace tsRtm::desktop {
namespace {

struct Row {
    TextView name;
    int32 width, height;  // thousandths of a millimetre
};

// Applications keep these numbers: a row's place is what it is known by.
constexpr Row kRows[] = {
    {u"Letter", 215900, 279400},
    {u"Letter klein", 0, 0},
    {u"Tabloid", 279400, 431800},
    {u"Ledger", 431800, 279400},
    {u"Legal", 215900, 355600},
    {u"Statement", 139700, 215900},
    {u"Executive", 184150, 266700},
    {u"A3", 297000, 420000},
    {u"A4", 210000, 297000},
    {u"A4 klein", 0, 0},
    {u"A5", 148000, 210000},
    {u"B4 (JIS)", 257000, 364000},
    {u"B5 (JIS)", 182000, 257000},
    {u"Folio", 215900, 330200},
    {u"Quarto", 215000, 275000},
    {u"10x14", 254000, 355600},
    {u"11x17", 0, 0},
    {u"Notiz", 0, 0},
    {u"Umschlag 9", 98425, 225425},
    {u"Umschlag 10", 104775, 241300},
    {u"Umschlag 11", 114300, 263525},
    {u"Umschlag 12", 120650, 279400},
    {u"Umschlag 14", 127000, 292100},
    {u"C", 431800, 558800},
    {u"D", 558800, 863600},
    {u"E", 863600, 1117600},
    {u"Umschlag DL", 110000, 220000},
    {u"Umschlag C5", 162000, 229000},
    {u"Umschlag C3", 324000, 458000},
    {u"Umschlag C4", 229000, 324000},
    {u"Umschlag C6", 114000, 162000},
    {u"Umschlag C65", 114000, 229000},
    {u"Umschlag B4", 250000, 353000},
    {u"Umschlag B5", 176000, 250000},
    {u"Umschlag B6", 176000, 125000},
    {u"Umschlag Italien", 110000, 230000},
    {u"Umschlag Monarch", 98425, 190500},
    {u"Umschlag 6 3/4", 92075, 165100},
    {u"Endlos US", 377825, 279400},
    {u"Endlos deutsch", 215900, 304800},
    {u"Endlos deutsch Legal", 215900, 330200},
};

}  // namespace

std::vector<platform::PaperForm> usualForms() {
    std::vector<platform::PaperForm> forms;
    for (const auto& row : kRows) forms.push_back({Text(row.name), row.width, row.height});
    return forms;
}

}  // namespace tsRtm::desktop
