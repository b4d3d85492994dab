#pragma once
// A print job: pages are composed once and go to preview, printer, PDF and further copies.
//
//     Druck job;
//     job.Init(72, 1, 1, u"A4");
//     job.mm(30, 25, u"Ladung", 14, tsFett);
//     job.Ende();
//
// Lengths are twips (1440 an inch) where nothing else is said, dots (1200 an inch), or millimetres; rows go
// downward, and a text stands on its row. Text and drawing go to the page that is being composed, and to none
// once the job is closed or broken off. What goes wrong on the way to paper is shown and breaks the job off.
#include <memory>

#include "tsRtm/platform/Paper.hpp"
#include "tsRtm/printing/DruckTypen.hpp"
#include "tsRtm/types/Event.hpp"
#include "tsRtm/types/Text.hpp"
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

class MessagesTopic;
struct DruckState;

// Formatted text.
class iRichText : public Object {
 public:
    virtual Text TextRTF() const = 0;
    virtual void TextRTF(TextView value) = 0;
};

class Druck {
 public:
    // Shows its messages through these, which outlive it.
    explicit Druck(MessagesTopic& messages);
    ~Druck();
    Druck(const Druck&) = delete;
    Druck& operator=(const Druck&) = delete;

    // --- The job ---
    // SeitenLaenge: rows of 1/6 inch; 72 is the usual page. Anzahl: copies in its low eight bits, tsQuer, and
    // one of the duplex bits; 32767 asks for the copies. PapierTyp: 0 endless, 1 to 4 and 9 bins with A4,
    // negative: as the printer is set, its absolute value being the bin. Refused while a preview is still to
    // end.
    void Init(int32 SeitenLaenge, int32 Anzahl, int32 PapierTyp, TextView Formular, bool Vorschau = false,
              const std::shared_ptr<Object>& Owner = {});
    // Ends the page; with true the document as well, without its last page if that is empty.
    void Ausgabe(bool Schliessen = false);
    void Ende();
    // Breaks the job off.
    void KillDoc();
    // Ends the preview: prints, or gives up.
    void VorschauEnde(bool drucken);
    // 0: all pages; above 0: that page; below 0: a proof print of the page of the absolute number.
    void PrintToPrinter(int32 Seite);
    // Puts a page on the clipboard.
    void CopyPage(int32 Seite);
    // A page as it is played; nullptr where there is none. Good until the job goes on.
    std::unique_ptr<platform::PageSource> Page(int32 Seite) const;

    // The preview was left by cancelling.
    Event<> Cancel;
    // All was printed from the preview.
    Event<> Printed;

    Text Version() const { return u"2.01"; }
    bool Initialized() const noexcept;
    bool Abbruch() const noexcept;
    int16 PageCount() const noexcept;
    // The name in the printer's queue and of the file.
    Text JobName() const;
    void JobName(TextView value);
    Text Name() const { return JobName(); }
    void Name(TextView value) { JobName(value); }

    // --- The device ---
    // A printer by exactly its name or its address, or "PDF"; another name changes nothing.
    Text Device() const;
    void Device(TextView value);
    int32 Copies() const noexcept;
    void Copies(int32 value);
    bool Collate() const noexcept;
    void Collate(bool value);
    bool Duplex() const noexcept;
    void Duplex(bool value);
    // What is read after Init differs from the bit given there, and fits what is written here.
    TSDruckKonstanten DuplexTyp() const noexcept;
    void DuplexTyp(TSDruckKonstanten value);
    int32 PaperBin() const noexcept;
    void PaperBin(int32 value);
    // Of the printer's bin, by default the job's; "Schacht ID " and the number where it has none.
    Text PaperBinName(int32 BinNumber = -1) const;
    void PrintQuality(int32 value);
    // Shift on the paper, twips.
    int32 OffsetX() const noexcept;
    void OffsetX(int32 value);
    int32 OffsetY() const noexcept;
    void OffsetY(int32 value);
    // The printer; nullptr without one.
    std::shared_ptr<platform::Printer> Handle() const;
    // The page that is being composed, by number, 0 without one.
    int32 hDC() const noexcept;

    // --- The paper ---
    // 0 where the size is told by Width and Height. Writing takes both from the printer, if it has the size.
    int32 PaperSize() const noexcept;
    void PaperSize(int32 value);
    // As the page is read; written as it lies in the printer. 0 and less is ignored.
    int32 Width() const noexcept;
    void Width(int32 value);
    int32 Height() const noexcept;
    void Height(int32 value);
    float64 PaperWidth() const noexcept { return Width(); }
    float64 PaperHeight() const noexcept { return Height(); }
    PrintOrientation Orientation() const noexcept;
    void Orientation(PrintOrientation value);  // swaps width and height
    Text FormName() const;
    void FormName(TextView value);

    // --- The preview ---
    bool Vorschau() const noexcept;
    void Vorschau(bool value);
    bool Modal() const noexcept;
    void Modal(bool value);
    int32 PreviewSize() const noexcept;  // 1 whole page, 2 width of the window, 3 enlarged
    void PreviewSize(int32 value);
    int32 PreviewState() const noexcept;  // 0 normal, 2 maximised
    void PreviewState(int32 value);
    tsButtons PreviewButtonsOFF() const noexcept;
    void PreviewButtonsOFF(tsButtons value);

    // --- The file ---
    Text DocPath() const;  // empty: the user's documents
    void DocPath(TextView value);
    Text DocFile() const;  // the name that the file got, without its folder
    void DocFile(TextView value);
    bool PDFA() const noexcept;
    void PDFA(bool value);
    bool Protected() const noexcept;  // not with PDFA
    void Protected(bool value);
    void DocumentProperties(TextView Application, TextView Author, TextView Subject, TextView KeyWords);

    // --- Further copies and fax ---
    void CopyType(eCopyTypes value);
    void CopyDevice(TextView value);
    void CopyBin(int32 value);
    void CopyCount(int32 value);
    void FaxTyp(eFaxTypen value);
    void FaxNummer(TextView value);
    void FaxZeit(TextView value);
    int32 FaxError() const noexcept;  // 1: the fax program did not take the last one

    // --- Text ---
    // Row, column and advance in dots; what is negative (angle: -1) stays as it is. Breit: points. An empty
    // text moves nothing, one blank only goes on to the next line. Aligned text leaves CurrentX where it
    // began.
    void Setzen(int32 Zeile, int32 Spalte, int32 Breit, int32 Attr, int32 Vorschub, TextView Inhalt,
                int32 Winkel = -1);
    void Setz(int32 Zeile, int32 Spalte, int32 Breit, int32 Attr, int32 Vorschub, int32 Winkel = -1);
    void Naechst(TextView Inhalt);
    // Rows of 1/6 inch, columns of 1/10; CPI characters an inch.
    void ZS(int32 Zeile, int32 Spalte, int32 CPI, int32 Attribut, TextView Inhalt, int32 Winkel = -1);
    // Rows of 1/24 inch, columns of 1/10, Typ of BVDruckKonstanten, of which bvZentriert has no effect.
    void BV90(int32 Zeile, int32 Spalte, int32 Typ, TextView Inhalt, int32 Winkel = -1);
    // Millimetres.
    void mm(float64 Zeile, float64 Spalte, TextView Inhalt, int32 Breit = 0, int32 Attr = 0,
            int32 Winkel = -1);
    // Cuts the text until it is no wider than MaxBreite, if that is above 0.
    void MMExt(float64 Zeile, float64 Spalte, Text& Inhalt, int32 Breit = 0, int32 Attr = 0,
               int32 Winkel = -1, float64 MaxBreite = 0.0);
    // Paragraphs wrapped to a width. The row goes on behind the last line; the result is the height. With
    // Probedruck it is only measured, and the row stays, but with Test as well.
    int32 SetzText(TextView Inhalt, int32& DruckZeile, int32 Spalte, int32 Breit, int32 Typ = 10,
                   int32 ABSTAND = 4, bool Probedruck = false, bool Test = false);
    int32 SetzTextMM(TextView Inhalt, float64& DruckZeile, float64 Spalte, float64 Breit, int32 SchriftBreit,
                     int32 Attr, float64 ABSTAND = 4.2333333333333325, bool Probedruck = false,
                     bool Test = false);
    // Twips, of the current font; 0 before the first page.
    int32 TextWidth(TextView Inhalt);
    int32 TextHeight(TextView Inhalt);
    // Rows of 1/6 inch and columns of 1/10.
    void Locate(int32 Zeile, int32 Spalte);
    int32 CurrentX() const noexcept;
    void CurrentX(int32 value);
    int32 CurrentY() const noexcept;
    void CurrentY(int32 value);
    int32 Vorschub() const noexcept;
    void Vorschub(int32 value);
    Text FontName() const;
    void FontName(TextView value);
    int32 FontSize() const noexcept;
    void FontSize(int32 value);
    int32 Winkel() const noexcept;
    void Winkel(int32 value);
    int32 Attribs() const noexcept;
    void Attribs(int32 value);
    int32 ForeColor() const noexcept;
    void ForeColor(int32 value);
    int32 BkMode() const noexcept;
    void BkMode(int32 value);  // 1 transparent, 2 opaque; raises 380 for another one and without a page

    // --- Formatted text ---
    // Puts the text from character Anfang (0-based) into the rectangle. The first character that did not fit,
    // or -1; without Render only measured, and Height becomes the height used if all fit. Raises 422 where
    // nobody can lay it out, 424 without a text.
    int32 PrintRTFTextNeu(TextView RTFText, int32 Left, int32 Top, int32 Width, int32& Height,
                          int32 Anfang = 0, bool background = false, bool Render = true);
    int32 PrintRTFNeu(const std::shared_ptr<Object>& RTF, int32 Left, int32 Top, int32 Width, int32& Height,
                      int32 Anfang = 0, bool background = false, bool Render = true);
    // Older forms; UseZOrder is without effect.
    int32 PrintRTFText(TextView RTFText, int32 Left, int32 Top, int32 Width, int32& Height, int32 Anfang = 0,
                       bool UseZOrder = false, bool Render = true);
    int32 PrintRTF(const std::shared_ptr<Object>& RTF, int32 Left, int32 Top, int32 Width, int32& Height,
                   int32 Anfang = 0, bool UseZOrder = false, bool Render = true);
    static std::shared_ptr<iRichText> RTFObject(TextView RTFText);
    int32 RTFBackColor() const noexcept;
    void RTFBackColor(int32 value);

    // --- Drawing ---
    // A line, or a rectangle of the two corners. Dicke (twips) and Style of 0 or more choose pen and brush.
    void Linie(int32 AnfangY, int32 AnfangX, int32 EndeY, int32 EndeX, bool Rechteck = false,
               GDIBrushStyles Style = bsNone, int32 Dicke = -1);
    void LinieMM(float64 AnfangY, float64 AnfangX, float64 EndeY, float64 EndeX, bool Rechteck = false,
                 GDIBrushStyles Style = bsNone, int32 Dicke = -1);
    void Linie24(int32 AnfangY, int32 AnfangX, int32 EndeY, int32 EndeX, bool Rechteck = false,
                 GDIBrushStyles Style = bsNone, int32 Dicke = -1);  // rows of 1/24 inch
    void Ellipse(int32 AnfangY, int32 AnfangX, int32 EndeY, int32 EndeX, GDIBrushStyles Style = bsNone,
                 int32 Dicke = -1);
    void RundRechteck(int32 AnfangY, int32 AnfangX, int32 EndeY, int32 EndeX, int32 EckeY, int32 EckeX,
                      GDIBrushStyles Style = bsNone, int32 Dicke = -1);
    // A picture, PNG or JPEG, between two corners; from a file (raises what reading it fails with), or bytes.
    void PlayGrafik(TextView Datei, int32 AnfangY, int32 AnfangX, int32 EndeY, int32 EndeX);
    void PlayGDIGrafik(BytesView Bild, int32 AnfangY, int32 AnfangX, int32 EndeY, int32 EndeX);
    void CreatePen(int32 Style, int32 Width, int32 Color);
    void CreateBrush(int32 Style, int32 Color, int32 Hatch = 0);
    // Where to fold a letter for a window envelope, form B and form A.
    void FaltMarken();
    void FaltMarkenA();

 private:
    class Preview;

    bool silent() const noexcept;
    void draw(int32 style, int32 thickness);
    void startPage();
    void prepare();
    void showPreview(bool closing);
    void endPreview();
    int32 wrapped(TextView text, int32& row, int32 column, int32 width, int32 size, int32 attr,
                  int32 distance, bool measureOnly);
    const std::shared_ptr<const platform::FormattedText>& formatted(TextView rtf);

    std::unique_ptr<DruckState> s_;
};

}  // namespace tsRtm
