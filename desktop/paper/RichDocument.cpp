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

// Whether neighbours stand in one box.
bool shareBox(const RichItem& one, const RichItem& other) {
    const auto& a = one.paragraph.format;
    const auto& b = other.paragraph.format;
    return !one.row && !other.row && a.box == b.box && edgesOf(a) == edgesOf(b);
}

class Filler {
 public:
    explicit Filler(QTextDocument& document) : cursor_(&document) {}

    void add(const RichParagraph& paragraph, int32 from, int32 most, const RichPart& part) {
        const auto& box = paragraph.format.box;
        const int32 before = paragraph.format.before;
        const int32 above = part.opens ? heightOf(box, rtf::kTop) : 0;
        if (!fresh_) cursor_.insertBlock(QTextBlockFormat());
        const bool besideTable = fresh_ && table_;
        // Behind a table Qt leaves no space above a paragraph, only below the table.
        if (besideTable && before + above > 0) {
            auto format = table_->format();
            format.setBottomMargin(before + above);
            table_->setFormat(format);
        }
        paragraph.write(cursor_, gap_ + above, from, most);
        if (besideTable) keepHeight();
        gap_ = paragraph.format.after + (part.closes ? heightOf(box, rtf::kBottom) : 0);
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
    const auto& items = flow.items;
    auto item = std::ranges::partition_point(items, [&](const auto& one) { return one.end <= from; });
    for (; item != items.end() && most > 0; ++item) {
        if (item->row) {
            parts.push_back({item->start, item->end});
            filler.add(*item->row);
        } else {
            const int32 start = std::max(item->start, from),
                        end = item->end - start <= most ? item->end : start + most;
            const auto& format = item->paragraph.format;
            auto& part = parts.emplace_back(RichPart{start, end});
            part.space = start == item->start ? format.before : 0;
            if (format.box != rtf::Box()) {
                part.boxed = &format;
                part.opens = start == item->start && (item == items.begin() || !shareBox(item[-1], *item));
                part.closes = end == item->end && (item + 1 == items.end() || !shareBox(*item, item[1]));
            }
            filler.add(item->paragraph, start - item->start, end - start, part);
        }
        most -= parts.back().end - parts.back().start;
    }
    filler.finish();
    auto option = document.defaultTextOption();
    option.setTabStopDistance(flow.defaultTab);
    document.setDefaultTextOption(option);
    return parts;
}

std::pair<int32, int32> edgesOf(const rtf::ParagraphFormat& format) {
    return {format.left + std::min(format.first, 0), format.right};
}

bool isParagraph(const QTextBlock& block) { return block.blockFormat().hasProperty(kParagraph); }

}  // namespace tsRtm::desktop
