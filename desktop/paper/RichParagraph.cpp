#include "desktop/paper/RichParagraph.hpp"

#include <algorithm>

namespace tsRtm::desktop {
namespace {

// Between the tabulators of a paragraph, and behind the last of them, in a line: whether a number with
// decimals stands there.
std::vector<bool> decimals(const std::vector<RichParagraph::Piece>& pieces) {
    std::vector<bool> sections{false};
    for (const auto& piece : pieces)
        for (const QChar letter : piece.text) {
            if (letter == u'\t') sections.push_back(false);
            if (letter == u',') sections.back() = true;
        }
    return sections;
}

// Qt counts the places from where the first line begins, the text from its margin.
QList<QTextOption::Tab> tabsOf(const rtf::ParagraphFormat& from, const std::vector<bool>& numbers) {
    using Tab = QTextOption::Tab;
    constexpr QTextOption::TabType kinds[] = {QTextOption::LeftTab, QTextOption::RightTab,
                                              QTextOption::CenterTab, QTextOption::DelimiterTab};
    const int32 start = from.left + from.first;
    QList<Tab> tabs;
    for (const auto& tab : from.tabs) {
        auto kind = kinds[static_cast<std::size_t>(tab.kind)];
        const auto section = static_cast<std::size_t>(tabs.size()) + 1;
        // To a whole number the place is that of its end.
        if (tab.kind == rtf::Tab::Kind::decimal && section < numbers.size() && !numbers[section])
            kind = QTextOption::RightTab;
        tabs.append(Tab(tab.position - start, kind, QChar(u',')));
    }
    const int32 last = from.tabs.empty() ? 0 : from.tabs.back().position;
    // A first line that hangs out finds a tabulator where the others begin.
    if (from.first < 0 && last < from.left) tabs.append(Tab(-from.first, QTextOption::LeftTab));
    // The usual ones are multiples from the margin, too. So many are enough for any page.
    constexpr int32 most = 40;
    if (start != 0)
        for (int32 i = 0, at = (std::max(last, from.left) / from.defaultTab + 1) * from.defaultTab;
             i < most && at <= rtf::kLargestLength; ++i, at += from.defaultTab)
            tabs.append(Tab(at - start, QTextOption::LeftTab));
    return tabs;
}

QTextBlockFormat formatOf(const rtf::ParagraphFormat& from, int32 gap) {
    constexpr Qt::Alignment alignments[] = {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter,
                                            Qt::AlignJustify};
    QTextBlockFormat to;
    to.setAlignment(alignments[static_cast<std::size_t>(from.alignment)]);
    to.setLeftMargin(from.left);
    to.setRightMargin(from.right);
    to.setTextIndent(from.first);
    to.setTopMargin(from.before + gap);
    to.setProperty(kParagraph, true);
    if (!from.box.background.automatic) to.setBackground(colourOf(from.box.background));
    if (from.pageBreakBefore) to.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    if (from.lineSpacing != 0 && from.lineMultiple)
        to.setLineHeight(from.lineSpacing * 100.0 / 240, QTextBlockFormat::ProportionalHeight);
    else if (from.lineSpacing != 0)
        to.setLineHeight(std::abs(from.lineSpacing), from.lineSpacing < 0 ? QTextBlockFormat::FixedHeight
                                                                          : QTextBlockFormat::MinimumHeight);
    return to;
}

}  // namespace

int32 RichParagraph::length() const {
    int32 sum = 1;
    for (const auto& piece : pieces) sum += piece.length();
    return sum;
}

void RichParagraph::write(QTextCursor& cursor, int32 gap, int32 from, int32 most) const {
    auto look = format;
    if (from > 0) look.before = look.first = 0;
    auto block = formatOf(look, gap);
    const auto numbers = decimals(pieces);
    if (numbers.size() > 1) block.setTabPositions(tabsOf(look, numbers));
    cursor.setBlockFormat(block);
    if (pieces.empty()) cursor.setBlockCharFormat(mark);
    const int32 to = from + most;
    int32 start = 0;
    for (const auto& piece : pieces) {
        const int32 first = std::max(from - start, 0), last = std::min(to - start, piece.length());
        start += piece.length();
        if (first >= last) continue;
        if (piece.text.isEmpty()) {
            const auto image = piece.format.toImageFormat();
            cursor.document()->addResource(QTextDocument::ImageResource, QUrl(image.name()), piece.picture);
            cursor.insertImage(image);
        } else {
            cursor.insertText(piece.text.mid(first, last - first), piece.format);
        }
    }
}

}  // namespace tsRtm::desktop
