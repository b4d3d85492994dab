#pragma once
// The commands by groups: each function adds its own to the app. A command runs as the callback of its CLI11
// sub-command and ends early by a CliError.
namespace CLI {
class App;
}

namespace tsRtm::cli {

void addCreate(CLI::App& db);    // create
void addLooks(CLI::App& db);     // info, fields, dump
void addSearches(CLI::App& db);  // list, find, goto, get
void addChanges(CLI::App& db);   // set, add, delete, undelete, lock
void addMemos(CLI::App& db);     // memo get, set, export
void addChains(CLI::App& db);    // chain list, add, write
void addProps(CLI::App& db);     // props list, get, set, names
void addImport(CLI::App& db);
void addExport(CLI::App& db);
void addBulk(CLI::App& db);        // pack, rebuild, zap, convert, index
void addCare(CLI::App& db);        // check, sort
void addStatistics(CLI::App& db);  // stats
void addBackup(CLI::App& db);      // backup, verify
void addWatch(CLI::App& db);
void addBanks(CLI::App& app);     // banks import, banks find
void addMessages(CLI::App& app);  // msg
void addRtf(CLI::App& app);       // rtf
void addOptions(CLI::App& app);   // options list, get, set, delete
void addHash(CLI::App& app);      // hash
void addDates(CLI::App& app);     // date
void addHolidays(CLI::App& app);  // holidays, easter
void addWorkday(CLI::App& app);   // workday
void addTables(CLI::App& app);    // tab
void addChecks(CLI::App& app);    // check iban, bic, blz, konto, date, email, egvp, value
void addPayments(CLI::App& app);  // dta write, dta show
void addPlaces(CLI::App& app);    // places import, plz
void addTermine(CLI::App& app);   // termine create, add, day, week, list, what, import, export
void addCompletion(CLI::App& app);

}  // namespace tsRtm::cli
