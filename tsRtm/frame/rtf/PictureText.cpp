#include "tsRtm/frame/rtf/PictureText.hpp"

#include <algorithm>

namespace tsRtm::rtf {
namespace {

int32 digitOf(char16_t c) noexcept {
    if (c >= u'0' && c <= u'9') return c - u'0';
    if (c >= u'a' && c <= u'f') return c - u'a' + 10;
    if (c >= u'A' && c <= u'F') return c - u'A' + 10;
    return -1;
}

int32 scaled(int32 length, int32 perCent) noexcept {
    return static_cast<int32>(std::clamp<int64>(int64{length} * perCent / 100, 0, kLargestLength));
}

}  // namespace

void PictureText::word(const Token& word) {
    if (word.name == u"pngblip") picture_.kind = PictureKind::png;
    if (word.name == u"jpegblip") picture_.kind = PictureKind::jpeg;
    if (word.name == u"picwgoal") picture_.width = std::clamp(word.number, 0, kLargestLength);
    if (word.name == u"pichgoal") picture_.height = std::clamp(word.number, 0, kLargestLength);
    if (word.name == u"picscalex") scaleX_ = word.number;
    if (word.name == u"picscaley") scaleY_ = word.number;
}

void PictureText::text(TextView text) {
    for (const char16_t c : text) {
        const int32 digit = digitOf(c);
        if (digit < 0) continue;
        if (half_ >= 0) picture_.bytes.push_back(static_cast<char>(half_ * 16 + digit));
        half_ = half_ >= 0 ? -1 : digit;
    }
}

Picture PictureText::picture() const {
    Picture whole = picture_;
    whole.width = scaled(picture_.width, scaleX_);
    whole.height = scaled(picture_.height, scaleY_);
    return whole;
}

}  // namespace tsRtm::rtf
