// tsrtm print csv, print db: tables as lists on paper.
#include <algorithm>

#include "cli/print/Commands.hpp"
#include "cli/print/Flow.hpp"
#include "cli/print/ListPages.hpp"
#include "cli/print/RangeOptions.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/CsvTable.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "tsRtm/calendar/clsDatum.hpp"

namespace tsRtm::cli {
namespace {

constexpr int32 kDecimals = 7;  // bits of a field that tell them

struct CsvOptions {
    std::string file, separator = ",";
    FileEncoding encoding = FileEncoding::automatic;
    std::vector<std::string> fields, sums;
    PrintOptions print;
};

// As many decimals as the number with the most of them has.
int32 decimalsOf(TextView text) {
    const auto point = text.find(u'.');
    return point == TextView::npos ? 0 : static_cast<int32>(text.size() - point - 1);
}

void printCsv(const CsvOptions& options) {
    const auto open = [&] { return CsvTable(options.file, options.encoding, options.separator); };
    CsvTable table = open();
    std::vector<std::size_t> places;
    for (std::size_t i = 0; options.fields.empty() && i < table.titles().size(); ++i) places.push_back(i);
    for (const auto& word : options.fields) places.push_back(table.need(word));
    std::vector<ListColumn> columns;
    columns.reserve(places.size());
    for (const auto place : places) columns.push_back({table.titles()[place], false, std::nullopt});
    std::vector<std::size_t> sums;
    for (const auto& word : options.sums) sums.push_back(table.need(word));
    for (std::size_t i = 0; i < places.size(); ++i)
        if (std::find(sums.begin(), sums.end(), places[i]) != sums.end())
            columns[i] = {columns[i].title, true, 0};
    const auto each = [&](const std::function<void(const std::vector<Text>&)>& take) {
        CsvTable rows = open();
        while (rows.next()) {
            if (!rows.fault().empty())
                throw CliError(options.file + ", line " + std::to_string(rows.line()) + ": " + rows.fault());
            std::vector<Text> cells;
            cells.reserve(places.size());
            for (const auto place : places) cells.push_back(rows.cell(place));
            take(cells);
        }
    };
    if (!sums.empty())
        each([&](const std::vector<Text>& row) {
            for (std::size_t i = 0; i < columns.size(); ++i)
                if (columns[i].sum) columns[i].sum = std::max(*columns[i].sum, decimalsOf(row[i]));
        });
    printList(options.print, fromUtf8(baseName(options.file)), columns, each);
}

struct DbOptions {
    std::string name, title;
    RangeOptions range;
    std::vector<std::string> fields, sums;
    PrintOptions print;
};

// Sums of what has decimals: numbers without them are codes more often than not.
std::vector<ListColumn> columnsOf(const clsControl& control, const FieldMap& map, std::vector<int32>& fields,
                                  const DbOptions& options) {
    std::erase_if(fields, [&](int32 field) {
        return control.field(field).IsBlob() || control.field(field).IsKette() ||
               control.field(field).IsMemo();
    });
    if (fields.empty()) throw CliError("there is no field that a list can show");
    std::vector<int32> sums;
    for (const auto& word : options.sums) sums.push_back(map.need(word));
    std::vector<ListColumn> columns;
    for (const int32 field : fields) {
        const TSIO& traits = control.field(field);
        const bool number = traits.Datentyp() == typWERT;
        const int32 decimals = traits.NachKomma() & kDecimals;
        const bool summed = options.sums.empty() ? number && decimals > 0
                                                 : std::find(sums.begin(), sums.end(), field) != sums.end();
        const Text caption = plainCaption(traits);
        columns.push_back({caption.empty() ? fromUtf8(map.label(field)) : caption, number,
                           summed ? std::optional(number ? decimals : 0) : std::nullopt});
    }
    return columns;
}

// Digits of a date as people read it.
Text shownAs(const TSIO& field, const Text& text) {
    return field.Datentyp() == typDATUM && !text.empty() ? clsDatum().DateTo8(text) : text;
}

void printDb(const DbOptions& options) {
    Session session(options.name, Use::read);
    const FieldMap map(session.control());
    auto fields = map.select(options.fields);
    const auto columns = columnsOf(session.control(), map, fields, options);
    RecordReader record(session);
    const Text title = options.title.empty() ? session.db().DBName() : fromUtf8(options.title);
    printList(options.print, title, columns, [&](const std::function<void(const std::vector<Text>&)>& take) {
        eachOf(session, map, options.range, record, [&] {
            std::vector<Text> cells;
            cells.reserve(fields.size());
            for (const int32 field : fields)
                cells.push_back(shownAs(session.control().field(field), record.field(field)));
            take(cells);
        });
    });
}

void addSums(Command command, std::vector<std::string>& sums, const char* help) {
    command.option("--sum", sums, help).delimiter(',').typeName("F,...");
}

}  // namespace

void addPrintTables(Command print) {
    auto csv = std::make_shared<CsvOptions>();
    const auto forCsv = print.add("csv", "Print a CSV file as a list");
    forCsv.option("FILE", csv->file, "The file, with a header line").required();
    addFields(forCsv, csv->fields);
    addSeparator(forCsv, csv->separator);
    addEncoding(forCsv, csv->encoding, true);
    addSums(forCsv, csv->sums, "Columns that are added up");
    addPrintOptions(forCsv, csv->print, true);
    forCsv.onRun([csv] { printCsv(*csv); });

    auto db = std::make_shared<DbOptions>();
    const auto forDb = print.add("db", "Print a list of the records of a database");
    addDatabase(forDb, db->name);
    forDb.option("--title", db->title, "Over each page; the name of the database without it")
        .typeName("TEXT");
    addFields(forDb, db->fields);
    addRange(forDb, db->range);
    addSums(forDb, db->sums, "Fields that are added up; without it, numbers with decimals");
    addPrintOptions(forDb, db->print, true);
    forDb.onRun([db] { printDb(*db); });
}

}  // namespace tsRtm::cli
