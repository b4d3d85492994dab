#include "desktop/paper/RichLayout.hpp"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QTextCursor>
#include <QTextTable>
#include <algorithm>
#include <cmath>

#include "desktop/paper/Qt.hpp"
#include "desktop/paper/RichFlow.hpp"

namespace tsRtm::desktop {

RichLayout::RichLayout(const RichFlow& flow, int32 from, int32 most, int32 width) {
    document_.setDocumentMargin(0);
    document_.setUndoRedoEnabled(false);
    const auto parts = fillDocument(document_, flow, from, most);
    last_ = parts.empty() || parts.back().end > flow.length();
    QTextOption option = document_.defaultTextOption();
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document_.setDefaultTextOption(option);
    document_.setTextWidth(std::max(width, 1));
    auto part = parts.begin();
    for (auto at = document_.rootFrame()->begin(); at != document_.rootFrame()->end(); ++at) {
        if (const auto* table = qobject_cast<QTextTable*>(at.currentFrame()))
            for (int row = 0; row < table->rows(); ++row) readRow(*table, row, *part++);
        else if (isParagraph(at.currentBlock()))
            readBlock(at.currentBlock(), *part++);
    }
}

void RichLayout::readBlock(const QTextBlock& block, const RichPart& part) {
    const auto* layout = block.layout();
    const qreal top = document_.documentLayout()->blockBoundingRect(block).top();
    const bool newPage = block.blockFormat().pageBreakPolicy() != QTextFormat::PageBreak_Auto;
    for (int i = 0; i < layout->lineCount(); ++i) {
        const auto at = layout->lineAt(i);
        const bool first = i == 0, last = i + 1 == layout->lineCount();
        Line line;
        line.start = part.start + at.textStart();
        line.end = last ? part.end : line.start + at.textLength();
        line.top = first ? top : top + at.y();
        line.bottom = top + at.y() + at.height();
        line.space = first ? std::max(part.space, 0) : 0;
        line.block = block;
        line.number = i;
        line.newPage = first && newPage;
        if (part.boxed) {
            line.boxed = part.boxed;
            line.opens = first && part.opens;
            line.closes = last && part.closes;
            line.top -= line.opens ? heightOf(part.boxed->box, rtf::kTop) : 0;
            line.bottom += line.closes ? heightOf(part.boxed->box, rtf::kBottom) : 0;
        }
        lines_.push_back(line);
    }
}

void RichLayout::readRow(const QTextTable& table, int row, const RichPart& part) {
    const auto boxOf = [&](const QTextCursor& place) {
        return document_.documentLayout()->blockBoundingRect(place.block());
    };
    Line line;
    line.start = part.start;
    line.end = part.end;
    line.inTable = true;
    line.newPage = row == 0 && table.format().pageBreakPolicy() != QTextFormat::PageBreak_Auto;
    for (int column = 0; column < table.columns(); ++column) {
        const auto cell = table.cellAt(row, column);
        const auto format = cell.format().toTableCellFormat();
        const qreal top = boxOf(cell.firstCursorPosition()).top() - format.topPadding() - format.topBorder();
        line.top = column == 0 ? top : std::min(line.top, top);
        line.bottom = std::max(line.bottom, boxOf(cell.lastCursorPosition()).bottom() +
                                                format.bottomPadding() + format.bottomBorder());
    }
    lines_.push_back(line);
}

std::size_t RichLayout::lineAt(int32 from) const {
    const auto found =
        std::ranges::partition_point(lines_, [&](const Line& line) { return line.end <= from; });
    return static_cast<std::size_t>(found - lines_.begin());
}

// The first line of a text stands where it begins, whatever the room above it.
qreal RichLayout::topOf(const Line& line) const {
    return line.start == 0 ? std::min(line.top, 0.0) : line.top - line.space;
}

bool RichLayout::covers(int32 from, int32 height) const {
    const auto line = lineAt(from);
    if (line == lines_.size()) return last_;
    const auto& first = lines_[line];
    // A row is shown from its beginning, wherever in it the page begins.
    return (first.inTable ? first.start <= from : first.start == from) && range(from, height, 0).whole;
}

RichLayout::Range RichLayout::range(int32 from, int32 height, int32 wholeHeight) const {
    Range found{lineAt(from), 0, {}, last_};
    found.last = found.first;
    if (found.first == lines_.size()) return found;
    found.whole = true;
    const qreal top = topOf(lines_[found.first]);
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
        found.fit.used = std::clamp(static_cast<int32>(std::ceil(bottom)), 0, std::max(height, 1));
    }
    found.whole = last_;
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
    const qreal top = topOf(lines_[found.first]);
    painter.save();
    painter.setClipRect(QRectF(-rtf::kLargestLength, 0, text.width + 2 * rtf::kLargestLength, found.fit.used),
                        Qt::IntersectClip);
    painter.translate(0, -top);
    drawBoxes(painter, found);
    painter.restore();
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

// As far as they are on the page. Borders at the sides stand beside the text, where a word processor has
// them.
void RichLayout::drawBoxes(QPainter& painter, const Range& range) const {
    for (auto number = range.first; number < range.last; ++number) {
        const auto& first = lines_[number];
        if (!first.boxed) continue;
        while (number + 1 < range.last && lines_[number + 1].boxed && !lines_[number + 1].opens) ++number;
        const auto& last = lines_[number];
        const auto& box = first.boxed->box;
        const auto [left, right] = edgesOf(*first.boxed);
        QRectF area(QPointF(left, first.top), QPointF(document_.textWidth() - right, last.bottom));
        area.adjust(-heightOf(box, rtf::kLeft), 0, heightOf(box, rtf::kRight), 0);
        if (!box.background.automatic) painter.fillRect(area, colourOf(box.background));
        for (const auto side : {rtf::kTop, rtf::kLeft, rtf::kBottom, rtf::kRight}) {
            const int32 width = box.borders[side];
            auto border = area;
            if (side == rtf::kTop) border.setHeight(width);
            if (side == rtf::kLeft) border.setWidth(width);
            if (side == rtf::kBottom) border.setTop(area.bottom() - width);
            if (side == rtf::kRight) border.setLeft(area.right() - width);
            const bool elsewhere =
                (side == rtf::kTop && !first.opens) || (side == rtf::kBottom && !last.closes);
            // Without a width it would be a line as thin as the device can draw.
            if (width > 0 && !elsewhere) painter.fillRect(border, colourOf(box.borderColour));
        }
    }
}

}  // namespace tsRtm::desktop
