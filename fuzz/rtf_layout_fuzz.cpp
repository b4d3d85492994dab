// RTF of any content, laid out in a width that the first byte tells and divided among pages: each page takes
// some of it, all pages together take all, and any of them can be drawn. Seeds: tests/data/letters.
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <cstdlib>

#include "desktop/paper/RichText.hpp"
#include "tsRtm/types/Text.hpp"

namespace {

using namespace tsRtm;

void hold(bool promise) {
    if (!promise) std::abort();
}

constexpr int32 kMostPages = 200;

}  // namespace

// What the fonts' library has read of them stays until the program ends.
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }

extern "C" int LLVMFuzzerInitialize(int* count, char*** words) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static QGuiApplication application(*count, *words);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size == 0) return 0;
    static desktop::RichText texts;
    const int32 width = data[0] * 40, height = 9000;
    const Text rtf = u"{\\rtf1" + fromUtf8({reinterpret_cast<const char*>(data), size}).substr(1);
    platform::PlacedText placed;
    placed.text = texts.read(rtf);
    placed.width = width;
    placed.height = height;
    const int32 length = placed.text->length();
    hold(length >= 0 && static_cast<std::size_t>(length) <= 70 * rtf.size());
    const auto begin = texts.fit(placed, height);
    QImage page(120, 90, QImage::Format_RGB32);
    for (int32 pages = 0; placed.from < length && pages < kMostPages; ++pages) {
        const auto fit = texts.fit(placed, height);
        hold(fit.used >= 0 && fit.used <= height);
        hold(fit.next < 0 || fit.next > placed.from);
        if (pages < 2 || fit.next < 0) {
            QPainter painter(&page);
            painter.scale(0.01, 0.01);
            desktop::RichText::draw(painter, placed);
        }
        if (fit.next < 0) break;
        placed.from = fit.next;
    }
    // Whatever was laid out since.
    placed.from = 0;
    hold(texts.fit(placed, height).next == begin.next);
    return 0;
}
