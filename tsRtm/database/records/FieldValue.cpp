#include "tsRtm/database/records/FieldValue.hpp"

#include <algorithm>

#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/NumberText.hpp"
#include "tsRtm/types/Digits.hpp"

namespace tsRtm {
namespace {

constexpr std::size_t kExactDigits = 15;

// Whether a stored number has its final form already, but for the decimal mark: most have. A zero has not.
bool isFinal(TextView stored, std::size_t decimals) noexcept {
    if (stored.starts_with(u'-')) stored.remove_prefix(1);
    if (stored.size() < decimals + 2 || stored.size() > kExactDigits) return false;
    const std::size_t mark = stored.size() - decimals - 1;
    if (stored[mark] != u'.' || (stored.front() == u'0' && mark > 1)) return false;
    bool zero = true;
    for (std::size_t i = 0; i < stored.size(); ++i) {
        if (i != mark && !isDigit(stored[i])) return false;
        zero = zero && stored[i] < u'1';
    }
    return !zero;
}

}  // namespace

void showNumber(const FieldLayout& field, TextView stored, Text& into) {
    const int32 decimals = field.nachKomma & 7;
    const Text& mark = rtmMain::state().locale.sepDec;
    if (field.nachKomma > 0 && decimals > 0 && mark.size() == 1 && mark[0] != u'-' && !isDigit(mark[0]) &&
        isFinal(stored, static_cast<std::size_t>(decimals))) {
        into = stored;
        into[into.size() - static_cast<std::size_t>(decimals) - 1] = mark[0];
        return;
    }
    if (field.nachKomma < 1) {
        into = plainNumber(TSVal(stored));
        return;
    }
    into = formatNumber(TSVal(stored), decimals, false);
    // A raw word with flags alone still asks for the decimal mark: "12,".
    if (decimals == 0) into += mark;
}

Text storedNumber(const FieldLayout& field, TextView typed) {
    const bool both = typed.find(u',') != TextView::npos && typed.find(u'.') != TextView::npos;
    // Without decimals every "." is a thousands mark. The raw word decides, so a field with a page break or
    // another mark beside its decimals counts as one with decimals.
    const bool whole = field.nachKomma < 1;
    const Text out = whole || both ? replaceAll(typed, u".", u"") : Text(typed);
    return whole ? out : replaceAll(out, u",", u".");
}

}  // namespace tsRtm
