#pragma once
// The code pages of RTF texts.
#include <map>
#include <memory>

#include "tsRtm/types/Text.hpp"

struct UConverter;

namespace tsRtm::rtf {

// The Windows code page of a font's character set (\fcharset); 0 where the set follows the document.
int32 codePageOfCharset(int32 charset) noexcept;

// Whether the bytes end in the first half of a character of two bytes.
bool awaitsTrail(BytesView bytes, int32 codePage) noexcept;

// Decodes bytes by code page number, through ICU but for 1252. An unknown page reads as 1252.
class Decoder {
 public:
    Decoder();
    ~Decoder();
    void append(Text& out, BytesView bytes, int32 codePage);

 private:
    struct Close {
        void operator()(UConverter* converter) const noexcept;
    };
    UConverter* converter(int32 codePage);

    std::map<int32, std::unique_ptr<UConverter, Close>> converters_;
};

}  // namespace tsRtm::rtf
