#pragma once
// The records of a DTAZV payment file, field by field: one "Q" (who pays), a "T" for each transfer, one "Z"
// (totals). Records follow each other without line ends; a file of n transfers has 512 + 768 n bytes.
#include <span>

#include "tsRtm/banking/payments/FixedField.hpp"

namespace tsRtm::payments {

struct FieldRow {
    BytesView name;
    std::size_t offset;  // within the record
    FieldForm form;      // width; filled with zeros, else blanks; left aligned, else right
    BytesView start;     // value of a new record
};

constexpr FieldForm blanks(int32 width) { return {width, false, true}; }  // behind the value
constexpr FieldForm zeros(int32 width) { return {width, true, false}; }   // in front of it
constexpr FieldForm zerosBehind(int32 width) { return {width, true, true}; }

inline constexpr FieldRow kHeaderRows[] = {
    {"Satzlaenge", 0, zeros(4), "0256"},
    {"Satzart", 4, blanks(1), "Q"},
    {"BLZ", 5, zeros(8), ""},
    {"Kontonummer", 13, zeros(10), ""},
    {"Name1", 23, blanks(35), ""},
    {"Name2", 58, blanks(35), ""},
    {"Strasse", 93, blanks(35), ""},
    {"PLZOrt", 128, blanks(35), ""},
    {"Erstellungsdatum", 163, zeros(6), ""},
    {"Nummer", 169, zeros(2), "1"},
    {"ExecutionDate", 171, zeros(6), ""},
    {"Weiterleitung", 177, blanks(1), "N"},
    {"BundeslandKey", 178, zeros(2), ""},
    {"BLZ_A", 180, zeros(8), ""},
    {"Reserved", 188, blanks(68), ""},
};
enum HeaderField : std::size_t {
    hSatzlaenge,
    hSatzart,
    hBLZ,
    hKontonummer,
    hName1,
    hName2,
    hStrasse,
    hPLZOrt,
    hErstellungsdatum,
    hNummer,
    hExecutionDate,
    hWeiterleitung,
    hBundeslandKey,
    hBLZ_A,
    hReserved
};

inline constexpr FieldRow kOrderRows[] = {
    {"SatzLaenge", 0, zeros(4), "0768"},
    {"SatzArt", 4, blanks(1), "T"},
    {"BLZ_B", 5, zeros(8), ""},
    {"ISOCode_B", 13, blanks(3), "EUR"},
    {"Kontonummer_B", 16, zeros(10), ""},
    {"ExecutionDate", 26, zeros(6), ""},
    {"BLZ_E", 32, zeros(8), ""},
    {"ISOCode_E", 40, blanks(3), "EUR"},
    {"Kontonummer_E", 43, zeros(10), ""},
    {"BIC", 53, blanks(11), ""},
    {"BankLaenderCode", 64, blanks(3), ""},
    {"Bank_Name1", 67, blanks(35), ""},
    {"Bank_Name2", 102, blanks(35), ""},
    {"Bank_Strasse", 137, blanks(35), ""},
    {"Bank_PLZOrt", 172, blanks(35), ""},
    {"LaenderCode", 207, blanks(3), ""},
    {"Name1", 210, blanks(35), ""},
    {"Name2", 245, blanks(35), ""},
    {"Strasse", 280, blanks(35), ""},
    {"PLZOrt", 315, blanks(35), ""},
    {"Ordervermerk", 350, blanks(70), ""},
    {"IBAN", 420, blanks(35), ""},
    {"Auftragswaehrung", 455, blanks(3), "EUR"},
    {"Betrag_Vor", 458, zeros(14), ""},
    {"Betrag_Nach", 472, zerosBehind(3), ""},  // so 5 cents stand as "500", just as 50 do
    {"Verwendungszweck1", 475, blanks(35), ""},
    {"Verwendungszweck2", 510, blanks(35), ""},
    {"Verwendungszweck3", 545, blanks(35), ""},
    {"Verwendungszweck4", 580, blanks(35), ""},
    {"Weisungsschluessel1", 615, zeros(2), ""},
    {"Weisungsschluessel2", 617, zeros(2), ""},
    {"Weisungsschluessel3", 619, zeros(2), ""},
    {"Weisungsschluessel4", 621, zeros(2), ""},
    {"WeisungsschluesselZusatz", 623, blanks(25), ""},
    {"Entgeltregelung", 648, zeros(2), "00"},
    {"Zahlungsart", 650, zeros(2), "13"},
    {"VariableText", 652, blanks(27), ""},
    {"Ansprechpartner", 679, blanks(35), ""},
    {"Meldeschluessel", 714, zeros(1), "0"},
    {"Reserved", 715, blanks(51), ""},
    {"Meldeteil", 766, zeros(2), "00"},
};
// The suffix B is the bank of who pays, E that of who is paid.
enum OrderField : std::size_t {
    oSatzLaenge,
    oSatzArt,
    oBLZB,
    oISOCodeB,
    oKontonummerB,
    oExecutionDate,
    oBLZE,
    oISOCodeE,
    oKontonummerE,
    oBIC,
    oBankLaenderCode,
    oBankName1,
    oBankName2,
    oBankStrasse,
    oBankPLZOrt,
    oLaenderCode,
    oName1,
    oName2,
    oStrasse,
    oPLZOrt,
    oOrdervermerk,
    oIBAN,
    oAuftragswaehrung,
    oBetragVor,
    oBetragNach,
    oVerwendungszweck1,
    oVerwendungszweck2,
    oVerwendungszweck3,
    oVerwendungszweck4,
    oWeisungsschluessel1,
    oWeisungsschluessel2,
    oWeisungsschluessel3,
    oWeisungsschluessel4,
    oWeisungsschluesselZusatz,
    oEntgeltregelung,
    oZahlungsart,
    oVariableText,
    oAnsprechpartner,
    oMeldeschluessel,
    oReserved,
    oMeldeteil
};

inline constexpr FieldRow kFooterRows[] = {
    {"Satzlaenge", 0, zeros(4), "0256"}, {"Satzart", 4, blanks(1), "Z"},
    {"TotalBetrag", 5, zeros(15), ""},   {"TotalTransactions", 20, zeros(15), ""},
    {"Reserved", 35, blanks(221), ""},
};
enum FooterField : std::size_t { fSatzlaenge, fSatzart, fTotalBetrag, fTotalTransactions, fReserved };

inline constexpr std::size_t kEndRecord = 256;  // header and footer
inline constexpr std::size_t kOrderRecord = 768;
inline constexpr std::size_t kMostFields = std::size(kOrderRows);

// Whether the fields follow each other up to the record's end.
constexpr bool fills(std::span<const FieldRow> rows, std::size_t size) {
    std::size_t end = 0;
    for (const FieldRow& row : rows) {
        if (row.offset != end) return false;
        end += static_cast<std::size_t>(row.form.width);
    }
    return end == size;
}
static_assert(fills(kHeaderRows, kEndRecord) && kHeaderRows[hReserved].name == "Reserved");
static_assert(fills(kOrderRows, kOrderRecord) && kOrderRows[oMeldeteil].name == "Meldeteil");
static_assert(fills(kFooterRows, kEndRecord) && kFooterRows[fReserved].name == "Reserved");

}  // namespace tsRtm::payments
