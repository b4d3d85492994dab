// tsrtm db info, fields, dump: what a database is and all that is in it.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/db/FieldTypes.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/SideFields.hpp"

namespace tsRtm::cli {
namespace {

struct LooksOptions {
    std::string name;
    bool json = false;
};

const char* formOf(const clsControl& control) {
    return control.IstUnicode() ? "unicode" : control.IstAnsi() ? "ansi" : "dos";
}

Json indexJson(const clsControl& control, const FieldMap& map, int32 index) {
    Json fields = Json::array();
    for (int32 item = 1; item <= 3 && control.Index(index, item) > 0; ++item)
        fields.push_back(map.label(control.Index(index, item)));
    return fields;
}

std::string indexLine(const clsControl& control, const FieldMap& map, int32 index) {
    std::string line;
    const Json fields = indexJson(control, map, index);
    for (const auto& field : fields.elements()) line += (line.empty() ? "" : ", ") + field.text();
    return line;
}

Json infoJson(Session& session, const FieldMap& map) {
    const auto& control = session.control();
    Json indexes = Json::array();
    for (int32 i = 1; i <= control.Indizes(); ++i) indexes.push_back(indexJson(control, map, i));
    return {{"name", toUtf8(session.db().DBName())},
            {"records", session.count()},
            {"max", control.MaxRecords()},
            {"form", formOf(control)},
            {"trees", session.db().IsBig()},
            {"recordLength", control.GesamtSatzLaenge()},
            {"fields", control.Felder()},
            {"indexes", std::move(indexes)}};
}

void info(const LooksOptions& options) {
    Session session(options.name, Use::read);
    const auto& control = session.control();
    const FieldMap map(control);
    if (options.json) {
        std::cout << jsonText(infoJson(session, map)) << '\n';
        return;
    }
    std::cout << "database  " << toUtf8(session.db().DBName()) << "\nrecords   " << session.count()
              << " of at most " << control.MaxRecords() << ", deleted ones counted\nform      "
              << formOf(control) << ", " << control.GesamtSatzLaenge() << " characters a record\nfields    "
              << control.Felder() << '\n';
    for (int32 i = 1; i <= control.Indizes(); ++i)
        std::cout << "index " << i << "   " << indexLine(control, map, i)
                  << (session.db().IsBig() ? " (tree)" : "") << '\n';
}

Json fieldJson(const clsControl& control, const FieldMap& map, int32 number) {
    const TSIO& field = control.field(number);
    Json names = map.label(number) == std::to_string(number) ? Json() : Json(map.label(number));
    return {{"nr", number},
            {"name", std::move(names)},
            {"caption", toUtf8(plainCaption(field))},
            {"type", typeWord(field.Typ())},
            {"typeWord", field.Typ()},
            {"length", field.Laenge()},
            {"decimals", field.NachKomma() & 7},
            {"indexed", field.IstIndexFeld()},
            {"help", toUtf8(field.Hilfe())}};
}

void fields(const LooksOptions& options) {
    Session session(options.name, Use::read);
    const auto& control = session.control();
    const FieldMap map(control);
    if (options.json) {
        JsonList list("fields");
        for (int32 i = 1; i <= control.Felder(); ++i) list.add(jsonText(fieldJson(control, map, i)));
        return;
    }
    Table table({{"Nr", 4, true},
                 {"Name", 16},
                 {"Caption", 20},
                 {"Type", 12},
                 {"Length", 6, true},
                 {"Decimals", 8, true},
                 {"", 1}});
    for (int32 i = 1; i <= control.Felder(); ++i) {
        const TSIO& field = control.field(i);
        table.row({std::to_string(i), map.label(i), toUtf8(plainCaption(field)), typeWord(field.Typ()),
                   std::to_string(field.Laenge()), std::to_string(field.NachKomma() & 7),
                   field.IstIndexFeld() ? "indexed" : ""});
    }
}

// The records of an index by position, as a JSON array or as numbers between blanks.
void writeOrder(Session& session, int32 index, const char* between) {
    auto& db = session.db();
    db.SetIndex(index);
    const int32 count = session.count();
    for (int32 position = 1; position <= count; ++position) {
        const int32 number = db.Index(position);
        session.check("cannot read index " + std::to_string(index) + " of '" + session.name() + "'");
        std::cout << (position > 1 ? between : "") << number;
    }
}

Json wholeJson(Session& session, RecordReader& record, const FieldMap& map, const std::vector<int32>& all) {
    Json json = recordJson(record, map, all);
    addSideFields(json, session, map, record.number());
    return json;
}

void dumpJson(Session& session, RecordReader& record, const FieldMap& map, const std::vector<int32>& all) {
    std::cout << "{\"records\":[";
    const int32 count = session.count();
    for (int32 number = 1; number <= count; ++number) {
        if (!record.read(number)) session.fail("cannot read record " + std::to_string(number), 57);
        std::cout << (number > 1 ? ",\n" : "") << jsonText(wholeJson(session, record, map, all));
    }
    std::cout << "],\"indexes\":[";
    for (int32 index = 1; index <= session.db().AnzahlIndizes(); ++index) {
        std::cout << (index > 1 ? ",\n" : "\n") << "{\"field\":" << session.control().Index(index)
                  << ",\"order\":[";
        writeOrder(session, index, ",");
        std::cout << "]}";
    }
    std::cout << "]}\n";
}

void dumpText(Session& session, RecordReader& record, const FieldMap& map, const std::vector<int32>& all) {
    const int32 count = session.count();
    for (int32 number = 1; number <= count; ++number)
        if (record.read(number)) printRecord(record, map, all);
    for (int32 index = 1; index <= session.db().AnzahlIndizes(); ++index) {
        std::cout << "index " << index << " (" << indexLine(session.control(), map, index) << "): ";
        writeOrder(session, index, " ");
        std::cout << '\n';
    }
}

void dump(const LooksOptions& options) {
    Session session(options.name, Use::read);
    const FieldMap map(session.control());
    RecordReader record(session);
    const auto all = map.select({});
    if (options.json)
        dumpJson(session, record, map, all);
    else
        dumpText(session, record, map, all);
}

void addLook(Command db, const char* name, const char* help, void (*run)(const LooksOptions&)) {
    auto options = std::make_shared<LooksOptions>();
    const auto command = db.add(name, help);
    addDatabase(command, options->name);
    addJson(command, options->json);
    command.onRun([options, run] { run(*options); });
}

}  // namespace

void addLooks(Command db) {
    addLook(db, "info", "Show form, size and indexes", info);
    addLook(db, "fields", "Show the fields", fields);
    addLook(db, "dump", "Write all records, deleted ones too, and the order of every index", dump);
}

}  // namespace tsRtm::cli
