#pragma once
// An address, and the forms in which it appears: one line, a block of lines, a window of an envelope.
#include <map>
#include <memory>
#include <vector>

#include "tsRtm/types/Text.hpp"
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

class Druck;

// Marks of the window that an address is printed into.
enum eEckTyp : int32 {
    eKeineEcken = 0,
    eStrichEcken = 1,
    eKreuz = 2,
    ePunktEcken = 3,
    eGanzerRahmen = 4,
};

class Adresse {
 public:
    // With all that it knows, the same Parent, and properties of its own.
    std::shared_ptr<Adresse> Clone() const { return std::make_shared<Adresse>(*this); }

    std::shared_ptr<Object> Parent() const { return parent_; }
    void Parent(std::shared_ptr<Object> value) { parent_ = std::move(value); }

    // What the block is made of. Names and street lose blanks at their ends.
    Text Anrede() const { return anrede_; }
    void Anrede(TextView value) { set(anrede_, value); }
    Text AdrAnrede() const { return adrAnrede_; }
    void AdrAnrede(TextView value) { set(adrAnrede_, value); }
    Text Titel() const { return titel_; }
    void Titel(TextView value) { set(titel_, value); }
    Text Vorname() const { return vorname_; }
    void Vorname(TextView value);
    Text Name1() const { return name1_; }
    void Name1(TextView value);
    Text Name2() const { return name2_; }
    void Name2(TextView value);
    Text Zusatz() const { return zusatz_; }
    void Zusatz(TextView value) { set(zusatz_, value); }
    Text Zusatz2() const { return zusatz2_; }
    void Zusatz2(TextView value) { set(zusatz2_, value); }
    Text Strasse() const { return strasse_; }
    void Strasse(TextView value);
    Text PLZOrt() const { return plzOrt_; }
    void PLZOrt(TextView value) { set(plzOrt_, value); }

    // The one that was set, as written; else by the sign in front of PLZOrt, in capitals, empty at home. A
    // block that is made already does not change with it.
    Text Land() const;
    void Land(TextView value) { land_ = value; }

    Text AZ() const { return az_; }
    void AZ(TextView value) { az_ = value; }
    // Account and bank, one field each under two names.
    Text KontoNr() const { return konto_; }
    void KontoNr(TextView value) { konto_ = value; }
    Text IBAN() const { return konto_; }
    void IBAN(TextView value) { konto_ = value; }
    Text Bank() const { return bank_; }
    void Bank(TextView value) { bank_ = value; }
    Text BLZ() const { return blz_; }
    void BLZ(TextView value) { blz_ = value; }
    Text BIC() const { return blz_; }
    void BIC(TextView value) { blz_ = value; }
    Text Telefon() const { return telefon_; }
    void Telefon(TextView value) { telefon_ = value; }
    Text Mobil() const { return mobil_; }
    void Mobil(TextView value) { mobil_ = value; }
    Text Fax() const { return fax_; }
    void Fax(TextView value) { fax_ = value; }
    Text EMAIL() const { return email_; }
    void EMAIL(TextView value) { email_ = value; }
    // Free properties; empty for a missing key. An empty key has none and keeps none.
    Text Property(TextView Key) const;
    void Property(TextView Key, TextView value);

    Text VollName() const;                            // "Vorname Name1"
    Text NameKomplett(bool OhneKomma = false) const;  // "Name1, Name2"
    Text OrtsName() const;                            // PLZOrt without its postal code
    Text Adr1Zeile() const;                           // "Name1 Name2, Zusatz, Strasse, PLZOrt"
    Text Bankverbindung() const;                      // "Bank Konto KontoNr BLZ"

    // The block; without Name1 it has no lines. The salutation stands in it if the option AdresseMitAnrede
    // said so when it was first asked in this run.
    int32 Zeilen();
    Text DruckZeile(int32 Index);  // 1-based, empty for others
    Text AdressBlock();            // joined by CR LF

    // In one paragraph of MaxBreite millimetres (0: 85) at a place in millimetres. By how much the row moves,
    // less one line. Nothing without a job.
    float64 DruckenKompakt(Druck* Drucker, float64 Zeile, float64 Spalte, int32 Attr,
                           int32 SchriftGroesse = 12, float64 MaxBreite = 0.0,
                           bool MitAktenzeichen = false) const;
    // Into the window of an envelope, 85 by 40 millimetres, whose upper left corner is at Zeile, Spalte. The
    // font becomes smaller, down to 10 points, until the address fits. HinweisLinks stands upright beside the
    // window; "SCHULDNER" does not where the setting PrintAdrSchuldner of the application is 0.
    void Drucken(Druck* Drucker, float64 Zeile, float64 Spalte, int32 SchriftGroesse = 12,
                 TextView VorausVfg1 = {}, TextView VorausVfg2 = {}, const Adresse* Absender = nullptr,
                 eEckTyp EckenTyp = eKeineEcken, TextView HinweisLinks = {}) const;

 private:
    void set(Text& field, TextView value);
    const std::vector<Text>& block();
    // Those of these that are not empty, behind what is in `lines`.
    void addNamesAndStreet(std::vector<Text>& lines) const;

    std::shared_ptr<Object> parent_;
    Text anrede_, adrAnrede_, titel_, vorname_, name1_, name2_, zusatz_, zusatz2_, strasse_, plzOrt_, land_;
    Text az_, konto_, bank_, blz_, telefon_, mobil_, fax_, email_;
    std::map<Text, Text, std::less<>> properties_;
    std::vector<Text> lines_;
    bool valid_ = false;
};

}  // namespace tsRtm
