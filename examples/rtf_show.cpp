// Stored markup becomes RTF, which any editor shows, and plain text again.
//
//     rtf_show
#include <iostream>

#include "tsRtm/tsRtm.hpp"

using namespace tsRtm;

int main() {
    const Text markup =
        u".ZE\r"
        u"~F~BProtokoll~B~F\r"
        u".PD.LR2.TL30\r"
        u"Anwesend: ~UHerr Müller~U und ~KFrau Groß~K\r"
        u"Kosten:\t~C5120 €~C0\r";
    const clsRtm rtm;
    const Text rtfText = rtm.ConvertToRTF(markup);
    std::cout << toUtf8(rtfText) << "\n\n"
              << toUtf8(replaceAll(rtm.ConvertRTFToText(rtfText), u"\r\n", u"\n"));
}
