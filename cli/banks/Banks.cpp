// tsrtm banks import, find, iban: the register of German banks.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/CsvWriter.hpp"
#include "cli/shared/ErrorText.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/Progress.hpp"
#include "cli/shared/Rejects.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/Terminal.hpp"
#include "tsRtm/banking/BankImport.hpp"
#include "tsRtm/banking/clsBanken.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/validation/clsValidBanking.hpp"

namespace tsRtm::cli {
namespace {

constexpr const char* kDefaultRegister = "Banken";
constexpr int32 kDefaultLimit = 20;

struct BanksOptions {
    std::string file;
    std::string name = kDefaultRegister;
    std::string key;
    std::string account;
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

void makeRegister(const BanksOptions& options) {
    const Text folder = databaseFolder(options.name);
    if (FilesTopic::Exist(controlFile(options.name))) {
        if (!options.replace)
            throw CliError("there is a database '" + options.name +
                           "' already; put these banks in the place of its own with --replace");
        return;
    }
    clsRtm rtm;
    if (!bankRegister::create(rtm, folder))
        throw CliError("cannot make " + toUtf8(folder) + ": " + databaseErrorText(rtmMain::state().F));
}

// A file of which no row is a bank must not take the place of a register.
void needBanks(InputFile& file, std::optional<BankFileEncoding> encoding, const BanksOptions& options) {
    BankFileReader reader(file.file(), encoding);
    BankRow row;
    while (reader.next(row))
        if (reader.fault() == BankRowFault::none) return;
    if (failed(reader.error()))
        throw CliError("cannot read '" + options.file + "': " + systemErrorText(reader.error()));
    throw CliError("'" + options.file + "' is no bank code file: no line has the 168 characters of a bank");
}

BankImportResult load(Session& session, BankFileReader& reader, Rejects& rejects) {
    Progress progress("Importing", "rows");
    BankImportListener listener;
    listener.rejected = [&](int64 line, BankRowFault fault) { rejects.add(line, faultText(fault)); };
    listener.progress = [&](uint64 done, uint64 of) {
        progress.update(done, of, static_cast<uint64>(reader.line()));
    };
    return importBanks(reader, session.db(), listener);
}

void import(const BanksOptions& options) {
    InputFile file(options.file);
    std::optional<BankFileEncoding> encoding;
    if (options.encoding == FileEncoding::cp850) throw CliError("a bank code file is in utf8 or latin1");
    if (options.encoding != FileEncoding::automatic)
        encoding = options.encoding == FileEncoding::utf8 ? BankFileEncoding::utf8 : BankFileEncoding::latin1;
    needBanks(file, encoding, options);
    makeRegister(options);
    Session session(options.name, Use::change);
    if (!bankRegister::fits(session.control()))
        throw CliError("'" + options.name + "' is another database, not a bank register");
    BankFileReader reader(file.file(), encoding);
    Rejects rejects(options.rejects.empty() ? options.file + ".rejects.csv" : options.rejects);
    const auto result = load(session, reader, rejects);
    if (failed(result.readError))
        throw CliError("cannot read '" + options.file + "': " + systemErrorText(result.readError));
    if (!result.complete) session.fail("the register is not complete", result.databaseError);
    rejects.finish();
    std::cout << "imported " << result.loaded << " banks; left out " << result.otherRows << " other offices";
    if (result.beside)
        std::cout << "; others have the register open, so one by one: " << result.changed << " changed, "
                  << result.added << " new, " << result.gone << " gone";
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

void find(const BanksOptions& options) {
    if (!FilesTopic::Exist(controlFile(options.name)))
        throw CliError("no bank register '" + options.name + "'; make one with: tsrtm banks import FILE " +
                       options.name);
    Session session(options.name, Use::read);
    if (!bankRegister::fits(session.control())) throw CliError("'" + options.name + "' is no bank register");
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

void addBankImport(Command banks) {
    auto options = std::make_shared<BanksOptions>();
    const auto command =
        banks.add("import", "Make a register from the bank code file of the Deutsche Bundesbank");
    command.option("FILE", options->file, "Rows of 168 characters").required();
    command.option("DB", options->name, "The register to make").required();
    command.flag("--replace", options->replace, "Put these banks in the place of those that a register has");
    command.option("--rejects", options->rejects, "Where lines are named that are no bank; FILE.rejects.csv")
        .typeName("FILE");
    addEncoding(command, options->encoding, true);
    command.footer("Rows of mark 1 only: each bank once, not each of its offices.");
    command.onRun([options] { import(*options); });
}

void addBankFind(Command banks) {
    auto options = std::make_shared<BanksOptions>();
    const auto command = banks.add("find", "Find banks by code, BIC or place");
    command
        .option("KEY", options->key,
                "Digits: a bank code or its beginning; 8 or 11 letters and digits: a BIC; else a place "
                "or its beginning, a bank's name behind it")
        .required();
    command.option("--db", options->name, "The register; Banken without it").typeName("DB");
    addLimit(command, options->limit, "At most so many banks; 20 without it");
    addJson(command, options->json);
    command.footer("Examples:\n  tsrtm banks find 37040044\n  tsrtm banks find \"Berlin P\" --limit 5");
    command.onRun([options] { find(*options); });
}

void printBank(clsBanken& banks, const Text& code) {
    const Text name = banks.Name(code);
    if (name.empty()) throw CliError("no bank " + toUtf8(code) + " in this register");
    std::cout << toUtf8(code) << "  " << printable(name) << "\n          " << printable(banks.PLZOrt(code))
              << "\n          " << toUtf8(banks.BIC(code)) << '\n';
}

// What people overlook: digits that fall off, and the sub-account that some banks want.
void warnOfAccount(const Text& account) {
    const auto digits =
        std::count_if(account.begin(), account.end(), [](char16_t c) { return c >= u'0' && c <= u'9'; });
    if (digits > 10) std::cerr << "Of more than ten digits only the last ten count.\n";
    if (account.starts_with(u'0') && digits < 8)
        std::cerr << "Zeros in front count as digits: without them the IBAN may be another one.\n";
}

void iban(const BanksOptions& options) {
    if (!FilesTopic::Exist(controlFile(options.name)))
        throw CliError("no bank register '" + options.name + "'; make one with: tsrtm banks import FILE " +
                       options.name);
    clsBanken banks(databaseFolder(options.name));
    Text iban = replaceAll(fromUtf8(options.key), u" ", {});
    if (!options.account.empty()) {
        const Text account = fromUtf8(options.account);
        warnOfAccount(account);
        const Text made = IstZiffern(iban) ? clsBanken::IBAN(iban, account, false) : Text();
        if (made.empty()) throw CliError("a bank code has eight digits");
        iban = made;
    }
    clsValidBanking checker;
    if (!checker.CheckIBAN(iban)) throw CliError(printable(checker.ErrorMsg()));
    Text grouped;
    for (std::size_t at = 0; at < iban.size(); at += 4)
        (grouped += at > 0 ? u" " : u"") += iban.substr(at, 4);
    std::cout << toUtf8(grouped) << '\n';
    if (iban.starts_with(u"DE")) printBank(banks, iban.substr(4, 8));
}

void addBankIban(Command banks) {
    auto options = std::make_shared<BanksOptions>();
    const auto command = banks.add("iban", "Check an IBAN and tell its bank, or make one");
    command.option("IBAN", options->key, "The IBAN, or a bank code of eight digits").required();
    command.option("ACCOUNT", options->account, "With a bank code: the account whose IBAN is wanted");
    command.option("--db", options->name, "The register; Banken without it").typeName("DB");
    command.footer(
        "Examples:\n  tsrtm banks iban DE89370400440532013000\n  tsrtm banks iban 37040044 532013000");
    command.onRun([options] { iban(*options); });
}

}  // namespace

void addBanks(Command app) {
    const auto banks = app.add("banks", "The register of German banks");
    banks.needsCommand();
    banks.footer(
        "Examples:\n"
        "  tsrtm banks import blz.txt Banken\n"
        "  tsrtm banks find Köln --limit 5");
    addBankImport(banks);
    addBankFind(banks);
    addBankIban(banks);
}

}  // namespace tsRtm::cli
