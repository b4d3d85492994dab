#include "cli/print/PrintJob.hpp"

#include <filesystem>

#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::cli {
namespace {

constexpr float64 kLeft = 25, kRight = 20, kTop = 20, kBottom = 22, kFoot = 12;
constexpr int32 kDotsPerInch = 150;

bool endsWith(const std::string& text, TextView ending) {
    const Text end = upper(fromUtf8(text));
    return end.size() > ending.size() && end.ends_with(ending);
}

const PrintOptions& checked(const PrintOptions& options) {
    if (options.preview && endsWith(options.target, u".PNG"))
        throw CliError("--preview is for a printer or a PDF");
    return options;
}

}  // namespace

void addPrintOptions(Command command, PrintOptions& options, bool fonts) {
    command.option("--to", options.target, "OUT.pdf, OUT.png (a picture a page), or a printer")
        .required()
        .typeName("TARGET");
    command.flag("--pdfa", options.archive, "PDF/A-1b, for archives");
    command.flag("--protect", options.isProtected, "A PDF that can be read and printed, but not changed");
    command.flag("--landscape", options.landscape, "The page lies on its long edge");
    command.option("--copies", options.copies, "So many; of a printer").range(1, 255).typeName("N");
    command.flag("--duplex", options.duplex, "On both sides; of a printer");
    command.option("--bin", options.bin, "Number of the bin, as tsrtm printers NAME lists them")
        .typeName("N");
    if (fonts) {
        command.option("--font", options.font, "Name of the font").typeName("NAME");
        command.option("--size", options.size, "Of the font, in points").range(4, 72).typeName("N");
    }
    command.flag("--preview", options.preview, "Show the pages first; they are printed from there");
}

PrintJob::PrintJob(const PrintOptions& options)
    : options_(checked(options)),
      size_(options.size),
      paper_(attachPaper(options.preview)),
      druck_(messages_),
      pdf_(endsWith(options.target, u".PDF")),
      png_(endsWith(options.target, u".PNG")) {
    const std::filesystem::path target(options.target);
    folder_ = fromUtf8(std::filesystem::absolute(target).parent_path().string());
    file_ = fromUtf8(target.filename().string());
    if (pdf_ || png_) return;
    druck_.Device(fromUtf8(options.target));
    if (druck_.Device() != fromUtf8(options.target))
        throw CliError("'" + options.target +
                       "' is no printer that answers, and no file that ends in .pdf or .png");
}

PrintJob::~PrintJob() = default;

Area PrintJob::area() const noexcept {
    return {kLeft, kTop, (options_.landscape ? 297 : 210) - kRight,
            (options_.landscape ? 210 : 297) - kBottom};
}

void PrintJob::start(const std::string& name, bool forGood) {
    const bool printer = !pdf_ && !png_;
    const Text device = printer && forGood ? fromUtf8(options_.target) : u"PDF";
    druck_.Device(device);
    // Else the pages would lie somewhere as a file.
    if (druck_.Device() != device) throw CliError("the printer '" + options_.target + "' does not answer");
    druck_.DocPath(folder_);
    druck_.JobName(pdf_ ? file_.substr(0, file_.size() - 4) : fromUtf8(name));
    druck_.Modal(true);
    // What a preview would show at its end goes nowhere until then: for counting and for pictures.
    druck_.Init(72, options_.copies + (options_.landscape ? tsQuer : 0), 1, u"A4",
                !forGood || png_ || options_.preview);
    if (options_.duplex) druck_.DuplexTyp(options_.landscape ? tsDuplexHorizontal : tsDuplexVertikal);
    druck_.PaperBin(options_.bin.value_or(0));
    druck_.PDFA(options_.archive);
    druck_.Protected(options_.isProtected);
    druck_.FontName(fromUtf8(options_.font));
    druck_.FontSize(size_);
}

void PrintJob::compose(const std::string& name, const std::function<void(int32 pages)>& write) {
    start(name, false);
    write(0);
    const int32 pages = druck_.PageCount();
    giveUp();
    compose(name, [&] { write(pages); });
}

void PrintJob::compose(const std::string& name, const std::function<void()>& write) {
    start(name, true);
    write();
    if (png_) {
        druck_.Ausgabe();  // the last page can be played then
        savePictures();
        giveUp();
        return;
    }
    druck_.Ende();
    if (druck_.Abbruch()) throw CliError("broken off: nothing reached '" + options_.target + "'");
    deliver();
}

void PrintJob::giveUp() {
    druck_.KillDoc();
    druck_.Vorschau(false);
}

void PrintJob::deliver() {
    if (!pdf_) return;
    const Text written = druck_.DocFile();
    auto& files = rtmMain::system().files;
    const auto full = [&](TextView name) { return folder_ + u"/" + Text(name); };
    // The job never writes over a file; whoever names one means it.
    if (written != file_)
        if (const auto error = files.rename(full(written), full(file_), true); platform::failed(error))
            throw CliError("cannot replace '" + options_.target + "': it is in '" + toUtf8(written) + "'");
}

void PrintJob::savePictures() {
    const int32 pages = druck_.PageCount() - 1;
    const Text base = folder_ + u"/" + file_.substr(0, file_.size() - 4);
    for (int32 number = 1; number <= pages; ++number) {
        const Text name = base + (number > 1 ? u"-" + toText(number) : Text()) + u".png";
        const auto page = druck_.Page(number);
        const auto error = paper_->savePicture(*page, name, kDotsPerInch);
        if (platform::failed(error)) throw CliError("cannot write '" + toUtf8(name) + "'");
    }
}

void PrintJob::foot(int32 pages, TextView left) {
    const float64 row = (options_.landscape ? 210 : 297) - kFoot;
    const Area paper = area();
    druck_.LinieMM(row - 4, paper.left, row - 4, paper.right, false, bsNone, 5);
    druck_.mm(row, paper.left, left, 8, 0);
    druck_.mm(row, paper.right, u"Seite " + toText(page()) + u"/" + toText(pages), 8, tsRechtbuendig);
    druck_.Setz(-1, -1, size_, tsLinksBuendig, -1);
}

}  // namespace tsRtm::cli
