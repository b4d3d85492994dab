#include "tsRtm/validation/clsValidLike.hpp"

#include "tsRtm/validation/texts/Likeness.hpp"
#include "tsRtm/validation/texts/Regex.hpp"

namespace tsRtm {

clsValidLike::clsValidLike() = default;
clsValidLike::~clsValidLike() = default;

void clsValidLike::Pattern(TextView value) {
    pattern_ = value;
    regex_.reset();
}

void clsValidLike::Options(int32 value) {
    ValidCheckerSettings::Options(value);
    regex_.reset();
}

void clsValidLike::Dispose() { regex_.reset(); }

eValidResult clsValidLike::Check(const std::shared_ptr<iValidControl>&, TextView Wert) {
    if (Wert.empty()) return grade(!has(voRequired));
    if (mode() == loLike) return grade(isLike(Wert, pattern_));
    if (!regex_) regex_ = std::make_unique<Regex>(pattern_, has(loIgnoreCase));
    return grade(regex_->test(Wert));
}

Text clsValidLike::ShortText() const {
    return errorMsg_.empty() ? u"Die Eingabe entspricht nicht der Vorgabe für dieses Feld." : errorMsg_;
}

Text clsValidLike::Msg() const {
    return (description_.empty() ? ShortText() : description_) +
           u" Der reguläre Ausdruck für die Prüfung lautet: " + pattern_;
}

}  // namespace tsRtm
