// tsrtm db import: rows of a CSV file become records; what does not fit goes to a file of rejects.
#include <CLI/CLI.hpp>
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/db/RowTarget.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/CsvReader.hpp"
#include "cli/shared/CsvWriter.hpp"
#include "cli/shared/Progress.hpp"
#include "cli/shared/SharedOptions.hpp"

namespace tsRtm::cli {
namespace {

constexpr int64 kRowsPerUpdate = 64;

struct Options {
    std::string name;
    std::string file;
    std::string rejects;
    std::string separator = ",";
    FileEncoding encoding = FileEncoding::automatic;
    bool bulk = false;
    bool ignoreUnknown = false;
};

// Made with the first row that goes there: line, reason, and the row as it came, in UTF-8.
class Rejects {
 public:
    Rejects(std::string name, std::vector<std::string> header, FileEncoding encoding)
        : name_(std::move(name)), header_(std::move(header)), encoding_(encoding) {}

    void add(const CsvRow& row, const std::string& reason) {
        if (!file_) {
            file_.emplace(name_);
            writer_.emplace(*file_, ',', FileEncoding::utf8);
            std::vector<Text> titles{u"line", u"reason"};
            for (const auto& title : header_) titles.push_back(readable(title));
            writer_->row(titles);
        }
        std::vector<Text> fields{toText(row.line), fromUtf8(reason)};
        for (const auto& field : row.fields) fields.push_back(readable(field));
        writer_->row(fields);
        ++count_;
    }
    int64 count() const noexcept { return count_; }
    const std::string& name() const noexcept { return name_; }
    void finish() {
        if (file_) file_->finish();
    }

 private:
    // What is malformed is shown byte by byte.
    Text readable(const std::string& bytes) const {
        if (auto text = decodeText(bytes, encoding_)) return *text;
        return *decodeText(bytes, FileEncoding::cp1252);
    }

    std::string name_;
    std::vector<std::string> header_;
    FileEncoding encoding_;
    std::optional<OutputFile> file_;
    std::optional<CsvWriter> writer_;
    int64 count_ = 0;
};

// A lone title that is no field, but would be several with another separator.
void needSeparator(const CsvRow& header, const FieldMap& map, const Options& options) {
    if (header.fields.size() != 1 || map.find(header.fields.front()) != 0) return;
    for (const auto& [mark, word] : {std::pair{';', "';'"}, {'\t', "$'\\t'"}, {',', "','"}})
        if (header.fields.front().find(mark) != std::string::npos)
            throw CliError("'" + options.file +
                           "': the header line has another separator; try: --separator " + word);
}

// Field of each column by the header line, 0 for a column that is left out.
std::vector<int32> columnFields(const CsvRow& header, const FieldMap& map, FileEncoding encoding,
                                const Options& options) {
    if (!header.fault.empty()) throw CliError("'" + options.file + "': the header line has " + header.fault);
    needSeparator(header, map, options);
    std::vector<int32> fields;
    for (const auto& title : header.fields) {
        const auto text = decodeText(title, encoding);
        if (!text)
            throw CliError("'" + options.file + "': the header line is not in " + encodingName(encoding));
        const std::string word = toUtf8(*text);
        const int32 field = options.ignoreUnknown ? map.find(word) : map.need(word);
        if (field != 0 && std::find(fields.begin(), fields.end(), field) != fields.end())
            throw CliError("'" + options.file + "': two columns are meant for the field " + map.label(field));
        fields.push_back(field);
    }
    if (std::count(fields.begin(), fields.end(), 0) == static_cast<std::ptrdiff_t>(fields.size()))
        throw CliError("'" + options.file + "': no column of the header line is a field");
    return fields;
}

// Checks rows against the fields of their columns.
class RowCheck {
 public:
    RowCheck(Session& session, const FieldMap& map, std::vector<int32> columns, FileEncoding encoding)
        : rules_(session.control()), map_(map), columns_(std::move(columns)), encoding_(encoding) {}

    // The reason why the row does not fit, empty where it does.
    std::string operator()(const CsvRow& row, std::vector<Assignment>& values) {
        values.clear();
        if (!row.fault.empty()) return row.fault;
        if (row.fields.size() != columns_.size())
            return std::to_string(row.fields.size()) + (row.fields.size() == 1 ? " field" : " fields") +
                   ", the header line has " + std::to_string(columns_.size());
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            const int32 field = columns_[i];
            if (field == 0) continue;
            const auto text = decodeText(row.fields[i], encoding_);
            if (!text) return map_.label(field) + ": not in " + encodingName(encoding_);
            auto accepted = rules_.accept(field, *text, map_.label(field));
            if (!accepted) return rules_.reason();
            if (!accepted->empty()) values.push_back({field, std::move(*accepted)});
        }
        return {};
    }

 private:
    FieldRules rules_;
    const FieldMap& map_;
    std::vector<int32> columns_;
    FileEncoding encoding_;
};

int64 load(CsvReader& reader, uint64 size, RowCheck& check, RowTarget& target, Rejects& rejects,
           bool skipBlank) {
    CsvRow row;
    std::vector<Assignment> values;
    int64 loaded = 0;
    Progress progress("Importing", "rows");
    while (reader.next(row)) {
        if ((loaded + rejects.count()) % kRowsPerUpdate == 0)
            progress.update(reader.position(), size, static_cast<uint64>(loaded + rejects.count()));
        if (skipBlank && row.blank()) continue;
        std::string reason = check(row, values);
        if (reason.empty() && target.add(values, reason))
            ++loaded;
        else
            rejects.add(row, reason);
    }
    return loaded;
}

void import(const Options& options) {
    Session session(options.name, options.bulk ? Use::alone : Use::change);
    const FieldMap map(session.control());
    InputFile file(options.file);
    const FileEncoding encoding =
        options.encoding == FileEncoding::automatic ? detectEncoding(file) : options.encoding;
    CsvReader reader(file, options.separator.front());
    CsvRow header;
    if (!reader.next(header))
        throw CliError("'" + options.file + "' is empty: a header line names the fields");
    auto columns = columnFields(header, map, encoding, options);
    const bool skipBlank = columns.size() > 1;
    RowCheck check(session, map, std::move(columns), encoding);
    Rejects rejects(options.rejects.empty() ? options.file + ".rejects.csv" : options.rejects, header.fields,
                    encoding);
    if (rejects.name() == options.file) throw CliError("the rejects would overwrite '" + options.file + "'");
    int64 loaded = 0;
    {
        const auto target = makeRowTarget(session, options.bulk);
        loaded = load(reader, file.size(), check, *target, rejects, skipBlank);
        // The rejects are safe before the rows count as done.
        rejects.finish();
        Progress progress("Sorting", "records");
        const auto watching = session.db().UpdateProgress.connect([&](int32, int32 done, int32 of) {
            progress.update(static_cast<uint64>(std::max(done, 0)), static_cast<uint64>(std::max(of, 0)));
        });
        target->finish();
    }
    std::cout << "imported " << loaded << (loaded == 1 ? " row" : " rows");
    if (rejects.count() > 0) std::cout << ", rejected " << rejects.count() << ": see " << rejects.name();
    std::cout << '\n';
}

}  // namespace

void addImport(CLI::App& db) {
    auto options = std::make_shared<Options>();
    auto* command = db.add_subcommand("import", "Add the rows of a CSV file");
    addDatabase(*command, options->name);
    command
        ->add_option("FILE", options->file,
                     "The file; its first line names the fields by name, caption or number")
        ->required();
    command->add_flag("--bulk", options->bulk,
                      "Alone on the database, indexes built at the end: for many rows");
    command
        ->add_option("--rejects", options->rejects,
                     "Where rows go that do not fit, with line and reason; FILE.rejects.csv")
        ->type_name("FILE");
    addSeparator(*command, options->separator);
    command->add_flag("--ignore-unknown", options->ignoreUnknown, "Leave out columns that are no fields");
    addEncoding(*command, options->encoding, true);
    command->footer(
        "CSV as RFC 4180 has it. Numbers as 12.5 or 12,5, dates as 31.12.2024 or 2024-12-31. A row that does "
        "not fit is\n"
        "rejected whole, never cut; the rest is kept.\nExample:\n  tsrtm db import Kunden kunden.csv --bulk");
    command->callback([options] { import(*options); });
}

}  // namespace tsRtm::cli
