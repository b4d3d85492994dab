// The values of a job that are only kept.
#include "tsRtm/printing/Druck.hpp"
#include "tsRtm/printing/job/DruckState.hpp"

namespace tsRtm {

bool Druck::Initialized() const noexcept { return s_->initialized; }
bool Druck::Abbruch() const noexcept { return s_->job.brokenOff; }
int16 Druck::PageCount() const noexcept { return static_cast<int16>(s_->pages.count()); }
Text Druck::JobName() const { return s_->job.name; }
void Druck::JobName(TextView value) { s_->job.name = value; }
Text Druck::Device() const { return s_->job.device; }
int32 Druck::Copies() const noexcept { return s_->job.paper.copies; }
void Druck::Copies(int32 value) { s_->job.paper.copies = value; }
bool Druck::Collate() const noexcept { return s_->job.collate; }
void Druck::Collate(bool value) { s_->job.collate = value; }
bool Druck::Duplex() const noexcept { return s_->job.paper.duplex != 1; }
void Druck::Duplex(bool value) { s_->job.paper.duplex = value ? 2 : 1; }
int32 Druck::PaperBin() const noexcept { return s_->job.paper.paperBin; }
void Druck::PaperBin(int32 value) { s_->job.paper.paperBin = value; }
void Druck::PrintQuality(int32 value) { s_->job.quality = value; }
int32 Druck::OffsetX() const noexcept { return s_->job.offsetX; }
void Druck::OffsetX(int32 value) { s_->job.offsetX = value; }
int32 Druck::OffsetY() const noexcept { return s_->job.offsetY; }
void Druck::OffsetY(int32 value) { s_->job.offsetY = value; }
std::shared_ptr<platform::Printer> Druck::Handle() const { return s_->output.printer(); }
int32 Druck::hDC() const noexcept { return s_->pages.current() ? s_->pages.count() : 0; }
int32 Druck::PaperSize() const noexcept { return s_->job.paper.paperSize; }
int32 Druck::Width() const noexcept { return s_->job.paper.width; }
int32 Druck::Height() const noexcept { return s_->job.paper.height; }
PrintOrientation Druck::Orientation() const noexcept {
    return static_cast<PrintOrientation>(s_->job.paper.orientation);
}
Text Druck::FormName() const { return s_->job.formName; }
void Druck::FormName(TextView value) { s_->job.formName = value; }
bool Druck::Vorschau() const noexcept { return s_->preview; }
void Druck::Vorschau(bool value) { s_->preview = value; }
bool Druck::Modal() const noexcept { return s_->modal; }
void Druck::Modal(bool value) { s_->modal = value; }
int32 Druck::PreviewSize() const noexcept { return s_->previewView; }
void Druck::PreviewSize(int32 value) { s_->previewView = value; }
int32 Druck::PreviewState() const noexcept { return s_->previewState; }
void Druck::PreviewState(int32 value) { s_->previewState = value; }
tsButtons Druck::PreviewButtonsOFF() const noexcept { return static_cast<tsButtons>(s_->previewButtonsOff); }
void Druck::PreviewButtonsOFF(tsButtons value) {
    s_->previewButtonsOff = value;
    if (s_->windowOpen) s_->window->update();
}
Text Druck::DocPath() const { return s_->job.docPath; }
void Druck::DocPath(TextView value) { s_->job.docPath = value; }
Text Druck::DocFile() const { return s_->job.docFile; }
void Druck::DocFile(TextView value) { s_->job.docFile = value; }
bool Druck::PDFA() const noexcept { return s_->job.archive; }
void Druck::PDFA(bool value) { s_->job.archive = value; }
bool Druck::Protected() const noexcept { return s_->job.isProtected; }
void Druck::Protected(bool value) { s_->job.isProtected = value; }
void Druck::DocumentProperties(TextView Application, TextView Author, TextView Subject, TextView KeyWords) {
    auto& job = s_->job;
    job.application = Application;
    job.author = Author;
    job.subject = Subject;
    job.keywords = KeyWords;
}
void Druck::CopyType(eCopyTypes value) { s_->job.furtherCopies = static_cast<FurtherCopies>(value); }
void Druck::CopyDevice(TextView value) { s_->job.copyDevice = value; }
void Druck::CopyBin(int32 value) { s_->job.copyBin = value; }
void Druck::CopyCount(int32 value) { s_->job.copyCount = value; }
void Druck::FaxTyp(eFaxTypen value) { s_->job.fax = static_cast<Fax>(value); }
void Druck::FaxNummer(TextView value) { s_->job.faxNumber = value; }
void Druck::FaxZeit(TextView value) { s_->job.faxTime = value; }
int32 Druck::FaxError() const noexcept { return s_->job.faxError; }
int32 Druck::CurrentX() const noexcept { return s_->writer.x; }
void Druck::CurrentX(int32 value) { s_->writer.x = value; }
int32 Druck::CurrentY() const noexcept { return s_->writer.y; }
void Druck::CurrentY(int32 value) { s_->writer.y = value; }
int32 Druck::Vorschub() const noexcept { return s_->writer.advance; }
void Druck::Vorschub(int32 value) { s_->writer.advance = value; }
Text Druck::FontName() const { return s_->writer.font.name; }
int32 Druck::FontSize() const noexcept { return s_->writer.font.size; }
int32 Druck::Winkel() const noexcept { return s_->writer.font.angle; }
int32 Druck::Attribs() const noexcept { return s_->writer.attribute(); }
int32 Druck::ForeColor() const noexcept { return s_->writer.foreColour; }
int32 Druck::BkMode() const noexcept { return s_->pages.current() ? s_->backgroundMode : 0; }
int32 Druck::RTFBackColor() const noexcept { return s_->rtfBackColour; }
void Druck::RTFBackColor(int32 value) { s_->rtfBackColour = value; }

}  // namespace tsRtm
