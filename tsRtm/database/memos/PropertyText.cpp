#include "tsRtm/database/memos/PropertyText.hpp"

#include <algorithm>

#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr char16_t kBreak = u'\r';
constexpr TextView kBreaks = u"\r\n";

// One line of a text, in place.
struct Line {
    std::size_t from = 0, to = 0;  // without its end
    std::size_t equals = TextView::npos;
};

// Calls `take(line)` for each property until it says false.
template <class Take>
void eachLine(TextView text, Take take) {
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t to = std::min(text.find_first_of(kBreaks, from), text.size());
        const std::size_t equals = text.substr(0, to).find(u'=', from);
        if (equals != TextView::npos && !take(Line{from, to, equals})) return;
        from = to + 1;
    }
}

Line lineOf(TextView text, TextView key) {
    Line found;
    eachLine(text, [&](const Line& line) {
        if (!equalIgnoringCase(text.substr(line.from, line.equals - line.from), key)) return true;
        found = line;
        return false;
    });
    return found;
}

}  // namespace

Text propertyText::valueOf(TextView text, TextView key) {
    const Line line = lineOf(text, key);
    if (line.equals == TextView::npos) return {};
    return Text(text.substr(line.equals + 1, line.to - line.equals - 1));
}

void propertyText::set(Text& text, const RecordProperty& property) {
    const Line line = lineOf(text, property.key);
    if (line.equals != TextView::npos) {
        text.replace(line.equals + 1, line.to - line.equals - 1, property.value);
        return;
    }
    if (!text.empty() && kBreaks.find(text.back()) == TextView::npos) text += kBreak;
    text.append(property.key).append(u"=").append(property.value);
}

void propertyText::set(Text& text, const std::vector<RecordProperty>& properties) {
    for (const auto& property : properties) set(text, property);
}

std::vector<RecordProperty> propertyText::all(TextView text) {
    std::vector<RecordProperty> out;
    eachLine(text, [&](const Line& line) {
        out.push_back({Text(text.substr(line.from, line.equals - line.from)),
                       Text(text.substr(line.equals + 1, line.to - line.equals - 1))});
        return true;
    });
    return out;
}

void propertyText::check(const RecordProperty& property) {
    if (property.key.empty() || property.key.find(u'=') != Text::npos ||
        property.key.find_first_of(kBreaks) != Text::npos ||
        property.value.find_first_of(kBreaks) != Text::npos)
        raise(380, u"clsTSRecord.Property", u"Ungültige Eigenschaft \"" + property.key + u"\"");
}

Text PropertyWrite::storedText(BytesView stored) {
    const int32 pointer = stores_.pointerIn(stored, field_);
    return pointer < 1 ? Text() : stores_.texts(field_).decode(stores_.open(field_).read(pointer));
}

void PropertyWrite::prepare(BytesView stored, std::span<char> image) {
    write_.reset();
    const Text before = storedText(stored);
    Text text = before;
    propertyText::set(text, properties_);
    if (text == before) return;
    write_.emplace(stores_, field_, TextView(text));
    write_->prepare(stored, image);
}

void PropertyWrite::flush() {
    if (write_) write_->flush();
}

void PropertyWrite::finish() noexcept {
    if (write_) write_->finish();
}

void PropertyWrite::undo() noexcept {
    if (write_) write_->undo();
}

}  // namespace tsRtm
