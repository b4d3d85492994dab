#pragma once
#include "desktop/paper/PdfFont.hpp"

namespace tsRtm::desktop {

// The fonts of one file with the letters that its pages use; a font's place is its name there.
class PdfFontUses {
 public:
    struct Use {
        std::shared_ptr<PdfFont> font;
        PdfLetters letters;
    };

    explicit PdfFontUses(std::shared_ptr<PdfFonts> fonts) : fonts_(std::move(fonts)) {}

    std::size_t of(const platform::Font& font);
    Use& use(std::size_t place) { return all_[place]; }
    const std::vector<Use>& all() const noexcept { return all_; }

 private:
    std::shared_ptr<PdfFonts> fonts_;
    std::vector<Use> all_;
};

// A page of a PDF, told in its own words: text of code page 1252, lines and polygons. That is what most pages
// are made of, and takes a fraction of the time that a painter needs. Whatever else is on a page is for one.
class PdfContent {
 public:
    // Of a device of so many pixels an inch; height in twips.
    PdfContent(PdfFontUses& fonts, int32 height, int32 pixelsPerInch);

    void map(const platform::PageMapping& mapping);
    // False: it cannot be told here.
    bool draw(const platform::DrawingCommand& command);
    const QByteArray& bytes() const noexcept { return bytes_; }

 private:
    bool tell(const platform::Pen& pen);
    bool tell(const platform::Brush& brush);
    bool tell(const platform::Font& font);
    bool tell(const platform::TextColour& colour);
    bool tell(const platform::TextBackground& background);
    bool tell(const platform::TextOut& text);
    bool tell(const platform::Line& line);
    bool tell(const platform::Shape& shape);
    bool tell(const platform::Picture&) { return false; }

    float64 width(BytesView letters);
    void showText(PdfFontUses::Use& use, BytesView letters);
    void place(platform::Place place);
    void number(float64 value);
    void colour(int32 bgr, const char* operation);
    void fill(int32 bgr);
    void pen();

    PdfFontUses& fonts_;
    float64 pageHeight_;  // points
    float64 pointsPerPixel_;
    float64 left_ = 0, top_ = 0, scaleX_ = 1, scaleY_ = 1;  // places to points
    QByteArray bytes_;
    platform::Pen pen_;
    platform::Brush brush_{1, 0, 0};
    platform::Font font_;
    std::size_t fontPlace_ = 0;
    int32 textColour_ = 0;
    // What the page says at this point.
    int32 told_ = 0;
    bool fontTold_ = false, penTold_ = false;
};

}  // namespace tsRtm::desktop
