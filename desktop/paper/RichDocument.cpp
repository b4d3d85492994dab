#include "desktop/paper/RichDocument.hpp"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextTable>
#include <algorithm>

#include "desktop/paper/RichFlow.hpp"

namespace tsRtm::desktop {
namespace {

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

class Filler {
 public:
    explicit Filler(QTextDocument& document) : cursor_(&document) {}

    void add(const RichParagraph& paragraph, int32 from, int32 most) {
        if (!fresh_) cursor_.insertBlock(QTextBlockFormat());
        const bool besideTable = fresh_ && table_;
        // Behind a table Qt leaves no space above a paragraph, only below the table.
        if (besideTable && paragraph.format.before > 0) {
            auto format = table_->format();
            format.setBottomMargin(paragraph.format.before);
            table_->setFormat(format);
        }
        paragraph.write(cursor_, gap_, from, most);
        if (besideTable) keepHeight();
        gap_ = paragraph.format.after;
        fresh_ = false;
        table_ = nullptr;
    }

    void add(const RichRow& added) {
        auto row = added.format;
        const auto& cells = added.cells;
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

    void finish() {
        if (fresh_ && cursor_.position() > 0) makeTiny(cursor_);
    }

 private:
    // An empty paragraph beside a table has no height for Qt.
    void keepHeight() {
        if (cursor_.block().length() == 1)
            cursor_.insertText(QString(QChar::Nbsp), cursor_.blockCharFormat());
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

    QTextCursor cursor_;
    rtf::RowFormat tableRow_;
    QTextTable* table_ = nullptr;  // the one that ends where the cursor is
    bool fresh_ = true;            // the block of the cursor is still nobody's
    int32 gap_ = 0;                // that the paragraph before wants below it
};

}  // namespace

std::vector<RichPart> fillDocument(QTextDocument& document, const RichFlow& flow, int32 from, int32 most) {
    Filler filler(document);
    std::vector<RichPart> parts;
    auto item = std::ranges::partition_point(flow.items, [&](const auto& one) { return one.end <= from; });
    for (; item != flow.items.end() && most > 0; ++item) {
        const int32 start = item->row ? item->start : std::max(item->start, from);
        const int32 end = item->row || item->end - start <= most ? item->end : start + most;
        parts.push_back({start, end, start > item->start || item->row ? 0 : item->paragraph.format.before});
        if (item->row)
            filler.add(*item->row);
        else
            filler.add(item->paragraph, start - item->start, end - start);
        most -= end - start;
    }
    filler.finish();
    auto option = document.defaultTextOption();
    option.setTabStopDistance(flow.defaultTab);
    document.setDefaultTextOption(option);
    return parts;
}

bool isParagraph(const QTextBlock& block) { return block.blockFormat().hasProperty(kParagraph); }

}  // namespace tsRtm::desktop
