// tsrtm db pack, rebuild, zap, convert, index: work on whole files, with nobody else on the database.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Progress.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/Terminal.hpp"
#include "tsRtm/frame/FilesTopic.hpp"

namespace tsRtm::cli {
namespace {

struct BulkOptions {
    std::string name;
    std::vector<std::string> fields;
    bool memos = false;
    bool yes = false;
    bool lossy = false;
    std::string form;
};

// Runs a work with a bar; what the database says of it is told.
template <class Work>
void withProgress(Session& session, const char* what, Work work) {
    {
        Progress progress(what, "records");
        const auto watching = session.db().UpdateProgress.connect([&](int32, int32 done, int32 of) {
            if (done >= 0 && of > 0) progress.update(static_cast<uint64>(done), static_cast<uint64>(of));
        });
        work(session.db());
    }
    session.check("'" + session.name() + "' is as it was");
}

// A place in the index of postal codes names records by their numbers.
void refuseNumberedPlaces(Session& session) {
    if (FilesTopic::Exist(databaseFolder(session.name()) + u"/Index.tsd"))
        throw CliError("'" + session.name() +
                       "' has an Index.tsd that names its records by number; it is not packed");
}

void pack(const BulkOptions& options) {
    Session session(options.name, Use::alone);
    refuseNumberedPlaces(session);
    const int32 before = session.count();
    withProgress(session, "Packing", [&](clsTSDB& db) { db.Pack(); });
    if (options.memos)
        withProgress(session, "Packing memos and chains", [](clsTSDB& db) { db.PackMemoKette(); });
    std::cout << "packed: " << before - session.count() << " deleted records gone, " << session.count()
              << " kept\n";
}

void rebuild(const BulkOptions& options) {
    Session session(options.name, Use::alone);
    refuseNumberedPlaces(session);
    withProgress(session, "Rebuilding", [](clsTSDB& db) { db.Rebuild(); });
    std::cout << "rebuilt: " << session.count() << " records\n";
}

void zap(const BulkOptions& options) {
    if (!options.yes) throw CliError("this takes all records away for good; say --yes");
    Session session(options.name, Use::alone);
    const int32 before = session.count();
    withProgress(session, "Emptying", [](clsTSDB& db) { db.Zap(); });
    std::cout << "emptied: " << before << " records gone\n";
}

void convert(const BulkOptions& options) {
    Session session(options.name, Use::alone);
    if (options.lossy) agreeToAll();
    bool done = false;
    withProgress(session, "Converting", [&](clsTSDB& db) {
        done = options.form == "unicode" ? db.ConvertToUnicode() : db.ConvertToAnsi();
    });
    if (!done)
        throw CliError(
            "'" + session.name() +
            "' has characters that code page 1252 lacks; nothing is changed, --lossy makes them \"?\"");
    std::cout << "converted: " << session.count() << " records in " << options.form << " form\n";
}

void addIndexTo(const BulkOptions& options) {
    Session session(options.name, Use::alone);
    const auto fields = FieldMap(session.control()).select(options.fields);
    if (fields.size() > 3) throw CliError("an index has at most three fields");
    const auto item = [&](std::size_t i) { return i < fields.size() ? fields[i] : 0; };
    withProgress(session, "Building", [&](clsTSDB& db) { db.CreateIndex(item(0), item(1), item(2)); });
}

void dropIndex(const BulkOptions& options) {
    Session session(options.name, Use::alone);
    const FieldMap map(session.control());
    const int32 field = map.need(options.fields.front());
    if (session.control().IndexNr(Variant(field)) == 0)
        throw CliError("no index begins with the field '" + options.fields.front() + "'");
    withProgress(session, "Dropping", [&](clsTSDB& db) { db.DelIndex(field); });
}

Command command(Command into, const char* name, const char* help, const std::shared_ptr<BulkOptions>& options,
                void (*run)(const BulkOptions&)) {
    const auto added = into.add(name, help);
    addDatabase(added, options->name);
    added.onRun([options, run] { run(*options); });
    return added;
}

}  // namespace

void addBulk(Command db) {
    auto options = std::make_shared<BulkOptions>();
    command(db, "pack", "Take deleted records out; the others get new numbers", options, pack)
        .flag("--memos", options->memos, "And the room of memos and chains that nobody points to");
    command(db, "rebuild", "Pack records, memos and chains, and build all indexes anew",
            std::make_shared<BulkOptions>(), rebuild);
    options = std::make_shared<BulkOptions>();
    command(db, "zap", "Take all records out", options, zap).flag("--yes", options->yes, "Really");

    options = std::make_shared<BulkOptions>();
    const auto converted = command(
        db, "convert", "Bring records, rows and structure into another character form", options, convert);
    converted
        .option("--to", options->form, "ansi (code page 1252, also from the DOS form) or unicode (UTF-16)")
        .oneOf({"ansi", "unicode"}, InHelp::shown)
        .required();
    converted.flag("--lossy", options->lossy,
                   "Where code page 1252 lacks a character, a \"?\" takes its place");

    const auto index = db.add("index", "Add an index, or take one away");
    index.needsCommand();
    options = std::make_shared<BulkOptions>();
    command(index, "add", "Build a further index", options, addIndexTo)
        .option("FIELD", options->fields,
                "One to three fields, the first of which no other index begins with")
        .required();
    options = std::make_shared<BulkOptions>();
    command(index, "drop", "Take the index away that begins with this field", options, dropIndex)
        .option("FIELD", options->fields, "The field")
        .required();
}

}  // namespace tsRtm::cli
