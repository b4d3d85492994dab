#include "tsRtm/frame/rtf/FileForm.hpp"

namespace tsRtm::rtf {

Bytes fileForm(TextView rtf) {
    Bytes out;
    out.reserve(rtf.size());
    for (const char16_t c : rtf) {
        if (c < 0x80)
            out += static_cast<char>(c);
        else  // codes from 8000 on, in hexadecimal, are negative numbers there
            out += "{\\uc1\\u" + std::to_string(static_cast<int16>(c)) + "?}";
    }
    return out;
}

}  // namespace tsRtm::rtf
