// DatabasesTopic: a record that the user chooses.
#include <map>

#include "tsRtm/database/DatabasesTopic.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm {
namespace {

// The field of the order first, then the others that a list shows.
std::vector<int32> shownFields(const clsTSDB& db) {
    std::vector<int32> fields;
    if (db.ActiveIndex() > 0) fields.push_back(db.ActiveIndex());
    for (int32 field = 1; field <= db.CtrlEintraege(); ++field)
        if (field != db.ActiveIndex() && db.ViewLaenge(field) > 0) fields.push_back(field);
    return fields;
}

}  // namespace

std::shared_ptr<clsTSRecord> DatabasesTopic::DBSelectAt(clsTSDB& DB, TextView Caption, TextView Such) {
    const auto fields = shownFields(DB);
    std::map<int32, int32> shown;  // record by line: positions change when others write
    platform::ChoiceList list;
    list.caption = Text(Caption);
    for (const int32 field : fields) list.titles.push_back(replaceAll(DB.Caption(field), u"&", {}));
    list.count = DB.AnzahlDSaetze();
    list.find = [&](TextView typed) { return DB.Rang(typed); };
    if (!Such.empty()) list.start = list.find(Such);
    list.cells = [&](int32 line) {
        std::vector<Text> cells(fields.size());
        shown[line] = DB.Index(line);
        const auto record = shown[line] > 0 ? DB.Record(shown[line]) : nullptr;
        for (std::size_t i = 0; record && i < fields.size(); ++i) cells[i] = record->Fields(fields[i]);
        return cells;
    };
    const int32 line = rtmMain::system().choices.choose(list);
    if (line < 1 || line > list.count) return nullptr;
    const auto known = shown.find(line);
    const int32 number = known != shown.end() ? known->second : DB.Index(line);
    auto record = number > 0 ? DB.Record(number) : nullptr;
    return record && !record->Deleted() ? record : nullptr;
}

}  // namespace tsRtm
