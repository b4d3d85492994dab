// tsrtm banks import, find: the register of German banks.
#include <CLI/CLI.hpp>
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/CsvWriter.hpp"
#include "cli/shared/ErrorText.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/Progress.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "tsRtm/banking/BankImport.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::cli {
namespace {

constexpr const char* kDefaultRegister = "Banken";
constexpr int32 kDefaultLimit = 20;

struct Options {
    std::string file;
    std::string name = kDefaultRegister;
    std::string key;
    std::string rejects;
    FileEncoding encoding = FileEncoding::automatic;
    int32 limit = kDefaultLimit;
    bool replace = false;
    bool json = false;
};

const char* faultText(BankRowFault fault) noexcept {
    switch (fault) {
        case BankRowFault::none:
            return "";
        case BankRowFault::length:
            return "not 168 characters";
        case BankRowFault::encoding:
            return "malformed UTF-8";
        case BankRowFault::characters:
            return "a character that code page 1252 lacks, or a control character";
        case BankRowFault::code:
            return "bank code: no eight digits";
        case BankRowFault::mark:
            return "mark: neither 1 nor 2";
        case BankRowFault::name:
            return "name: empty";
        case BankRowFault::postalCode:
            return "postal code: no five digits";
        case BankRowFault::bic:
            return "BIC: not 8 or 11 letters and digits";
        case BankRowFault::checkMethod:
            return "check method: no two letters or digits";
    }
    return "";
}

Text controlFile(const std::string& name) {
    return FilesTopic::MakePath({Variant(databaseFolder(name)), Variant(u"Control.tsd")});
}

bool isRegister(const clsControl& control) {
    const auto wanted = bankRegister::fields();
    if (control.Felder() != bankRegister::kFields || control.Indizes() != bankRegister::kByPlaceAndName)
        return false;
    for (int32 i = 1; i <= control.Felder(); ++i)
        if (control.field(i).Name() != wanted[static_cast<std::size_t>(i - 1)]->Name()) return false;
    return true;
}

// Deletes the files of a register that nobody else has open, so that it can be made anew.
void removeRegister(const Options& options) {
    {
        Session session(options.name, Use::alone);
        if (!isRegister(session.control()))
            throw CliError("'" + options.name + "' is another database, not a bank register");
    }
    auto& files = rtmMain::system().files;
    const Text folder = databaseFolder(options.name);
    const auto entries = files.list(folder);
    if (!entries) throw CliError("cannot read " + toUtf8(folder) + ": " + systemErrorText(entries.error()));
    for (const auto& entry : *entries)
        if (!entry.status.folder)
            if (const auto error = files.remove(FilesTopic::MakePath({Variant(folder), Variant(entry.name)}));
                failed(error))
                throw CliError("cannot delete " + toUtf8(entry.name) + ": " + systemErrorText(error));
}

void makeRegister(const Options& options) {
    const Text folder = databaseFolder(options.name);
    if (FilesTopic::Exist(controlFile(options.name))) {
        if (!options.replace)
            throw CliError("there is a database '" + options.name + "' already; make it anew with --replace");
        removeRegister(options);
    }
    clsRtm rtm;
    if (!bankRegister::create(rtm, folder))
        throw CliError("cannot make " + toUtf8(folder) + ": " + databaseErrorText(rtmMain::state().F));
}

// A file of which no row is a bank must not take the place of a register.
void needBanks(InputFile& file, std::optional<BankFileEncoding> encoding, const Options& options) {
    BankFileReader reader(file.file(), encoding);
    BankRow row;
    while (reader.next(row))
        if (reader.fault() == BankRowFault::none) return;
    if (failed(reader.error()))
        throw CliError("cannot read '" + options.file + "': " + systemErrorText(reader.error()));
    throw CliError("'" + options.file + "' is no bank code file: no line has the 168 characters of a bank");
}

class Rejects {
 public:
    explicit Rejects(const Options& options)
        : name_(options.rejects.empty() ? options.file + ".rejects.csv" : options.rejects) {}
    void add(int64 line, BankRowFault fault) {
        if (!file_) {
            file_.emplace(name_);
            writer_.emplace(*file_, ',', FileEncoding::utf8);
            writer_->row({u"line", u"reason"});
        }
        writer_->row({toText(line), fromUtf8(faultText(fault))});
    }
    void finish() {
        if (file_) file_->finish();
    }
    const std::string& name() const noexcept { return name_; }

 private:
    std::string name_;
    std::optional<OutputFile> file_;
    std::optional<CsvWriter> writer_;
};

BankImportResult load(Session& session, BankFileReader& reader, Rejects& rejects) {
    Progress progress("Importing", "rows");
    BankImportListener listener;
    listener.rejected = [&](int64 line, BankRowFault fault) { rejects.add(line, fault); };
    listener.progress = [&](uint64 done, uint64 of) {
        progress.update(done, of, static_cast<uint64>(reader.line()));
    };
    return importBanks(reader, session.db(), listener);
}

void import(const Options& options) {
    InputFile file(options.file);
    std::optional<BankFileEncoding> encoding;
    if (options.encoding == FileEncoding::cp850) throw CliError("a bank code file is in utf8 or latin1");
    if (options.encoding != FileEncoding::automatic)
        encoding = options.encoding == FileEncoding::utf8 ? BankFileEncoding::utf8 : BankFileEncoding::latin1;
    needBanks(file, encoding, options);
    makeRegister(options);
    Session session(options.name, Use::alone);
    BankFileReader reader(file.file(), encoding);
    Rejects rejects(options);
    const auto result = load(session, reader, rejects);
    if (failed(result.readError))
        throw CliError("cannot read '" + options.file + "': " + systemErrorText(result.readError));
    if (!result.complete) session.fail("the register is not complete", result.databaseError);
    rejects.finish();
    std::cout << "imported " << result.loaded << " banks; left out " << result.otherRows << " other offices";
    if (result.rejected > 0) std::cout << "; rejected " << result.rejected << ": see " << rejects.name();
    std::cout << '\n';
}

// The index whose keys look like this one.
int32 indexForKey(TextView key) {
    if (IstZiffern(key)) return bankRegister::kByCode;
    const bool plain = std::all_of(key.begin(), key.end(), [](char16_t c) {
        return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
    });
    return plain && (key.size() == 8 || key.size() == 11) ? bankRegister::kByBic
                                                          : bankRegister::kByPlaceAndName;
}

// Record numbers of the banks whose key begins with this one, in the order of the index.
std::vector<int32> banksWith(Session& session, const std::string& key, int32 index, int32 limit) {
    RecordReader record(session);
    std::vector<int32> found;
    walk(session, keyRange(session, index, key, key), false, [&](int32 number) {
        if (record.read(number) && !record.deleted()) found.push_back(number);
        return static_cast<int32>(found.size()) < limit;
    });
    return found;
}

void find(const Options& options) {
    if (!FilesTopic::Exist(controlFile(options.name)))
        throw CliError("no bank register '" + options.name + "'; make one with: tsrtm banks import FILE " +
                       options.name);
    Session session(options.name, Use::read);
    if (!isRegister(session.control())) throw CliError("'" + options.name + "' is no bank register");
    const std::string key = toUtf8(trim(fromUtf8(options.key)));
    if (key.empty()) throw CliError("an empty key finds nothing");
    const int32 index = indexForKey(fromUtf8(key));
    // One more than is shown tells whether there are more.
    auto found = banksWith(session, key, index, options.limit + 1);
    // A place may have eight letters, too.
    if (found.empty() && index == bankRegister::kByBic)
        found = banksWith(session, key, bankRegister::kByPlaceAndName, options.limit + 1);
    const bool more = static_cast<int32>(found.size()) > options.limit;
    if (more) found.pop_back();
    const FieldMap map(session.control());
    if (found.empty() && !options.json) throw CliError("no bank begins with '" + options.key + "'");
    RecordReader record(session);
    RecordList list(session, map, map.select({}), options.json);
    for (const int32 number : found)
        if (record.read(number)) list.add(record);
    if (more) std::cerr << "There are more banks; --limit shows them.\n";
}

void addBankImport(CLI::App& banks) {
    auto options = std::make_shared<Options>();
    auto* command =
        banks.add_subcommand("import", "Make a register from the bank code file of the Deutsche Bundesbank");
    command->add_option("FILE", options->file, "Rows of 168 characters")->required();
    command->add_option("DB", options->name, "The register to make")->required();
    command->add_flag("--replace", options->replace, "Make a register anew that is there");
    command
        ->add_option("--rejects", options->rejects,
                     "Where lines are named that are no bank; FILE.rejects.csv")
        ->type_name("FILE");
    addEncoding(*command, options->encoding, true);
    command->footer("Rows of mark 1 only: each bank once, not each of its offices.");
    command->callback([options] { import(*options); });
}

void addBankFind(CLI::App& banks) {
    auto options = std::make_shared<Options>();
    auto* command = banks.add_subcommand("find", "Find banks by code, BIC or place");
    command
        ->add_option("KEY", options->key,
                     "Digits: a bank code or its beginning; 8 or 11 letters and digits: a BIC; else a place "
                     "or its beginning, a bank's name behind it")
        ->required();
    command->add_option("--db", options->name, "The register; Banken without it")->type_name("DB");
    addLimit(*command, options->limit, "At most so many banks; 20 without it");
    addJson(*command, options->json);
    command->footer("Examples:\n  tsrtm banks find 37040044\n  tsrtm banks find \"Berlin P\" --limit 5");
    command->callback([options] { find(*options); });
}

}  // namespace

void addBanks(CLI::App& app) {
    auto* banks = app.add_subcommand("banks", "The register of German banks");
    banks->require_subcommand(1);
    banks->footer(
        "Examples:\n"
        "  tsrtm banks import blz.txt Banken\n"
        "  tsrtm banks find Köln --limit 5");
    addBankImport(*banks);
    addBankFind(*banks);
}

}  // namespace tsRtm::cli
