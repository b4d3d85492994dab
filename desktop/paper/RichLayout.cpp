#include "desktop/paper/RichLayout.hpp"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QTextCursor>
#include <QTextTable>
#include <algorithm>
#include <cmath>

#include "desktop/paper/Qt.hpp"
#include "desktop/paper/RichDocument.hpp"
#include "desktop/paper/RichParagraph.hpp"

namespace tsRtm::desktop {

RichLayout::RichLayout(TextView rtf, int32 from, int32 width) {
    document_.setDocumentMargin(0);
    document_.setUndoRedoEnabled(false);
    fillDocument(document_, rtf);
    tables_ = !document_.rootFrame()->childFrames().isEmpty();
    // Half a table cannot be dropped: the text stays whole, and is used from there on.
    const int32 dropped = tables_ ? 0 : std::clamp(from, 0, std::max(document_.characterCount() - 1, 0));
    if (dropped > 0) drop(dropped);
    QTextOption option = document_.defaultTextOption();
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document_.setDefaultTextOption(option);
    document_.setTextWidth(std::max(width, 1));
    for (auto part = document_.rootFrame()->begin(); part != document_.rootFrame()->end(); ++part) {
        if (const auto* table = qobject_cast<QTextTable*>(part.currentFrame()))
            readRows(*table);
        else if (part.currentBlock().isValid())
            readBlock(part.currentBlock());
    }
    for (auto& line : lines_) {
        line.start += dropped;
        line.end += dropped;
    }
}

void RichLayout::drop(int32 to) {
    QTextCursor cursor(&document_);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
    const bool within = !cursor.atBlockStart();
    auto format = cursor.blockFormat();
    cursor.removeSelectedText();
    // The rest of a paragraph has no first line any more.
    if (!within) return;
    format.setTextIndent(0);
    format.setTopMargin(0);
    format.setProperty(kOwnSpace, 0);
    cursor.setBlockFormat(format);
}

void RichLayout::readBlock(const QTextBlock& block) {
    const auto* layout = block.layout();
    const qreal top = document_.documentLayout()->blockBoundingRect(block).top();
    for (int i = 0; i < layout->lineCount(); ++i) {
        const auto line = layout->lineAt(i);
        const int32 start = block.position() + line.textStart();
        const bool last = i + 1 == layout->lineCount();
        const auto format = block.blockFormat();
        const qreal space = i == 0 ? std::min(format.property(kOwnSpace).toReal(), top) : 0;
        lines_.push_back({start, start + line.textLength() + (last ? 1 : 0), i == 0 ? top : top + line.y(),
                          top + line.y() + line.height(), space, block, i, false,
                          i == 0 && format.pageBreakPolicy() != QTextFormat::PageBreak_Auto});
    }
}

void RichLayout::readRows(const QTextTable& table) {
    const auto boxOf = [&](const QTextCursor& place) {
        return document_.documentLayout()->blockBoundingRect(place.block());
    };
    for (int row = 0; row < table.rows(); ++row) {
        Line line{table.cellAt(row, 0).firstPosition(),
                  0,
                  0,
                  0,
                  0,
                  {},
                  0,
                  true,
                  row == 0 && table.format().pageBreakPolicy() != QTextFormat::PageBreak_Auto};
        for (int column = 0; column < table.columns(); ++column) {
            const auto cell = table.cellAt(row, column);
            const auto format = cell.format().toTableCellFormat();
            const qreal top =
                boxOf(cell.firstCursorPosition()).top() - format.topPadding() - format.topBorder();
            line.top = column == 0 ? top : std::min(line.top, top);
            line.bottom = std::max(line.bottom, boxOf(cell.lastCursorPosition()).bottom() +
                                                    format.bottomPadding() + format.bottomBorder());
            line.end = cell.lastPosition() + 1;
        }
        lines_.push_back(line);
    }
}

std::size_t RichLayout::lineAt(int32 from) const {
    const auto found =
        std::ranges::partition_point(lines_, [&](const Line& line) { return line.end <= from; });
    return static_cast<std::size_t>(found - lines_.begin());
}

bool RichLayout::begins(int32 from) const {
    const auto line = lineAt(from);
    return tables_ || (line < lines_.size() && lines_[line].start == from);
}

RichLayout::Range RichLayout::range(int32 from, int32 height, int32 wholeHeight) const {
    Range found{lineAt(from), 0, {}};
    found.last = found.first;
    if (found.first == lines_.size()) return found;
    const auto& first = lines_[found.first];
    // The first line of a text stands where it begins, whatever the room above it.
    const qreal top = found.first == 0 ? 0 : first.top - first.space;
    for (; found.last < lines_.size(); ++found.last) {
        const auto& line = lines_[found.last];
        if (line.newPage && found.last > found.first) {
            found.fit.next = lines_[found.last - 1].end;
            return found;
        }
        const qreal bottom = line.bottom - top;
        // What no page could take is cut off.
        if (bottom > height && !(found.last == found.first && bottom > wholeHeight)) {
            found.fit.next = found.last == found.first ? from : lines_[found.last - 1].end;
            return found;
        }
        found.fit.used = std::min(static_cast<int32>(std::ceil(bottom)), std::max(height, 1));
    }
    return found;
}

platform::TextFit RichLayout::fit(int32 from, int32 height, int32 wholeHeight) const {
    return range(from, height, wholeHeight).fit;
}

void RichLayout::draw(QPainter& painter, const platform::PlacedText& text) {
    const auto found = range(text.from, text.height, 0);
    if (text.backColour != 0xFFFFFF)
        painter.fillRect(QRectF(0, 0, text.width, found.fit.used), colourOf(text.backColour));
    if (found.first == found.last) return;
    const auto& first = lines_[found.first];
    const qreal top = found.first == 0 ? 0 : first.top - first.space;
    painter.setClipRect(QRectF(0, 0, text.width, found.fit.used), Qt::IntersectClip);
    painter.translate(0, -top);
    painter.setPen(Qt::black);
    for (auto number = found.first; number < found.last; ++number) {
        const auto& line = lines_[number];
        if (!line.inTable) {
            const auto* layout = line.block.layout();
            layout->lineAt(line.number).draw(&painter, layout->position());
            continue;
        }
        auto last = number;
        while (last + 1 < found.last && lines_[last + 1].inTable) ++last;
        const qreal bottom = std::min(lines_[last].bottom, top + found.fit.used);
        painter.save();
        document_.drawContents(&painter, QRectF(0, line.top, text.width, bottom - line.top));
        painter.restore();
        number = last;
    }
}

}  // namespace tsRtm::desktop
