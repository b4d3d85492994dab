#include "desktop/paper/RichDocument.hpp"

#include <QImage>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextTable>

#include "desktop/paper/Qt.hpp"
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

QTextBlockFormat formatOf(const rtf::ParagraphFormat& from) {
    constexpr Qt::Alignment alignments[] = {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter,
                                            Qt::AlignJustify};
    constexpr QTextOption::TabType kinds[] = {QTextOption::LeftTab, QTextOption::RightTab,
                                              QTextOption::CenterTab, QTextOption::DelimiterTab};
    QTextBlockFormat to;
    to.setAlignment(alignments[static_cast<std::size_t>(from.alignment)]);
    to.setLeftMargin(from.left);
    to.setRightMargin(from.right);
    to.setTextIndent(from.first);
    to.setTopMargin(from.before);
    to.setBottomMargin(from.after);
    if (from.lineSpacing != 0 && from.lineMultiple)
        to.setLineHeight(from.lineSpacing * 100.0 / 240, QTextBlockFormat::ProportionalHeight);
    else if (from.lineSpacing != 0)
        to.setLineHeight(std::abs(from.lineSpacing), from.lineSpacing < 0 ? QTextBlockFormat::FixedHeight
                                                                          : QTextBlockFormat::MinimumHeight);
    QList<QTextOption::Tab> tabs;
    for (const auto& tab : from.tabs)
        tabs.append(
            {static_cast<qreal>(tab.position), kinds[static_cast<std::size_t>(tab.kind)], QChar(u',')});
    to.setTabPositions(tabs);
    return to;
}

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
        if (!run.format.hidden) paragraph_.pieces.push_back({qt(run.text), formatOf(run)});
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
    void onBreak(rtf::Break kind, const rtf::ParagraphFormat& format) override {
        if (kind == rtf::Break::line) {
            paragraph_.pieces.push_back({QString(QChar::LineSeparator), {}});
            return;
        }
        if (kind == rtf::Break::row) return endRow();
        paragraph_.format = formatOf(format);
        if (kind == rtf::Break::cell || (kind == rtf::Break::paragraph && format.inTable)) {
            cell_.push_back(std::exchange(paragraph_, {}));
            if (kind == rtf::Break::cell) cells_.push_back(std::exchange(cell_, {}));
            return;
        }
        // What ends with the text has no paragraph behind it.
        if (kind == rtf::Break::end && paragraph_.pieces.empty()) return finish();
        if (!cells_.empty() || !cell_.empty()) endRow();
        add(std::exchange(paragraph_, {}));
        if (kind == rtf::Break::end) finish();
    }
    void onRow(const rtf::RowFormat& row) override { row_ = row; }

 private:
    struct Piece {
        QString text;  // empty: a picture
        QTextCharFormat format;
    };
    struct Paragraph {
        std::vector<Piece> pieces;
        QTextBlockFormat format;
    };

    static void write(QTextCursor& cursor, const Paragraph& paragraph) {
        cursor.setBlockFormat(paragraph.format);
        for (const auto& piece : paragraph.pieces) {
            if (piece.text.isEmpty())
                cursor.insertImage(piece.format.toImageFormat());
            else
                cursor.insertText(piece.text, piece.format);
        }
    }

    void add(const Paragraph& paragraph) {
        if (!fresh_) cursor_.insertBlock(QTextBlockFormat());
        // Behind a table Qt leaves no space above a paragraph, only below the table.
        if (fresh_ && table_ && paragraph.format.topMargin() > 0) {
            auto format = table_->format();
            format.setBottomMargin(paragraph.format.topMargin());
            table_->setFormat(format);
        }
        write(cursor_, paragraph);
        fresh_ = false;
        table_ = nullptr;
    }

    void endRow() {
        if (!cell_.empty()) cells_.push_back(std::exchange(cell_, {}));
        const auto cells = std::exchange(cells_, {});
        auto row = std::exchange(row_, {});
        if (cells.empty()) return;
        // What is no whole table are paragraphs.
        if (row.edges.size() < cells.size()) {
            for (const auto& cell : cells)
                for (const auto& paragraph : cell) add(paragraph);
            return;
        }
        if (table_ && row == tableRow_)
            table_->appendRows(1);
        else
            startTable(row);
        for (std::size_t i = 0; i < cells.size(); ++i) {
            auto cursor = table_->cellAt(table_->rows() - 1, static_cast<int>(i)).firstCursorPosition();
            for (std::size_t j = 0; j < cells[i].size(); ++j) {
                if (j > 0) cursor.insertBlock(QTextBlockFormat());
                write(cursor, cells[i][j]);
            }
        }
        cursor_ = table_->lastCursorPosition();
        cursor_.movePosition(QTextCursor::NextBlock);
        fresh_ = true;
    }

    void startTable(const rtf::RowFormat& row) {
        constexpr int padding = 70, line = 10;
        if (cursor_.position() == 0) makeTiny(cursor_);
        QList<QTextLength> widths;
        int32 edge = row.left;
        for (const int32 next : row.edges) {
            widths.append(QTextLength(QTextLength::FixedLength, std::max(next - edge, 2 * padding + 1)));
            edge = std::max(edge, next);
        }
        QTextTableFormat format;
        format.setColumnWidthConstraints(widths);
        format.setCellPadding(padding);
        format.setCellSpacing(0);
        format.setLeftMargin(row.left);
        format.setBorder(row.borders ? line : 0);
        format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        format.setBorderCollapse(true);
        table_ = cursor_.insertTable(1, static_cast<int>(row.edges.size()), format);
        tableRow_ = row;
    }

    void finish() {
        if (!cells_.empty() || !cell_.empty()) endRow();
        if (fresh_ && cursor_.position() > 0) makeTiny(cursor_);
    }

    QTextDocument& document_;
    QTextCursor cursor_;
    Paragraph paragraph_;
    std::vector<Paragraph> cell_;
    std::vector<std::vector<Paragraph>> cells_;
    rtf::RowFormat row_, tableRow_;
    QTextTable* table_ = nullptr;  // the one that ends where the cursor is
    bool fresh_ = true;            // the block of the cursor is still nobody's
    int pictures_ = 0;
};

}  // namespace

void fillDocument(QTextDocument& document, TextView rtf) {
    Filler filler(document);
    rtf::read(rtf, filler);
}

}  // namespace tsRtm::desktop
