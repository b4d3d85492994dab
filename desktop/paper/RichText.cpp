#include "desktop/paper/RichText.hpp"

#include <QAbstractTextDocumentLayout>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextTable>

#include "desktop/paper/Qt.hpp"
#include "desktop/paper/RichDocument.hpp"

namespace tsRtm::desktop {
namespace {

// What stands between two places where a text may be divided: a line, or a row of a table.
struct Line {
    int32 start, end;  // of its characters, and behind them
    qreal top, bottom;
};

// A text laid out in a width.
class LaidOut {
 public:
    // From one of its characters on.
    LaidOut(TextView rtf, int32 from, int32 width) {
        document_.setDocumentMargin(0);
        document_.setUndoRedoEnabled(false);
        fillDocument(document_, rtf);
        length_ = std::max(document_.characterCount() - 1, 0);
        const bool tables = !document_.rootFrame()->childFrames().isEmpty();
        if (from > 0 && !tables) drop(std::min(from, length_));
        QTextOption option = document_.defaultTextOption();
        option.setTabStopDistance(720);
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        document_.setDefaultTextOption(option);
        document_.setTextWidth(std::max(width, 1));
        readLines();
        // Half a table cannot be dropped: the text stays whole, and is used from there on.
        if (from > 0 && tables) std::erase_if(lines_, [&](const Line& line) { return line.end <= from; });
        if (!tables)
            for (auto& line : lines_) {
                line.start += from;
                line.end += from;
            }
    }

    int32 length() const noexcept { return length_; }
    QTextDocument& document() noexcept { return document_; }
    const std::vector<Line>& lines() const noexcept { return lines_; }
    qreal top() const noexcept { return lines_.empty() ? 0 : lines_.front().top; }

 private:
    void drop(int32 to) {
        QTextCursor cursor(&document_);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        const bool within = !cursor.atBlockStart();
        auto format = cursor.blockFormat();
        cursor.removeSelectedText();
        // The rest of a paragraph has no first line any more.
        if (!within) return;
        format.setTextIndent(0);
        format.setTopMargin(0);
        cursor.setBlockFormat(format);
    }

    void readLines() {
        for (auto part = document_.rootFrame()->begin(); part != document_.rootFrame()->end(); ++part) {
            if (const auto* table = qobject_cast<QTextTable*>(part.currentFrame()))
                readRows(*table);
            else if (part.currentBlock().isValid())
                readBlock(part.currentBlock());
        }
        // Where text follows directly the line before is the place to divide.
        if (!lines_.empty()) lines_.front().top = 0;
    }

    QRectF boxOf(const QTextBlock& block) { return document_.documentLayout()->blockBoundingRect(block); }

    void readBlock(const QTextBlock& block) {
        const auto* layout = block.layout();
        const qreal top = boxOf(block).top();
        for (int i = 0; i < layout->lineCount(); ++i) {
            const auto line = layout->lineAt(i);
            const int32 start = block.position() + line.textStart();
            const bool last = i + 1 == layout->lineCount();
            lines_.push_back({start, start + line.textLength() + (last ? 1 : 0),
                              i == 0 ? top : top + line.y(), top + line.y() + line.height()});
        }
    }

    void readRows(const QTextTable& table) {
        const qreal padding = table.format().cellPadding();
        for (int row = 0; row < table.rows(); ++row) {
            Line line{table.cellAt(row, 0).firstPosition(), 0, 0, 0};
            for (int column = 0; column < table.columns(); ++column) {
                const auto cell = table.cellAt(row, column);
                const QRectF first = boxOf(cell.firstCursorPosition().block());
                const QRectF last = boxOf(cell.lastCursorPosition().block());
                line.top = column == 0 ? first.top() - padding : std::min(line.top, first.top() - padding);
                line.bottom = std::max(line.bottom, last.bottom() + padding);
                line.end = cell.lastPosition() + 1;
            }
            lines_.push_back(line);
        }
    }

    QTextDocument document_;
    std::vector<Line> lines_;
    int32 length_ = 0;
};

// How many lines fit, and where they end.
platform::TextFit fitting(const LaidOut& text, int32 from, int32 height, int32 wholeHeight) {
    platform::TextFit found;
    for (const auto& line : text.lines()) {
        const bool first = found.used == 0;
        const qreal bottom = line.bottom - text.top();
        // What no page could take is cut off.
        if (bottom > height && !(first && bottom > wholeHeight)) {
            if (first) found.next = from;
            return found;
        }
        found.used = std::min(static_cast<int32>(std::ceil(bottom)), std::max(height, 1));
        found.next = line.end;
    }
    found.next = -1;
    return found;
}

int32 bgr(const QColor& colour) { return colour.red() | colour.green() << 8 | colour.blue() << 16; }

}  // namespace

int32 RichText::length(TextView rtf) { return rtf.starts_with(u'{') ? LaidOut(rtf, 0, 1).length() : 0; }

platform::TextFit RichText::fit(const platform::PlacedText& text, int32 pageHeight) {
    return fitting(LaidOut(text.rtf, text.from, text.width), text.from, text.height, pageHeight);
}

void RichText::draw(QPainter& painter, const platform::PlacedText& text) {
    LaidOut laid(text.rtf, text.from, text.width);
    const auto found = fitting(laid, text.from, text.height, 0);
    painter.save();
    painter.translate(text.left, text.top);
    if (text.backColour != 0xFFFFFF)
        painter.fillRect(QRectF(0, 0, text.width, found.used), desktop::colourOf(text.backColour));
    painter.translate(0, -laid.top());
    laid.document().drawContents(&painter, QRectF(0, laid.top(), text.width, found.used));
    painter.restore();
}

int32 RichText::windowText() { return bgr(QGuiApplication::palette().color(QPalette::WindowText)); }
int32 RichText::window() { return bgr(QGuiApplication::palette().color(QPalette::Window)); }

}  // namespace tsRtm::desktop
