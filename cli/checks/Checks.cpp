// tsrtm check: what the library's checkers say of a value, or of a column of a file.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/checks/CheckKinds.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/CsvTable.hpp"
#include "cli/shared/CsvWriter.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/Terminal.hpp"

namespace tsRtm::cli {
namespace {

struct ChecksOptions {
    CheckOptions check;
    std::string value;
    bool hasValue = false;
    std::string file, column, report;
    std::string separator = ",";
    FileEncoding encoding = FileEncoding::automatic;
    bool json = false;
};

Json jsonOf(const Graded& graded) {
    Json json = {{"value", toUtf8(graded.value)},
                 {"grade", static_cast<int32>(graded.grade)},
                 {"gradeName", gradeName(graded.grade)}};
    if (graded.grade != validOK) {
        json["message"] = toUtf8(graded.message);
        json["explanation"] = toUtf8(graded.explanation);
    }
    if (!graded.bank.empty()) json["bank"] = toUtf8(graded.bank);
    if (!graded.note.empty()) json["note"] = graded.note;
    return json;
}

void textLine(const char* title, const std::string& text) {
    if (!text.empty()) titledLine(title, 12, text);
}

int one(const ChecksOptions& options) {
    const Graded graded = Grader(options.check).grade(fromUtf8(options.value));
    if (options.json) {
        std::cout << jsonText(jsonOf(graded)) << '\n';
        return graded.grade;
    }
    textLine("value", printable(graded.value));
    textLine("grade", gradeName(graded.grade));
    if (graded.grade != validOK) {
        textLine("message", printable(graded.message));
        textLine("explanation", printable(replaceAll(graded.explanation, u"\r", u" ")));
    }
    textLine("bank", printable(graded.bank));
    textLine("note", graded.note);
    return graded.grade;
}

// Each row that does not pass goes into the report.
int file(const ChecksOptions& options) {
    CsvTable table(options.file, options.encoding, options.separator);
    const std::size_t column = table.need(options.column.empty() ? "1" : options.column);
    const std::string name = options.report.empty() ? options.file + ".report.csv" : options.report;
    if (name == options.file) throw CliError("the report would overwrite '" + options.file + "'");
    OutputFile out(name);
    CsvWriter report(out, ',', FileEncoding::utf8);
    report.row({u"line", u"value", u"grade", u"message", u"note"});
    Grader grader(options.check);
    eValidResult worst = validOK;
    int64 rows = 0, failed = 0;
    while (table.next()) {
        ++rows;
        Graded graded;
        if (table.fault().empty())
            graded = grader.grade(table.cell(column));
        else
            graded = {{}, validError, {}, {}, "no row: " + table.fault(), {}};
        if (graded.grade == validOK) continue;
        ++failed;
        worst = std::max(worst, graded.grade);
        report.row({toText(table.line()), graded.value, fromUtf8(gradeName(graded.grade)), graded.message,
                    fromUtf8(graded.note)});
    }
    out.finish();
    if (options.json)
        std::cout << jsonText({{"checked", rows},
                               {"failed", failed},
                               {"grade", static_cast<int32>(worst)},
                               {"gradeName", gradeName(worst)},
                               {"report", name}})
                  << '\n';
    else if (name != "-")
        std::cout << "checked " << rows << ", failed " << failed << (failed > 0 ? ": see " + name : "")
                  << '\n';
    return worst;
}

void addKind(Command check, const CheckKind& kind) {
    auto options = std::make_shared<ChecksOptions>();
    options->check.kind = &kind;
    const auto command = check.add(kind.name, kind.help);
    const auto value = command.option("VALUE", options->value, "What to check");
    const auto from = command.option("--file", options->file, "Check a column of a CSV file instead")
                          .typeName("CSV")
                          .excludes(value);
    command.option("--column", options->column, "Its name or number; the first without it")
        .needs(from)
        .typeName("C");
    command
        .option("--report", options->report,
                "Where the rows that fail are listed; CSV.report.csv without it, - is standard output")
        .needs(from)
        .typeName("FILE");
    addSeparator(command, options->separator);
    addEncoding(command, options->encoding, true);
    command.flag("--error", options->check.error, "What fails is an error; a warning without it");
    command.flag("--required", options->check.required, "An empty value fails");
    if (kind.limits) {
        command.option("--min", options->check.least, "From this one on").typeName("V");
        command.option("--max", options->check.most, "Up to this one").typeName("V");
    }
    if (kind.banking)
        command.option("--banks", options->check.banks, "The register that knows the banks").typeName("DB");
    if (kind.days) addDays(command, options->check);
    addJson(command, options->json);
    if (kind.footer) command.footer(kind.footer);
    command.onRun([options, value, from] {
        if (value.count() + from.count() == 0) failMissing("VALUE or --file");
        const int status = from.count() > 0 ? file(*options) : one(*options);
        if (status != 0) throw CliStatus{status};
    });
}

}  // namespace

void addChecks(Command app) {
    const auto check = app.add("check", "Check IBANs, bank codes, dates, addresses and numbers");
    check.needsCommand();
    check.footer(
        "Exit status by grade: 0 ok, 3 warning, 4 error.\n"
        "Examples:\n"
        "  tsrtm check iban DE89370400440532013000\n"
        "  tsrtm check date 24122026 --days workday\n"
        "  tsrtm check iban --file kunden.csv --column IBAN --error");
    for (const CheckKind& kind : checkKinds()) addKind(check, kind);
}

}  // namespace tsRtm::cli
