#include "cli/print/ListPages.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::cli {
namespace {

constexpr float64 kBold = 1.12;  // by how much bold letters are wider, at most
constexpr float64 kGap = 2.5;    // millimetres between two columns
constexpr float64 kLeast = 8;    // of a column that must give room to others
constexpr int32 kSample = 2000;  // rows whose texts are measured; numbers always are: none may be cut

// 1234.5 with two decimals is "1.234,50".
Text amount(float64 value, int32 decimals) {
    const auto scaled = std::llround(std::fabs(value) * std::pow(10.0, decimals));
    std::string digits = std::to_string(scaled);
    const auto places = static_cast<std::size_t>(decimals);
    if (digits.size() <= places) digits.insert(0, places + 1 - digits.size(), '0');
    std::string text = decimals > 0 ? "," + digits.substr(digits.size() - places) : "";
    digits.resize(digits.size() - places);
    for (int32 i = 0; !digits.empty(); ++i, digits.pop_back())
        text.insert(0, (i > 0 && i % 3 == 0) ? std::string{digits.back(), '.'} : std::string{digits.back()});
    return fromUtf8((value < 0 && scaled > 0 ? "-" : "") + text);
}

Text today() {
    const auto day = rtmMain::system().clock.now().parts();
    return toText(day.day) + u"." + toText(day.month) + u"." + toText(day.year);
}

// What a first look at the rows tells.
struct Figures {
    std::vector<float64> widths;  // millimetres
    std::vector<float64> sums;
    int32 rows = 0;
};

class List {
 public:
    List(PrintJob& job, const Text& title, const std::vector<ListColumn>& columns)
        : job_(job), title_(title), columns_(columns), area_(job.area()) {}

    void look(const ListRows& rows) {
        figures_ = {{}, std::vector<float64>(columns_.size(), 0.0), 0};
        for (const auto& column : columns_) figures_.widths.push_back(kBold * width(column.title));
        rows([&](const std::vector<Text>& row) {
            for (std::size_t i = 0; i < columns_.size(); ++i) {
                if (columns_[i].sum) figures_.sums[i] += Val(row[i]);
                if (columns_[i].right || figures_.rows < kSample) widen(i, shown(i, row[i]));
            }
            ++figures_.rows;
        });
        for (std::size_t i = 0; i < columns_.size(); ++i)
            if (columns_[i].sum) widen(i, amount(figures_.sums[i], *columns_[i].sum), kBold);
        const bool sums =
            std::any_of(columns_.begin(), columns_.end(), [](const auto& c) { return c.sum.has_value(); });
        if (sums && !columns_.front().sum) widen(0, u"Summe", kBold);
        narrow();
    }

    void write(const ListRows& rows, int32 pages) {
        begin(pages);
        rows([&](const std::vector<Text>& row) {
            if (row_ + job_.lineHeight() > area_.bottom) {
                job_.nextPage();
                begin(pages);
            }
            std::vector<Text> texts;
            for (std::size_t i = 0; i < columns_.size(); ++i) texts.push_back(shown(i, row[i]));
            cells(texts, 0);
            row_ += job_.lineHeight();
        });
        if (std::none_of(columns_.begin(), columns_.end(), [](const auto& c) { return c.sum.has_value(); }))
            return;
        if (row_ + 2 * job_.lineHeight() > area_.bottom) {
            job_.nextPage();
            begin(pages);
        }
        rule();
        row_ += job_.lineHeight();
        std::vector<Text> sums;
        for (std::size_t i = 0; i < columns_.size(); ++i)
            sums.push_back(columns_[i].sum ? amount(figures_.sums[i], *columns_[i].sum) : Text());
        if (!columns_.front().sum) sums.front() = u"Summe";
        cells(sums, tsFett);
    }

 private:
    float64 width(TextView text) { return job_.druck().TextWidth(text) / platform::kTwipsPerMM; }
    void widen(std::size_t column, TextView text, float64 by = 1) {
        figures_.widths[column] = std::max(figures_.widths[column], by * width(text));
    }
    Text shown(std::size_t i, const Text& text) const {
        return columns_[i].sum && !text.empty() ? amount(Val(text), *columns_[i].sum) : text;
    }
    // The wide columns give what is too much.
    void narrow() {
        auto& widths = figures_.widths;
        const float64 room = area_.width() - kGap * static_cast<float64>(widths.size() - 1);
        const auto total = [&] { return std::accumulate(widths.begin(), widths.end(), 0.0); };
        // Texts are cut by whole millimetres.
        for (auto& one : widths) one += 0.5;
        for (int32 step = 0; step < 1000 && total() > room; ++step) {
            auto& widest = *std::max_element(widths.begin(), widths.end());
            if (widest <= kLeast) break;
            widest = std::max(widest - 1, kLeast);
        }
    }
    void begin(int32 pages) {
        auto& druck = job_.druck();
        job_.foot(pages, u"Stand " + today());
        druck.mm(area_.top, area_.left, title_, job_.size() + 4, tsFett);
        druck.Setz(-1, -1, job_.size(), 0, -1);
        row_ = area_.top + 3 * job_.lineHeight();
        std::vector<Text> titles;
        for (const auto& column : columns_) titles.push_back(column.title);
        cells(titles, tsFett);
        row_ += job_.lineHeight() / 4;
        rule();
        row_ += job_.lineHeight();
    }
    void rule() { job_.druck().LinieMM(row_, area_.left, row_, area_.right, false, bsNone, 10); }
    void cells(const std::vector<Text>& texts, int32 attributes) {
        float64 left = area_.left;
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            const float64 room = figures_.widths[i];
            if (!texts[i].empty() && left < area_.right) {
                Text text = texts[i];
                const bool right = columns_[i].right;
                job_.druck().MMExt(row_, right ? left + room : left, text, job_.size(),
                                   attributes + (right ? tsRechtbuendig : 0), 0, room);
            }
            left += room + kGap;
        }
    }

    PrintJob& job_;
    const Text& title_;
    const std::vector<ListColumn>& columns_;
    Area area_;
    Figures figures_;
    float64 row_ = 0;
};

}  // namespace

void printList(const PrintOptions& options, const Text& title, const std::vector<ListColumn>& columns,
               const ListRows& rows) {
    PrintJob job(options);
    List list(job, title, columns);
    bool looked = false;
    job.compose(toUtf8(title), [&](int32 pages) {
        if (!std::exchange(looked, true)) list.look(rows);
        list.write(rows, pages);
    });
}

}  // namespace tsRtm::cli
