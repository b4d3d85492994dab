// tsrtm tab list, get, set, add, delete, expand: lists, tables and input shortcuts in text files.
#include <algorithm>
#include <cmath>
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/ErrorText.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/Terminal.hpp"
#include "cli/tab/TabFile.hpp"
#include "tsRtm/clsRtm.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::cli {
namespace {

constexpr float64 kAllWholeBelow = 9007199254740992;  // 2^53, from where on not every whole number is there

struct TabOptions {
    std::string file;
    TabForm form;
    bool rows = false;
    bool shortcuts = false;
    int32 number = 0;
    int32 before = 0;
    std::optional<int32> column;
    std::vector<int32> numbers;
    std::vector<std::string> values;
    int32 limit = 0;
    std::string folder;
    bool json = false;
};

TabForm formOf(const TabOptions& options) {
    TabForm form = options.form;
    const int32 letters = static_cast<int32>(form.types.size());
    if (form.columns == 0) form.columns = letters;
    if (letters > form.columns)
        throw CliError("--types has " + std::to_string(letters) + " letters for " +
                       std::to_string(form.columns) + " columns");
    form.kind = options.shortcuts  ? TabForm::shortcuts
                : options.rows     ? TabForm::rows
                : form.columns > 0 ? TabForm::table
                                   : TabForm::lines;
    return form;
}

std::unique_ptr<TabFile> openExisting(const TabOptions& options) {
    const auto status = rtmMain::system().files.status(fromUtf8(options.file));
    if (!status) throw CliError("cannot read '" + options.file + "': " + systemErrorText(status.error()));
    if (status->folder) throw CliError("'" + options.file + "' is a folder");
    return TabFile::open(options.file, formOf(options));
}

Json cellJson(TabFile& file, int32 row, int32 column, const Text& text) {
    if (!file.isNumber(column)) return toUtf8(text);
    const float64 number = file.number(row, column);
    const bool whole = std::fabs(number) < kAllWholeBelow && number == std::trunc(number);
    if (whole) return static_cast<int64>(number);
    return number;
}

Json rowJson(TabFile& file, int32 row, bool single) {
    const auto cells = file.row(row);
    if (single) return toUtf8(cells[0]);
    Json out = Json::array();
    for (std::size_t i = 0; i < cells.size(); ++i)
        out.push_back(cellJson(file, row, static_cast<int32>(i) + 1, cells[i]));
    return out;
}

void writeTable(TabFile& file, int32 shown) {
    std::vector<Table::Column> columns{{"Nr", 4, true}};
    std::vector<std::vector<std::string>> rows;
    for (int32 row = 1; row <= shown; ++row) {
        auto& values = rows.emplace_back(1, std::to_string(row));
        for (const Text& cell : file.row(row)) values.push_back(printable(cell));
        for (std::size_t i = columns.size(); i < values.size(); ++i)
            columns.push_back({std::to_string(i), 1, file.isNumber(static_cast<int32>(i))});
        for (std::size_t i = 1; i < values.size(); ++i)
            columns[i].width = std::max(columns[i].width, displayWidth(values[i]));
    }
    Table table(columns);
    for (auto& row : rows) {
        row.resize(columns.size());
        table.row(row);
    }
}

void list(const TabOptions& options) {
    const auto file = openExisting(options);
    const int32 count = file->count();
    const int32 shown = options.limit > 0 ? std::min(options.limit, count) : count;
    const bool single = formOf(options).kind == TabForm::lines;
    if (options.json) {
        Json rows = Json::array();
        for (int32 row = 1; row <= shown; ++row) rows.push_back(rowJson(*file, row, single));
        std::cout << jsonText({{"count", count}, {"whole", file->whole()}, {"entries", std::move(rows)}})
                  << '\n';
        return;
    }
    writeTable(*file, shown);
    if (shown < count) std::cerr << "There are " << count << " entries.\n";
    if (!file->whole()) std::cerr << "tsrtm: note: there are lines that belong to no row\n";
}

void get(const TabOptions& options) {
    const auto file = openExisting(options);
    file->needRow(options.number);
    const auto cells = file->row(options.number);
    if (options.column && (*options.column < 1 || *options.column > std::ssize(cells)))
        throw CliError("no column " + std::to_string(*options.column) + ": entry " +
                       std::to_string(options.number) + " has 1 to " + std::to_string(cells.size()));
    if (options.json) {
        const bool single = formOf(options).kind == TabForm::lines;
        std::cout << jsonText(options.column ? cellJson(*file, options.number, *options.column,
                                                        cells[static_cast<std::size_t>(*options.column) - 1])
                                             : rowJson(*file, options.number, single))
                  << '\n';
        return;
    }
    for (int32 column = 1; column <= std::ssize(cells); ++column)
        if (!options.column || *options.column == column)
            std::cout << printable(cells[static_cast<std::size_t>(column) - 1]) << '\n';
}

void set(const TabOptions& options) {
    openExisting(options)->set(options.number, options.column.value_or(1), options.values[0]);
}

void add(const TabOptions& options) {
    const auto file =
        options.before > 0 ? openExisting(options) : TabFile::open(options.file, formOf(options));
    const bool single = formOf(options).kind == TabForm::lines;
    if (single && options.values.size() > 1)
        throw CliError("an entry of a list is one value; put it in quotes, or tell the form by --columns");
    const int32 number =
        options.before > 0 ? file->insert(options.before, options.values) : file->add(options.values);
    if (options.json)
        std::cout << jsonText({{"nr", number}}) << '\n';
    else
        std::cout << "entry " << number << '\n';
}

void remove(const TabOptions& options) { openExisting(options)->remove(options.numbers); }

void expand(const TabOptions& options) {
    clsRtm rtm;
    if (!options.folder.empty()) rtm.TablePath(fromUtf8(options.folder));
    Text input = fromUtf8(options.values[0]);
    const bool replaced = rtm.Table(input, 0);
    if (options.json) {
        std::cout << jsonText({{"replaced", replaced}, {"text", toUtf8(input)}}) << '\n';
        return;
    }
    if (!replaced)
        throw CliError("'" + options.values[0] + "' is no shortcut of Tabelle.iom in '" +
                       toUtf8(rtm.TablePath()) + "'");
    std::cout << printable(input) << '\n';
}

void addForm(Command command, TabOptions& options) {
    command.option("FILE", options.file, "The text file").required();
    const auto columns = command.option("--columns", options.form.columns, "A table of so many columns")
                             .range(1, 1000)
                             .typeName("N");
    const auto types =
        command
            .option("--types", options.form.types,
                    "A table of these columns, a letter each: L whole number, D number, T text")
            .check([](const std::string& text) {
                return text.find_first_not_of("LDTS") == std::string::npos ? ""
                                                                           : "must be letters L, D and T";
            })
            .typeName("TLD");
    const auto rows = command.flag("--rows", options.rows, "A table with rows of different lengths");
    const auto keys = command.flag("--shortcuts", options.shortcuts, "Input shortcuts: key and replacement");
    for (const auto option : {columns, types}) option.excludes(rows).excludes(keys);
    rows.excludes(keys);
    command.flag("--encrypted", options.form.encrypted, "Its lines are scrambled");
}

void addWipe(Command command, TabOptions& options) {
    command.flag("--wipe", options.form.wipe, "Overwrite the old version before it is deleted");
}

Command command(Command tab, const char* name, const char* help, const std::shared_ptr<TabOptions>& options,
                void (*run)(const TabOptions&)) {
    const auto added = tab.add(name, help);
    added.onRun([options, run] { run(*options); });
    return added;
}

void addReading(Command tab) {
    auto listed = std::make_shared<TabOptions>();
    const auto listing = command(tab, "list", "Show the entries", listed, list);
    addForm(listing, *listed);
    addLimit(listing, listed->limit, "At most so many entries");
    addJson(listing, listed->json);

    auto got = std::make_shared<TabOptions>();
    const auto getting = command(tab, "get", "Show an entry, a cell a line, or one cell of it", got, get);
    addForm(getting, *got);
    getting.option("NR", got->number, "Number of the entry").required();
    getting.option("COLUMN", got->column, "Number of the cell");
    addJson(getting, got->json);

    auto tried = std::make_shared<TabOptions>();
    const auto trying = command(tab, "expand", "What an input becomes by the input shortcuts", tried, expand);
    trying.option("INPUT", tried->values, "What a user types: a key, #D+7, #Z ...").required().expected(1);
    trying.option("--folder", tried->folder, "Where Tabelle.iom lies; the user's own without it");
    addJson(trying, tried->json);
}

void addChanging(Command tab) {
    auto changed = std::make_shared<TabOptions>();
    const auto changing = command(tab, "set", "Change a cell of an entry", changed, set);
    addForm(changing, *changed);
    changing.option("NR", changed->number, "Number of the entry").required();
    changing.option("VALUE", changed->values, "Its new text").required().expected(1);
    changing.option("--column", changed->column, "Number of the cell; 1 without it").typeName("N");
    addWipe(changing, *changed);

    auto put = std::make_shared<TabOptions>();
    const auto adding = command(tab, "add", "Add an entry and print its number", put, add);
    addForm(adding, *put);
    adding.option("VALUE", put->values, "The cells of the entry; those left out are empty").required();
    adding.option("--before", put->before, "In front of this entry; at the end without it")
        .positive()
        .typeName("NR");
    addWipe(adding, *put);
    addJson(adding, put->json);

    auto removed = std::make_shared<TabOptions>();
    const auto removing = command(tab, "delete", "Delete entries; the others move up", removed, remove);
    addForm(removing, *removed);
    removing.option("NR", removed->numbers, "Numbers of entries").required();
    addWipe(removing, *removed);
}

}  // namespace

void addTables(Command app) {
    const auto tab = app.add("tab", "Lists, tables and input shortcuts in text files");
    tab.needsCommand();
    tab.footer(
        "Nothing in a file tells its form, so you do: a list of lines without an option, a table by "
        "--columns\n"
        "or --types, rows of different lengths by --rows, Tabelle.iom by --shortcuts. Changes are written\n"
        "whole or not at all; nobody is locked out, and the last writer wins.\n"
        "Examples:\n"
        "  tsrtm tab list Zuletzt.txt\n"
        "  tsrtm tab add Konten.tab --types TLD Müller 7 12,50\n"
        "  tsrtm tab set Konten.tab --types TLD 1 13,50 --column 3\n"
        "  tsrtm tab add Tabelle.iom --shortcuts mfg \"Mit freundlichen Grüßen\"\n"
        "  tsrtm tab expand mfg --folder .");
    addReading(tab);
    addChanging(tab);
}

}  // namespace tsRtm::cli
