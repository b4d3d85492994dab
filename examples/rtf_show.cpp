// Stored markup becomes RTF, and a visitor reads its formats back.
//
//     rtf_show
#include <iostream>

#include "tsRtm/tsRtm.hpp"

using namespace tsRtm;

namespace {

// Prints each run with its font, and each paragraph with its place.
class Shown final : public rtf::Visitor {
 public:
    void onRun(const rtf::Run& run) override {
        std::cout << "  " << toUtf8(run.font.name) << ' ' << run.format.halfPoints / 2.0
                  << (run.format.bold ? " bold" : "") << (run.format.italic ? " italic" : "")
                  << (run.format.underline ? " underlined" : "");
        if (run.colour.red > 0) std::cout << " red " << static_cast<int>(run.colour.red);
        std::cout << " \"" << toUtf8(run.text) << "\"\n";
    }
    void onBreak(rtf::Break kind, const rtf::ParagraphFormat& format) override {
        static constexpr const char* kAlignments[] = {"left", "right", "centred", "justified"};
        if (kind == rtf::Break::paragraph)
            std::cout << "paragraph, " << kAlignments[static_cast<int>(format.alignment)] << ", "
                      << format.left << " twips from the left, " << format.tabs.size() << " tabulators\n";
    }
};

}  // namespace

int main() {
    const Text markup =
        u".ZE\r"
        u"~F~BProtokoll~B~F\r"
        u".PD.LR2.TL30\r"
        u"Anwesend: ~UHerr Müller~U und ~KFrau Groß~K\r"
        u"Kosten:\t~C5120 €~C0\r";
    const clsRtm rtm;
    const Text rtfText = rtm.ConvertToRTF(markup);
    std::cout << rtfText.size() << " characters of RTF\n\n";
    Shown shown;
    rtf::read(rtfText, shown);
    std::cout << '\n' << toUtf8(replaceAll(rtm.ConvertRTFToText(rtfText), u"\r\n", u"\n"));
}
