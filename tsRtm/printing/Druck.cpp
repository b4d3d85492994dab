#include "tsRtm/printing/Druck.hpp"

#include <algorithm>

#include "tsRtm/frame/clsCommon.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/frame/state/Plugged.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/printing/job/DruckState.hpp"
#include "tsRtm/printing/pages/Scale.hpp"

namespace tsRtm {
namespace {

using Feature = platform::PrinterFeature;

constexpr int32 kAskForCopies = 32767;
constexpr int32 kUsualRows = 72;
constexpr int32 kEndlessWidth = 12240, kEndlessHeight = 17280, kEndlessPaper = 40;
constexpr int32 kA4 = 9;
constexpr int32 kRow = 240, kColumn = 144;

bool isPdf(TextView device) { return upper(device) == u"PDF"; }

// The bin of a type of paper, 0 where it names none.
int32 binOf(int32 paperType) noexcept {
    if (paperType < 0) return -paperType;
    constexpr std::pair<int32, int32> kBins[] = {{0, 8}, {1, 1}, {2, 3}, {3, 2}, {4, 5}, {9, 4}};
    for (const auto& [type, bin] : kBins)
        if (type == paperType) return bin;
    return 0;
}

// One page for somebody who draws it in his own size.
class DrawnPage final : public platform::PageSource {
 public:
    explicit DrawnPage(const Page& page) : page_(page) {}
    platform::PreviewedPage page() const override {
        return {page_.traits.width, page_.traits.height, !page_.open};
    }
    void draw(platform::PageDevice& device, int32 width, int32 height) const override {
        if (!page_.open) play(page_, device, mappingInto(page_, width, height));
    }

 private:
    const tsRtm::Page& page_;
};

}  // namespace

// The job as its window sees it.
class Druck::Preview final : public platform::PreviewedJob {
 public:
    explicit Preview(Druck& job) : job_(job) {}
    platform::PreviewedFacts facts() const override {
        return {job_.JobName(), job_.Device(), job_.Duplex(), job_.Copies(), job_.s_->previewButtonsOff};
    }
    int32 pages() const override { return job_.PageCount(); }
    std::unique_ptr<platform::PageSource> source(int32 page) const override { return job_.Page(page); }
    void printPage(int32 page) override { job_.PrintToPrinter(-page); }
    void copyPage(int32 page) override { job_.CopyPage(page); }
    void leave(bool print) override { job_.VorschauEnde(print); }

 private:
    Druck& job_;
};

Druck::Druck(MessagesTopic& messages) : s_(std::make_unique<DruckState>(messages, rtmMain::plugged().paper)) {
    const auto names = s_->output.printers() ? s_->output.printers()->names() : std::vector<Text>();
    s_->job.device = names.empty() ? Text(kPdfDevice) : names.front();
}

Druck::~Druck() = default;

bool Druck::silent() const noexcept { return s_->job.brokenOff || s_->job.closing; }

void Druck::Init(int32 SeitenLaenge, int32 Anzahl, int32 PapierTyp, TextView Formular, bool Vorschau,
                 const std::shared_ptr<Object>&) {
    auto& job = s_->job;
    auto& paper = job.paper;
    // Nor does a job begin while the pages of the one before are on their way.
    if (s_->preview || s_->output.playing()) {
        s_->messages.TSMsgBox(u"Der letzte Druckjob ist noch nicht beendet.", dlgCritical,
                              Variant(u"Druck.Init"));
        return;
    }
    if (s_->windowOpen) VorschauEnde(false);
    endPreview();
    s_->pages.clear();
    job.brokenOff = job.closing = s_->previewShown = job.isProtected = false;
    s_->preview = Vorschau;
    job.formName = Formular;

    paper.orientation = poPortrait;
    paper.duplex = 1;
    if (Anzahl == kAskForCopies) {
        const auto answer = rtmMain::system().dialogs.ask(u"Anzahl Drucke", u"Test", u"1");
        paper.copies = roundToInt32(Val(answer.value_or(u"0")));
    } else {
        if (Anzahl & tsQuer) paper.orientation = poLandscape;
        paper.copies = Anzahl & 255;
        const bool portrait = paper.orientation == poPortrait;
        if (Anzahl & tsDuplexVertikal)
            paper.duplex = portrait ? 2 : 3;
        else if (Anzahl & tsDuplexHorizontal)
            paper.duplex = portrait ? 3 : 2;
    }
    auto& font = s_->writer.font;
    font = {u"Arial", 12, 0, font.styles & ~kBold};

    const bool usual = SeitenLaenge == kUsualRows;
    const auto printer = PapierTyp < 0 ? s_->output.printer() : nullptr;
    paper.paperSize = 0;
    paper.width = kEndlessWidth;
    paper.height = SeitenLaenge * 1440 / 6;
    if (printer) {
        paper.paperSize = printer->value(Feature::paperSize);
        paper.width = printer->value(Feature::width);
        paper.height = printer->value(Feature::height);
    } else if (usual && PapierTyp == 0) {
        paper.paperSize = kEndlessPaper;
        paper.height = kEndlessHeight;
    } else if (usual && PapierTyp > 0) {
        paper.paperSize = kA4;
        paper.width = mmToTwips(210);
        paper.height = mmToTwips(297);
    }
    if (paper.orientation == poLandscape) std::swap(paper.width, paper.height);
    if (const int32 bin = binOf(PapierTyp)) paper.paperBin = bin;
    startPage();
    s_->writer.x = 0;
    s_->writer.y = s_->writer.advance = kRow;
    s_->initialized = true;
}

void Druck::startPage() {
    s_->pages.begin(s_->job.paper);
    s_->writer.forgetFont();
    s_->backgroundMode = 1;
    s_->used = false;
    prepare();
}

// What the job says of its paper, into the page that is being composed.
void Druck::prepare() {
    auto* page = s_->pages.current();
    if (!page) return;
    page->traits = s_->job.paper;
    const int32 colour = s_->writer.foreColour;
    page->commands.add(platform::Pen{0, 0, colour});
    page->commands.add(platform::Brush{bsHollow, colour, 0});
    page->commands.add(platform::TextColour{colour});
}

void Druck::Ausgabe(bool Schliessen) {
    auto& job = s_->job;
    if (job.brokenOff || s_->pages.count() == 0) return;
    // A modal preview ends within this call, and the job is not to be printed twice.
    const bool direct = !s_->preview;
    s_->pages.close();
    s_->writer.forgetFont();
    job.closing = Schliessen;
    const bool dropped = Schliessen && !s_->used && s_->pages.count() > 1;
    if (dropped) s_->pages.dropLast();
    // Both sides, and what a preview has shown, go out as a whole.
    const bool pageByPage = job.paper.duplex == 1 && !s_->previewShown;
    const bool copiesFollow = job.collate && job.paper.copies >= 2 && !s_->output.toFile();
    if (direct) {
        if (copiesFollow) job.closing = false;
        if (!dropped && pageByPage) s_->output.print(s_->pages.count());
        if (dropped && !copiesFollow) s_->output.endDocument();
        if (job.brokenOff) return;
        job.closing = Schliessen;
    } else if (!s_->modal || Schliessen) {
        showPreview(Schliessen);
    }
    if (job.brokenOff) return;
    if (!Schliessen) {
        startPage();
        return;
    }
    if (!direct) return;
    if (!pageByPage) {
        s_->output.print(0);
    } else if (copiesFollow) {
        // The first copy has gone out page by page.
        --job.paper.copies;
        s_->output.print(0);
        ++job.paper.copies;
    }
    s_->output.printFurtherCopies();
}

void Druck::Ende() {
    Ausgabe(true);
    s_->preview = false;
}

void Druck::KillDoc() {
    s_->output.kill();
    endPreview();
}

void Druck::PrintToPrinter(int32 Seite) { s_->output.print(Seite); }

std::unique_ptr<platform::PageSource> Druck::Page(int32 Seite) const {
    const auto* page = s_->pages.page(Seite);
    return page ? std::make_unique<DrawnPage>(*page) : nullptr;
}

void Druck::CopyPage(int32 Seite) {
    // The page that the application is writing on stays open, unless it is the one.
    if (Seite == s_->pages.count()) s_->pages.close();
    const auto page = Page(Seite);
    if (!page || !s_->paper || !s_->paper->previews) return;
    if (const auto error = s_->paper->previews->copy(*page); platform::failed(error))
        rtmMain::DebugLog(u"Zwischenablage: " + s_->messages.SystemMsg(static_cast<int32>(error)));
}

void Druck::showPreview(bool closing) {
    if (!s_->paper || !s_->paper->previews) {
        rtmMain::DebugLog(u"Druckvorschau ohne Bildschirm: " + JobName());
        s_->job.closing = closing;
        VorschauEnde(false);
        return;
    }
    s_->previewShown = true;
    if (s_->windowOpen) {
        s_->window->update();
        return;
    }
    s_->previewed = std::make_unique<Preview>(*this);
    s_->window = s_->paper->previews->open(*s_->previewed);
    s_->windowOpen = true;
    s_->window->show({s_->previewView, s_->previewState, s_->modal, rtmMain::state().appHWnd});
}

void Druck::VorschauEnde(bool drucken) {
    auto& job = s_->job;
    job.brokenOff = !drucken;
    s_->preview = s_->windowOpen = false;
    if (!drucken) {
        Cancel();
        return;
    }
    if (job.closing) {
        s_->output.print(0);
        s_->output.printFurtherCopies();
    }
    if (!job.brokenOff) Printed();
}

void Druck::endPreview() {
    s_->windowOpen = false;
    s_->window.reset();
    s_->previewed.reset();
}

void Druck::Device(TextView value) {
    if (isPdf(value)) s_->job.device = kPdfDevice;
    auto* printers = s_->output.printers();
    if (!value.empty() && !isPdf(value) && printers && printers->printer(value)) s_->job.device = value;
}

void Druck::PaperSize(int32 value) {
    auto& paper = s_->job.paper;
    paper.paperSize = value;
    if (const auto printer = s_->output.printer(); printer && printer->set(Feature::paperSize, value)) {
        paper.width = printer->value(Feature::width);
        paper.height = printer->value(Feature::height);
        if (paper.orientation == poLandscape) std::swap(paper.width, paper.height);
    }
    prepare();
}

void Druck::Width(int32 value) {
    if (value <= 0) return;
    auto& paper = s_->job.paper;
    (paper.orientation == poLandscape ? paper.height : paper.width) = value;
    prepare();
}

void Druck::Height(int32 value) {
    if (value <= 0) return;
    auto& paper = s_->job.paper;
    (paper.orientation == poLandscape ? paper.width : paper.height) = value;
    prepare();
}

void Druck::Orientation(PrintOrientation value) {
    auto& paper = s_->job.paper;
    if (paper.orientation != value) {
        std::swap(paper.width, paper.height);
        paper.orientation = value;
    }
    prepare();
}

TSDruckKonstanten Druck::DuplexTyp() const noexcept {
    const auto& paper = s_->job.paper;
    const bool portrait = paper.orientation == poPortrait;
    if (paper.duplex == 2) return portrait ? tsDuplexHorizontal : tsDuplexVertikal;
    if (paper.duplex == 3) return portrait ? tsDuplexVertikal : tsDuplexHorizontal;
    return tsLinksBuendig;
}

void Druck::DuplexTyp(TSDruckKonstanten value) {
    auto& paper = s_->job.paper;
    const bool portrait = paper.orientation == poPortrait;
    if (value == tsLinksBuendig)
        paper.duplex = 1;
    else if (value == tsDuplexVertikal || value == tsDuplexHorizontal)
        paper.duplex = (value == tsDuplexVertikal) == portrait ? 3 : 2;
}

Text Druck::PaperBinName(int32 BinNumber) const {
    const int32 wanted = BinNumber == -1 ? s_->job.paper.paperBin : BinNumber;
    if (const auto printer = s_->output.printer())
        for (const auto& [number, name] : printer->bins())
            if (number == wanted) return name;
    return u"Schacht ID " + toText(wanted);
}

void Druck::Locate(int32 Zeile, int32 Spalte) {
    s_->writer.y = Zeile * kRow;
    s_->writer.x = Spalte * kColumn;
    s_->writer.advance = kRow;
}

}  // namespace tsRtm
