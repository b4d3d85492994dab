#include "desktop/paper/RichDocument.hpp"

#include <QImage>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextTable>
#include <algorithm>
#include <span>

#include "desktop/paper/Qt.hpp"
#include "desktop/paper/RichParagraph.hpp"
#include "desktop/paper/RichRows.hpp"
#include "tsRtm/frame/rtf/Reader.hpp"

namespace tsRtm::desktop {
namespace {

constexpr qreal kTwipsPerPoint = 20;
constexpr TextView kDefaultFont = u"Times New Roman";

QColor colourOf(const rtf::Colour& colour, const QColor& automatic) {
    return colour.automatic ? automatic : QColor(colour.red, colour.green, colour.blue);
}

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
    to.setForeground(colourOf(run.colour, Qt::black));
    if (!run.background.automatic) to.setBackground(colourOf(run.background, Qt::white));
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
    RichParagraph::Piece piece{qt(run.text), formatOf(run)};
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

bool hasLineBelow(const rtf::CellFormat& cell) { return cell.borders[rtf::kBottom] > 0; }

// The line that Qt keeps before a table at the beginning and behind one at the end takes no room.
void makeTiny(QTextCursor cursor) {
    QTextBlockFormat format;
    format.setLineHeight(1, QTextBlockFormat::FixedHeight);
    cursor.setBlockFormat(format);
    QTextCharFormat characters;
    QFont font;
    font.setPixelSize(1);
    characters.setFont(font);
    cursor.setBlockCharFormat(characters);
}

// Fills a document with what the reader tells. A paragraph waits for its end, which tells its format, and
// cells for the end of their row, which tells their widths.
class Filler final : public rtf::Visitor {
 public:
    explicit Filler(QTextDocument& document) : document_(document), cursor_(&document) {}

    void onRun(const rtf::Run& run) override {
        if (!run.format.hidden) paragraph_.pieces.push_back(pieceOf(run));
    }
    void onPicture(const rtf::Picture& picture) override {
        if (picture.kind == rtf::PictureKind::other) return;
        const auto image = QImage::fromData(reinterpret_cast<const uchar*>(picture.bytes.data()),
                                            static_cast<int>(picture.bytes.size()));
        if (image.isNull()) return;
        const QString name = QStringLiteral("picture%1").arg(pictures_++);
        document_.addResource(QTextDocument::ImageResource, QUrl(name), image);
        constexpr int twipsPerPixel = 15;
        QTextImageFormat format;
        format.setName(name);
        format.setWidth(picture.width > 0 ? picture.width : image.width() * twipsPerPixel);
        format.setHeight(picture.height > 0 ? picture.height : image.height() * twipsPerPixel);
        paragraph_.pieces.push_back({QString(), format});
    }
    void onMark(const rtf::Run& run) override {
        if (paragraph_.pieces.empty()) paragraph_.mark = formatOf(run);
    }
    void onBreak(rtf::Break kind, const rtf::ParagraphFormat& format) override {
        if (kind == rtf::Break::line) {
            paragraph_.pieces.push_back({QString(QChar::LineSeparator), {}});
            return;
        }
        if (kind == rtf::Break::row) return endRow();
        defaultTab_ = format.defaultTab;
        if (kind == rtf::Break::cell || (kind != rtf::Break::end && format.inTable)) {
            paragraph_.format = format;
            cell_.push_back(std::exchange(paragraph_, {}));
            if (kind == rtf::Break::cell) cells_.push_back(std::exchange(cell_, {}));
            return;
        }
        const bool empty = paragraph_.pieces.empty();
        // What ends with the text has no paragraph behind it.
        if (kind == rtf::Break::end && empty) return finish();
        if (!cells_.empty() || !cell_.empty()) endRow();
        // Nor has a page whose last paragraph has ended.
        if (kind != rtf::Break::page || !empty || format.pageBreakBefore) {
            paragraph_.format = format;
            add(paragraph_);
        }
        paragraph_ = {};
        if (kind == rtf::Break::end) finish();
    }
    void onRow(const rtf::RowFormat& row) override { row_ = row; }

 private:
    void add(const RichParagraph& paragraph) {
        if (!fresh_) cursor_.insertBlock(QTextBlockFormat());
        const bool besideTable = fresh_ && table_;
        // Behind a table Qt leaves no space above a paragraph, only below the table.
        if (besideTable && paragraph.format.before > 0) {
            auto format = table_->format();
            format.setBottomMargin(paragraph.format.before);
            table_->setFormat(format);
        }
        paragraph.write(cursor_, gap_);
        if (besideTable) keepHeight();
        gap_ = paragraph.format.after;
        fresh_ = false;
        table_ = nullptr;
    }

    // An empty paragraph beside a table has no height for Qt.
    void keepHeight() {
        if (cursor_.block().length() == 1)
            cursor_.insertText(QString(QChar::Nbsp), cursor_.blockCharFormat());
    }

    void endRow() {
        if (!cell_.empty()) cells_.push_back(std::exchange(cell_, {}));
        auto cells = std::exchange(cells_, {});
        auto row = wholeRow(std::exchange(row_, {}), cells);
        if (cells.empty()) return;
        // What is no table are paragraphs.
        if (row.cells.empty()) {
            for (const auto& cell : cells)
                for (const auto& paragraph : cell) add(paragraph);
            return;
        }
        const bool beginsPage = !cells.front().empty() && cells.front().front().format.pageBreakBefore;
        if (table_ && !beginsPage && standAlike(row, tableRow_))
            table_->appendRows(1);
        else
            startTable(row, beginsPage);
        tableRow_ = row;
        for (std::size_t i = 0; i < cells.size(); ++i)
            fillCell(table_->cellAt(table_->rows() - 1, static_cast<int>(i)), row.cells[i], cells[i]);
        cursor_ = table_->lastCursorPosition();
        cursor_.movePosition(QTextCursor::NextBlock);
        gap_ = 0;
        fresh_ = true;
    }

    void startTable(rtf::RowFormat& row, bool newPage) {
        if (cursor_.position() == 0) makeTiny(cursor_);
        if (!fresh_) keepHeight();
        // Between two tables one line is enough.
        if (fresh_ && table_ && std::ranges::any_of(tableRow_.cells, hasLineBelow))
            for (auto& cell : row.cells) cell.borders[rtf::kTop] = 0;
        table_ =
            cursor_.insertTable(1, static_cast<int>(row.cells.size()), tableFormatOf(row, gap_, newPage));
    }

    void finish() {
        if (!cells_.empty() || !cell_.empty()) endRow();
        if (fresh_ && cursor_.position() > 0) makeTiny(cursor_);
        auto option = document_.defaultTextOption();
        option.setTabStopDistance(defaultTab_);
        document_.setDefaultTextOption(option);
    }

    QTextDocument& document_;
    QTextCursor cursor_;
    RichParagraph paragraph_;
    RichCell cell_;
    std::vector<RichCell> cells_;
    rtf::RowFormat row_, tableRow_;
    QTextTable* table_ = nullptr;  // the one that ends where the cursor is
    bool fresh_ = true;            // the block of the cursor is still nobody's
    int32 gap_ = 0;                // that the paragraph before wants below it
    int32 defaultTab_ = 720;
    int pictures_ = 0;
};

}  // namespace

void fillDocument(QTextDocument& document, TextView rtf) {
    Filler filler(document);
    rtf::read(rtf, filler);
}

}  // namespace tsRtm::desktop
