// tsrtm db export: records as CSV.
#include <CLI/CLI.hpp>

#include "cli/Commands.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/CsvWriter.hpp"
#include "cli/shared/Progress.hpp"
#include "cli/shared/Records.hpp"
#include "cli/shared/SharedOptions.hpp"

namespace tsRtm::cli {
namespace {

struct Options {
    std::string name;
    std::string file = "-";
    std::vector<std::string> fields;
    std::string separator = ",";
    FileEncoding encoding = FileEncoding::utf8;
    WalkOptions walk;
};

[[noreturn]] void refuse(const std::string& where, const Text& text, const Options& options) {
    throw CliError(where + ": '" + toUtf8(text) + "' cannot be written in " + encodingName(options.encoding) +
                   "; nothing was exported, try --encoding utf8");
}

void writeHeader(CsvWriter& writer, const FieldMap& map, const std::vector<int32>& fields,
                 const Options& options) {
    std::vector<Text> row;
    for (const int32 field : fields) row.push_back(fromUtf8(map.label(field)));
    if (!writer.row(row)) refuse("the header line", row[writer.badField()], options);
}

void writeRecords(Session& session, CsvWriter& writer, const FieldMap& map, const std::vector<int32>& fields,
                  const Options& options) {
    RecordReader record(session);
    std::vector<Text> row;
    int32 taken = 0;
    uint64 seen = 0;
    const Range range = rangeOf(session, map, options.walk);
    Progress progress("Exporting", "records");
    walk(session, range, options.walk.descending, [&](int32 number) {
        progress.update(++seen, static_cast<uint64>(range.last - range.first + 1));
        if (!record.read(number) || (record.deleted() && !options.walk.deleted)) return true;
        row.clear();
        for (const int32 field : fields) row.push_back(record.field(field));
        if (!writer.row(row))
            refuse("record " + std::to_string(number) + ", " + map.label(fields[writer.badField()]),
                   row[writer.badField()], options);
        return options.walk.limit == 0 || ++taken < options.walk.limit;
    });
}

void run(const Options& options) {
    Session session(options.name, Use::read);
    const FieldMap map(session.control());
    const auto fields = map.select(options.fields);
    OutputFile file(options.file);
    CsvWriter writer(file, options.separator.front(), options.encoding);
    writeHeader(writer, map, fields, options);
    writeRecords(session, writer, map, fields, options);
    file.finish();
}

}  // namespace

void addExport(CLI::App& db) {
    auto options = std::make_shared<Options>();
    auto* command = db.add_subcommand("export", "Write records as CSV, in the order of an index");
    addDatabase(*command, options->name);
    command->add_option("FILE", options->file, "The file; \"-\", the default, is standard output");
    addWalkOptions(*command, options->walk);
    addFields(*command, options->fields);
    addSeparator(*command, options->separator);
    addEncoding(*command, options->encoding, false);
    command->footer(
        "CSV as RFC 4180 has it, with a header line that import understands; values as they are stored.");
    command->callback([options] { run(*options); });
}

}  // namespace tsRtm::cli
