// tsrtm dta write: a payment file from a table of orders, with a report of what is wrong or would be lost.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/dta/Commands.hpp"
#include "cli/dta/OrderTable.hpp"
#include "cli/dta/PaymentRecords.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "tsRtm/frame/FilesTopic.hpp"

namespace tsRtm::cli {
namespace {

struct DtaWriteOptions {
    std::string orders, header, folder;
    std::string name = "DTAZV";
    std::string separator = ",";
    FileEncoding encoding = FileEncoding::automatic;
    bool asIs = false;
    bool replace = false;
    bool json = false;
};

// Lines as they come; where the file cannot go out, how many stand against it.
class Report {
 public:
    void add(const std::string& where, const Remarks& remarks) {
        for (const auto& remark : remarks) {
            lines_.push_back(where + ": " + (remark.refusal ? "refused: " : "") + remark.text);
            if (remark.refusal) ++refusals_;
        }
    }
    // Messages of the library, a line each.
    void add(const std::string& where, TextView messages) {
        while (!messages.empty()) {
            const auto end = messages.find(u"\r\n");
            lines_.push_back((where.empty() ? "" : where + ": ") + toUtf8(messages.substr(0, end)));
            messages.remove_prefix(end == TextView::npos ? messages.size() : end + 2);
            ++faults_;
        }
    }
    void note(const std::string& line) { lines_.push_back(line); }
    int32 refusals() const noexcept { return refusals_; }
    int32 faults() const noexcept { return faults_; }
    const std::vector<std::string>& lines() const noexcept { return lines_; }

 private:
    std::vector<std::string> lines_;
    int32 refusals_ = 0, faults_ = 0;
};

void addOrders(const DtaWriteOptions& options, DtADatei& file, Report& report) {
    CsvTable table(options.orders, options.encoding, options.separator);
    OrderTable orders(table);
    std::shared_ptr<DtaAuftrag> order;
    Remarks remarks;
    while (orders.next(file, order, remarks)) {
        const std::string where = "line " + std::to_string(table.line());
        report.add(where, remarks);
        if (order) report.add(where, file.Add(order));
    }
}

// Each file of a day has number 01, so that a bank may take a second one for the first sent again.
void lookAround(const DtaWriteOptions& options, Report& report) {
    std::vector<Text> names;
    const int32 count = FilesTopic::GetAllFiles(fromUtf8(options.folder), {}, names, true);
    const auto& row = payments::kHeaderRows[payments::hErstellungsdatum];
    for (int32 i = 0; i < count; ++i) {
        const std::string name = toUtf8(names[static_cast<std::size_t>(i)]);
        InputFile file(name);
        std::string head(payments::kEndRecord, '\0');
        if (file.read(0, head) != head.size() || !head.starts_with("0256Q")) continue;
        if (fieldOf(head, row) == toUtf8(DtaHeader().ExecutionDate()))  // a new one is of today
            report.note("'" + name + "' is of today, too: both are number 01 of the day");
    }
}

void print(const DtaWriteOptions& options, const DtADatei& file, const Report& report,
           const std::string& written) {
    if (options.json) {
        std::cout << jsonText({{"file", written.empty() ? Json() : Json(written)},
                               {"transfers", file.Count()},
                               {"sum", file.Summe()},
                               {"refused", report.refusals()},
                               {"report", report.lines()}})
                  << '\n';
        return;
    }
    for (const auto& line : report.lines()) std::cout << line << '\n';
    if (!written.empty())
        std::cout << "wrote " << file.Count() << (file.Count() == 1 ? " transfer" : " transfers") << " to "
                  << written << '\n';
}

void write(const DtaWriteOptions& options) {
    DtADatei file;
    file.Pfad(fromUtf8(options.folder));
    file.DateiName(fromUtf8(options.name));
    const Text path = FilesTopic::MakePath({Variant(file.Pfad()), Variant(file.DateiName())});
    if (!FilesTopic::ExistFolder(file.Pfad())) throw CliError("no folder '" + options.folder + "'");
    if (FilesTopic::Exist(path) && !options.replace)
        throw CliError("'" + toUtf8(path) + "' is there already; write over it with --replace");
    Report report;
    lookAround(options, report);
    CsvTable header(options.header, options.encoding, options.separator);
    Remarks remarks;
    readHeader(header, file.Header(), remarks);
    report.add("header", remarks);
    addOrders(options, file, report);
    const bool refused = !options.asIs && (report.refusals() > 0 || report.faults() > 0);
    if (!refused) report.add({}, file.Generate());
    print(options, file, report, refused ? "" : toUtf8(path));
    if (refused) throw CliError("nothing is written; --as-is writes what can be, as it is");
    if (report.faults() > 0) throw CliError("the file is written, but see the report");
}

void addPaymentCommand(Command command, const std::shared_ptr<DtaWriteOptions>& options) {
    command.option("ORDERS", options->orders, "CSV, a transfer a row").required();
    command.option("--header", options->header, "CSV with a row for who pays").required().typeName("CSV");
    command.option("--out", options->folder, "Folder of the file").required().typeName("DIR");
    command.option("--name", options->name, "Name of the file; DTAZV without it").typeName("NAME");
    addSeparator(command, options->separator);
    addEncoding(command, options->encoding, true);
    command.flag("--as-is", options->asIs, "Write also what is refused, and leave out what is wrong");
    command.flag("--replace", options->replace, "Write over a file that is there");
    addJson(command, options->json);
}

}  // namespace

void addPaymentWrite(Command dta) {
    auto options = std::make_shared<DtaWriteOptions>();
    const auto command = dta.add("write", "Write a DTAZV file of EU transfers from a table");
    addPaymentCommand(command, options);
    command.footer(
        "Columns of ORDERS: BIC, IBAN, Betrag, Name1; Name2, Strasse, PLZOrt, Verwendungszweck, "
        "VariableText.\n"
        "Columns of the header: BLZ, Kontonummer, Name1; Name2, Strasse, PLZOrt, ExecutionDate (JJMMTT, "
        "today\n"
        "without it). Refused: amounts of 0 and below, and with cents of 1 to 9, which the file holds as "
        "tens;\n"
        "accounts above 10 digits. Told: characters that payments lack, and what is too long.\n"
        "Example:\n  tsrtm dta write auftraege.csv --header buero.csv --out bank");
    command.onRun([options] { write(*options); });
}

void addPayments(Command app) {
    const auto dta = app.add("dta", "Payment files in the DTAZV format");
    dta.needsCommand();
    addPaymentWrite(dta);
    addPaymentShow(dta);
}

}  // namespace tsRtm::cli
