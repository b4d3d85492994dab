#pragma once
#include <QFontMetricsF>
#include <QRawFont>
#include <array>
#include <bitset>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "tsRtm/platform/Drawing.hpp"

namespace tsRtm::desktop {

// As a stream has it behind /FlateDecode.
std::string deflated(const QByteArray& bytes);

// A letter's number in code page 1252.
using PdfLetters = std::bitset<256>;

// A font as the text of a PDF uses it: a byte a letter, as in code page 1252. Lengths are thousandths of its
// size.
class PdfFont {
 public:
    // Of a platform's font its name and whether it is bold or italic.
    explicit PdfFont(const platform::Font& font);

    // False where it is none that can be embedded, or one that Qt makes bold or slanted on its own.
    bool usable() const noexcept { return usable_; }
    bool isOf(const platform::Font& font) const noexcept {
        return name_ == font.name && bold_ == font.bold && italic_ == font.italic;
    }
    bool has(uint8 letter) const noexcept { return glyphs_[letter] != 0; }
    float64 width(uint8 letter) const noexcept { return widths_[letter]; }
    // By how much a letter moves behind another one.
    float64 kerning(uint8 before, uint8 letter);
    // Of the line below, downward; its middle and its thickness.
    float64 underlinePosition() const noexcept { return underlinePosition_; }
    float64 underlineThickness() const noexcept { return underlineThickness_; }

    bool italic() const noexcept { return italic_; }
    bool bold() const noexcept { return bold_; }
    const QRawFont& raw() const noexcept { return raw_; }
    // Half a thousandth of the size is a pixel of raw().
    static constexpr float64 kPerPixel = 0.5;
    // A TrueType file of letters, as a stream has it.
    struct Program {
        PdfLetters letters;
        std::string deflated;
        std::size_t length = 0;  // of the file itself
    };
    // With these letters and those of earlier documents: most documents of a house need the same ones, so
    // that their program is there already. Good until the next call.
    const Program& program(const PdfLetters& letters);
    // First and last letter that a font can have.
    static constexpr std::size_t kFirst = 32, kLast = 255;

 private:
    QByteArray subset(const PdfLetters& letters) const;

    Text name_;
    bool bold_, italic_;
    Program program_;
    bool usable_ = false;
    QRawFont raw_;
    QFontMetricsF metrics_;
    float64 underlinePosition_ = 0, underlineThickness_ = 0;
    std::array<uint32, 256> glyphs_{};
    std::array<float64, 256> widths_{};
    std::vector<float> kernings_;  // pair by pair; kUnknown: not asked yet
};

// The fonts used last, so that the next document finds what is known of them.
class PdfFonts {
 public:
    std::shared_ptr<PdfFont> of(const platform::Font& font);

 private:
    std::list<std::shared_ptr<PdfFont>> known_;
};

}  // namespace tsRtm::desktop
