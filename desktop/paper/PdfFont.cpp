#include "desktop/paper/PdfFont.hpp"

#include <algorithm>
#include <cmath>
#include <map>

#include "desktop/paper/Qt.hpp"
#include "desktop/paper/TrueType.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm::desktop {
namespace {

constexpr int32 kSize = 2000;  // pixels
static_assert(kSize * PdfFont::kPerPixel == 1000);
constexpr std::size_t kLetters = 256, kMostFonts = 16;
constexpr std::size_t kNoBreak = 0xA0;
constexpr float kUnknown = -1e9F;

QFont measured(const platform::Font& font) {
    auto plain = font;
    plain.height = kSize;
    plain.underlined = false;
    return fontOf(plain);
}

Text letterOf(std::size_t letter) { return fromAnsi(Bytes(1, static_cast<char>(letter))); }

}  // namespace

std::string deflated(const QByteArray& bytes) {
    constexpr int quick = 1, sizeInFront = 4;
    const auto packed = qCompress(bytes, quick);
    return packed.mid(sizeInFront).toStdString();
}

PdfFont::PdfFont(const platform::Font& font)
    : name_(font.name),
      bold_(font.bold),
      italic_(font.italic),
      raw_(QRawFont::fromFont(measured(font))),
      metrics_(measured(font)) {
    const bool made =
        (bold_ && raw_.weight() < QFont::DemiBold) || (italic_ && raw_.style() == QFont::StyleNormal);
    usable_ = !made && canBeEmbedded(raw_);
    if (!usable_) return;
    underlinePosition_ = raw_.underlinePosition() * kPerPixel;
    underlineThickness_ = raw_.lineThickness() * kPerPixel;
    kernings_.assign(kLetters * kLetters, kUnknown);
    for (std::size_t letter = kFirst; letter <= kLast; ++letter) {
        const Text text = letterOf(letter);
        const auto found = raw_.glyphIndexesForString(qt(text));
        // A soft hyphen is not shown within a line; control characters are no text.
        if (found.size() != 1 || found[0] > 0xFFFF || text[0] == 0xAD || text[0] < 32 ||
            (text[0] >= 127 && text[0] < 160))
            continue;
        glyphs_[letter] = found[0];
        widths_[letter] = raw_.advancesForGlyphIndexes(found).value(0).x() * kPerPixel;
    }
}

float64 PdfFont::kerning(uint8 before, uint8 letter) {
    float& known = kernings_[before * kLetters + letter];
    if (known == kUnknown) {
        const QString pair = qt(letterOf(before) + letterOf(letter));
        const float64 step = metrics_.horizontalAdvance(pair) - metrics_.horizontalAdvance(pair.left(1));
        known = static_cast<float>(step * kPerPixel - widths_[letter]);
        if (std::abs(known) < 0.5F) known = 0;
    }
    return known;
}

const PdfFont::Program& PdfFont::program(const PdfLetters& letters) {
    if ((letters & ~program_.letters).any()) {
        const auto all = program_.letters | letters;
        const auto bytes = subset(all);
        program_ = {all, deflated(bytes), static_cast<std::size_t>(bytes.size())};
    }
    return program_;
}

QByteArray PdfFont::subset(const PdfLetters& letters) const {
    std::map<uint16, uint32> glyphs;
    for (std::size_t letter = kFirst; letter <= kLast; ++letter)
        if (letters[letter]) glyphs[letterOf(letter)[0]] = glyphs_[letter];
    // A PDF calls the blank that does not break a blank.
    if (letters[kNoBreak]) glyphs.try_emplace(u' ', glyphs_[kNoBreak]);
    return subsetOf(raw_, glyphs);
}

std::shared_ptr<PdfFont> PdfFonts::of(const platform::Font& font) {
    const auto found = std::ranges::find_if(known_, [&](const auto& one) { return one->isOf(font); });
    if (found != known_.end()) {
        known_.splice(known_.begin(), known_, found);
        return known_.front();
    }
    known_.push_front(std::make_shared<PdfFont>(font));
    if (known_.size() > kMostFonts) known_.pop_back();
    return known_.front();
}

}  // namespace tsRtm::desktop
