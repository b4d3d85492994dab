#include "desktop/paper/RichText.hpp"

#include <QAbstractTextDocumentLayout>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

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

// Fills a document with what the reader tells.
class Filler final : public rtf::Visitor {
 public:
    explicit Filler(QTextDocument& document) : cursor_(&document) {}

    void onRun(const rtf::Run& run) override {
        if (run.format.hidden) return;
        cursor_.insertText(qt(run.text), formatOf(run));
    }
    void onBreak(rtf::Break kind, const rtf::ParagraphFormat& format) override {
        if (kind == rtf::Break::line) {
            cursor_.insertText(QString(QChar::LineSeparator));
            return;
        }
        if (kind == rtf::Break::cell) {
            cursor_.insertText(QStringLiteral("\t"));
            return;
        }
        cursor_.setBlockFormat(formatOf(format));
        // What ends with the text has no paragraph behind it.
        if (kind != rtf::Break::end) cursor_.insertBlock(QTextBlockFormat());
    }

 private:
    QTextCursor cursor_;
};

// A text from one of its characters on, laid out in a width.
class LaidOut {
 public:
    LaidOut(TextView rtf, int32 from, int32 width) : reference_(1, 1, QImage::Format_ARGB32) {
        document_.setDocumentMargin(0);
        document_.setUndoRedoEnabled(false);
        // Dots an inch of the layout: one twip a dot.
        constexpr int twipsPerMetre = 56693;
        reference_.setDotsPerMeterX(twipsPerMetre);
        reference_.setDotsPerMeterY(twipsPerMetre);
        document_.documentLayout()->setPaintDevice(&reference_);
        Filler filler(document_);
        rtf::read(rtf, filler);
        dropLastEmpty();
        length_ = std::max(document_.characterCount() - 1, 0);
        if (from > 0) drop(0, std::min(from, length_));
        QTextOption option = document_.defaultTextOption();
        option.setTabStopDistance(720);
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        document_.setDefaultTextOption(option);
        document_.setTextWidth(std::max(width, 1));
    }

    int32 length() const noexcept { return length_; }
    QTextDocument& document() noexcept { return document_; }

    struct Line {
        int32 end;  // behind its last character
        qreal bottom;
    };
    std::vector<Line> lines() {
        std::vector<Line> all;
        for (auto block = document_.begin(); block.isValid(); block = block.next()) {
            const auto* layout = block.layout();
            const qreal top = document_.documentLayout()->blockBoundingRect(block).top();
            for (int i = 0; i < layout->lineCount(); ++i) {
                const auto line = layout->lineAt(i);
                const bool last = i + 1 == layout->lineCount();
                all.push_back({block.position() + line.textStart() + line.textLength() + (last ? 1 : 0),
                               top + line.y() + line.height()});
            }
        }
        return all;
    }

 private:
    // The last paragraph's end is none of a further, empty one.
    void dropLastEmpty() {
        const auto last = document_.lastBlock();
        if (last.length() > 1 || !last.previous().isValid()) return;
        QTextCursor cursor(last);
        cursor.deletePreviousChar();
    }
    void drop(int32 from, int32 to) {
        QTextCursor cursor(&document_);
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
    }

    QTextDocument document_;
    QImage reference_;
    int32 length_ = 0;
};

// How many lines fit, and where they end.
struct Fitting {
    int32 next = -1;
    int32 used = 0;
};
Fitting fitting(LaidOut& text, int32 from, int32 height, int32 wholeHeight) {
    Fitting found;
    for (const auto& line : text.lines()) {
        const bool first = found.used == 0;
        // What no page could take is cut off.
        if (line.bottom > height && !(first && line.bottom > wholeHeight)) {
            found.next = from + (first ? 0 : found.next);
            return found;
        }
        found.used = std::min(static_cast<int32>(std::ceil(line.bottom)), std::max(height, 1));
        found.next = line.end;
    }
    found.next = -1;
    return found;
}

int32 bgr(const QColor& colour) { return colour.red() | colour.green() << 8 | colour.blue() << 16; }

}  // namespace

int32 RichText::length(TextView rtf) { return rtf.starts_with(u'{') ? LaidOut(rtf, 0, 1).length() : 0; }

platform::TextFit RichText::fit(const platform::PlacedText& text, int32 pageHeight) {
    LaidOut laid(text.rtf, text.from, text.width);
    const auto found = fitting(laid, text.from, text.height, pageHeight);
    return {found.next, found.used};
}

void RichText::draw(QPainter& painter, const platform::PlacedText& text) {
    LaidOut laid(text.rtf, text.from, text.width);
    const auto found = fitting(laid, text.from, text.height, 0);
    const QRectF part(0, 0, text.width, found.used);
    painter.save();
    painter.translate(text.left, text.top);
    if (text.backColour != 0xFFFFFF) painter.fillRect(part, desktop::colourOf(text.backColour));
    laid.document().drawContents(&painter, part);
    painter.restore();
}

int32 RichText::windowText() { return bgr(QGuiApplication::palette().color(QPalette::WindowText)); }
int32 RichText::window() { return bgr(QGuiApplication::palette().color(QPalette::Window)); }

}  // namespace tsRtm::desktop
