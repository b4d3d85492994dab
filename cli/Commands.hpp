#pragma once
// The commands by groups: each function adds its own to the app. A command ends early by a CliError.
namespace tsRtm::cli {

class Command;

void addCreate(Command db);    // create
void addLooks(Command db);     // info, fields, dump
void addSearches(Command db);  // list, find, goto, get
void addChanges(Command db);   // set, add, delete, undelete, lock
void addMemos(Command db);     // memo get, set, export
void addChains(Command db);    // chain list, add, write
void addProps(Command db);     // props list, get, set, names
void addImport(Command db);
void addExport(Command db);
void addBulk(Command db);        // pack, rebuild, zap, convert, index
void addCare(Command db);        // check, sort
void addStatistics(Command db);  // stats
void addBackup(Command db);      // backup, verify
void addWatch(Command db);
void addBanks(Command app);     // banks import, banks find
void addMessages(Command app);  // msg
void addRtf(Command app);       // rtf
void addOptions(Command app);   // options list, get, set, delete
void addHash(Command app);      // hash
void addDates(Command app);     // date
void addHolidays(Command app);  // holidays, easter
void addWorkday(Command app);   // workday
void addTables(Command app);    // tab
void addChecks(Command app);    // check iban, bic, blz, konto, date, email, egvp, value
void addPayments(Command app);  // dta write, dta show
void addPlaces(Command app);    // places import, plz
void addTermine(Command app);   // termine create, add, day, week, list, what, import, export
void addPrint(Command app);     // print text, rtf, csv, db
void addLetters(Command app);   // letters
void addPrinters(Command app);  // printers
void addCompletion(Command app);

}  // namespace tsRtm::cli
