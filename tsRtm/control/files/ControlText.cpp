#include "tsRtm/control/files/ControlText.hpp"

#include <algorithm>

#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr char16_t kQuote = u'"';
constexpr char16_t kComma = u',';

// The quote that closes the item, followed by a comma; npos where none does.
std::size_t closingQuote(TextView line) noexcept {
    bool open = true;
    for (auto at = line.find(kQuote, 1); at != TextView::npos; at = line.find(kQuote, at + 1)) {
        open = !open;
        if (!open && at + 1 < line.size() && line[at + 1] == kComma) return at;
    }
    return TextView::npos;
}

TextView withoutOuterQuotes(TextView item) noexcept {
    if (item.size() < 2 || item.front() != kQuote || item.back() != kQuote) return item;
    return item.substr(1, item.size() - 2);
}

}  // namespace

ControlText::Line ControlText::present() const {
    if (atEnd()) raise(62, u"clsControl.Oeffne", u"Dateiende der Steuerdatei erreicht.");
    const auto end = std::min(content_.find_first_of(u"\r\n", position_), content_.size());
    auto next = end;
    if (next < content_.size() && content_[next] == u'\r') ++next;
    if (next < content_.size() && content_[next] == u'\n') ++next;
    return {end, next};
}

TextView ControlText::readLine() {
    const auto line = present();
    const auto text = TextView(content_).substr(position_, line.end - position_);
    position_ = line.next;
    lineEnded_ = true;
    return text;
}

TextView ControlText::readRest() {
    // A comma may be the last character of the text: the rest is empty then.
    return lineEnded_ || atEnd() ? TextView() : readLine();
}

Text ControlText::readItem() {
    const auto line = present();
    const auto text = TextView(content_).substr(position_, line.end - position_);
    const bool quoted = text.starts_with(kQuote);
    const auto closing = quoted ? closingQuote(text) : TextView::npos;
    const auto comma = !quoted ? text.find(kComma) : closing == TextView::npos ? closing : closing + 1;
    lineEnded_ = comma == TextView::npos;
    const auto item = withoutOuterQuotes(text.substr(0, comma));
    position_ = lineEnded_ ? line.next : position_ + comma + 1;
    return quoted ? replaceAll(item, u"\"\"", u"\"") : Text(item);
}

void ControlText::skipComments() {
    while (!atEnd()) {
        const auto line = present();
        const auto text = trimLeft(TextView(content_).substr(position_, line.end - position_));
        if (!text.empty() && text.front() != u'\'') return;
        position_ = line.next;
    }
}

}  // namespace tsRtm
