#pragma once
#include <QTextBlock>
#include <QTextDocument>
#include <vector>

#include "desktop/paper/RichDocument.hpp"
#include "tsRtm/platform/Paper.hpp"

class QPainter;
class QTextTable;

namespace tsRtm::desktop {

// A part of a formatted text laid out in a width, to be divided among pages between its lines. One unit is a
// twip.
class RichLayout {
 public:
    // From one of its characters on, as far as `most` of them go.
    RichLayout(const RichFlow& flow, int32 from, int32 most, int32 width);

    // Whether a page can begin with that character and end here.
    bool covers(int32 from, int32 height) const;
    // Characters that it holds.
    int32 size() const { return document_.characterCount(); }

    // How many lines fit, from one where a page can begin, and where they end.
    platform::TextFit fit(int32 from, int32 height, int32 wholeHeight) const;
    // Draws these, with their upper edge at 0.
    void draw(QPainter& painter, const platform::PlacedText& text);

 private:
    // What stands between two places where a text may be divided: a line, or a row of a table.
    struct Line {
        int32 start = 0, end = 0;  // of its characters, and behind them
        qreal top = 0, bottom = 0;
        qreal space = 0;   // above it, at the beginning of a page
        QTextBlock block;  // of a line
        int number = 0;    // of the line in it
        bool inTable = false;
        bool newPage = false;
        // Of a paragraph with a box; whether it begins above this line and ends below it.
        const rtf::ParagraphFormat* boxed = nullptr;
        bool opens = false, closes = false;
    };
    struct Range {
        std::size_t first, last;  // behind the last one
        platform::TextFit fit;
        bool whole = false;  // the page ends before this part does
    };

    std::size_t lineAt(int32 from) const;
    qreal topOf(const Line& line) const;
    Range range(int32 from, int32 height, int32 wholeHeight) const;
    void readBlock(const QTextBlock& block, const RichPart& part);
    void drawBoxes(QPainter& painter, const Range& range) const;
    void readRow(const QTextTable& table, int row, const RichPart& part);

    QTextDocument document_;
    std::vector<Line> lines_;
    bool last_;  // the text ends with it
};

}  // namespace tsRtm::desktop
