#include "tsRtm/database/files/CountFile.hpp"

#include <algorithm>

namespace tsRtm {

Bytes countFormat::initialText() { return " 0\r     \r\n"; }

Bytes countFormat::encode(int32 count, char sign) {
    Bytes text = std::to_string(count) + '\r';
    text.resize(std::max<std::size_t>(text.size(), kTextBytes), ' ');
    text[kSignOffset] = sign;
    return text;
}

void CountFile::initialise() {
    if (bytes_.refreshSize() == 0) bytes_.write(0, countFormat::initialText());
}

void CountFile::finish(int32 count) { bytes_.store(0, countFormat::encode(count, countFormat::kAtWork)); }

void CountFile::signOff() {
    // A file in which nothing was ever counted goes back to the text it was made with.
    char first = ' ';
    bytes_.read(0, {&first, 1});
    sign(first == countFormat::initialText()[0] ? countFormat::initialText()[countFormat::kSignOffset] : ' ');
}

char CountFile::sign() {
    char byte = ' ';
    if (const char* in = bytes_.view(countFormat::kSignOffset, 1))
        byte = *const_cast<const volatile char*>(in);
    else if (bytes_.read(countFormat::kSignOffset, {&byte, 1}) != 1)
        byte = ' ';
    return byte;
}

}  // namespace tsRtm
