#include "cli/print/Flow.hpp"

#include <algorithm>

#include "cli/shared/CliError.hpp"

namespace tsRtm::cli {

using platform::mmToTwips;

constexpr std::size_t kLook = 1000;  // characters

Flow::Flow(PrintJob& job, std::function<void()> frame)
    : job_(job), area_(job.area()), frame_(std::move(frame)), row_(area_.top + job.lineHeight()) {
    frame_();
}

void Flow::newPage() {
    job_.nextPage();
    row_ = area_.top + job_.lineHeight();
    frame_();
}

// With a line's end where a word is wider than any line: a job lets it run over the edge.
Text Flow::cut(TextView paragraph) {
    constexpr TextView breaksBehind = u" /,.-:;+)\r\n";
    const int32 room = mmToTwips(area_.width());
    Text text;
    int32 width = 0;
    for (std::size_t i = 0; i < paragraph.size(); ++i) {
        const auto letter = paragraph.substr(i, 1);
        const int32 more = job_.druck().TextWidth(letter);
        const bool second = letter[0] >= 0xDC00 && letter[0] <= 0xDFFF;  // half of a character
        if (width + more > room && !second) {
            text += u'\n';
            width = 0;
        }
        width = breaksBehind.find(letter[0]) == TextView::npos ? width + more : 0;
        text += letter;
    }
    return text;
}

float64 Flow::heightOf(TextView text) {
    float64 row = row_;
    job_.druck().SetzTextMM(text, row, area_.left, area_.width(), job_.size(), 0, job_.lineHeight(), true,
                            true);
    return row - row_;
}

void Flow::write(TextView text) {
    job_.druck().SetzTextMM(text, row_, area_.left, area_.width(), job_.size(), 0, job_.lineHeight());
}

void Flow::add(Text paragraph) {
    // The row is that of a line's foot, so the last line may stand on the bottom.
    const auto fits = [&](TextView text) { return heightOf(text) <= room() + job_.lineHeight(); };
    paragraph = cut(paragraph);
    for (;;) {
        // As many characters as the page takes; a page takes only so many of a long text.
        std::size_t least = 0, most = kLook;
        while (most < paragraph.size() && fits(TextView(paragraph).substr(0, most))) most *= 2;
        most = std::min(most, paragraph.size());
        if (most == paragraph.size() && fits(paragraph)) break;
        while (most - least > 1) {
            const auto middle = (least + most) / 2;
            (fits(TextView(paragraph).substr(0, middle)) ? least : most) = middle;
        }
        // Not within a word, if there is another place.
        const auto blank = TextView(paragraph).substr(0, least).find_last_of(u" \n");
        if (blank != TextView::npos && blank > 0) least = blank + 1;
        if (room() < 0) least = 0;
        if (least > 0) write(TextView(paragraph).substr(0, least));
        paragraph.erase(0, least);
        newPage();
        if (paragraph.empty()) return;
    }
    write(paragraph);
}

void flowRtf(PrintJob& job, TextView rtf, const Area& first, const Area& other,
             const std::function<void()>& frame) {
    const Area* area = &first;
    frame();
    for (int32 from = 0; from >= 0;) {
        int32 height = mmToTwips(area->height());
        const int32 next = job.druck().PrintRTFTextNeu(rtf, mmToTwips(area->left), mmToTwips(area->top),
                                                       mmToTwips(area->width()), height, from);
        // A page that took nothing would take nothing again.
        if (next == from && area == &other) throw CliError("the text does not fit on the page");
        from = next;
        area = &other;
        if (from < 0 || job.druck().Abbruch()) return;
        job.nextPage();
        frame();
    }
}

Text textOfFile(const std::string& file, FileEncoding encoding) {
    InputFile input(file);
    std::string bytes(static_cast<std::size_t>(input.size()), '\0');
    bytes.resize(input.read(0, bytes));
    if (encoding == FileEncoding::automatic) encoding = detectEncoding(input);
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (encoding == FileEncoding::utf8 && bytes.starts_with(mark)) bytes.erase(0, mark.size());
    auto text = decodeText(bytes, encoding);
    if (!text) throw CliError("cannot read '" + file + "': it is not in " + encodingName(encoding));
    return *text;
}

std::string baseName(const std::string& file) { return file.substr(file.find_last_of('/') + 1); }

}  // namespace tsRtm::cli
