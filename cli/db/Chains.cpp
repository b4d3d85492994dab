// tsrtm db chain list, add, write: the rows that belong to a record.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/db/ChainTexts.hpp"
#include "cli/db/RecordLock.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/SideFields.hpp"
#include "cli/shared/TextFiles.hpp"
#include "tsRtm/database/clsTSRecordSet.hpp"

namespace tsRtm::cli {
namespace {

struct ChainsOptions {
    std::string name;
    int32 number = 0;
    std::string field;
    std::vector<std::string> words;
    std::string file;
    std::optional<int32> wait;
    bool head = false;
    bool json = false;
};

// The chain that a command means, with the record as the current one.
struct Chain {
    Chain(Session& session, const ChainsOptions& options) : session_(session), field(fieldOf(options.field)) {
        control = session.db().Control()->Kette(field);
        if (!control) throw CliError("'" + options.field + "' has no structure file for its rows");
        session.needRecord(options.number);
    }
    // After the lock is won: what it shows is of now.
    std::shared_ptr<clsTSRecordSet> rows(int32 number) {
        const auto record = session_.db().Record(number);
        session_.check("cannot read record " + std::to_string(number));
        return record->Kette(field);
    }
    int32 fieldOf(const std::string& word) const {
        const FieldMap map(session_.control());
        const int32 found = map.need(word);
        if (session_.db().KetteNr(found) == 0) throw CliError(map.label(found) + " is no chain");
        return found;
    }

    Session& session_;
    int32 field;
    std::shared_ptr<clsControl> control;
};

void list(const ChainsOptions& options) {
    Session session(options.name, Use::read);
    Chain chain(session, options);
    const TextTable rows = chainOf(session, options.number, chain.field);
    if (options.json) {
        JsonList out("rows");
        for (const auto& row : rows) out.add(jsonText(rowJson(row)));
        return;
    }
    const FieldMap map(*chain.control);
    std::vector<Table::Column> columns;
    for (int32 i = 1; i <= map.count(); ++i)
        columns.push_back({map.label(i), static_cast<std::size_t>(chain.control->field(i).Laenge()), false});
    Table table(columns);
    for (const auto& row : rows) {
        std::vector<std::string> cells;
        cells.reserve(row.size());
        for (const auto& cell : row) cells.push_back(toUtf8(cell));
        table.row(cells);
    }
}

void add(const ChainsOptions& options) {
    Session session(options.name, Use::change);
    Chain chain(session, options);
    const auto cells = ChainTexts(*chain.control).row(options.words);
    // A row is added beside others: no lock of the record is needed.
    const auto row = chain.rows(options.number)->Add(options.head);
    for (std::size_t i = 0; row && i < cells.size(); ++i) row->Fields(static_cast<int32>(i) + 1, cells[i]);
    if (row) row->Update();
    session.check("no row was added to record " + std::to_string(options.number));
}

TextTable rowsOf(const std::string& name, ChainTexts reader) {
    InputFile file(name);
    std::string text(file.size(), '\0');
    text.resize(file.read(0, text));
    TextTable rows;
    try {
        const Json json = Json::parse(text);
        for (const auto& row : (json.isObject() ? json.at("rows") : json).elements())
            rows.push_back(reader.row(row.elements()));
    } catch (const JsonError&) {
        throw CliError("'" + name + "' is not of the form [[\"text\",\"text\"],...]");
    }
    return rows;
}

void write(const ChainsOptions& options) {
    Session session(options.name, Use::change);
    Chain chain(session, options);
    const TextTable rows = rowsOf(options.file, ChainTexts(*chain.control));
    const RecordLock lock(session, options.number, options.wait);
    const auto set = chain.rows(options.number);
    set->Inhalt(rows, MemoCells::texts);
    set->Update();
    session.check("the rows of record " + std::to_string(options.number) + " were not stored");
}

Command chainCommand(Command chain, const char* name, const char* help,
                     const std::shared_ptr<ChainsOptions>& options, void (*run)(const ChainsOptions&)) {
    const auto added = databaseCommand(chain, name, help, options, run);
    added.option("NR", options->number, "Record number").required();
    added.option("FIELD", options->field, "The field that has the rows").required();
    return added;
}

}  // namespace

void addChains(Command db) {
    const auto chain = db.add("chain", "Rows that belong to a record");
    chain.needsCommand();

    auto options = std::make_shared<ChainsOptions>();
    addJson(chainCommand(chain, "list", "Show the rows of a record", options, list), options->json);

    options = std::make_shared<ChainsOptions>();
    const auto added = chainCommand(chain, "add", "Add a row behind the others", options, add);
    added.option("NAME=VALUE", options->words, "Field of the row and text").required();
    added.flag("--head", options->head, "In front of the others");
    added.footer("Example:\n  tsrtm db chain add Kunden 17 POSTEN TEXT=Papier PREIS=12,50");

    options = std::make_shared<ChainsOptions>();
    const auto written =
        chainCommand(chain, "write", "Put rows in the place of all that there are", options, write);
    written
        .option("FILE", options->file,
                "The rows as JSON, a list of lists of texts, as list --json and dump write them")
        .required();
    addWait(written, options->wait);
}

}  // namespace tsRtm::cli
