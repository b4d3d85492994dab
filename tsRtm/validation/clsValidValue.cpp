#include "tsRtm/validation/clsValidValue.hpp"

#include <bit>

#include "tsRtm/frame/text/NumberText.hpp"
#include "tsRtm/validation/texts/Quietly.hpp"

namespace tsRtm {
namespace {

// A little within the range of all numbers.
constexpr float64 kLowest = std::bit_cast<float64>(uint64{0xFFEFFFFFFFFFFFB0});
constexpr float64 kHighest = std::bit_cast<float64>(uint64{0x7FEFFFFFFFFFFFB0});
constexpr std::size_t kMostCharacters = 4096;  // that are read of a number
constexpr float64 kToldFrom = 1E+300;          // limits beyond are none that one tells

}  // namespace

clsValidValue::clsValidValue() noexcept : minimum_(kLowest), maximum_(kHighest) {}

float64 clsValidValue::NumberOf(TextView text) {
    // As far as a number can go: what follows may be long, and so may what has its characters.
    text = text.substr(0, kMostCharacters);
    Text number(text.substr(0, text.find_first_not_of(u" +-.,0123456789eE")));
    for (auto& c : number)
        if (c == u',') c = u'.';
    return Val(number);
}

eValidResult clsValidValue::Check(const std::shared_ptr<iValidControl>& Ctrl, TextView Wert) {
    message_.clear();
    bool passed = true;
    if (!Wert.empty()) {
        const float64 number = NumberOf(Wert);
        passed = number >= minimum_ && number <= maximum_;
        if (!passed && Ctrl)
            if (const auto decimals = quietly([&] { return Ctrl->Decimals(); })) decimals_ = decimals;
    } else if (has(voRequired)) {
        passed = false;
        message_ = u"Es ist eine Eingabe notwendig";
    }
    // An empty value that may be empty is not as long as the field either, and fails here.
    if (passed && has(voSpecial)) {
        const auto length = Ctrl ? quietly([&] { return Ctrl->MaxLength(); }) : std::nullopt;
        passed = length && *length == static_cast<int64>(Wert.size());
        if (!passed) message_ = u"Das Feld muss ausgefüllt sein";
    }
    return grade(passed);
}

Text clsValidValue::ShortText() const {
    if (!errorMsg_.empty()) return errorMsg_;
    if (!message_.empty()) return message_;
    Text text = u"Nur Werte";
    if (minimum_ >= -kToldFrom) text += u" von " + plainNumber(minimum_);
    if (maximum_ < kToldFrom) text += u" bis " + plainNumber(maximum_);
    return text;
}

Text clsValidValue::Msg() const { return description_.empty() ? ShortText() : description_; }

}  // namespace tsRtm
