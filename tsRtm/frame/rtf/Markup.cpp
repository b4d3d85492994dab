#include "tsRtm/frame/rtf/Markup.hpp"

#include <algorithm>

#include "tsRtm/frame/text/NumberText.hpp"

namespace tsRtm {
namespace {

// The colour table lacks the ";" of a first, automatic colour: colour numbers in stored texts count from
// there.
constexpr TextView kHeader =
    u"\\rtf1\\ansi\\deff0\\deftab720\\deflang1031{\\fonttbl{\\f0\\fswiss Arial;}{\\f1\\fswiss MS Sans Serif;}"
    u"{\\f2\\froman\\fcharset2 Symbol;}{\\f3\\fmodern Courier New;}{\\f4\\froman Times New Roman;}}"
    u"{\\colortbl\\red0\\green0\\blue0;\\red255\\green0\\blue255;\\red0\\green255\\blue255;"
    u"\\red128\\green0\\blue128;\\red255\\green255\\blue0;\\red255\\green0\\blue0;\\red0\\green255\\blue0;}";
constexpr TextView kPlain = u"\\pard\\plain\\fs20 ";
constexpr float64 kTwipsPerColumn = 144;

Text word(TextView name, int64 number) { return Text(name) + toText(number) + u" "; }

Text escaped(TextView text) {
    Text out;
    out.reserve(text.size());
    for (const char16_t c : text) {
        if (c == u'\t') {
            out += u"\\tab ";
            continue;
        }
        if (c == u'\\' || c == u'{' || c == u'}') out.push_back(u'\\');
        out.push_back(c);
    }
    return out;
}

// One command of a command line, without its ".".
Text command(TextView part) {
    const Text text = upper(trim(part));
    const TextView name = TextView(text).substr(0, 2);
    const float64 number = text.size() > 2 ? TSVal(TextView(text).substr(2)) : 0;
    const auto columns = [number] { return roundToInt32(number * kTwipsPerColumn); };
    if (name == u"LR") return word(u"\\li", columns());
    // "\lr" it is: readers of stored texts skip the unknown word.
    if (name == u"RR") return word(u"\\lr", columns());
    if (name == u"RA") return word(u"\\fi", -int64{columns()});
    if (name == u"ZE") return u"\\qc ";
    if (name == u"LB") return u"\\ql ";
    if (name == u"RB") return u"\\qr ";
    // Back to the left first, then justified.
    if (name == u"BS") return u"\\ql\\qj ";
    if (name == u"TL") return word(u"\\tx", int64{roundToInt32(number)} * 144);
    if (name == u"PD") return Text(kPlain);
    return {};
}

Text commandLine(TextView line) {
    Text out;
    // What stands before the first "." is no command.
    for (auto at = line.find(u'.'); at != TextView::npos;) {
        const auto next = line.find(u'.', at + 1);
        out += command(line.substr(at + 1, next == TextView::npos ? next : next - at - 1));
        at = next;
    }
    return out;
}

// Styles last from one line to the next.
class Styles {
 public:
    // A line of text with its "~" commands.
    Text line(TextView rest) {
        Text out;
        for (auto at = rest.find(u'~'); at != TextView::npos; at = rest.find(u'~')) {
            out += rest.substr(0, at);
            rest.remove_prefix(at + 1);
            if (rest.empty()) break;
            const char16_t letter = upper(rest.front());
            rest.remove_prefix(1);
            out += style(letter, rest);
        }
        return out.append(rest);
    }

 private:
    static Text toggled(bool& flag, TextView name) {
        flag = !flag;
        return Text(name) + (flag ? u" " : u"0 ");
    }

    Text sizeWord() const { return word(u"\\fs", int64{size_} * factor_); }

    // Takes what belongs to the command off the rest of the line. An unknown letter vanishes.
    Text style(char16_t letter, TextView& rest) {
        switch (letter) {
            case u'F':
                return toggled(bold_, u"\\b");
            case u'U':
                return toggled(underline_, u"\\ul");
            case u'D':
                return toggled(strike_, u"\\strike");
            case u'K':
            case u'I':
                return toggled(italic_, u"\\i");
            case u'B':
                factor_ = 3 - factor_;
                return sizeWord();
            // S and E set a size that shows only with the next B or P.
            case u'S':
                size_ = size_ != 14 ? 14 : 24;
                return {};
            case u'E':
                size_ = size_ != 20 ? 20 : 24;
                return {};
            case u'P':
                return pitch(rest);
            case u'C':
                return colour(rest);
            default:
                return {};
        }
    }

    Text pitch(TextView& rest) {
        int32 length = 0;
        const float64 number = HolZahl(rest, 1, length, 2);
        rest.remove_prefix(static_cast<std::size_t>(length));
        if (number >= 1 && number < 60) size_ = roundToInt32(240 / number);
        return sizeWord();
    }

    static Text colour(TextView& rest) {
        int64 number = 0;
        if (!rest.empty() && rest.front() >= u'0' && rest.front() <= u'9') {
            number = rest.front() - u'0';
            rest.remove_prefix(1);
        }
        return word(u"\\cf", number);
    }

    bool bold_ = false, underline_ = false, strike_ = false, italic_ = false;
    int32 size_ = 20, factor_ = 1;
};

Text bodyOf(TextView text) {
    Text body;
    Styles styles;
    while (!text.empty()) {
        const auto end = text.find(u'\r');
        const bool ended = end != TextView::npos;
        const TextView line = trimLeft(text.substr(0, end));
        text.remove_prefix(ended ? end + 1 : text.size());
        if (ended && text.starts_with(u'\n')) text.remove_prefix(1);

        if (line.starts_with(u'.')) {
            body += commandLine(line);
        } else {
            body += styles.line(line);
            if (ended) body += u"\\par ";
        }
    }
    return body;
}

}  // namespace

Text markupToRtf(TextView text, bool withoutHeader) {
    if (text.starts_with(u"{\\")) return Text(text);
    Text source = escaped(text);
    // These go before the styles are read, so that "~D" never strikes a text through.
    for (const TextView removed : {u"~h", u"~H", u"~d", u"~D"}) source = replaceAll(source, removed, {});
    Text out = u"{";
    if (!withoutHeader) out += kHeader;
    return out.append(kPlain).append(bodyOf(source)) + u"}";
}

}  // namespace tsRtm
