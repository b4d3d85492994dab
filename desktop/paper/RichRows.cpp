#include "desktop/paper/RichRows.hpp"

#include <QTextTableFormat>
#include <algorithm>
#include <iterator>

namespace tsRtm::desktop {
namespace {

constexpr int32 kNarrowest = 20;

bool isEmpty(const RichCell& cell) { return cell.size() == 1 && cell.front().pieces.empty(); }

}  // namespace

rtf::RowFormat wholeRow(rtf::RowFormat row, std::vector<RichCell>& cells) {
    for (std::size_t i = 1; i < std::min(row.cells.size(), cells.size());) {
        if (row.cells[i].merged) {
            row.cells[i - 1].edge = row.cells[i].edge;
            row.cells.erase(row.cells.begin() + static_cast<std::ptrdiff_t>(i));
            if (!isEmpty(cells[i])) std::ranges::move(cells[i], std::back_inserter(cells[i - 1]));
            cells.erase(cells.begin() + static_cast<std::ptrdiff_t>(i));
        } else {
            ++i;
        }
    }
    if (row.cells.empty()) return row;
    // Texts without a cell of their own go into the last one.
    for (std::size_t i = row.cells.size(); i < cells.size(); ++i)
        if (!isEmpty(cells[i])) std::ranges::move(cells[i], std::back_inserter(cells[row.cells.size() - 1]));
    cells.resize(std::min(cells.size(), row.cells.size()));
    return row;
}

bool standAlike(const rtf::RowFormat& one, const rtf::RowFormat& other) {
    return one.left == other.left && one.alignment == other.alignment &&
           std::ranges::equal(one.cells, other.cells, {}, &rtf::CellFormat::edge, &rtf::CellFormat::edge);
}

QTextTableFormat tableFormatOf(const rtf::RowFormat& row, int32 gap, bool newPage) {
    // Wider than any page: the edges are shares of the width.
    const bool shares = row.cells.back().edge > rtf::kLargestLength;
    QList<QTextLength> widths;
    int32 edge = shares ? std::max(row.left, 0) : row.left;
    const int32 whole = std::max(row.cells.back().edge - edge, 1);
    for (const auto& cell : row.cells) {
        const int32 width = std::max(cell.edge - edge, kNarrowest);
        widths.append(shares ? QTextLength(QTextLength::PercentageLength, 100.0 * width / whole)
                             : QTextLength(QTextLength::FixedLength, width));
        edge = std::max(edge, cell.edge);
    }
    QTextTableFormat format;
    format.setColumnWidthConstraints(widths);
    if (shares)
        format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
    else if (row.alignment == rtf::Alignment::left)
        format.setLeftMargin(row.left);
    else
        format.setAlignment(row.alignment == rtf::Alignment::right ? Qt::AlignRight : Qt::AlignHCenter);
    format.setTopMargin(gap);
    format.setCellPadding(0);
    format.setCellSpacing(0);
    format.setBorder(0);
    format.setBorderCollapse(true);
    if (newPage) format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    return format;
}

void fillCell(QTextTableCell cell, const rtf::CellFormat& format, const RichCell& paragraphs) {
    auto look = cell.format().toTableCellFormat();
    look.setTopPadding(format.padding[rtf::kTop]);
    look.setLeftPadding(format.padding[rtf::kLeft]);
    look.setBottomPadding(format.padding[rtf::kBottom]);
    look.setRightPadding(format.padding[rtf::kRight]);
    const auto line = [](int32 width) {
        return width > 0 ? QTextFrameFormat::BorderStyle_Solid : QTextFrameFormat::BorderStyle_None;
    };
    look.setTopBorder(format.borders[rtf::kTop]);
    look.setTopBorderStyle(line(format.borders[rtf::kTop]));
    look.setLeftBorder(format.borders[rtf::kLeft]);
    look.setLeftBorderStyle(line(format.borders[rtf::kLeft]));
    look.setBottomBorder(format.borders[rtf::kBottom]);
    look.setBottomBorderStyle(line(format.borders[rtf::kBottom]));
    look.setRightBorder(format.borders[rtf::kRight]);
    look.setRightBorderStyle(line(format.borders[rtf::kRight]));
    look.setBorderBrush(colourOf(format.borderColour));
    if (!format.background.automatic) look.setBackground(colourOf(format.background));
    constexpr QTextCharFormat::VerticalAlignment places[] = {
        QTextCharFormat::AlignTop, QTextCharFormat::AlignMiddle, QTextCharFormat::AlignBottom};
    look.setVerticalAlignment(places[static_cast<std::size_t>(format.place)]);
    cell.setFormat(look);
    auto cursor = cell.firstCursorPosition();
    int32 gap = 0;
    for (std::size_t i = 0; i < paragraphs.size(); ++i) {
        if (i > 0) cursor.insertBlock(QTextBlockFormat());
        paragraphs[i].write(cursor, gap, 0, paragraphs[i].length());
        gap = paragraphs[i].format.after;
    }
}

}  // namespace tsRtm::desktop
