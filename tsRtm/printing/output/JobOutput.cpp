#include "tsRtm/printing/output/JobOutput.hpp"

#include <algorithm>
#include <utility>

#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/printing/output/FaxNotice.hpp"
#include "tsRtm/printing/output/PaperSizes.hpp"
#include "tsRtm/printing/output/PdfName.hpp"

namespace tsRtm {
namespace {

using platform::Printer;
using Feature = platform::PrinterFeature;

constexpr int32 kOff = 1;           // of duplex
constexpr int32 kAutomaticBin = 7;  // what a bin that the printer lacks becomes
constexpr int32 kReferenceResolution = 1200;
constexpr int32 kNames = 100;  // that others may take away before us
constexpr TextView kOwnerPassword = u"tsVerwal";

// Whether the printer has the value then.
bool put(Printer& printer, Feature feature, int32 value) {
    return printer.value(feature) == value || printer.set(feature, value);
}

// Also where a handler of an event raises between two pages.
class Playing {
 public:
    explicit Playing(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
    ~Playing() { flag_ = before_; }
    Playing(const Playing&) = delete;
    Playing& operator=(const Playing&) = delete;

 private:
    bool& flag_;
    bool before_;
};

}  // namespace

JobOutput::JobOutput(Job& job, Pages& pages, const platform::Paper* paper, MessagesTopic& messages)
    : job_(job), pages_(pages), paper_(paper), messages_(messages) {}

JobOutput::~JobOutput() = default;

Text JobOutput::document() const { return job_.name.empty() ? Text(kProductName) : job_.name; }

void JobOutput::tell(TextView text) {
    job_.brokenOff = true;
    messages_.TSMsgBox(text, dlgExclamation, Variant(u"Druck"));
}

// A printer serves one document at a time: while the job has one there, it is this object.
std::shared_ptr<Printer> JobOutput::printer() const {
    if (!printers() || toFile()) return nullptr;
    return started_ && startedOn_ == job_.device ? started_ : printers()->printer(job_.device);
}

void JobOutput::print(int32 which) {
    const int32 last = pages_.count();
    const int32 one = which < 0 ? -which : which;
    const Range range = which == 0 ? Range{1, last} : Range{one, one};
    if (job_.brokenOff || range.count() < 1 || range.first < 1 || range.last > last) return;
    // The page that the application is writing on stays open, unless it is to be printed.
    if (range.last == last) pages_.close();
    const Playing playing(playing_);
    if (toFile())
        toPdf(which, range);
    else
        toPrinter(which, range);
}

void JobOutput::toPrinter(int32 which, Range range) {
    if (started_ && startedOn_ != job_.device) endPaper();
    const auto printer = this->printer();
    if (!printer) return tell(u"Der Drucker " + job_.device + u" ist nicht vorhanden.");
    if (job_.quality != 0) put(*printer, Feature::quality, job_.quality);
    const int32 inner = setCopies(*printer, which);
    const int32 outer = which == 0 && job_.closing && job_.collate ? std::max(job_.paper.copies, 1) : 1;
    const bool duplex = setDuplex(*printer, which, range);
    if (job_.paper.paperBin != 0 && !put(*printer, Feature::paperBin, job_.paper.paperBin)) {
        job_.paper.paperBin = kAutomaticBin;
        put(*printer, Feature::paperBin, kAutomaticBin);
    }
    setPaper(*printer);
    for (int32 round = 1; round <= outer; ++round) {
        for (int32 number = range.first; number <= range.last; ++number)
            for (int32 copy = 0; copy < inner; ++copy) {
                if (!playOn(printer, *pages_.page(number))) return;
                rtmMain::system().ui.processEvents();
                if (job_.brokenOff) return abandon();
            }
        // The next copy begins on the front of a sheet.
        if (round < outer && duplex && range.count() % 2 != 0) printer->page(document());
    }
    if (job_.closing || which < 0) endDocument();
}

// How often each page is played.
int32 JobOutput::setCopies(Printer& printer, int32 which) {
    const bool knows = printer.value(Feature::copies) > 0;
    const int32 wanted = which < 0 || job_.collate ? 1 : std::max(job_.paper.copies, 1);
    const bool kept = knows && put(printer, Feature::copies, wanted);
    return kept ? 1 : wanted;
}

bool JobOutput::setDuplex(Printer& printer, int32 which, Range range) {
    if (printer.value(Feature::duplex) <= 0) return false;
    const bool single = which < 0 || (which < 1 && range.count() < 2);
    put(printer, Feature::duplex, single ? kOff : job_.paper.duplex);
    return printer.value(Feature::duplex) != kOff;
}

void JobOutput::setPaper(Printer& printer) {
    auto& paper = job_.paper;
    if (paper.paperSize != 0 && !put(printer, Feature::paperSize, paper.paperSize)) paper.paperSize = 0;
    if (paper.paperSize != 0) return;
    if (const int32 form = formOf(printer, job_.device, job_.formName, paper.width, paper.height,
                                  kReferenceResolution, messages_))
        put(printer, Feature::paperSize, form);
}

bool JobOutput::playOn(const std::shared_ptr<Printer>& printer, const Page& page) {
    put(*printer, Feature::orientation, page.traits.orientation);
    auto* device = printer->page(document());
    if (!device) {
        tell(u"Der Drucker " + job_.device + u" antwortet nicht.");
        kill();
        return false;
    }
    started_ = printer;
    startedOn_ = job_.device;
    play(page, *device, mappingOnPaper(page, device->resolution(), job_.offsetX, job_.offsetY));
    return true;
}

void JobOutput::endDocument() {
    if (const auto file = std::move(pdf_)) finish(*file);
    endPaper();
}

void JobOutput::endPaper() {
    if (!started_) return;
    const auto printer = std::move(started_);
    announceFax(job_, document());
    if (const auto error = printer->endDocument(); platform::failed(error))
        return tell(u"Der Drucker " + job_.device + u" nimmt das Dokument nicht an: " +
                    messages_.SystemMsg(static_cast<int32>(error)));
    awaitFax(job_, document());
}

void JobOutput::kill() {
    job_.brokenOff = job_.closing = true;
    abandon();
}

// Nothing of it reaches paper with the next document.
void JobOutput::abandon() {
    if (const auto printer = std::move(started_)) printer->killDocument();
    pdf_.reset();
}

void JobOutput::toPdf(int32 which, Range range) {
    if (!paper_) raise(429, u"Druck:PrintToPrinter", u"Es kann kein PDFCreator-Objekt erstellt werden.");
    // A proof print is a file of its own beside the one under way.
    auto open = which < 0 ? nullptr : std::move(pdf_);
    if (!open) {
        const bool secret = job_.isProtected && !job_.archive;
        if (job_.isProtected && job_.archive)
            rtmMain::DebugLog(u"Ein PDF/A-Dokument kann nicht geschützt werden.");
        open = paper_->pdf.begin({document(), job_.application, job_.author, job_.subject, job_.keywords,
                                  job_.archive, secret ? Text(kOwnerPassword) : Text()});
    }
    if (!open) raise(429, u"Druck:PrintToPrinter", u"Es kann kein PDFCreator-Objekt erstellt werden.");
    for (int32 number = range.first; number <= range.last; ++number) {
        const Page& page = *pages_.page(number);
        auto& device = open->page(page.traits.width, page.traits.height);
        play(page, device,
             mappingOnPaper(page,
                            {device.resolution().pixelsPerInchX, device.resolution().pixelsPerInchY, 0, 0},
                            job_.offsetX, job_.offsetY));
        rtmMain::system().ui.processEvents();
        if (job_.brokenOff) return;
    }
    if (!job_.closing && which >= 0) {
        pdf_ = std::move(open);
        return;
    }
    finish(*open);
}

void JobOutput::finish(platform::PdfDocument& file) {
    for (int32 tries = 1;; ++tries) {
        const auto place = pdfPlace(job_.docPath, job_.name);
        if (!place) return tell(u"Der Ordner " + job_.docPath + u" kann nicht angelegt werden.");
        job_.docFile = FilesTopic::FileName(*place);
        const auto error = file.finish(*place);
        // The name was free a moment ago: somebody else's document has come first.
        if (error == platform::SystemError::alreadyExists && tries < kNames) continue;
        if (platform::failed(error))
            tell(*place + u" kann nicht geschrieben werden: " +
                 messages_.SystemMsg(static_cast<int32>(error)));
        return;
    }
}

void JobOutput::printFurtherCopies() {
    if (job_.furtherCopies == FurtherCopies::none || job_.brokenOff) return;
    const auto device = job_.device;
    const auto paper = job_.paper;
    if (job_.furtherCopies != FurtherCopies::pdf) {
        if (!job_.copyDevice.empty() && printers() && printers()->printer(job_.copyDevice))
            job_.device = job_.copyDevice;
        if (job_.copyBin != 0) job_.paper.paperBin = job_.copyBin;
        job_.paper.copies = std::max(job_.copyCount, 1);
        print(0);
    }
    if (job_.furtherCopies != FurtherCopies::printer && !job_.brokenOff) {
        job_.device = kPdfDevice;
        job_.paper.copies = 1;
        print(0);
    }
    job_.device = device;
    job_.paper.paperBin = paper.paperBin;
    job_.paper.copies = paper.copies;
}

}  // namespace tsRtm
