#include "tsRtm/frame/ConversionsTopic.hpp"

#include <algorithm>

#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/ByteStrings.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/frame/text/NumberText.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr float64 kDmPerEuro = 1.95583;

// The mark inside a stored value of this type.
TextView valueMark(Typen type) {
    const auto& locale = rtmMain::state().locale;
    if (type == typWERT) return locale.sepDec;
    // The time mark, for dates too: stored data relies on it.
    if (type == typDATUM) return locale.sepTime;
    return {};
}

void replaceFirst(Text& text, TextView what, TextView by) {
    const auto at = what.empty() || by.empty() ? Text::npos : text.find(what);
    if (at != Text::npos) text.replace(at, what.size(), by);
}

int32 position(std::size_t found) noexcept {
    return found == TextView::npos ? 0 : static_cast<int32>(found) + 1;
}

}  // namespace

float64 ConversionsTopic::TSVal(TextView text) const { return tsRtm::TSVal(text); }
Text ConversionsTopic::TSStr(float64 Zahl, int32 NachKomma, bool Mit1000er) const {
    return tsRtm::TSStr(Zahl, NachKomma, Mit1000er);
}
Text ConversionsTopic::TSString(float64 Zahl) const { return tsRtm::TSString(Zahl); }
void ConversionsTopic::Runden(int32 NachKomma, float64& Wert, Text& SWert) const {
    tsRtm::Runden(NachKomma, Wert, SWert);
}
void ConversionsTopic::Waehrung(float64 Wert, Text& SWert) const { tsRtm::Waehrung(Wert, SWert); }
float64 ConversionsTopic::HolZahl(TextView text, int32 Position, int32& Laenge) const {
    return tsRtm::HolZahl(text, Position, Laenge);
}

float64 ConversionsTopic::ConvertEuro(float64 Wert, bool Richtung) const noexcept {
    return Richtung ? Wert / kDmPerEuro : Wert * kDmPerEuro;
}

bool ConversionsTopic::ToBool(TextView text) const {
    const auto& locale = rtmMain::state().locale;
    // The machine form is numeric under any locale. Three characters only: "0,01" is false, as stored
    // switches are.
    if (IstNumerisch(text, locale.sepDec, locale.sep1000) || IstNumerisch(text, u".", {}))
        return Val(text.substr(0, 3)) != 0;
    constexpr TextView kTrue[] = {u"T", u"TRUE", u"W", u"WAHR", u"J", u"JA", u"Y", u"YES"};
    return std::find(std::begin(kTrue), std::end(kTrue), upper(text)) != std::end(kTrue);
}

Text ConversionsTopic::ConvertToWin(TextView A, Typen Typ) const {
    Text out = OemToChar(A);
    replaceFirst(out, u".", valueMark(Typ).substr(0, 1));
    return out;
}

Text ConversionsTopic::ConvertToDos(TextView A, Typen Typ) const {
    Text out = CharToOem(A);
    replaceFirst(out, valueMark(Typ), u".");
    return out;
}

Text ConversionsTopic::UTF8ToAnsi(TextView text) const { return fromUtf8(toAnsi(text)); }
ByteText ConversionsTopic::AnsiToUTF8(TextView text) const { return fromAnsi(toUtf8(text)); }

ByteText ConversionsTopic::MKI(int32 Zahl) const { return tsRtm::MKI(Zahl); }
ByteText ConversionsTopic::MKL(int32 Wert) const { return tsRtm::MKL(Wert); }
int32 ConversionsTopic::ByteVal(TextView text, int32 Position) const noexcept {
    return tsRtm::ByteVal(text, Position);
}
int32 ConversionsTopic::WordVal(TextView s, int32 Posi) const noexcept { return tsRtm::WordVal(s, Posi); }
int32 ConversionsTopic::LongVal(TextView text, int32 Position) const noexcept {
    return tsRtm::LongVal(text, Position);
}
int32 ConversionsTopic::LoWord(int32 value) const noexcept { return tsRtm::LoWord(value); }
int32 ConversionsTopic::HiWord(int32 value) const noexcept { return tsRtm::HiWord(value); }
int32 ConversionsTopic::LoByte(int32 value) const noexcept { return tsRtm::LoByte(value); }
int32 ConversionsTopic::HiByte(int32 value) const noexcept { return tsRtm::HiByte(value); }

int32 ConversionsTopic::Tally(TextView text, TextView Char, bool JedesZeichen) const {
    int32 count = 0;
    if (JedesZeichen) {
        for (const char16_t c : Char) count += static_cast<int32>(std::count(text.begin(), text.end(), c));
    } else if (!Char.empty()) {
        for (auto at = text.find(Char); at != TextView::npos; at = text.find(Char, at + Char.size())) ++count;
    }
    return count;
}

int32 ConversionsTopic::InstrAny(TextView text, TextView Zeichen, int32 Start) const noexcept {
    return position(text.find_first_of(Zeichen, static_cast<std::size_t>(std::max(Start, 1)) - 1));
}

int32 ConversionsTopic::InstrNext(TextView text, TextView Zeichenkette, int32 Start,
                                  bool NachRechts) const noexcept {
    if (NachRechts) return InstrAny(text, Zeichenkette, Start);
    if (text.empty() || Zeichenkette.empty()) return 0;
    const auto length = static_cast<int32>(text.size());
    const int32 from = Start < 1 || Start > length ? length : Start;
    return position(text.find_last_of(Zeichenkette, static_cast<std::size_t>(from) - 1));
}

void ConversionsTopic::ChangeChar(Text& A, int16 AltChar, int16 NeuChar) const noexcept {
    std::replace(A.begin(), A.end(), static_cast<char16_t>(AltChar), static_cast<char16_t>(NeuChar));
}

Text ConversionsTopic::LPSTRToVB(TextView A) const { return Text(A.substr(0, A.find(u'\0'))); }

}  // namespace tsRtm
