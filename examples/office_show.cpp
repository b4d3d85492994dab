// A morning at the office: an IBAN and its bank, and what is due today.
//   office_show FOLDER BANK_FILE     the register and the calendar are made in the folder where they are
//   missing
#include <iostream>

#include "tsRtm/tsRtm.hpp"

using namespace tsRtm;

namespace {

bool importFile(clsRtm& rtm, const Text& name, const char* file) {
    auto opened = rtmMain::defaultGround().files.open(fromUtf8(file), {});
    if (!opened || !bankRegister::create(rtm, name)) return false;
    const auto db = rtm.OpenTSDB(name);
    if (!db) return false;
    BankFileReader reader(**opened);
    return importBanks(reader, *db).complete;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::cerr << "office_show FOLDER BANK_FILE\n";
        return 2;
    }
    clsRtm rtm;
    const Text folder = fromUtf8(argv[1]);
    rtm.Common().RuntimeDataDir(folder);
    if (!rtm.Banken()->DB() &&
        !importFile(rtm, FilesTopic::MakePath({Variant(folder), Variant(u"Banken")}), argv[2]))
        return 1;

    // The first bank of the register, and an account of its.
    const auto banks = rtm.Banken();
    const auto db = banks->DB();
    if (!db) return 1;
    const Text code = db->GetField(1, fBANKEN_BLZ);
    const Text iban = clsBanken::IBAN(code, u"532013000");
    clsValidBanking checker;
    checker.Options(btIBAN);
    const bool right = checker.Check(nullptr, replaceAll(iban, u" ", u"")) == validOK;
    std::cout << toUtf8(iban) << " is " << (right ? "right" : "wrong") << ": " << toUtf8(banks->Name(code))
              << ", " << toUtf8(banks->PLZOrt(code)) << '\n';
    checker.Check(nullptr, clsBanken::IBAN(u"99999999", u"1", false));
    std::cout << "and of a bank that there is not: " << toUtf8(checker.ErrorMsg()) << '\n';

    const auto calendar = std::make_shared<clsTerminkalender>();
    if (!calendar->Init(FilesTopic::MakePath({Variant(folder), Variant(u"Termine")}))) return 1;
    const clsDatum dates;
    const Text today = rtm.Common().DA8();
    const int32 known = calendar->Termine()->Count();
    if (known == 0) {
        const auto meeting = calendar->Add(u"++++++++", u"", u"09:00", u"00:30", u"Posteingang");
        if (!meeting || !meeting->Update()) return 1;
    }
    // The calendar of another day has the meeting alone.
    if (known < 2) {
        const auto visit = calendar->Add({}, today, u"14:00", u"01:30", u"Ortstermin");
        if (!visit || !visit->Update()) return 1;
    }
    std::cout << "today, " << toUtf8(today) << ":\n";
    const auto due = calendar->Termine();
    for (int32 i = 1; i <= due->Count(); ++i) {
        const auto termin = due->Item(i);
        std::cout << "  " << toUtf8(termin->Uhrzeitvon()) << '-' << toUtf8(termin->Uhrzeitbis()) << "  "
                  << toUtf8(termin->Betreff())
                  << toUtf8(termin->SerienTyp() == ttEinzel ? Text() : u"  (" + termin->What() + u")")
                  << '\n';
    }
    return right && due->Count() >= 2 ? 0 : 1;
}
