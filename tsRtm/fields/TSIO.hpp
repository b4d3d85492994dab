#pragma once
// The description of one input or database field: place on a mask, length, type, texts, place in a record.
#include <memory>
#include <vector>

#include "tsRtm/types/Text.hpp"
#include "tsRtm/types/Typen.hpp"

namespace tsRtm {

// The standard words of TSIO::Typ. The low three bits are the data type, the rest are flags.
enum eTyp : int32 {
    tsAlles = 0,
    tsAlphanumerisch = 1,
    tsText = 2,
    tsZiffern_Sonderzeichen = 3,
    tsZiffern = 4,
    tsNumerisch = 5,
    tsSondertypen = 6,
    tsDate = 7,
    tsTagesdatum = 15,
    tsMemo = 22,
    tsKette = 38,
    tsKette_mit_F9 = 38,  // the same word as tsKette: a chain opens with F9 unless told otherwise
    tsKette_ohne_F9 = 46,
    tsMemoEncrypted = 54,
    tsCheckBox = 70,
    tsProperties = 86,
    tsBlob = 102,
    tsBlobEncrypted = 118,
    tsAutowertRef = 245,
    tsAutowert = 253,
    tsUnsichtbar = 254,
    tsKeine_Eingabe = 255,
};

// Flags of the type word.
enum eErweiterung : int32 {
    fkeine_EingabeMoeglichkeit = 8,
    fEingabe_notwendig = 16,
    fRechtsbuendig = 32,
    fAutoSkip = 64,
    fMussVoll = 128,
    fUnSichtbar = 256,
    fUniCode = 1024,
    fUTF8 = 2048,
};

// A type word with flags is a plain number.
constexpr int32 operator|(eTyp typ, eErweiterung flag) noexcept { return int32{typ} | int32{flag}; }
constexpr int32 operator|(Typen typ, eErweiterung flag) noexcept { return int32{typ} | int32{flag}; }

// Parts of the title text by their numbers.
enum eExtension : int32 {
    extHILFE = -1,
    extLIMITS = 0,
    extDATENBANK = 1,
    extCOMBOBOX = 2,
    extSEITENTITEL = 3,
    extKETTENWAHL = 4,
    extKETTENDB = 5,
    extDISPLAYWIDTH = 6,
    extNAMEN = 7,
    extSHELLEXECUTE = 8,
    extRIGHTS = 9,
};

enum eAusrichtung : int32 { ausrichtungLinks = 0, ausrichtungRechts = 1 };

// The description of one input field.
//
// Raises nothing. All answers are derived from the raw words Typ and NachKomma and from the compound text
//     caption "@" help "@" digit value "@" digit value ...
// where each digit is an eExtension number. The value of extNAMEN has the form NAME or NAME:OBJECTLIST, that
// of extDISPLAYWIDTH width or width/rest.
class TSIO {
 public:
    // Row and column on the mask, and its page from 1.
    int32 Zeile() const noexcept { return zeile_; }
    void Zeile(int32 value) noexcept { zeile_ = value; }
    int32 Spalte() const noexcept { return spalte_; }
    void Spalte(int32 value) noexcept { spalte_ = value; }
    int32 Seite() const noexcept { return seite_; }
    void Seite(int32 value) noexcept { seite_ = value; }

    // Characters of the field, on the mask and in a record; 5 for the pointer of a memo or a blob.
    int32 Laenge() const noexcept { return laenge_; }
    void Laenge(int32 value) noexcept { laenge_ = value; }
    // Offset in the record data in record units from 0, the deleted mark not counted.
    int32 Position() const noexcept { return position_; }
    void Position(int32 value) noexcept { position_ = value; }

    // The raw words. The low three bits of NachKomma are the decimals; 16 starts a mask page; 32 on a memo:
    // RTF.
    int32 Typ() const noexcept { return typ_; }
    void Typ(int32 value) noexcept { typ_ = value; }
    int32 NachKomma() const noexcept { return nachKomma_; }
    void NachKomma(int32 value) noexcept { nachKomma_ = value; }

    const Text& Titel() const noexcept { return titel_; }
    void Titel(TextView value) { titel_ = value; }
    const Text& Inhalt() const noexcept { return inhalt_; }
    void Inhalt(TextView value) { inhalt_ = value; }

    // The database field that a mask field shows, and the name by which the mask line told it; in a database
    // control the field's own number.
    int32 DBFeld() const noexcept { return dbFeld_; }
    void DBFeld(int32 value) noexcept { dbFeld_ = value; }
    const Text& DBFeldName() const noexcept { return dbFeldName_; }
    void DBFeldName(TextView value) { dbFeldName_ = value; }

    // Set by clsControl: named in an index; of type 254 or 255 with a chain control file.
    bool IstIndexFeld() const noexcept { return istIndexFeld_; }
    void IstIndexFeld(bool value) noexcept { istIndexFeld_ = value; }
    bool IstKetteFeld() const noexcept { return istKetteFeld_; }
    void IstKetteFeld(bool value) noexcept { istKetteFeld_ = value; }

    // 0 for the types 254 and 255. Writing replaces the low three bits only.
    Typen Datentyp() const noexcept;
    void Datentyp(Typen value) noexcept;
    bool ReadOnly() const noexcept { return has(fkeine_EingabeMoeglichkeit); }
    void ReadOnly(bool value) noexcept { set(fkeine_EingabeMoeglichkeit, value); }
    // Writing True does nothing: a field once hidden stays hidden.
    bool Visible() const noexcept;
    void Visible(bool value) noexcept;
    eAusrichtung Alignment() const noexcept;
    void Alignment(eAusrichtung value) noexcept { set(fRechtsbuendig, value == ausrichtungRechts); }

    bool IsAlpha() const noexcept;
    bool IsUnicode() const noexcept { return has(fUniCode); }
    bool IsUTF8() const noexcept { return has(fUTF8); }
    // The bits 32 and 16 of a memo's and a blob's word are no flags of eErweiterung: they tell the encrypted
    // kind.
    bool IsMemo() const noexcept;
    bool IsEncryptedMemo() const noexcept { return IsMemo() && has(32); }
    bool IsRTF() const noexcept { return IsMemo() && (nachKomma_ & 32) != 0; }
    bool IsBlob() const noexcept;
    bool IsEncryptedBlob() const noexcept { return IsBlob() && has(16); }
    bool IsKette() const noexcept { return istKetteFeld_ || (typ_ & kKindMask) == tsKette; }

    Text Caption() const;
    void Caption(TextView value);
    Text Hilfe() const;
    void Hilfe(TextView value);
    // A part of Titel by its eExtension number; empty for a part that is missing and for a number out of
    // range, which is ignored on writing.
    Text EXTENSION(int32 ExtNr) const;
    void EXTENSION(int32 ExtNr, TextView value);
    Text Rules() const { return EXTENSION(extLIMITS); }
    void Rules(TextView value) { EXTENSION(extLIMITS, value); }
    Text ShellCommand() const { return EXTENSION(extSHELLEXECUTE); }
    void ShellCommand(TextView value) { EXTENSION(extSHELLEXECUTE, value); }
    int32 DisplayWidth() const;
    void DisplayWidth(int32 value);
    // Both in upper case, whatever was written.
    Text Name() const;
    void Name(TextView value);
    Text ObjectName() const;
    void ObjectName(TextView value);

    // A copy without Inhalt and without the two flags that clsControl sets.
    std::shared_ptr<TSIO> Clone() const;

    // The bits of Typ that tell memo, blob and chain apart.
    static constexpr int32 kKindMask = 119;
    // Whether the word is one of the two whose low bits tell nothing.
    static constexpr bool isSpecial(int32 typ) noexcept {
        return typ == tsUnsichtbar || typ == tsKeine_Eingabe;
    }

 private:
    bool has(int32 bit) const noexcept { return (typ_ & bit) != 0; }
    void set(int32 bit, bool on) noexcept { typ_ = on ? typ_ | bit : typ_ & ~bit; }

    int32 zeile_ = 0;
    int32 spalte_ = 0;
    int32 laenge_ = 0;
    int32 typ_ = 0;
    int32 nachKomma_ = 0;
    int32 position_ = 0;
    int32 seite_ = 0;
    Text titel_;
    Text inhalt_;
    int32 dbFeld_ = 0;
    Text dbFeldName_;
    bool istIndexFeld_ = false;
    bool istKetteFeld_ = false;
};

// Fields in their order; field number n is element n - 1.
using TSIOArray = std::vector<std::shared_ptr<TSIO>>;

}  // namespace tsRtm
