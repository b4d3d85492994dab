// A file of German banks becomes a database; it is searched, changed by four users at once, and checked.
//
//     bank_show FILE FOLDER
//
// FILE has the form of the official bank code file. The databases Banken.DBD and Konten.DBD are made anew in
// FOLDER.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "tsRtm/tsRtm.hpp"

namespace {

using namespace tsRtm;
using Clock = std::chrono::steady_clock;

constexpr int kUsers = 4;
constexpr auto kWorkingTime = std::chrono::seconds(1);
constexpr int kLookUps = 2000;
constexpr int32 kAccountCode = 1, kAccountBalance = 2;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

std::shared_ptr<clsTSDB> open(clsRtm& rtm, const std::string& name, bool readOnly = false,
                              bool alone = false) {
    auto db = rtm.OpenTSDB(fromUtf8(name), readOnly, alone);
    if (!db) throw std::runtime_error("cannot open " + name);
    return db;
}

// --- The register
// -----------------------------------------------------------------------------------------------------

void importFile(clsRtm& rtm, const std::string& file, const std::string& name) {
    std::filesystem::remove_all(name + ".DBD");
    if (!bankRegister::create(rtm, fromUtf8(name))) throw std::runtime_error("cannot make " + name);
    auto opened = rtmMain::defaultGround().files.open(fromUtf8(file), {});
    if (!opened) throw std::runtime_error("cannot read " + file);

    const auto start = Clock::now();
    const auto db = open(rtm, name, false, true);
    BankFileReader reader(**opened);
    const auto result = importBanks(reader, *db);
    if (!result.complete) throw std::runtime_error("the import failed");
    const double milliseconds = secondsSince(start) * 1000;
    std::printf("%d rows read in %.0f ms: %d banks imported, %d other offices left out, %d rows rejected\n\n",
                result.loaded + result.otherRows + result.rejected, milliseconds, result.loaded,
                result.otherRows, result.rejected);
}

// Median time of one look-up, in microseconds; every look-up takes another bank.
double median(clsTSDB& banks, int32 field, const std::function<void(const Text& key)>& lookUp) {
    std::mt19937 random(1);
    std::uniform_int_distribution<int32> anyRecord(1, banks.AnzahlDSaetze());
    std::vector<double> times;
    for (int i = 0; i < kLookUps; ++i) {
        const Text key = banks.GetField(anyRecord(random), field);
        const auto start = Clock::now();
        lookUp(key);
        times.push_back(secondsSince(start) * 1e6);
    }
    std::nth_element(times.begin(), times.begin() + kLookUps / 2, times.end());
    return times[kLookUps / 2];
}

// Filled up by characters, of which an umlaut is one.
std::string column(const std::string& text, std::size_t width) {
    const std::size_t has = fromUtf8(text).size();
    return text + std::string(has < width ? width - has : 0, ' ');
}

void show(const std::string& what, const std::string& answer, double microseconds) {
    std::printf("  %s  %s %7.1f us\n", column(what, 24).c_str(), column(answer, 56).c_str(), microseconds);
}

std::string current(clsTSDB& banks) {
    return toUtf8(banks.Fields(fBANKEN_BLZ) + u" " + banks.Fields(fBANKEN_NAME) + u", " +
                  banks.Fields(fBANKEN_ORT));
}

void lookUpBanks(clsRtm& rtm, const std::string& name) {
    const auto banks = open(rtm, name, true);
    const int32 middle = banks->AnzahlDSaetze() / 2 + 1;
    const Text code = banks->GetField(middle, fBANKEN_BLZ);
    const Text place = banks->GetField(middle, fBANKEN_ORT);
    const auto goTo = [&](const Text& key) { banks->Gehezu(key); };
    std::puts("Look-ups, with the median time of many:");

    banks->SetIndex(bankRegister::kByCode);
    double time = median(*banks, fBANKEN_BLZ, goTo);
    banks->Gehezu(code);
    show("code " + toUtf8(code), current(*banks), time);

    banks->SetIndex(bankRegister::kByBic);
    banks->MoveLast();
    const Text institute = banks->Fields(fBANKEN_BIC).substr(0, 8);
    time = median(*banks, fBANKEN_BIC, [&](const Text& bic) { banks->Gehezu(bic.substr(0, 8)); });
    banks->Gehezu(institute);
    show("BIC " + toUtf8(institute) + "...", current(*banks), time);

    banks->SetIndex(bankRegister::kByPlaceAndName);
    time = median(*banks, fBANKEN_ORT, goTo);
    banks->Gehezu(place);
    show("place " + toUtf8(place), current(*banks), time);

    time = median(*banks, fBANKEN_ORT, [&](const Text& key) { banks->Rang(key); });
    const std::string rank =
        std::to_string(banks->Rang(place)) + " of " + std::to_string(banks->AnzahlDSaetze());
    show("rank of " + toUtf8(place), rank, time);
}

// --- Four users
// -------------------------------------------------------------------------------------------------------

std::shared_ptr<TSIO> field(TextView name, int32 length, int32 typ) {
    auto out = std::make_shared<TSIO>();
    out->Laenge(length);
    out->Typ(typ);
    out->Caption(name);
    out->Name(name);
    return out;
}

// An account for each bank, with a balance that is indexed, so that every change moves an entry of an index.
void makeAccounts(clsRtm& rtm, const std::string& banksName, const std::string& name) {
    std::filesystem::remove_all(name + ".DBD");
    const TSIOArray fields{field(u"BLZ", 8, tsZiffern), field(u"STAND", 9, tsNumerisch)};
    if (!rtm.DB_Create(fromUtf8(name), fields, bankRegister::kMaxRecords, u"  1  0  0  2  1  0"))
        throw std::runtime_error("cannot make " + name);
    const auto banks = open(rtm, banksName, true);
    const auto accounts = open(rtm, name, false, true);
    BulkLoader loader(*accounts);
    for (int32 i = 1; i <= banks->AnzahlDSaetze(); ++i) {
        loader.set(kAccountCode, banks->GetField(i, fBANKEN_BLZ));
        loader.set(kAccountBalance, u"0");
        if (!loader.add()) throw std::runtime_error("no room for the accounts");
    }
    if (!loader.finish()) throw std::runtime_error("the accounts have no index");
}

// What a user does: books 1 on any account, under its lock, until the time is over. Prints how often.
int work(const std::string& name, unsigned user) {
    clsRtm rtm;
    const auto accounts = open(rtm, name);
    std::mt19937 random(user);
    std::uniform_int_distribution<int32> anyAccount(1, accounts->AnzahlDSaetze());
    int32 booked = 0;
    for (const auto start = Clock::now(); Clock::now() - start < kWorkingTime;) {
        const int32 account = anyAccount(random);
        if (!accounts->Sperren(account)) continue;
        accounts->GetSatz(account);  // what the others stored until now
        accounts->Fields(kAccountBalance, toText(roundToInt32(Val(accounts->Fields(kAccountBalance))) + 1));
        accounts->Update();
        if (accounts->Error() == 0) ++booked;
        accounts->Entsperren(account);
    }
    std::printf("%d\n", booked);
    return 0;
}

// Each user is a process of its own: this program with other arguments.
int32 letUsersWork(const std::string& program, const std::string& name) {
    const std::string asUser = "'" + program + "' --user '" + name + "' ";
    std::vector<FILE*> users;
    for (int user = 1; user <= kUsers; ++user) {
        const std::string command = asUser + std::to_string(user);
        if (FILE* output = ::popen(command.c_str(), "r")) users.push_back(output);
    }
    int32 booked = 0;
    for (FILE* output : users) {
        int32 own = 0;
        const bool told = std::fscanf(output, "%d", &own) == 1;
        if (::pclose(output) != 0 || !told) throw std::runtime_error("a user failed");
        booked += own;
    }
    return booked;
}

bool changeByMany(clsRtm& rtm, const std::string& program, const std::string& name) {
    const auto start = Clock::now();
    const int32 booked = letUsersWork(program, name);
    const double seconds = secondsSince(start);
    const auto accounts = open(rtm, name, true);
    int32 found = 0;
    for (int32 i = 1; i <= accounts->AnzahlDSaetze(); ++i)
        found += roundToInt32(Val(accounts->GetField(i, kAccountBalance)));
    std::printf("\n%d users changed random accounts for a second: %.0f updates a second, %d lost\n", kUsers,
                booked / seconds, booked - found);
    return booked == found && booked > 0;
}

bool checkIndexes(clsRtm& rtm, const std::string& name) {
    const auto db = open(rtm, name, true);
    const bool sound = db->Check(false, {});
    std::printf("%d indexes of %s: %s\n", db->AnzahlIndizes(), toUtf8(db->DBName()).c_str(),
                sound ? "sound" : "DAMAGED");
    for (const auto& finding : db->Befunde()) std::printf("  %s\n", toUtf8(finding).c_str());
    return sound;
}

int run(const std::string& program, const std::string& file, const std::string& folder) {
    std::filesystem::create_directories(folder);
    const std::string banks = folder + "/Banken";
    const std::string accounts = folder + "/Konten";
    clsRtm rtm;
    importFile(rtm, file, banks);
    lookUpBanks(rtm, banks);
    makeAccounts(rtm, banks, accounts);
    const bool nothingLost = changeByMany(rtm, program, accounts);
    const bool sound = checkIndexes(rtm, banks) && checkIndexes(rtm, accounts);
    return nothingLost && sound ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const std::vector<std::string> arguments(argv, argv + argc);
        if (argc == 4 && arguments[1] == "--user")
            return work(arguments[2], static_cast<unsigned>(std::atoi(argv[3])));
        if (argc == 3) return run(arguments[0], arguments[1], arguments[2]);
        std::cerr << "usage: bank_show FILE FOLDER\n";
        return 2;
    } catch (const std::exception& failure) {
        std::cerr << "bank_show: " << failure.what() << '\n';
        return 1;
    }
}
