#include "tsRtm/database/CountFile.hpp"

#include <algorithm>

namespace tsRtm {

Bytes countFormat::initialText() { return " 0\r     \r\n"; }

Bytes countFormat::encode(int32 count) {
    Bytes text = std::to_string(count) + '\r';
    text.resize(std::max<std::size_t>(text.size(), kTextBytes), ' ');
    return text;
}

void CountFile::initialise() {
    if (bytes_.refreshSize() == 0) bytes_.write(0, countFormat::initialText());
}

void CountFile::write(int32 count) {
    Bytes text = countFormat::encode(count);
    // The mark belongs to the update under way, or to one that died.
    if (marked()) text[countFormat::kMarkOffset] = countFormat::kMark;
    bytes_.store(0, text);
}

bool CountFile::marked() {
    char byte = ' ';
    if (const char* in = bytes_.view(countFormat::kMarkOffset, 1)) {
        byte = *const_cast<const volatile char*>(in);
        return byte == countFormat::kMark;
    }
    return bytes_.read(countFormat::kMarkOffset, {&byte, 1}) == 1 && byte == countFormat::kMark;
}

void CountFile::mark(bool underWay) {
    const char byte = underWay ? countFormat::kMark : ' ';
    bytes_.store(countFormat::kMarkOffset, {&byte, 1});
}

}  // namespace tsRtm
