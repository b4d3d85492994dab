// tsrtm rtf: RTF to plain text, and stored markup to RTF.

#include "cli/Commands.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "tsRtm/frame/RtfTopic.hpp"
#include "tsRtm/frame/rtf/FileForm.hpp"

namespace tsRtm::cli {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

struct RtfOptions {
    std::string file;
    std::string target = "-";
    bool toRtf = false;
    bool withoutHeader = false;
    FileEncoding encoding = FileEncoding::automatic;
};

std::string contentOf(InputFile& file) {
    std::string bytes(static_cast<std::size_t>(file.size()), '\0');
    bytes.resize(file.read(0, bytes));
    return bytes;
}

Text decoded(InputFile& file, std::string_view bytes, const RtfOptions& options) {
    auto encoding = options.encoding;
    if (encoding == FileEncoding::automatic) encoding = detectEncoding(file);
    if (encoding == FileEncoding::utf8 && bytes.starts_with(kUtf8Mark)) bytes.remove_prefix(kUtf8Mark.size());
    auto text = decodeText(bytes, encoding);
    if (!text) throw CliError("cannot read '" + options.file + "': it is not in " + encodingName(encoding));
    return *text;
}

std::string converted(InputFile& file, const RtfOptions& options) {
    std::string bytes = contentOf(file);
    const Text text = decoded(file, bytes, options);
    const RtfTopic topic;
    if (!options.toRtf) return toUtf8(replaceAll(topic.ConvertRTFToText(text), u"\r\n", u"\n"));
    if (text.starts_with(u"{\\")) return bytes;  // RTF already
    // A text file of this system ends its lines with LF alone; stored texts have CR LF.
    return rtf::fileForm(topic.ConvertToRTF(replaceAll(replaceAll(text, u"\r\n", u"\n"), u"\n", u"\r\n"),
                                            options.withoutHeader));
}

void run(const RtfOptions& options) {
    InputFile input(options.file);
    const std::string result = converted(input, options);
    OutputFile output(options.target);
    output.write(result);
    output.finish();
}

}  // namespace

void addRtf(Command app) {
    auto options = std::make_shared<RtfOptions>();
    const auto command = app.add("rtf", "Turn RTF into plain text, or stored markup into RTF");
    command.option("FILE", options->file, "The file to be read").required();
    command.option("TARGET", options->target, "Where to write; \"-\", the default, is standard output");
    const auto toRtf = command.flag("--to-rtf", options->toRtf, "From plain text or markup to RTF");
    command
        .flag("--no-header", options->withoutHeader,
              "Without fonts and colours, as a piece of a larger RTF text")
        .needs(toRtf);
    addEncoding(command, options->encoding, true);
    command.footer(
        "Plain text is written in UTF-8. RTF is written in ASCII, and a file that is RTF already unchanged.\n"
        "Markup: lines of commands (.ZE centred, .LR2 left margin ...) and ~F bold, ~U underlined, ~K italic "
        "in a line.");
    command.onRun([options] { run(*options); });
}

}  // namespace tsRtm::cli
