// Checks an IBAN, and pays somebody: a payment file is written into the working folder.
//   payment_show [IBAN]
#include <iostream>

#include "tsRtm/tsRtm.hpp"

using namespace tsRtm;

int main(int argc, char** argv) {
    clsRtm rtm;
    const Text iban = fromUtf8(argc > 1 ? argv[1] : "FR1420041010050500013M02606");

    clsValidBanking banking;
    if (!banking.CheckIBAN(iban)) {
        std::cout << toUtf8(iban) << ": " << toUtf8(banking.ErrorMsg()) << '\n';
        return 1;
    }
    std::cout << toUtf8(iban) << " has the right length and check digits\n";

    DtADatei datei;
    datei.Pfad(u".");
    datei.Header().BLZ(u"37040044");
    datei.Header().Kontonummer(u"532013000");
    datei.Header().Name1(u"Büro Müller & Söhne");
    const auto auftrag = datei.Create(u"BNPAFRPPXXX", iban, 112.5, u"Ada Schmidt", u"", u"Rue 1",
                                      u"75000 Paris", u"Rechnung 17");
    if (const Text falsch = datei.Add(auftrag); !falsch.empty()) {
        std::cout << toUtf8(falsch);
        return 1;
    }
    // The file is written whatever the report says; it is for us to judge.
    const Text bericht = datei.Generate();
    std::cout << toUtf8(bericht) << toUtf8(datei.Header().Name1()) << " pays " << datei.Summe()
              << " euros to " << toUtf8(datei.Item(1)->Name1()) << ": " << toUtf8(datei.DateiName())
              << " is for the bank\n";
    return bericht.empty() ? 0 : 1;
}
