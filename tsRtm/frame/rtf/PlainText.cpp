#include "tsRtm/frame/rtf/PlainText.hpp"

#include <utility>

#include "tsRtm/frame/rtf/Reader.hpp"

namespace tsRtm {
namespace {

class PlainText final : public rtf::Visitor {
 public:
    void onRun(const rtf::Run& run) override { text_ += run.text; }
    void onBreak(rtf::Break kind, const rtf::ParagraphFormat&) override {
        if (kind == rtf::Break::cell)
            text_ += u'\t';
        else if (kind != rtf::Break::end)
            text_ += u"\r\n";
    }
    Text take() noexcept { return std::move(text_); }

 private:
    Text text_;
};

}  // namespace

Text rtfToPlainText(TextView rtf) {
    PlainText plain;
    rtf::read(rtf, plain);
    return plain.take();
}

}  // namespace tsRtm
