#include "desktop/paper/RichFlow.hpp"

#include <algorithm>
#include <span>

#include "desktop/paper/Qt.hpp"
#include "tsRtm/frame/rtf/Reader.hpp"

namespace tsRtm::desktop {
namespace {

constexpr qreal kTwipsPerPoint = 20;
constexpr TextView kDefaultFont = u"Times New Roman";

QTextCharFormat formatOf(const rtf::Run& run) {
    const auto& from = run.format;
    QTextCharFormat to;
    QFont font(qt(run.font.name.empty() ? kDefaultFont : TextView(run.font.name)));
    font.setPixelSize(std::max(qRound(from.halfPoints * kTwipsPerPoint / 2), 1));
    font.setBold(from.bold);
    font.setItalic(from.italic);
    font.setUnderline(from.underline);
    font.setStrikeOut(from.strike);
    font.setHintingPreference(QFont::PreferNoHinting);
    if (from.capitals) font.setCapitalization(QFont::AllUppercase);
    if (from.smallCapitals) font.setCapitalization(QFont::SmallCaps);
    to.setFont(font);
    to.setForeground(colourOf(run.colour));
    if (!run.background.automatic) to.setBackground(colourOf(run.background));
    if (from.script != rtf::Script::normal)
        to.setVerticalAlignment(from.script == rtf::Script::superscript ? QTextCharFormat::AlignSuperScript
                                                                        : QTextCharFormat::AlignSubScript);
    return to;
}

// Letters of fonts of symbols that every machine has elsewhere: mostly what lists are marked with.
// In a font of letters then: fonts of symbols may have other places for them.
RichParagraph::Piece pieceOf(const rtf::Run& run) {
    constexpr int32 kSymbols = 2;
    struct Row {
        char16_t letter, shown;
    };
    static constexpr Row kWingdings[] = {
        {u'l', u'●'},      {u'n', u'■'},      {u'q', u'❑'},      {u'u', u'◆'},      {u'v', u'❖'},
        {u'\u00A7', u'▪'}, {u'\u00A8', u'◻'}, {u'\u00D8', u'➢'}, {u'\u00E0', u'→'}, {u'\u00FC', u'✓'}};
    static constexpr Row kSymbol[] = {{u'\u00B7', u'•'}, {u'-', u'−'}};
    RichParagraph::Piece piece{qt(run.text), formatOf(run), {}};
    // To Qt these would end the paragraph.
    for (auto& letter : piece.text)
        if (letter == QChar::ParagraphSeparator || letter == u'\xFDD0' || letter == u'\xFDD1')
            letter = QChar::LineSeparator;
    const bool wingdings = run.font.name == u"Wingdings";
    if (run.font.charset != kSymbols || (!wingdings && run.font.name != u"Symbol")) return piece;
    const auto rows = wingdings ? std::span<const Row>(kWingdings) : std::span<const Row>(kSymbol);
    bool all = true;
    for (auto& letter : piece.text) {
        // They stand as the code page has them, or in the area for private use.
        const char16_t code = letter.unicode() >= 0xF000 && letter.unicode() <= 0xF0FF
                                  ? static_cast<char16_t>(letter.unicode() & 0xFF)
                                  : letter.unicode();
        const auto row = std::ranges::find(rows, code, &Row::letter);
        if (row != rows.end()) letter = row->shown;
        all = all && (row != rows.end() || letter.isSpace());
    }
    if (all) piece.format.setFontFamilies({qt(kDefaultFont)});
    return piece;
}

// Takes what the reader tells. A paragraph waits for its end, which tells its format, and cells for the end
// of their row, which tells their widths.
class FlowReader final : public rtf::Visitor {
 public:
    explicit FlowReader(RichFlow& flow) : flow_(flow) {}

    void onRun(const rtf::Run& run) override {
        if (!run.format.hidden) paragraph_.pieces.push_back(pieceOf(run));
    }
    void onPicture(const rtf::Picture& picture) override {
        if (picture.kind == rtf::PictureKind::other) return;
        const auto image = QImage::fromData(reinterpret_cast<const uchar*>(picture.bytes.data()),
                                            static_cast<int>(picture.bytes.size()));
        if (image.isNull()) return;
        constexpr int twipsPerPixel = 15;
        QTextImageFormat format;
        format.setName(QStringLiteral("picture%1").arg(pictures_++));
        format.setWidth(picture.width > 0 ? picture.width : image.width() * twipsPerPixel);
        format.setHeight(picture.height > 0 ? picture.height : image.height() * twipsPerPixel);
        paragraph_.pieces.push_back({QString(), format, image});
    }
    void onMark(const rtf::Run& run) override {
        if (paragraph_.pieces.empty()) paragraph_.mark = formatOf(run);
    }
    void onBreak(rtf::Break kind, const rtf::ParagraphFormat& format) override {
        if (kind == rtf::Break::line) {
            paragraph_.pieces.push_back({QString(QChar::LineSeparator), {}, {}});
            return;
        }
        if (kind == rtf::Break::row) return endRow();
        flow_.defaultTab = format.defaultTab;
        if (kind == rtf::Break::cell || (kind != rtf::Break::end && format.inTable)) {
            paragraph_.format = format;
            cell_.push_back(std::exchange(paragraph_, {}));
            if (kind == rtf::Break::cell) cells_.push_back(std::exchange(cell_, {}));
            return;
        }
        const bool empty = paragraph_.pieces.empty();
        // What ends with the text has no paragraph behind it.
        if (kind == rtf::Break::end && empty) return endRow();
        endRow();
        // Nor has a page whose last paragraph has ended.
        if (kind != rtf::Break::page || !empty || format.pageBreakBefore) {
            paragraph_.format = format;
            add(std::move(paragraph_));
        }
        paragraph_ = {};
    }
    void onRow(const rtf::RowFormat& row) override { row_ = row; }

 private:
    void endRow() {
        if (!cell_.empty()) cells_.push_back(std::exchange(cell_, {}));
        auto cells = std::exchange(cells_, {});
        auto row = wholeRow(std::exchange(row_, {}), cells);
        // What is no table are paragraphs.
        if (row.cells.empty()) {
            for (auto& cell : cells)
                for (auto& paragraph : cell) add(std::move(paragraph));
        } else if (!cells.empty()) {
            int32 length = 0;
            for (const auto& cell : cells)
                for (const auto& paragraph : cell) length += paragraph.length();
            item(length).row = std::make_unique<RichRow>(RichRow{std::move(row), std::move(cells)});
        }
    }
    void add(RichParagraph&& paragraph) {
        auto& added = item(paragraph.length());
        added.paragraph = std::move(paragraph);
    }
    RichItem& item(int32 length) {
        auto& added = flow_.items.emplace_back();
        added.start = end_;
        added.end = end_ += length;
        return added;
    }

    RichFlow& flow_;
    RichParagraph paragraph_;
    RichCell cell_;
    std::vector<RichCell> cells_;
    rtf::RowFormat row_;
    int32 end_ = 0;
    int pictures_ = 0;
};

}  // namespace

RichFlow readFlow(TextView rtf) {
    RichFlow flow;
    FlowReader reader(flow);
    rtf::read(rtf, reader);
    return flow;
}

}  // namespace tsRtm::desktop
