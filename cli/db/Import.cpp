// tsrtm db import: rows of a file become records; what does not fit goes to a file of rejects.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/db/RowSource.hpp"
#include "cli/db/RowTarget.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/CsvWriter.hpp"
#include "cli/shared/Progress.hpp"
#include "cli/shared/Rejects.hpp"
#include "cli/shared/SharedOptions.hpp"

namespace tsRtm::cli {
namespace {

constexpr int64 kRowsPerUpdate = 64;

struct ImportOptions {
    std::string name;
    RowOptions rows;
    std::string rejects;
    bool bulk = false;
};

int64 load(RowSource& source, uint64 size, RowTarget& target, Rejects& rejects) {
    ImportRow row;
    std::string reason;
    int64 loaded = 0;
    Progress progress("Importing", "rows");
    while (source.next(row, reason)) {
        if ((loaded + rejects.count()) % kRowsPerUpdate == 0)
            progress.update(source.position(), size, static_cast<uint64>(loaded + rejects.count()));
        const auto stored = reason.empty() ? target.add(row, reason) : RowTarget::Stored::no;
        if (stored == RowTarget::Stored::yes) ++loaded;
        if (stored == RowTarget::Stored::no)
            rejects.add(source.line(), reason, source.titles(), source.cells());
        if (stored != RowTarget::Stored::never) continue;
        rejects.finish();
        throw CliError("stopped at line " + std::to_string(source.line()) + ", " + reason + "; " +
                       std::to_string(target.kept()) + (target.kept() == 1 ? " row is in" : " rows are in"));
    }
    return loaded;
}

// Beside the database.
std::string rejectsOf(const ImportOptions& options) {
    if (!options.rejects.empty()) return options.rejects;
    const Text folder = databaseFolder(options.name);
    return toUtf8(folder.substr(0, folder.size() - 4)) + ".rejects.csv";
}

void import(const ImportOptions& options) {
    Session session(options.name, options.bulk ? Use::alone : Use::change);
    const FieldMap map(session.control());
    InputFile file(options.rows.file);
    const auto source = makeRowSource(file, session, map, options.rows);
    Rejects rejects(rejectsOf(options));
    if (rejects.name() == options.rows.file)
        throw CliError("the rejects would overwrite '" + options.rows.file + "'");
    int64 loaded = 0;
    {
        const auto target = makeRowTarget(session, options.bulk);
        loaded = load(*source, file.size(), *target, rejects);
        // The rejects are safe before the rows count as done.
        rejects.finish();
        Progress progress("Sorting", "records");
        const auto watching = session.db().UpdateProgress.connect([&](int32, int32 done, int32 of) {
            progress.update(static_cast<uint64>(std::max(done, 0)), static_cast<uint64>(std::max(of, 0)));
        });
        target->finish();
    }
    std::cout << "imported " << loaded << (loaded == 1 ? " row" : " rows") << '\n';
    if (rejects.count() > 0) throw CliError(rejects.told());
}

}  // namespace

void addImport(Command db) {
    auto options = std::make_shared<ImportOptions>();
    const auto command = db.add("import", "Add the rows of a file, CSV or JSON lines");
    addDatabase(command, options->name);
    command
        .option("FILE", options->rows.file,
                "The file; the first line of CSV names the fields by name, caption or number")
        .required();
    command.flag("--bulk", options->bulk, "Alone on the database, indexes built at the end: for many rows");
    command
        .option("--rejects", options->rejects,
                "Where rows go that do not fit, with line and reason; DATABASE.rejects.csv")
        .typeName("FILE");
    addSeparator(command, options->rows.separator);
    command.flag("--ignore-unknown", options->rows.ignoreUnknown, "Leave out columns that are no fields");
    addEncoding(command, options->rows.encoding, true);
    command.footer(
        "CSV as RFC 4180 has it. Numbers as 12.5 or 12,5, dates as 31.12.2024 or 2024-12-31. A row that does "
        "not fit is\n"
        "rejected whole, never cut; the rest is kept, and the exit status is 1. A file named *.jsonl has a "
        "record a "
        "line,\nas export writes it, with its memos, blobs and chains.\nExample:\n  tsrtm db import Kunden "
        "kunden.csv --bulk");
    command.onRun([options] { import(*options); });
}

}  // namespace tsRtm::cli
