#include "tsRtm/frame/clsStreamReader.hpp"

#include <algorithm>
#include <limits>

#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

namespace {

constexpr char16_t quote = u'"';

int32 clamped(int64 position) {
    return static_cast<int32>(std::clamp<int64>(position, 1, std::numeric_limits<int32>::max()));
}

Text undoubled(TextView item) { return replaceAll(item, u"\"\"", u"\""); }

// Where the quoted item at the start of a line ends: the place of the closing quote before a separator.
std::size_t closingQuote(TextView line, TextView separator) {
    bool quoted = false;
    for (auto at = line.find(quote); at != TextView::npos; at = line.find(quote, at + 1)) {
        quoted = !quoted;
        if (!quoted && line.substr(at + 1).starts_with(separator)) return at;
    }
    return TextView::npos;
}

bool quotedAround(TextView item) { return item.size() >= 2 && item.front() == quote && item.back() == quote; }

}  // namespace

bool clsStreamReader::Init(FilesTopic& Rtm, TextView Datei, TextView FieldSeparator) {
    name_ = Datei;
    fieldSeparator_ = FieldSeparator;
    content_.clear();
    encoding_ = 0;
    position_ = 1;
    seenFrom_ = 1;
    seenEnd_ = 0;
    if (Datei.empty()) return false;
    try {
        Date changed;
        content_ = Rtm.GetContentAPI(Datei, encoding_, changed);
    } catch (const Failure&) {
        return false;
    }
    return encoding_ != 0;
}

void clsStreamReader::FilePos(int32 Value) noexcept {
    if (Value >= 1) position_ = Value;
    if (Value < 0) position_ = clamped(int64{length()} + Value + 1);
}

Text clsStreamReader::Read(int32 Count) {
    if (EndOfStream() || Count < 1) return {};
    Text text = content_.substr(static_cast<std::size_t>(position_) - 1, static_cast<std::size_t>(Count));
    position_ = clamped(int64{position_} + Count);
    return text;
}

Text clsStreamReader::Peek() const {
    return EndOfStream() ? Text() : Text(1, content_[static_cast<std::size_t>(position_) - 1]);
}

void clsStreamReader::needMore(TextView operation) const {
    if (EndOfStream())
        raise(62, u"clsStreamReader." + Text(operation), u"Dateiende bei \"" + name_ + u"\" erreicht.");
}

TextView clsStreamReader::nextLine() {
    const TextView all(content_);
    const auto begin = static_cast<std::size_t>(position_) - 1;
    // Items are read from one line one after the other: its end is looked for once.
    if (begin < seenFrom_ || begin > seenEnd_) {
        seenFrom_ = begin;
        seenEnd_ = std::min(all.find_first_of(u"\r\n", begin), all.size());
    }
    const TextView ending = all.substr(seenEnd_, 2);
    position_ = static_cast<int32>(seenEnd_ + 1 + (ending == u"\r\n" ? 2 : ending.empty() ? 0 : 1));
    return all.substr(begin, seenEnd_ - begin);
}

Text clsStreamReader::ReadLine() {
    needMore(u"ReadLine");
    return Text(nextLine());
}

Text clsStreamReader::ReadItem() {
    needMore(u"ReadItem");
    const int32 begin = position_;
    const TextView line = nextLine();
    // An empty separator separates nothing.
    const auto separator = fieldSeparator_.empty() ? TextView::npos : line.find(fieldSeparator_);
    if (separator == TextView::npos)
        return quotedAround(line) ? undoubled(line.substr(1, line.size() - 2)) : Text(line);
    const auto behind = [&](std::size_t place) {
        position_ = begin + static_cast<int32>(place + fieldSeparator_.size());
    };
    if (line.front() != quote) {
        behind(separator);
        return Text(line.substr(0, separator));
    }
    if (const auto closing = closingQuote(line, fieldSeparator_); closing != TextView::npos) {
        behind(closing + 1);
        return undoubled(line.substr(1, closing - 1));
    }
    return undoubled(line.substr(1, line.size() - (quotedAround(line) ? 2 : 1)));
}

}  // namespace tsRtm
