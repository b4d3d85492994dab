#include "desktop/paper/RichText.hpp"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <algorithm>
#include <limits>
#include <list>

#include "desktop/paper/RichFlow.hpp"
#include "desktop/paper/RichLayout.hpp"

namespace tsRtm::desktop {
namespace {

int32 bgr(const QColor& colour) { return colour.red() | colour.green() << 8 | colour.blue() << 16; }

}  // namespace

// Layouts of parts of texts that pages still hold, the one used last in front.
class RichLayouts {
 public:
    // One that holds the page which begins there.
    RichLayout& of(const RichFlow& flow, int32 from, int32 width, int32 height) {
        constexpr int32 all = std::numeric_limits<int32>::max();
        for (int32 most = kPart;; most = most < all / 4 ? 4 * most : all) {
            const auto found = std::ranges::find_if(kept_, [&](const Kept& one) {
                return one.flow == &flow && one.width == width && one.layout.covers(from, height);
            });
            if (found != kept_.end()) {
                kept_.splice(kept_.begin(), kept_, found);
                return kept_.front().layout;
            }
            keep(flow, from, width, most);
            if (most == all) return kept_.front().layout;
        }
    }
    void forget(const RichFlow* flow) {
        std::erase_if(kept_, [&](const Kept& one) { return one.flow == flow; });
    }

 private:
    static constexpr std::size_t kMost = 100;
    static constexpr int32 kMostCharacters = 4000000;
    // Some pages of usual text: what is laid out twice is less than one of them.
    static constexpr int32 kPart = 20000;

    struct Kept {
        Kept(const RichFlow& theFlow, int32 from, int32 most, int32 theWidth)
            : flow(&theFlow), width(theWidth), layout(theFlow, from, most, theWidth) {}
        const RichFlow* flow;
        int32 width;
        RichLayout layout;
    };

    void keep(const RichFlow& flow, int32 from, int32 width, int32 most) {
        kept_.emplace_front(flow, from, most, width);
        int64 size = 0;
        std::size_t number = 0;
        std::erase_if(kept_, [&](const Kept& one) {
            size += one.layout.size();
            return ++number > 1 && (number > kMost || size > kMostCharacters);
        });
    }

    std::list<Kept> kept_;
};

namespace {

class KeptText final : public platform::FormattedText {
 public:
    KeptText(TextView rtf, std::shared_ptr<RichLayouts> layouts) : layouts_(std::move(layouts)) {
        if (rtf.starts_with(u'{')) flow_ = readFlow(rtf);
    }
    ~KeptText() override { layouts_->forget(&flow_); }
    KeptText(const KeptText&) = delete;
    KeptText& operator=(const KeptText&) = delete;

    int32 length() const override { return flow_.length(); }
    RichLayout& laidOut(const platform::PlacedText& text) const {
        return layouts_->of(flow_, text.from, text.width, text.height);
    }

 private:
    RichFlow flow_;
    std::shared_ptr<RichLayouts> layouts_;
};

RichLayout& layoutOf(const platform::PlacedText& text) {
    return static_cast<const KeptText&>(*text.text).laidOut(text);
}

}  // namespace

RichText::RichText() : layouts_(std::make_shared<RichLayouts>()) {}

std::shared_ptr<const platform::FormattedText> RichText::read(TextView rtf) {
    return std::make_shared<KeptText>(rtf, layouts_);
}

platform::TextFit RichText::fit(const platform::PlacedText& text, int32 pageHeight) {
    return layoutOf(text).fit(text.from, text.height, pageHeight);
}

void RichText::draw(QPainter& painter, const platform::PlacedText& text) {
    painter.save();
    painter.translate(text.left, text.top);
    layoutOf(text).draw(painter, text);
    painter.restore();
}

int32 RichText::windowText() { return bgr(QGuiApplication::palette().color(QPalette::WindowText)); }
int32 RichText::window() { return bgr(QGuiApplication::palette().color(QPalette::Window)); }

}  // namespace tsRtm::desktop
