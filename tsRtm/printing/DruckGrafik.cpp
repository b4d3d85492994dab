// What a job draws: lines, shapes, pictures.
#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/printing/Druck.hpp"
#include "tsRtm/printing/job/DruckState.hpp"
#include "tsRtm/printing/pages/Scale.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr int32 kRow24Twips = 60;
constexpr int32 kFold = 5953, kFoldFrom = 144, kFoldTo = 432;  // twips

platform::Place onPage(const Page& page, int32 y, int32 x) noexcept {
    return {x / page.factor, y / page.factor};
}

}  // namespace

// Pen and brush for what is drawn now, and for all that follows.
void Druck::draw(int32 style, int32 thickness) {
    if (thickness >= 0) CreatePen(0, thickness, ForeColor());
    if (style >= 0) CreateBrush(style, ForeColor());
    s_->used = true;
}

void Druck::CreatePen(int32 Style, int32 Width, int32 Color) {
    auto* page = silent() ? nullptr : s_->pages.current();
    // A line that has a width keeps one.
    if (page)
        page->commands.add(
            platform::Pen{Style, Width > 0 ? std::max(Width / page->factor, 1) : Width, Color});
}

void Druck::CreateBrush(int32 Style, int32 Color, int32 Hatch) {
    auto* page = silent() ? nullptr : s_->pages.current();
    if (page) page->commands.add(platform::Brush{Style, Color, Hatch});
}

void Druck::Linie(int32 AnfangY, int32 AnfangX, int32 EndeY, int32 EndeX, bool Rechteck, GDIBrushStyles Style,
                  int32 Dicke) {
    auto* page = silent() ? nullptr : s_->pages.current();
    if (!page) return;
    draw(Style, Dicke);
    const auto from = onPage(*page, AnfangY, AnfangX), to = onPage(*page, EndeY, EndeX);
    if (Rechteck)
        page->commands.add(
            platform::Shape{platform::ShapeKind::polygon, {from, {to.x, from.y}, to, {from.x, to.y}}});
    else
        page->commands.add(platform::Line{from, to});
}

void Druck::LinieMM(float64 AnfangY, float64 AnfangX, float64 EndeY, float64 EndeX, bool Rechteck,
                    GDIBrushStyles Style, int32 Dicke) {
    Linie(mmToTwips(AnfangY), mmToTwips(AnfangX), mmToTwips(EndeY), mmToTwips(EndeX), Rechteck, Style, Dicke);
}

void Druck::Linie24(int32 AnfangY, int32 AnfangX, int32 EndeY, int32 EndeX, bool Rechteck,
                    GDIBrushStyles Style, int32 Dicke) {
    Linie(AnfangY * kRow24Twips, AnfangX, EndeY * kRow24Twips, EndeX, Rechteck, Style, Dicke);
}

void Druck::Ellipse(int32 AnfangY, int32 AnfangX, int32 EndeY, int32 EndeX, GDIBrushStyles Style,
                    int32 Dicke) {
    auto* page = silent() ? nullptr : s_->pages.current();
    if (!page) return;
    draw(Style, Dicke);
    page->commands.add(platform::Shape{platform::ShapeKind::ellipse,
                                       {onPage(*page, AnfangY, AnfangX), onPage(*page, EndeY, EndeX)}});
}

void Druck::RundRechteck(int32 AnfangY, int32 AnfangX, int32 EndeY, int32 EndeX, int32 EckeY, int32 EckeX,
                         GDIBrushStyles Style, int32 Dicke) {
    auto* page = silent() ? nullptr : s_->pages.current();
    if (!page) return;
    draw(Style, Dicke);
    page->commands.add(platform::Shape{
        platform::ShapeKind::rounded,
        {onPage(*page, AnfangY, AnfangX), onPage(*page, EndeY, EndeX), onPage(*page, EckeY, EckeX)}});
}

void Druck::PlayGrafik(TextView Datei, int32 AnfangY, int32 AnfangX, int32 EndeY, int32 EndeX) {
    if (silent()) return;
    FilesTopic files(s_->messages);
    const int32 file = files.OpenBinaryAPI(Datei, true, true);
    if (file == 0) raise(53, u"Druck", Text(Datei));
    Bytes picture(static_cast<std::size_t>(files.LofAPI(file)), '\0');
    files.GetBytesAPI(file, 0, std::as_writable_bytes(std::span(picture)),
                      static_cast<int32>(picture.size()));
    files.CloseAPI(file);
    PlayGDIGrafik(picture, AnfangY, AnfangX, EndeY, EndeX);
}

void Druck::PlayGDIGrafik(BytesView Bild, int32 AnfangY, int32 AnfangX, int32 EndeY, int32 EndeX) {
    auto* page = silent() ? nullptr : s_->pages.current();
    if (!page || Bild.empty()) return;
    s_->used = true;
    page->commands.add(
        platform::Picture{onPage(*page, AnfangY, AnfangX), onPage(*page, EndeY, EndeX), Bytes(Bild)});
}

void Druck::FaltMarken() {
    for (int32 row = kFold; row < Height(); row += kFold) Linie(row, kFoldFrom, row, kFoldTo);
}

void Druck::FaltMarkenA() {
    for (int32 row = Height() - kFold; row > 0; row -= kFold) Linie(row, kFoldFrom, row, kFoldTo);
}

}  // namespace tsRtm
