// RTF of any content: what the reader gives stays within what went in. Markup: its RTF reads the same from
// memory and from a file.
#include <cstdlib>

#include "tsRtm/frame/rtf/FileForm.hpp"
#include "tsRtm/frame/rtf/Markup.hpp"
#include "tsRtm/frame/rtf/PlainText.hpp"
#include "tsRtm/frame/rtf/Reader.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace {

using namespace tsRtm;

void hold(bool promise) {
    if (!promise) std::abort();
}

class Bounds final : public rtf::Visitor {
 public:
    void onRun(const rtf::Run& run) override {
        hold(!run.text.empty() && run.text.find_first_of(u"\r\n\0", 0, 3) == TextView::npos);
        hold(run.format.halfPoints > 0 && run.format.halfPoints <= 3276);
        units += run.text.size();
        named = std::max(named, run.font.name.size());
    }
    void onBreak(rtf::Break kind, const rtf::ParagraphFormat& format) override {
        hold(ends == 0);
        ends += kind == rtf::Break::end ? 1 : 0;
        ++units;
        hold(format.tabs.size() <= rtf::kMostTabs && format.defaultTab > 0);
        for (const int32 length : {format.left, format.right, format.first, format.before, format.after})
            hold(length >= -rtf::kLargestLength && length <= rtf::kLargestLength);
        for (std::size_t i = 1; i < format.tabs.size(); ++i)
            hold(format.tabs[i - 1].position < format.tabs[i].position);
    }
    std::size_t units = 0, named = 0;
    int ends = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    // Markup reads numbers by the separators of the locale.
    rtmMain::state().locale.sepDec = u",";
    rtmMain::state().locale.sep1000 = u".";
    const Text text = fromUtf8({reinterpret_cast<const char*>(data), size});
    Bounds bounds;
    rtf::read(text, bounds);
    hold(bounds.ends == 1 && bounds.units <= text.size() + 2 && bounds.named <= text.size());

    const Text made = markupToRtf(text);
    const Text stored = fromUtf8(rtf::fileForm(made));
    // A "~" takes half of an escape with it, so that texts with such characters may lose some of them.
    hold(rtfToPlainText(made) == rtfToPlainText(stored) || text.find_first_of(u"\\{}") != Text::npos);
    return 0;
}
