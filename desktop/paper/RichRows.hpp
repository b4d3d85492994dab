#pragma once
#include <QTextTableCell>

#include "desktop/paper/RichParagraph.hpp"

class QTextTableFormat;

namespace tsRtm::desktop {

using RichCell = std::vector<RichParagraph>;

// The row as it can be laid out, with a format for every one of its cells and no cell that is part of another
// one. Without formats where the text tells none.
rtf::RowFormat wholeRow(rtf::RowFormat row, std::vector<RichCell>& cells);

// Whether rows can be of one table.
bool standAlike(const rtf::RowFormat& one, const rtf::RowFormat& other);

QTextTableFormat tableFormatOf(const rtf::RowFormat& row, int32 gap, bool newPage);
void fillCell(QTextTableCell cell, const rtf::CellFormat& format, const RichCell& paragraphs);

}  // namespace tsRtm::desktop
