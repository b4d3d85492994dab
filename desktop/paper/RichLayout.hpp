#pragma once
#include <QTextBlock>
#include <QTextDocument>
#include <vector>

#include "tsRtm/platform/Paper.hpp"

class QPainter;
class QTextTable;

namespace tsRtm::desktop {

// A formatted text laid out in a width, to be divided among pages between its lines. One unit is a twip.
class RichLayout {
 public:
    // From one of its characters on; what stands before it in the text is not laid out, but for tables.
    RichLayout(TextView rtf, int32 from, int32 width);

    // Whether a page can begin with that character.
    bool begins(int32 from) const;
    // Characters that it holds.
    int32 size() const { return document_.characterCount(); }

    // How many lines fit, from one where a page can begin, and where they end.
    platform::TextFit fit(int32 from, int32 height, int32 wholeHeight) const;
    // Draws these, with their upper edge at 0.
    void draw(QPainter& painter, const platform::PlacedText& text);

 private:
    // What stands between two places where a text may be divided: a line, or a row of a table.
    struct Line {
        int32 start, end;  // of its characters, and behind them
        qreal top, bottom;
        qreal space;       // above it, at the beginning of a page
        QTextBlock block;  // of a line
        int number = 0;    // of the line in it
        bool inTable = false;
        bool newPage = false;
    };
    struct Range {
        std::size_t first, last;  // behind the last one
        platform::TextFit fit;
    };

    std::size_t lineAt(int32 from) const;
    Range range(int32 from, int32 height, int32 wholeHeight) const;
    void drop(int32 to);
    void readBlock(const QTextBlock& block);
    void readRows(const QTextTable& table);

    QTextDocument document_;
    std::vector<Line> lines_;
    bool tables_ = false;
};

}  // namespace tsRtm::desktop
