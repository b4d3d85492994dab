// Each bank gets a note and a history, written by four users at once; both are read, searched and packed.
//
//     notes_show FILE FOLDER
//
// FILE has the form of the official bank code file. The database Vermerke.DBD is made anew in FOLDER.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
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
constexpr int32 kCode = 1, kName = 2, kHistory = 4;
constexpr int32 kNote = 1;  // the first memo
constexpr int32 kAddRow = 5;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

std::shared_ptr<clsTSDB> open(clsRtm& rtm, const std::string& name, bool readOnly = false,
                              bool alone = false) {
    auto db = rtm.OpenTSDB(fromUtf8(name), readOnly, alone);
    if (!db) throw std::runtime_error("cannot open " + name);
    return db;
}

void must(clsTSDB& db, const char* what) {
    if (const int32 error = db.Error(); error != 0)
        throw std::runtime_error(std::string(what) + ": error " + std::to_string(error));
}

std::shared_ptr<TSIO> field(TextView name, int32 length, int32 typ) {
    auto out = std::make_shared<TSIO>();
    out->Laenge(length);
    out->Typ(typ);
    out->Caption(name);
    out->Name(name);
    return out;
}

// A record a bank, with a place for its note and one for its history: rows of who and what.
void makeNotes(clsRtm& rtm, const std::string& file, const std::string& name) {
    std::filesystem::remove_all(name + ".DBD");
    const TSIOArray fields{field(u"BLZ", 8, tsZiffern), field(u"NAME", 30, tsAlphanumerisch),
                           field(u"NOTIZ", 60, tsMemo), field(u"VERLAUF", 10, tsKette)};
    if (!rtm.DB_Create(fromUtf8(name), fields, bankRegister::kMaxRecords, u"  1  0  0"))
        throw std::runtime_error("cannot make " + name);
    std::ofstream(name + ".DBD/KetteCtl.004", std::ios::binary)
        << "TS1,2\r\n0,1,1,4,1,\"Wer@@7WER\"\r\n0,2,1,16,1,\"Was@@7WAS\"\r\n31,100,0\r\n0\r\n";

    auto opened = rtmMain::defaultGround().files.open(fromUtf8(file), {});
    if (!opened) throw std::runtime_error("cannot read " + file);
    const std::string banksName = name + "-Banken";
    std::filesystem::remove_all(banksName + ".DBD");
    if (!bankRegister::create(rtm, fromUtf8(banksName))) throw std::runtime_error("cannot make " + banksName);
    const auto banks = open(rtm, banksName, false, true);
    BankFileReader reader(**opened);
    if (!importBanks(reader, *banks).complete) throw std::runtime_error("the import failed");
    const auto notes = open(rtm, name, false, true);
    BulkLoader loader(*notes);
    for (int32 i = 1; i <= banks->AnzahlDSaetze(); ++i) {
        loader.set(kCode, banks->GetField(i, fBANKEN_BLZ));
        loader.set(kName, banks->GetField(i, fBANKEN_NAME));
        if (!loader.add()) throw std::runtime_error("no room for the banks");
    }
    if (!loader.finish()) throw std::runtime_error("the banks have no index");
}

// What a user does: writes a line into the note of any bank, under its lock, and adds a row to its history.
// Prints how often.
int work(const std::string& name, int user) {
    clsRtm rtm;
    const auto db = open(rtm, name);
    std::mt19937 random(static_cast<unsigned>(user));
    std::uniform_int_distribution<int32> anyBank(1, db->AnzahlDSaetze());
    int32 done = 0;
    for (const auto start = Clock::now(); Clock::now() - start < kWorkingTime;) {
        const int32 bank = anyBank(random);
        if (!db->Sperren(bank)) continue;
        db->AktSatzNr(bank);
        db->Memo(kNote,
                 db->Memo(kNote) + u"Anruf " + toText(++done) + u" von Benutzer " + toText(user) + u"\r\n");
        must(*db, "a note was not stored");
        TextTable row{{}, {toText(user), u"Anruf " + toText(done)}};
        int32 rows = 1;
        db->KetteAction(kAddRow, kHistory, row, rows);
        must(*db, "a row was not stored");
        db->Entsperren(bank);
    }
    std::printf("%d\n", done);
    return 0;
}

// Each user is a process of its own: this program with other arguments.
int32 letUsersWork(const std::string& program, const std::string& name) {
    const std::string asUser = "'" + program + "' --user '" + name + "' ";
    std::vector<FILE*> users;
    for (int user = 1; user <= kUsers; ++user)
        if (FILE* output = ::popen((asUser + std::to_string(user)).c_str(), "r")) users.push_back(output);
    int32 all = 0;
    for (FILE* output : users) {
        int32 own = 0;
        const bool told = std::fscanf(output, "%d", &own) == 1;
        if (::pclose(output) != 0 || !told) throw std::runtime_error("a user failed");
        all += own;
    }
    return all;
}

// Lines of all notes and rows of all histories; the bank with the longest one.
struct Content {
    int32 lines = 0;
    int32 rows = 0;
    int32 busiest = 1;
    bool operator==(const Content& other) const { return lines == other.lines && rows == other.rows; }
};

Content contentOf(clsTSDB& db) {
    Content out;
    std::size_t most = 0;
    for (int32 bank = 1; bank <= db.AnzahlDSaetze(); ++bank) {
        db.AktSatzNr(bank);
        const Text note = db.Memo(kNote);
        out.lines += static_cast<int32>(std::count(note.begin(), note.end(), u'\n'));
        TextTable rows;
        db.KetteLesen(1, rows);
        out.rows += static_cast<int32>(rows.size());
        if (rows.size() > most) out.busiest = bank;
        most = std::max(most, rows.size());
    }
    return out;
}

void showBusiest(clsTSDB& db, int32 bank) {
    // As an application comes to it: by its key.
    db.SetIndex(1);
    db.Gehezu(db.GetField(bank, kCode));
    TextTable rows;
    db.KetteLesen(1, rows);
    const Text note = db.Memo(kNote);
    std::printf(
        "The longest history has %s %s: %zu rows, the last by user %s; its note ends:\n  %s\n",
        toUtf8(db.Fields(kCode)).c_str(), toUtf8(db.Fields(kName)).c_str(), rows.size(),
        rows.empty() ? "-" : toUtf8(rows.back()[0]).c_str(),
        toUtf8(note.substr(note.rfind(u'\n', note.size() - std::min<std::size_t>(note.size(), 3)) + 1))
            .c_str());
}

// Searches what was written: notes and rows that tell of a call by its number.
void searchNotes(clsTSDB& db) {
    const auto start = Clock::now();
    int32 found = 0;
    for (int32 bank = 1; bank <= db.AnzahlDSaetze(); ++bank) {
        db.AktSatzNr(bank);
        found += db.Memo(kNote).find(u"Anruf 7 von Benutzer") != Text::npos;
    }
    std::printf("All %d notes searched in %.1f ms: %d banks had the seventh call of a user\n",
                db.AnzahlDSaetze(), secondsSince(start) * 1000, found);
}

// Banks without a call go, and with them the room of all the notes that were written anew.
bool pack(clsRtm& rtm, const std::string& name, const Content& content) {
    const auto db = open(rtm, name, false, true);
    DatabaseCare care(*db);
    const auto before = care.statistics();
    for (int32 bank = 1; bank <= db->AnzahlDSaetze(); ++bank) {
        db->AktSatzNr(bank);
        if (db->Memo(kNote).empty()) db->Delete(bank);
    }
    const auto start = Clock::now();
    if (!db->Rebuild()) throw std::runtime_error("the reorganisation failed");
    const double milliseconds = secondsSince(start) * 1000;
    const auto after = care.statistics();
    std::printf(
        "Reorganised in %.0f ms: %d banks of %d kept, notes %llu KB instead of %llu, histories %llu KB\n",
        milliseconds, after.records, before.records,
        static_cast<unsigned long long>(after.memos.at(0).bytes / 1024),
        static_cast<unsigned long long>(before.memos.at(0).bytes / 1024),
        static_cast<unsigned long long>(after.chains.at(0).bytes / 1024));
    const bool sound = db->Check(false, {});
    for (const auto& finding : db->Befunde()) std::printf("  %s\n", toUtf8(finding).c_str());
    const bool same = contentOf(*db) == content;
    std::printf("Notes and histories: %s, %s\n", same ? "all there" : "LOST", sound ? "sound" : "DAMAGED");
    return sound && same;
}

int run(const std::string& program, const std::string& file, const std::string& folder) {
    std::filesystem::create_directories(folder);
    const std::string name = folder + "/Vermerke";
    clsRtm rtm;
    makeNotes(rtm, file, name);
    const auto start = Clock::now();
    const int32 written = letUsersWork(program, name);
    const double seconds = secondsSince(start);
    Content content;
    {
        const auto db = open(rtm, name, true);
        content = contentOf(*db);
        std::printf(
            "%d users wrote a note and a row of a history: %.0f a second, %d notes and %d rows lost\n",
            kUsers, written / seconds, written - content.lines, written - content.rows);
        showBusiest(*db, content.busiest);
        searchNotes(*db);
    }
    const bool nothingLost = content.lines == written && content.rows == written && written > 0;
    return pack(rtm, name, content) && nothingLost ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const std::vector<std::string> arguments(argv, argv + argc);
        if (argc == 4 && arguments[1] == "--user") return work(arguments[2], std::atoi(argv[3]));
        if (argc == 3) return run(arguments[0], arguments[1], arguments[2]);
        std::cerr << "usage: notes_show FILE FOLDER\n";
        return 2;
    } catch (const std::exception& failure) {
        std::cerr << "notes_show: " << failure.what() << '\n';
        return 1;
    }
}
