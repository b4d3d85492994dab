#include "tsRtm/frame/rtf/HeadTables.hpp"

#include <algorithm>
#include <utility>

namespace tsRtm::rtf {
namespace {

struct FamilyRow {
    TextView word;
    FontFamily family;
};

constexpr FamilyRow kFamilies[] = {
    {u"fnil", FontFamily::unknown},    {u"froman", FontFamily::roman},
    {u"fswiss", FontFamily::swiss},    {u"fmodern", FontFamily::modern},
    {u"fscript", FontFamily::script},  {u"fdecor", FontFamily::decorative},
    {u"ftech", FontFamily::technical}, {u"fbidi", FontFamily::bidirectional},
};

constexpr int32 kFixedPitch = 1;

}  // namespace

void FontTable::word(const Token& word) {
    if (word.name == u"f") {
        current_ = word.number;
        named_ = false;
        fonts_[current_] = {};
        return;
    }
    if (current_ == kNoNumber) return;
    Font& font = fonts_[current_];
    if (word.name == u"fcharset") font.charset = word.number;
    if (word.name == u"fprq") font.fixedPitch = word.number == kFixedPitch;
    const auto* family = std::ranges::find(kFamilies, word.name, &FamilyRow::word);
    if (family != std::end(kFamilies)) font.family = family->family;
}

void FontTable::text(TextView text) {
    if (current_ == kNoNumber || named_) return;
    const auto end = text.find(u';');
    fonts_[current_].name += text.substr(0, end);
    named_ = end != TextView::npos;
}

const Font& FontTable::font(int32 number) const {
    static const Font kNone;
    const auto found = fonts_.find(number);
    return found == fonts_.end() ? kNone : found->second;
}

void ColourTable::word(const Token& word) {
    const auto part = static_cast<uint8>(std::clamp(word.number, 0, 255));
    if (word.name == u"red")
        next_.red = part;
    else if (word.name == u"green")
        next_.green = part;
    else if (word.name == u"blue")
        next_.blue = part;
    else
        return;
    next_.automatic = false;
}

void ColourTable::text(TextView text) {
    for (auto ends = std::ranges::count(text, u';'); ends > 0; --ends)
        colours_.push_back(std::exchange(next_, Colour{}));
}

Colour ColourTable::colour(int32 number) const noexcept {
    const auto place = static_cast<std::size_t>(number);
    return number < 0 || place >= colours_.size() ? Colour{} : colours_[place];
}

}  // namespace tsRtm::rtf
