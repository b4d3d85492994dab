// What a job writes: texts on grids, paragraphs, formatted text.
#include <cstring>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/printing/Druck.hpp"
#include "tsRtm/printing/job/DruckState.hpp"
#include "tsRtm/printing/pages/Scale.hpp"
#include "tsRtm/printing/text/LineBreaks.hpp"
#include "tsRtm/printing/text/RtfColours.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr int32 kRow6 = 200, kRow24 = 50, kColumn10 = 120;  // dots
constexpr float64 kMostDots = 1e9;
constexpr float64 kA4Dots = 9921.259842519685;
constexpr int32 kTwipsPerWholeMM = 57;
constexpr int32 kPixelTwips = 1440 / 1200;

// A grid's place in dots; 0 and what is negative stays.
constexpr int32 onGrid(int32 value, int32 step) noexcept { return value > 0 ? value * step : value; }

// Without bvZentriert: the formula has always lost it.
constexpr int32 attributeOf(int32 type) noexcept {
    return (type & 32) * 4 + ((type >> 4) & 4) + ((type >> 3) & 3) + (type & ~255);
}

constexpr int32 sizeOf(int32 type, int32 narrow) noexcept {
    const int32 sizes[] = {6, 12, 10, narrow};
    return sizes[type & 3] * (type & bvBreit ? 2 : 1);
}

// As bytes, which is several times faster: a long text is compared for each of its pages.
bool same(TextView a, TextView b) noexcept {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(char16_t)) == 0);
}

class KeptRichText final : public iRichText {
 public:
    explicit KeptRichText(TextView text) : text_(text) {}
    Text TextRTF() const override { return text_; }
    void TextRTF(TextView value) override { text_ = value; }

 private:
    Text text_;
};

}  // namespace

void Druck::Setzen(int32 Zeile, int32 Spalte, int32 Breit, int32 Attr, int32 Vorschub, TextView Inhalt,
                   int32 Winkel) {
    if (silent()) return rtmMain::system().ui.processEvents();
    try {
        s_->used |= s_->writer.write(Zeile, Spalte, Breit, Attr, Vorschub, Inhalt, Winkel);
    } catch (const Failure& failure) {
        s_->messages.TSMsgBox(u"Es ist Fehler " + toText(failure.Number()) + u": " + failure.Description() +
                                  u" in Zeile 0 aufgetreten.",
                              dlgExclamation, Variant(u"Druck.Setzen"));
    }
}

void Druck::Setz(int32 Zeile, int32 Spalte, int32 Breit, int32 Attr, int32 Vorschub, int32 Winkel) {
    Setzen(Zeile, Spalte, Breit, Attr, Vorschub, u" ", Winkel);
}

void Druck::Naechst(TextView Inhalt) { Setzen(-1, -1, -1, -1, -1, Inhalt.empty() ? u" " : Inhalt); }

void Druck::ZS(int32 Zeile, int32 Spalte, int32 CPI, int32 Attribut, TextView Inhalt, int32 Winkel) {
    Setzen(onGrid(Zeile, kRow6), onGrid(Spalte, kColumn10), CPI > 0 ? 120 / CPI : CPI, Attribut, -1, Inhalt,
           Winkel);
}

void Druck::BV90(int32 Zeile, int32 Spalte, int32 Typ, TextView Inhalt, int32 Winkel) {
    Setzen(onGrid(Zeile, kRow24), onGrid(Spalte, kColumn10), sizeOf(Typ, 8), attributeOf(Typ), -1, Inhalt,
           Winkel);
}

void Druck::mm(float64 Zeile, float64 Spalte, TextView Inhalt, int32 Breit, int32 Attr, int32 Winkel) {
    Setzen(mmToDots(Zeile), mmToDots(Spalte), Breit, Attr, -1, Inhalt, Winkel);
}

void Druck::MMExt(float64 Zeile, float64 Spalte, Text& Inhalt, int32 Breit, int32 Attr, int32 Winkel,
                  float64 MaxBreite) {
    if (MaxBreite > 0) {
        Setzen(-1, -1, Breit, Attr, -1, {}, Winkel);
        const auto fits = [&](std::size_t letters) {
            const int32 whole = TextWidth(TextView(Inhalt).substr(0, letters)) / kTwipsPerWholeMM;
            return whole <= MaxBreite;
        };
        std::size_t least = 0, most = Inhalt.size();
        if (fits(most)) least = most;
        while (most - least > 1) {
            const auto middle = (least + most) / 2;
            (fits(middle) ? least : most) = middle;
        }
        Inhalt.resize(least);
    }
    mm(Zeile, Spalte, Inhalt, Breit, Attr, Winkel);
}

int32 Druck::wrapped(TextView text, int32& row, int32 column, int32 width, int32 size, int32 attr,
                     int32 distance, bool measureOnly) {
    Setzen(-1, -1, size, attr, distance, {});
    if (column < 0) column = twipsToDots(s_->writer.x);
    if (row < 0) row = twipsToDots(s_->writer.y);
    const int32 start = row;
    if (s_->writer.alignment == kRight) column += width;
    const auto measure = [&](TextView piece) { return TextWidth(piece); };
    for (const auto& line : brokenLines(text, dotsToTwips(width), measure)) {
        if (!measureOnly && !text.empty()) Setzen(row, column, -1, -1, -1, line);
        row += distance;
    }
    return row - start;
}

int32 Druck::SetzText(TextView Inhalt, int32& DruckZeile, int32 Spalte, int32 Breit, int32 Typ, int32 ABSTAND,
                      bool Probedruck, bool Test) {
    int32 row = DruckZeile * kRow24;
    // The narrow type has 7 points here, and 8 in BV90.
    const int32 height = wrapped(Inhalt, row, Spalte * kColumn10, Breit * kColumn10, sizeOf(Typ, 7),
                                 attributeOf(Typ), ABSTAND * kRow24, Probedruck);
    if (!Probedruck || Test) DruckZeile = row / kRow24;
    return height / kRow24;
}

int32 Druck::SetzTextMM(TextView Inhalt, float64& DruckZeile, float64 Spalte, float64 Breit,
                        int32 SchriftBreit, int32 Attr, float64 ABSTAND, bool Probedruck, bool Test) {
    const float64 width = Breit * kDotsPerMM;
    int32 row = mmToDots(DruckZeile);
    const int32 height =
        wrapped(Inhalt, row, mmToDots(Spalte), roundToInt32(width < 0 || width > kMostDots ? kA4Dots : width),
                SchriftBreit, Attr, mmToDots(ABSTAND), Probedruck);
    if (!Probedruck || Test) DruckZeile = row / kDotsPerMM;
    return roundToInt32(height / kDotsPerMM);
}

int32 Druck::TextWidth(TextView Inhalt) {
    return s_->pages.count() == 0 ? 0 : s_->writer.extent(Inhalt).width;
}
int32 Druck::TextHeight(TextView Inhalt) {
    return s_->pages.count() == 0 ? 0 : s_->writer.extent(Inhalt).height;
}

void Druck::FontName(TextView value) {
    if (!value.empty()) s_->writer.font.name = value;
    s_->writer.selectFont();
}

void Druck::FontSize(int32 value) {
    s_->writer.font.size = value;
    s_->writer.selectFont();
}

void Druck::Winkel(int32 value) {
    s_->writer.font.angle = value;
    s_->writer.selectFont();
}

void Druck::Attribs(int32 value) {
    s_->writer.attribute(value);
    if (value >= 0) s_->writer.selectFont();
}

void Druck::ForeColor(int32 value) {
    s_->writer.foreColour = value;
    if (auto* page = s_->pages.current()) page->commands.add(platform::TextColour{value});
}

void Druck::BkMode(int32 value) {
    auto* page = s_->pages.current();
    if (!page || value < 1 || value > 2) raise(380, u"Druck", u"Ungültiger Eigenschaftswert");
    s_->backgroundMode = value;
    page->commands.add(platform::TextBackground{value});
}

std::shared_ptr<iRichText> Druck::RTFObject(TextView RTFText) {
    return std::make_shared<KeptRichText>(RTFText);
}

int32 Druck::PrintRTFTextNeu(TextView RTFText, int32 Left, int32 Top, int32 Width, int32& Height,
                             int32 Anfang, bool background, bool Render) {
    if (silent()) return -1;
    if (!s_->paper) raise(422, u"tsRtm (PrintRTFNeu)", u"RTF hat kein Handle");
    auto* page = s_->pages.current();
    const auto& kept = formatted(RTFText);
    if (Anfang >= kept->length() || !page) return -1;
    const auto& traits = page->traits;
    const platform::PlacedText text{
        kept,   std::max(Anfang, 0), Left, Top, Width > 0 ? Width : traits.width - Left,
        Height, s_->rtfBackColour};
    const auto fit = s_->paper->texts.fit(text, traits.height);
    if (!Render && fit.next < 0) Height = fit.used + kPixelTwips;
    if (Render) {
        s_->used = true;
        // Not even one line: the next page has room for it.
        if (fit.next != text.from) page->texts.push_back({text, background});
    }
    return fit.next;
}

// The pages of a text come one behind the other: it is read once.
const std::shared_ptr<const platform::FormattedText>& Druck::formatted(TextView rtf) {
    auto& source = s_->formatted;
    const bool blacken = s_->paper->texts.windowText() != 0;
    if (!source.text || source.blackened != blacken || !same(source.rtf, rtf))
        source = {Text(rtf), blacken, s_->paper->texts.read(blacken ? blackened(rtf) : Text(rtf))};
    return source.text;
}

int32 Druck::PrintRTFNeu(const std::shared_ptr<Object>& RTF, int32 Left, int32 Top, int32 Width,
                         int32& Height, int32 Anfang, bool background, bool Render) {
    const auto text = std::dynamic_pointer_cast<iRichText>(RTF);
    if (!text && !silent()) raise(424, u"tsRtm (PrintRTFNeu)", u"Keine RichTextBox angegeben");
    return text ? PrintRTFTextNeu(text->TextRTF(), Left, Top, Width, Height, Anfang, background, Render) : -1;
}

int32 Druck::PrintRTFText(TextView RTFText, int32 Left, int32 Top, int32 Width, int32& Height, int32 Anfang,
                          bool UseZOrder, bool Render) {
    return PrintRTF(RTFObject(RTFText), Left, Top, Width, Height, Anfang, UseZOrder, Render);
}

int32 Druck::PrintRTF(const std::shared_ptr<Object>& RTF, int32 Left, int32 Top, int32 Width, int32& Height,
                      int32 Anfang, bool, bool Render) {
    if (const auto text = std::dynamic_pointer_cast<iRichText>(RTF)) {
        // Line ends count twice here, and in the caller's text from then on.
        constexpr TextView kEnd = u"\\par \r\n", kTwice = u"\\par  \r\n";
        Text rtf = text->TextRTF();
        for (std::size_t at = 0; (at = rtf.find(kEnd, at)) != Text::npos; at += kTwice.size())
            rtf.replace(at, kEnd.size(), kTwice);
        text->TextRTF(rtf);
    }
    try {
        return PrintRTFNeu(RTF, Left, Top, Width, Height, Anfang, false, Render);
    } catch (const Failure& failure) {
        s_->messages.TSMsgBox(s_->messages.ErrorMessage(failure), dlgExclamation,
                              Variant(u"Druck.PrintRTFIntern"));
        return -1;
    }
}

}  // namespace tsRtm
