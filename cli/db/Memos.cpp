// tsrtm db memo get, set, export: the texts and bytes beside the records.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/db/RecordLock.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Progress.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm::cli {
namespace {

struct MemosOptions {
    std::string name;
    int32 number = 0;
    std::string field;
    std::optional<std::string> text;
    std::string file;
    std::optional<int32> wait;
};

int32 needSideField(const clsControl& control, const FieldMap& map, const std::string& word) {
    const int32 field = map.need(word);
    if (control.field(field).IsMemo() || control.field(field).IsBlob()) return field;
    throw CliError(map.label(field) + " is neither a memo nor a blob");
}

// As it goes to a file: a text in UTF-8, a blob as it is.
Bytes contentOf(Session& session, int32 number, int32 field) {
    const auto record = session.db().Record(number);
    session.check("cannot read record " + std::to_string(number));
    const Text text = record->Fields(field);
    session.check("cannot read the text of record " + std::to_string(number));
    return session.control().field(field).IsBlob() ? toAnsi(text) : toUtf8(text);
}

void get(const MemosOptions& options) {
    Session session(options.name, Use::read);
    session.needRecord(options.number);
    const int32 field = needSideField(session.control(), FieldMap(session.control()), options.field);
    OutputFile file(options.file.empty() ? "-" : options.file);
    file.write(contentOf(session, options.number, field));
    if (options.file.empty() && session.control().field(field).IsMemo()) file.write("\n");
    file.finish();
}

Bytes wholeFile(const std::string& name) {
    InputFile file(name);
    Bytes bytes(file.size(), '\0');
    bytes.resize(file.read(0, bytes));
    return bytes;
}

void set(const MemosOptions& options) {
    Session session(options.name, Use::change);
    const FieldMap map(session.control());
    const int32 field = needSideField(session.control(), map, options.field);
    const bool blob = session.control().field(field).IsBlob();
    if (options.text.has_value() == !options.file.empty()) throw CliError("give either the text or --file");
    if (blob && options.text) throw CliError(map.label(field) + " takes bytes: use --file");
    const Bytes bytes = options.text ? *options.text : wholeFile(options.file);
    if (!blob && !isUtf8(bytes)) throw CliError("'" + options.file + "' is not in UTF-8");
    const RecordLock lock(session, options.number, options.wait);
    const auto record = session.db().Record(options.number);
    session.check("cannot read record " + std::to_string(options.number));
    record->Fields(field, blob ? fromAnsi(bytes) : fromUtf8(bytes));
    if (!record->Update())
        session.fail("record " + std::to_string(options.number) + " was not stored", record->Error());
}

void exportAll(const MemosOptions& options) {
    Session session(options.name, Use::read);
    const FieldMap map(session.control());
    const int32 field = needSideField(session.control(), map, options.field);
    const std::string end = session.control().field(field).IsBlob() ? ".bin" : ".txt";
    const Text folder = fromUtf8(options.file);
    if (!FilesTopic::ExistFolder(folder) && failed(rtmMain::system().files.makeFolder(folder)))
        throw CliError("cannot make the folder '" + options.file + "'");
    const int32 count = session.count();
    int32 written = 0;
    {
        Progress progress("Exporting", "records");
        for (int32 number = 1; number <= count; ++number) {
            progress.update(static_cast<uint64>(number), static_cast<uint64>(count));
            const Bytes bytes = contentOf(session, number, field);
            if (bytes.empty()) continue;
            OutputFile file(options.file + "/" + std::to_string(number) + end);
            file.write(bytes);
            file.finish();
            ++written;
        }
    }
    std::cout << "exported " << written << (written == 1 ? " text" : " texts") << " to " << options.file
              << '\n';
}

Command command(Command memo, const char* name, const char* help,
                const std::shared_ptr<MemosOptions>& options, void (*run)(const MemosOptions&)) {
    const auto added = memo.add(name, help);
    addDatabase(added, options->name);
    if (run != exportAll) added.option("NR", options->number, "Record number").required();
    added.option("FIELD", options->field, "Memo or blob field by name, caption or number").required();
    added.onRun([options, run] { run(*options); });
    return added;
}

}  // namespace

void addMemos(Command db) {
    const auto memo = db.add("memo", "Texts and bytes beside the records");
    memo.needsCommand();

    auto options = std::make_shared<MemosOptions>();
    command(memo, "get", "Print a memo in UTF-8, or write a blob", options, get)
        .option("--file", options->file, "Where to write it; standard output")
        .typeName("FILE");

    options = std::make_shared<MemosOptions>();
    const auto stored = command(memo, "set", "Store a memo or a blob", options, set);
    stored.option("TEXT", options->text, "The text; an empty one takes it away");
    stored.option("--file", options->file, "Store what this file has; a text in UTF-8").typeName("FILE");
    addWait(stored, options->wait);
    stored.footer("Example:\n  tsrtm db memo set Kunden 17 NOTIZ --file brief.txt");

    options = std::make_shared<MemosOptions>();
    command(memo, "export", "Write all memos or blobs of a field, a file each, named by the record", options,
            exportAll)
        .option("FOLDER", options->file, "Where to")
        .required();
}

}  // namespace tsRtm::cli
