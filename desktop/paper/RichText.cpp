#include "desktop/paper/RichText.hpp"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <algorithm>
#include <list>

#include "desktop/paper/RichDocument.hpp"
#include "desktop/paper/RichLayout.hpp"

namespace tsRtm::desktop {
namespace {

int32 bgr(const QColor& colour) { return colour.red() | colour.green() << 8 | colour.blue() << 16; }

}  // namespace

// Layouts of texts that pages still hold, the one used last in front.
class RichLayouts {
 public:
    RichLayout& of(const platform::FormattedText& text, int32 from, int32 width) {
        const auto found = std::ranges::find_if(kept_, [&](const Kept& one) {
            return one.text == &text && one.width == width && (one.from == from || one.layout.begins(from));
        });
        if (found != kept_.end()) {
            kept_.splice(kept_.begin(), kept_, found);
            return kept_.front().layout;
        }
        kept_.emplace_front(text, from, width);
        int64 size = 0;
        std::size_t number = 0;
        std::erase_if(kept_, [&](const Kept& one) {
            size += one.layout.size();
            return ++number > 1 && (number > kMost || size > kMostCharacters);
        });
        return kept_.front().layout;
    }
    void forget(const platform::FormattedText* text) {
        std::erase_if(kept_, [&](const Kept& one) { return one.text == text; });
    }

 private:
    static constexpr std::size_t kMost = 8;
    static constexpr int64 kMostCharacters = 4000000;

    struct Kept {
        Kept(const platform::FormattedText& theText, int32 theFrom, int32 theWidth)
            : text(&theText), from(theFrom), width(theWidth), layout(theText.rtf(), theFrom, theWidth) {}
        const platform::FormattedText* text;
        int32 from, width;
        RichLayout layout;
    };
    std::list<Kept> kept_;
};

namespace {

class KeptText final : public platform::FormattedText {
 public:
    KeptText(TextView rtf, std::shared_ptr<RichLayouts> layouts) : rtf_(rtf), layouts_(std::move(layouts)) {
        if (!rtf.starts_with(u'{')) return;
        QTextDocument document;
        document.setUndoRedoEnabled(false);
        fillDocument(document, rtf);
        length_ = std::max(document.characterCount() - 1, 0);
    }
    ~KeptText() override { layouts_->forget(this); }
    KeptText(const KeptText&) = delete;
    KeptText& operator=(const KeptText&) = delete;

    TextView rtf() const override { return rtf_; }
    int32 length() const override { return length_; }
    RichLayout& laidOut(int32 from, int32 width) const { return layouts_->of(*this, from, width); }

 private:
    Text rtf_;
    int32 length_ = 0;
    std::shared_ptr<RichLayouts> layouts_;
};

RichLayout& layoutOf(const platform::PlacedText& text) {
    return static_cast<const KeptText&>(*text.text).laidOut(text.from, text.width);
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
