#include "tsRtm/frame/text/NumberText.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr int kSignificantDigits = 15;

// A number as digits: 0.d1d2d3... times 10 to the power of `point`.
struct Digits {
    std::string digits;
    int point = 0;
};

Digits significantDigits(float64 magnitude) {
    char text[40];
    const auto end = std::to_chars(text, text + sizeof text, magnitude, std::chars_format::scientific,
                                   kSignificantDigits - 1)
                         .ptr;
    const BytesView scientific(text, static_cast<std::size_t>(end - text));
    const std::size_t exponentAt = scientific.find('e') + 1;
    Digits out;
    for (const char c : scientific.substr(0, exponentAt - 1))
        if (c != '.') out.digits.push_back(c);
    const char* exponent = text + exponentAt + (text[exponentAt] == '+' ? 1 : 0);
    std::from_chars(exponent, end, out.point);
    ++out.point;
    return out;
}

// Cuts to `keep` digits, half away from zero; a carry past the front moves the point.
void roundDigits(Digits& number, int keep) {
    if (keep >= static_cast<int>(number.digits.size())) return;
    if (keep < 0) {
        number.digits.clear();
        return;
    }
    const auto at = static_cast<std::size_t>(keep);
    const bool up = number.digits[at] >= '5';
    number.digits.resize(at);
    if (!up) return;
    for (std::size_t i = at; i-- > 0; number.digits[i] = '0') {
        if (number.digits[i] != '9') {
            ++number.digits[i];
            return;
        }
    }
    number.digits.insert(number.digits.begin(), '1');
    ++number.point;
}

void requireFinite(float64 value) {
    if (!std::isfinite(value)) raise(6, u"clsRtm:Format", u"Überlauf");
}

Text widen(BytesView ascii) { return Text(ascii.begin(), ascii.end()); }

// The text without thousands marks and with "." for the decimal mark.
Text machineForm(TextView text, TextView decimalMark, TextView thousandsMark) {
    Text out(text);
    const auto mark = thousandsMark.empty() ? TextView::npos : text.find(thousandsMark);
    if (mark != TextView::npos) {
        // Thousands marks behind the decimal mark are none; then "," is what may stand in the way.
        const bool inFront = mark < text.find(decimalMark);
        out = replaceAll(out, inFront ? thousandsMark : TextView(u","), u"");
    }
    return replaceAll(out, decimalMark, u".");
}

}  // namespace

DecimalForm decimalForm(float64 value, int32 decimals) {
    requireFinite(value);
    const int places = std::clamp(decimals, 0, 99);
    Digits number = significantDigits(std::fabs(value));
    roundDigits(number, number.point + places);

    DecimalForm form;
    const std::string& digits = number.digits;
    form.negative = std::signbit(value) && digits.find_first_not_of('0') != std::string::npos;
    const auto inFront = static_cast<std::size_t>(std::max(number.point, 0));
    form.whole = digits.substr(0, inFront);
    form.whole.append(inFront - form.whole.size(), '0');
    if (form.whole.empty() || form.whole.find_first_not_of('0') == std::string::npos) form.whole = "0";
    form.fraction.assign(static_cast<std::size_t>(std::clamp(-number.point, 0, places)), '0');
    if (inFront < digits.size()) form.fraction += digits.substr(inFront);
    form.fraction.resize(static_cast<std::size_t>(places), '0');
    return form;
}

Text formatNumber(float64 value, int32 decimals, bool thousands) {
    const auto& locale = rtmMain::state().locale;
    return formatNumber(value, decimals, locale.sepDec, thousands ? TextView(locale.sep1000) : TextView());
}

Text formatNumber(float64 value, int32 decimals, TextView decimalMark, TextView thousandsMark) {
    const DecimalForm form = decimalForm(value, decimals);
    Text out;
    if (form.negative) out.push_back(u'-');
    for (std::size_t i = 0; i < form.whole.size(); ++i) {
        if (i != 0 && (form.whole.size() - i) % 3 == 0) out.append(thousandsMark);
        out.push_back(static_cast<char16_t>(form.whole[i]));
    }
    if (!form.fraction.empty()) out.append(decimalMark).append(widen(form.fraction));
    return out;
}

Text plainNumber(float64 value) {
    requireFinite(value);
    if (value == 0) return u"0";
    Digits number = significantDigits(std::fabs(value));
    number.digits.erase(number.digits.find_last_not_of('0') + 1);
    const auto count = static_cast<int>(number.digits.size());
    const bool exponent = number.point > kSignificantDigits || count - number.point > kSignificantDigits;
    const int point = exponent ? 1 : number.point;

    std::string digits = number.digits;
    if (point <= 0) digits.insert(0, static_cast<std::size_t>(1 - point), '0');
    const auto inFront = static_cast<std::size_t>(std::max(point, 1));
    if (digits.size() < inFront) digits.append(inFront - digits.size(), '0');
    Text out = value < 0 ? u"-" : u"";
    out += widen(BytesView(digits).substr(0, inFront));
    if (digits.size() > inFront)
        out += rtmMain::state().locale.sepDec + widen(BytesView(digits).substr(inFront));
    if (!exponent) return out;
    const int power = number.point - 1;
    const Text magnitude = toText(std::abs(power));
    out += power < 0 ? u"E-" : u"E+";
    return out + (magnitude.size() < 2 ? u"0" : u"") + magnitude;
}

float64 TSVal(TextView text) {
    const auto& locale = rtmMain::state().locale;
    if (locale.sepDec.empty() || text.find(locale.sepDec) == TextView::npos) return Val(text);
    return Val(machineForm(text, locale.sepDec, locale.sep1000));
}

Text TSStr(float64 Zahl, int32 NachKomma, bool Mit1000er) { return formatNumber(Zahl, NachKomma, Mit1000er); }

// Every ",", whatever the decimal mark is.
Text TSString(float64 Zahl) { return replaceAll(formatNumber(Zahl, 2), u",", u"."); }

void Runden(int32 NachKomma, float64& Wert, Text& SWert) {
    const Text shown = formatNumber(Wert, std::clamp(NachKomma, 0, 7));
    SWert = replaceAll(shown, rtmMain::state().locale.sepDec, u".");
    Wert = Val(SWert);
}

void Waehrung(float64 Wert, Text& SWert) { SWert = formatNumber(Wert, 2, true); }

float64 HolZahl(TextView text, int32 Position, int32& Laenge) {
    return HolZahl(text, Position, Laenge, std::numeric_limits<int32>::max());
}

float64 HolZahl(TextView text, int32 Position, int32& Laenge, int32 longest) {
    if (Position < 1 || Laenge < 0) return 0;
    const std::size_t first = static_cast<std::size_t>(Position) - 1;
    bool mark = false;
    for (; Laenge < longest && first + static_cast<std::size_t>(Laenge) < text.size(); ++Laenge) {
        const char16_t c = text[first + static_cast<std::size_t>(Laenge)];
        const bool isMark = c == u'.' || c == u',';
        const bool digit = c >= u'0' && c <= u'9';
        if (!digit && !(isMark && !mark) && !(c == u'-' && Laenge == 0)) break;
        mark |= isMark;
    }
    return Laenge > 0 && first < text.size() ? TSVal(text.substr(first, static_cast<std::size_t>(Laenge)))
                                             : 0;
}

}  // namespace tsRtm
