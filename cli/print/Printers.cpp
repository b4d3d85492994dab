// tsrtm printers: what can be printed on. tsrtm print: the commands put together.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/print/Commands.hpp"
#include "cli/print/Paper.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/Terminal.hpp"
#include "tsRtm/frame/state/Plugged.hpp"
#include "tsRtm/platform/Paper.hpp"

namespace tsRtm::cli {
namespace {

using Feature = platform::PrinterFeature;

struct PrintersOptions {
    std::string name;
    bool json = false;
};

std::string millimetres(int32 thousandths) { return std::to_string((thousandths + 500) / 1000); }

Json traits(const std::string& name, platform::Printer& printer) {
    Json bins = Json::array(), forms = Json::array();
    for (const auto& bin : printer.bins()) bins.push_back({{"nr", bin.number}, {"name", toUtf8(bin.name)}});
    const int32 form = printer.value(Feature::paperSize);
    int32 number = 0;
    for (const auto& one : printer.forms().all())
        if (++number; printer.set(Feature::paperSize, number))
            forms.push_back({{"nr", number},
                             {"name", toUtf8(one.name)},
                             {"width", millimetres(one.width)},
                             {"height", millimetres(one.height)}});
    printer.set(Feature::paperSize, form);
    return {{"name", name},
            {"copies", printer.value(Feature::copies) > 0},
            {"duplex", printer.value(Feature::duplex) > 0},
            {"bin", printer.value(Feature::paperBin)},
            {"form", form},
            {"bins", std::move(bins)},
            {"forms", std::move(forms)}};
}

void show(const std::string& name, platform::Printer& printer) {
    std::cout << "printer  " << name << "\ncopies   "
              << (printer.value(Feature::copies) > 0 ? "by itself" : "page by page") << "\nduplex   "
              << (printer.value(Feature::duplex) > 0 ? "yes" : "no") << "\n\n";
    Table bins({{"Bin", 5, true}, {"Name", 30}});
    for (const auto& bin : printer.bins()) bins.row({std::to_string(bin.number), printable(bin.name)});
    std::cout << '\n';
    Table forms({{"Form", 5, true}, {"Name", 30}, {"mm", 11}});
    int32 number = 0;
    for (const auto& form : printer.forms().all())
        if (++number; printer.set(Feature::paperSize, number))
            forms.row({std::to_string(number), printable(form.name),
                       millimetres(form.width) + " x " + millimetres(form.height)});
}

void run(const PrintersOptions& options) {
    const auto paper = attachPaper(false);
    auto* printers = rtmMain::plugged().paper->printers;
    if (options.name.empty()) {
        const auto names = printers ? printers->names() : std::vector<Text>();
        if (options.json) {
            JsonList list("printers");
            for (const auto& name : names) list.add(jsonText(Json(toUtf8(name))));
            return;
        }
        for (const auto& name : names) std::cout << printable(name) << '\n';
        return;
    }
    const auto printer = printers ? printers->printer(fromUtf8(options.name)) : nullptr;
    if (!printer) throw CliError("there is no printer '" + options.name + "', or it does not answer");
    if (options.json)
        std::cout << jsonText(traits(options.name, *printer)) << '\n';
    else
        show(options.name, *printer);
}

}  // namespace

void addPrinters(Command app) {
    auto options = std::make_shared<PrintersOptions>();
    const auto command = app.add("printers", "List the printers, or what one of them has");
    command.option("NAME", options->name, "A printer, or its address: ipp://host:port/path");
    addJson(command, options->json);
    command.onRun([options] { run(*options); });
}

void addPrint(Command app) {
    const auto print = app.add("print", "Print texts, tables and databases on paper, as PDF or as pictures");
    print.needsCommand();
    addPrintTexts(print);
    addPrintTables(print);
}

}  // namespace tsRtm::cli
