// tsrtm db export: records as CSV or as JSON lines.

#include "cli/Commands.hpp"
#include "cli/db/RowSource.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/CsvWriter.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/Progress.hpp"
#include "cli/shared/Records.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/SideFields.hpp"

namespace tsRtm::cli {
namespace {

struct ExportOptions {
    std::string name;
    std::string file = "-";
    std::vector<std::string> fields;
    std::string separator = ",";
    FileEncoding encoding = FileEncoding::utf8;
    WalkOptions walk;
    bool json = false;
};

[[noreturn]] void refuse(const std::string& where, const Text& text, const ExportOptions& options) {
    throw CliError(where + ": '" + toUtf8(text) + "' cannot be written in " + encodingName(options.encoding) +
                   "; nothing was exported, try --encoding utf8");
}

// A table has no room for blobs and chains.
std::vector<int32> csvColumns(const clsControl& control, const FieldMap& map, std::vector<int32> fields,
                              const ExportOptions& options) {
    std::erase_if(fields, [&](int32 field) {
        const bool none = control.field(field).IsBlob() || control.field(field).IsKette();
        if (none && !options.fields.empty())
            throw CliError(map.label(field) + " cannot be written as CSV; try --json-lines");
        return none;
    });
    return fields;
}

void writeHeader(CsvWriter& writer, const FieldMap& map, const std::vector<int32>& fields,
                 const ExportOptions& options) {
    std::vector<Text> row;
    row.reserve(fields.size());
    for (const int32 field : fields) row.push_back(fromUtf8(map.label(field)));
    if (!writer.row(row)) refuse("the header line", row[writer.badField()], options);
}

// The records that are asked for, in their order.
template <class Write>
void eachRecord(Session& session, const FieldMap& map, const ExportOptions& options, Write write) {
    RecordReader record(session);
    int32 taken = 0;
    uint64 seen = 0;
    const Range range = rangeOf(session, map, options.walk);
    Progress progress("Exporting", "records");
    // False when enough of them were taken.
    const auto take = [&](bool read) {
        progress.update(++seen, static_cast<uint64>(int64{range.last} - range.first + 1));
        if (!read || (record.deleted() && !options.walk.deleted)) return true;
        write(record);
        return options.walk.limit == 0 || ++taken < options.walk.limit;
    };
    if (session.db().ActiveIndex() != 0 || options.walk.descending) {
        walk(session, range, options.walk.descending,
             [&](int32 number) { return take(record.read(number)); });
        return;
    }
    RecordScan scan(session.db(), range.first, range.last);
    for (bool on = range.last >= range.first; on && scan.next();) {
        record.take(scan);
        on = take(true);
    }
    session.check("cannot read on in '" + session.name() + "'");
}

void writeRecords(Session& session, CsvWriter& writer, const FieldMap& map, const std::vector<int32>& fields,
                  const ExportOptions& options) {
    std::vector<Text> row(fields.size());
    eachRecord(session, map, options, [&](const RecordReader& record) {
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (session.control().field(fields[i]).IsMemo())
                row[i] = memoOf(session, map, record.number(), fields[i]);
            else
                row[i] = record.field(fields[i]);
        }
        if (!writer.row(row))
            refuse("record " + std::to_string(record.number()) + ", " + map.label(fields[writer.badField()]),
                   row[writer.badField()], options);
    });
}

// A record a line, with what lies beside it.
void writeJsonLines(Session& session, OutputFile& file, const FieldMap& map, const std::vector<int32>& fields,
                    const ExportOptions& options) {
    eachRecord(session, map, options, [&](const RecordReader& record) {
        Json json = recordJson(record, map, fields);
        addSideFields(json, session, map, record.number());
        file.write(jsonText(json) + "\n");
    });
}

void run(const ExportOptions& options) {
    Session session(options.name, Use::read);
    const FieldMap map(session.control());
    const auto fields = map.select(options.fields);
    OutputFile file(options.file);
    if (isJsonLines(options.file) || options.json) {
        writeJsonLines(session, file, map, fields, options);
        file.finish();
        return;
    }
    const auto columns = csvColumns(session.control(), map, fields, options);
    CsvWriter writer(file, options.separator.front(), options.encoding);
    writeHeader(writer, map, columns, options);
    writeRecords(session, writer, map, columns, options);
    file.finish();
}

}  // namespace

void addExport(Command db) {
    auto options = std::make_shared<ExportOptions>();
    const auto command = db.add("export", "Write records as CSV or JSON lines, in the order of an index");
    addDatabase(command, options->name);
    command.option("FILE", options->file, "The file; \"-\", the default, is standard output");
    command.flag("--json-lines", options->json,
                 "A record a line, with memos, blobs and chains; also by a FILE named *.jsonl");
    addWalkOptions(command, options->walk);
    addFields(command, options->fields);
    addSeparator(command, options->separator);
    addEncoding(command, options->encoding, false);
    command.footer(
        "CSV as RFC 4180 has it, with a header line that import understands; values as they are stored.");
    command.onRun([options] { run(*options); });
}

}  // namespace tsRtm::cli
