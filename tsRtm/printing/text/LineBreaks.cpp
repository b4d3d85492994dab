#include "tsRtm/printing/text/LineBreaks.hpp"

#include <algorithm>

namespace tsRtm {
namespace {

constexpr TextView kBreaksBehind = u" /,.-:;+)";

// Up to and including the first character that a line may break behind.
TextView nextWord(TextView rest) noexcept {
    const auto end = rest.find_first_of(kBreaksBehind);
    return rest.substr(0, end == TextView::npos ? end : end + 1);
}

class Breaker {
 public:
    Breaker(int32 limit, const std::function<int32(TextView)>& width)
        : limit_(limit), width_(width), blank_(width(u" ")) {}

    void paragraph(TextView text) {
        text = trimRight(text);
        while (!text.empty()) {
            const TextView word = nextWord(text);
            add(word);
            text.remove_prefix(word.size());
        }
        endLine();
    }

    std::vector<Text> lines;

 private:
    void add(TextView word) {
        const int32 whole = width_(word);
        // The blank behind a word needs no room at the end of a line.
        const int32 needed = whole - (word.ends_with(u' ') ? blank_ : 0);
        if (word != u" " && !line_.empty() && int64{used_} + needed > limit_) endLine();
        line_ += word;
        used_ += whole;
    }
    void endLine() {
        // Blanks there would shift what is centred or set to the right, and be underlined.
        lines.emplace_back(trimRight(line_));
        line_.clear();
        used_ = 0;
    }

    int32 limit_;
    const std::function<int32(TextView)>& width_;
    int32 blank_;
    Text line_;
    int32 used_ = 0;
};

}  // namespace

std::vector<Text> brokenLines(TextView text, int32 limit, const std::function<int32(TextView)>& width) {
    Breaker breaker(limit, width);
    do {
        const auto end = text.find_first_of(u"\r\n");
        breaker.paragraph(text.substr(0, end));
        const std::size_t marks = end == TextView::npos ? 0 : text.substr(end).starts_with(u"\r\n") ? 2 : 1;
        text.remove_prefix(end == TextView::npos ? text.size() : end + marks);
    } while (!text.empty());
    return std::move(breaker.lines);
}

}  // namespace tsRtm
