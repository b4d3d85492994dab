#pragma once
// The topic of clsRtm for conversions: numbers and text, code pages, byte strings, searching in text.
#include "tsRtm/types/Text.hpp"
#include "tsRtm/types/Typen.hpp"

namespace tsRtm {

// Separators are those of the locale, read anew at each call. Positions are 1-based. Nothing raises on a bad
// argument but the number formats for an infinite number (6).
class ConversionsTopic {
 public:
    // Reads a number: a text with the decimal mark by the locale, one without it as Val does, so that "1.234"
    // is 1.234 also where "." is the thousands mark. 0 where nothing fits.
    float64 TSVal(TextView text) const;
    // Rounded half away from zero, by the 15 decimal digits that a number has: 1.005 gives 1,01.
    Text TSStr(float64 Zahl, int32 NachKomma = 2, bool Mit1000er = false) const;
    // The machine form: two decimals behind ".".
    Text TSString(float64 Zahl) const;
    // Rounds Wert to 0..7 places; SWert is its machine form.
    void Runden(int32 NachKomma, float64& Wert, Text& SWert) const;
    // SWert is the amount with two decimals and thousands marks.
    void Waehrung(float64 Wert, Text& SWert) const;
    // The number in a text from Position plus Laenge on: digits, one "." or ",", a "-" in front. Laenge grows
    // by the characters taken; 0 where there are none.
    float64 HolZahl(TextView text, int32 Position, int32& Laenge) const;
    // By the fixed rate 1.95583 DM (Council Regulation (EC) 2866/98): true gives Euro, false DM. Does not
    // round.
    float64 ConvertEuro(float64 Wert, bool Richtung) const noexcept;
    // Whether the first three characters of a numeric text are a number other than 0, or the text is "T",
    // "TRUE", "W", "WAHR", "J", "JA", "Y" or "YES" in any case.
    bool ToBool(TextView text) const;

    // From and to the DOS code page 850, best fit where there is no equal. Decimal and time marks of values
    // (typWERT, typDATUM) change with it.
    Text ConvertToWin(TextView A, Typen Typ) const;
    Text ConvertToDos(TextView A, Typen Typ) const;
    // From and to a ByteText of UTF-8; malformed sequences become U+FFFD.
    Text UTF8ToAnsi(TextView text) const;
    ByteText AnsiToUTF8(TextView text) const;

    // Whole numbers in byte strings, the low byte first: two bytes of the low word, and four.
    ByteText MKI(int32 Zahl) const;
    ByteText MKL(int32 Wert) const;
    // A byte, -1 outside the text; a word, 0..65535, and a signed number, 0 where they do not lie in it.
    int32 ByteVal(TextView text, int32 Position) const noexcept;
    int32 WordVal(TextView s, int32 Posi) const noexcept;
    int32 LongVal(TextView text, int32 Position) const noexcept;
    // Halves; the words and the low byte unsigned.
    int32 LoWord(int32 value) const noexcept;
    int32 HiWord(int32 value) const noexcept;
    int32 LoByte(int32 value) const noexcept;
    int32 HiByte(int32 value) const noexcept;

    // Occurrences of Char that do not overlap; with JedesZeichen those of each of its characters, added up. 0
    // for an empty Char.
    int32 Tally(TextView text, TextView Char, bool JedesZeichen = false) const;
    // The first place from Start on where one of the characters stands; 0 for none.
    int32 InstrAny(TextView text, TextView Zeichen, int32 Start = 1) const noexcept;
    // The same from Start to the right, or to the left down to 1. A Start outside the text is its end on the
    // way left, 1 on the way right where it is below 1.
    int32 InstrNext(TextView text, TextView Zeichenkette, int32 Start = 0,
                    bool NachRechts = true) const noexcept;
    // Replaces each code unit AltChar by NeuChar.
    void ChangeChar(Text& A, int16 AltChar, int16 NeuChar) const noexcept;
    // The text up to its first NUL; without one the whole text.
    Text LPSTRToVB(TextView A) const;
};

}  // namespace tsRtm
