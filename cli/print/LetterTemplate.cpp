#include "cli/print/LetterTemplate.hpp"

#include <cctype>

namespace tsRtm::cli {
namespace {

constexpr TextView kOpen = u"\\{", kClose = u"\\}";
constexpr std::size_t kLongest = 400;  // of a field with all the formats between its letters

bool isLetter(char16_t c) { return c < 128 && std::isalpha(static_cast<unsigned char>(c)) != 0; }

// Where a control word or symbol ends that begins at `at`.
std::size_t behindControl(TextView rtf, std::size_t at) {
    std::size_t end = at + 1;
    if (end >= rtf.size()) return end;
    if (!isLetter(rtf[end])) return rtf[end] == u'\'' ? std::min(end + 3, rtf.size()) : end + 1;
    while (end < rtf.size() && isLetter(rtf[end])) ++end;
    if (end < rtf.size() && rtf[end] == u'-') ++end;
    while (end < rtf.size() && rtf[end] >= u'0' && rtf[end] <= u'9') ++end;
    return end < rtf.size() && rtf[end] == u' ' ? end + 1 : end;
}

// A field from its opening brace: its name, what else stood between, and its end; 0 where it is none.
struct Field {
    Text name, formats;
    std::size_t end = 0;
};
Field fieldAt(TextView rtf, std::size_t from) {
    Field field;
    const std::size_t last = std::min(rtf.size(), from + kLongest);
    for (std::size_t at = from + kOpen.size(); at < last;) {
        if (rtf.substr(at, kClose.size()) == kClose) {
            field.end = at + kClose.size();
            return field;
        }
        if (rtf.substr(at, kOpen.size()) == kOpen) return {};
        const std::size_t next = rtf[at] == u'\\' ? behindControl(rtf, at) : at + 1;
        const TextView piece = rtf.substr(at, next - at);
        if (rtf[at] == u'\\' && piece.starts_with(u"\\'")) {
            // A letter by its code.
            constexpr TextView digits = u"0123456789abcdef";
            const auto digit = [&](std::size_t i) {
                return i < piece.size() ? digits.find(lower(piece.substr(i, 1))[0]) : TextView::npos;
            };
            if (digit(2) == TextView::npos || digit(3) == TextView::npos) return {};
            field.name.push_back(static_cast<char16_t>(digit(2) * 16 + digit(3)));
        } else if (rtf[at] == u'\\' || rtf[at] == u'{' || rtf[at] == u'}') {
            field.formats += piece;
        } else if (rtf[at] != u'\r' && rtf[at] != u'\n') {
            field.name += piece;
        }
        at = next;
    }
    return {};
}

Text escaped(TextView value) {
    Text text;
    for (const char16_t c : value) {
        if (c == u'\\' || c == u'{' || c == u'}')
            text += Text(u"\\") + c;
        else if (c == u'\r')
            continue;
        else if (c == u'\n')
            text += u"\\line ";
        else if (c < 128)
            text.push_back(c);
        else
            text += u"{\\uc1\\u" + toText(static_cast<int32>(static_cast<std::int16_t>(c))) + u"?}";
    }
    return text;
}

}  // namespace

LetterTemplate::LetterTemplate(TextView rtf, const std::function<bool(TextView name)>& known) : pieces_(1) {
    for (std::size_t at = 0; at < rtf.size();) {
        auto open = rtf.find(kOpen, at);
        // An escaped backslash before a group is none.
        while (open != TextView::npos && open > 0 && rtf[open - 1] == u'\\') open = rtf.find(kOpen, open + 1);
        if (open == TextView::npos) open = rtf.size();
        pieces_.back() += rtf.substr(at, open - at);
        if (open == rtf.size()) return;
        const Field field = fieldAt(rtf, open);
        if (field.end != 0 && known(field.name)) {
            names_.push_back(field.name);
            pieces_.push_back(field.formats);
            at = field.end;
        } else {
            pieces_.back() += kOpen;
            at = open + kOpen.size();
        }
    }
}

Text LetterTemplate::filled(const std::function<Text(TextView name)>& value) const {
    Text text = pieces_.front();
    for (std::size_t i = 0; i < names_.size(); ++i) text += escaped(value(names_[i])) + pieces_[i + 1];
    return text;
}

}  // namespace tsRtm::cli
