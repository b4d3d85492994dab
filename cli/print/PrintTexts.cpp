// tsrtm print text, print rtf: files of text as pages.
#include <algorithm>

#include "cli/print/Commands.hpp"
#include "cli/print/Flow.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/SharedOptions.hpp"

namespace tsRtm::cli {
namespace {

struct TextsOptions {
    std::string file;
    FileEncoding encoding = FileEncoding::automatic;
    PrintOptions print;
};

// Tabulators stand at every eighth character.
Text expanded(TextView line) {
    constexpr std::size_t stop = 8;
    Text text;
    for (const char16_t c : line) {
        if (c == u'\t')
            text.append(stop - text.size() % stop, u' ');
        else if (c >= u' ' || c == u'\f')
            text.push_back(c);
    }
    return text;
}

std::vector<Text> linesOf(TextView text) {
    std::vector<Text> lines;
    for (std::size_t at = 0; at < text.size();) {
        const auto end = std::min(text.find(u'\n', at), text.size());
        lines.push_back(expanded(text.substr(at, end - at)));
        at = end + 1;
    }
    return lines;
}

void printText(const TextsOptions& options) {
    const auto lines = linesOf(textOfFile(options.file, options.encoding));
    PrintJob job(options.print);
    const Text title = fromUtf8(baseName(options.file));
    job.compose(toUtf8(title), [&](int32 pages) {
        Flow flow(job, [&] { job.foot(pages, title); });
        for (Text line : lines) {
            // A form feed begins a page.
            for (auto feed = line.find(u'\f'); feed != Text::npos; feed = line.find(u'\f')) {
                if (feed > 0) flow.add(line.substr(0, feed));
                flow.newPage();
                line.erase(0, feed + 1);
            }
            flow.add(line);
        }
    });
}

void printRtf(const TextsOptions& options) {
    const Text rtf = textOfFile(options.file, options.encoding);
    if (!rtf.starts_with(u"{\\rtf")) throw CliError("'" + options.file + "' is no RTF");
    PrintJob job(options.print);
    job.compose(baseName(options.file), [&](int32 pages) {
        flowRtf(job, rtf, job.area(), job.area(), [&] { job.foot(pages, {}); });
    });
}

void addText(Command print, const char* name, const char* help, bool fonts,
             void (*run)(const TextsOptions&)) {
    auto options = std::make_shared<TextsOptions>();
    const auto command = print.add(name, help);
    command.option("FILE", options->file, "The file to be printed").required();
    addEncoding(command, options->encoding, true);
    addPrintOptions(command, options->print, fonts);
    if (fonts) options->print.font = "Liberation Mono";
    command.onRun([options, run] { run(*options); });
}

}  // namespace

void addPrintTexts(Command print) {
    addText(print, "text", "Print a text file, its long lines broken at the edge", true, printText);
    addText(print, "rtf", "Print a file of formatted text", false, printRtf);
}

}  // namespace tsRtm::cli
