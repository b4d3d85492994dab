#include "tsRtm/frame/rtf/FormatWords.hpp"

#include <algorithm>
#include <utility>

namespace tsRtm::rtf {
namespace {

constexpr int32 kLargestSize = 3276;  // half points

bool on(const Token& word) noexcept { return !word.hasNumber || word.number != 0; }

int32 length(const Token& word) noexcept { return std::clamp(word.number, -kLargestLength, kLargestLength); }

int32 shift(const Token& word) noexcept {
    return word.hasNumber ? std::clamp(word.number, 0, kLargestSize) : 6;
}

void setSize(CharacterFormat& format, const Token& word) noexcept {
    if (word.number > 0) format.halfPoints = std::min(word.number, kLargestSize);
}

// Ascending; a second one at the same place takes over.
void addTab(ParagraphState& paragraph, const Token& word) {
    Tab tab = std::exchange(paragraph.next, Tab{});
    tab.position = length(word);
    auto& tabs = paragraph.format.tabs;
    const auto place = std::ranges::lower_bound(tabs, tab.position, {}, &Tab::position);
    if (place != tabs.end() && place->position == tab.position)
        *place = tab;
    else if (tabs.size() < kMostTabs)
        tabs.insert(place, tab);
}

template <class Format>
struct Row {
    TextView name;
    void (*apply)(Format&, const Token&);
};

using Character = CharacterFormat;
using Paragraph = ParagraphState;

constexpr auto underlined = [](Character& f, const Token& t) { f.underline = on(t); };
constexpr auto struck = [](Character& f, const Token& t) { f.strike = on(t); };
constexpr auto background = [](Character& f, const Token& t) { f.background = t.number; };

// clang-format off
constexpr Row<Character> kCharacterWords[] = {
    {u"b", [](Character& f, const Token& t) { f.bold = on(t); }},
    {u"caps", [](Character& f, const Token& t) { f.capitals = on(t); }},
    {u"cb", background},
    {u"cf", [](Character& f, const Token& t) { f.colour = t.number; }},
    {u"chcbpat", background},
    {u"dn", [](Character& f, const Token& t) { f.raised = -shift(t); }},
    {u"f", [](Character& f, const Token& t) { f.font = t.number; }},
    {u"fs", setSize},
    {u"highlight", [](Character& f, const Token& t) { f.background = t.number > 0 ? t.number : kNoNumber; }},
    {u"i", [](Character& f, const Token& t) { f.italic = on(t); }},
    {u"nosupersub", [](Character& f, const Token&) { f.script = Script::normal; }},
    {u"plain", [](Character& f, const Token&) { f = {}; }},
    {u"scaps", [](Character& f, const Token& t) { f.smallCapitals = on(t); }},
    {u"strike", struck},
    {u"striked", struck},
    {u"sub", [](Character& f, const Token& t) { f.script = on(t) ? Script::subscript : Script::normal; }},
    {u"super", [](Character& f, const Token& t) { f.script = on(t) ? Script::superscript : Script::normal; }},
    {u"ul", underlined},
    {u"uldash", underlined},
    {u"uldashd", underlined},
    {u"uldashdd", underlined},
    {u"uldb", underlined},
    {u"ulhwave", underlined},
    {u"ulldash", underlined},
    {u"uln", underlined},
    {u"ulnone", [](Character& f, const Token&) { f.underline = false; }},
    {u"ulth", underlined},
    {u"ulthd", underlined},
    {u"ulthdash", underlined},
    {u"ulw", underlined},
    {u"ulwave", underlined},
    {u"up", [](Character& f, const Token& t) { f.raised = shift(t); }},
    {u"v", [](Character& f, const Token& t) { f.hidden = on(t); }},
};

constexpr Row<Paragraph> kParagraphWords[] = {
    {u"fi", [](Paragraph& p, const Token& t) { p.format.first = length(t); }},
    {u"intbl", [](Paragraph& p, const Token& t) { p.format.inTable = on(t); }},
    {u"li", [](Paragraph& p, const Token& t) { p.format.left = length(t); }},
    {u"pagebb", [](Paragraph& p, const Token& t) { p.format.pageBreakBefore = on(t); }},
    {u"pard", [](Paragraph& p, const Token&) { p = {}; }},
    {u"qc", [](Paragraph& p, const Token&) { p.format.alignment = Alignment::centred; }},
    {u"qj", [](Paragraph& p, const Token&) { p.format.alignment = Alignment::justified; }},
    {u"ql", [](Paragraph& p, const Token&) { p.format.alignment = Alignment::left; }},
    {u"qr", [](Paragraph& p, const Token&) { p.format.alignment = Alignment::right; }},
    {u"ri", [](Paragraph& p, const Token& t) { p.format.right = length(t); }},
    {u"sa", [](Paragraph& p, const Token& t) { p.format.after = length(t); }},
    {u"sb", [](Paragraph& p, const Token& t) { p.format.before = length(t); }},
    {u"sl", [](Paragraph& p, const Token& t) { p.format.lineSpacing = length(t); }},
    {u"slmult", [](Paragraph& p, const Token& t) { p.format.lineMultiple = t.number != 0; }},
    {u"tldot", [](Paragraph& p, const Token&) { p.next.leader = u'.'; }},
    {u"tleq", [](Paragraph& p, const Token&) { p.next.leader = u'='; }},
    {u"tlhyph", [](Paragraph& p, const Token&) { p.next.leader = u'-'; }},
    {u"tlmdot", [](Paragraph& p, const Token&) { p.next.leader = u'\u00B7'; }},
    {u"tlth", [](Paragraph& p, const Token&) { p.next.leader = u'_'; }},
    {u"tlul", [](Paragraph& p, const Token&) { p.next.leader = u'_'; }},
    {u"tqc", [](Paragraph& p, const Token&) { p.next.kind = Tab::Kind::centred; }},
    {u"tqdec", [](Paragraph& p, const Token&) { p.next.kind = Tab::Kind::decimal; }},
    {u"tqr", [](Paragraph& p, const Token&) { p.next.kind = Tab::Kind::right; }},
    {u"tx", addTab},
};
// clang-format on

template <class Format, std::size_t Count>
bool apply(const Row<Format> (&rows)[Count], Format& format, const Token& word) {
    const auto* row = std::ranges::lower_bound(rows, word.name, {}, &Row<Format>::name);
    if (row == std::end(rows) || row->name != word.name) return false;
    row->apply(format, word);
    return true;
}

static_assert(std::ranges::is_sorted(kCharacterWords, {}, &Row<Character>::name));
static_assert(std::ranges::is_sorted(kParagraphWords, {}, &Row<Paragraph>::name));

}  // namespace

bool applyCharacterWord(CharacterFormat& format, const Token& word) {
    return apply(kCharacterWords, format, word);
}

bool applyParagraphWord(ParagraphState& paragraph, const Token& word) {
    return apply(kParagraphWords, paragraph, word);
}

}  // namespace tsRtm::rtf
