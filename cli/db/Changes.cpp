// tsrtm db set, add, delete, undelete, lock: changes under the locks of records.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/db/RecordLock.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/ErrorText.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::cli {
namespace {

struct ChangesOptions {
    std::string name;
    int32 number = 0;
    std::vector<int32> numbers;
    std::vector<std::string> words;
    std::optional<int32> wait;
    bool json = false;
};

void set(const ChangesOptions& options) {
    Session session(options.name, Use::change);
    auto& db = session.db();
    const int32 number = options.number;
    const auto values = assignments(session, FieldMap(session.control()), options.words);
    const RecordLock lock(session, number, options.wait);
    // Read under the lock: what another user stored until now stays.
    db.GetSatz(number);
    session.check("cannot read record " + std::to_string(number));
    if (db.IsDeleted())
        throw CliError("record " + std::to_string(number) +
                       " is deleted; bring it back with: tsrtm db undelete " + session.name() + " " +
                       std::to_string(number));
    const auto record = db.Record(number);
    for (const auto& value : values) record->Fields(value.field, value.text);
    if (!record->Update())
        session.fail("record " + std::to_string(number) + " was not stored", record->Error());
}

void add(const ChangesOptions& options) {
    Session session(options.name, Use::change);
    auto& db = session.db();
    const auto values = assignments(session, FieldMap(session.control()), options.words);
    const auto record = db.Add();
    if (!record) session.check("no record was added");
    for (const auto& value : values) record->Fields(value.field, value.text);
    if (!record->Update()) {
        const int32 error = session.count() >= db.MaxData() ? kFull : rtmMain::state().F;
        session.fail("no record was added", error == 0 ? kLocked : error);
    }
    if (options.json)
        std::cout << jsonText({{"nr", record->Satznummer()}}) << '\n';
    else
        std::cout << "record " << record->Satznummer() << '\n';
}

void mark(const ChangesOptions& options, bool deleted) {
    Session session(options.name, Use::change);
    for (const int32 number : options.numbers) session.needRecord(number);
    for (const int32 number : options.numbers) {
        const RecordLock lock(session, number, options.wait);
        if (deleted)
            session.db().Delete(number);
        else
            session.db().Reaktivieren(number);
        session.check("record " + std::to_string(number) + " was not changed");
    }
}

void hold(const ChangesOptions& options) {
    Session session(options.name, Use::change);
    const RecordLock lock(session, options.number, options.wait);
    std::cout << "locked" << std::endl;
    std::string line;
    std::getline(std::cin, line);
}

void addNumber(Command command, ChangesOptions& options) {
    command.option("NR", options.number, "Record number").required();
}

constexpr const char* kValuesHelp =
    "Field and text; numbers as 12.5 or 12,5, dates as 31.12.2024 or 2024-12-31";

void addSet(Command db) {
    auto options = std::make_shared<ChangesOptions>();
    const auto added = databaseCommand(db, "set", "Change fields of a record", options, set);
    addNumber(added, *options);
    added.option("NAME=VALUE", options->words, kValuesHelp).required();
    addWait(added, options->wait);
    added.footer(
        "What does not fit its field is refused, never cut.\nExample:\n  tsrtm db set Kunden 17 ORT=Berlin "
        "UMSATZ=12.50");
}

void addAdd(Command db) {
    auto options = std::make_shared<ChangesOptions>();
    const auto added = databaseCommand(db, "add", "Add a record and print its number", options, add);
    added.option("NAME=VALUE", options->words, kValuesHelp).required();
    addJson(added, options->json);
}

void addMark(Command db, const char* name, const char* help, void (*run)(const ChangesOptions&)) {
    auto options = std::make_shared<ChangesOptions>();
    const auto added = databaseCommand(db, name, help, options, run);
    added.option("NR", options->numbers, "Record numbers").required();
    addWait(added, options->wait);
}

void addMarks(Command db) {
    addMark(db, "delete", "Mark records as deleted; they stay in the file",
            [](const ChangesOptions& given) { mark(given, true); });
    addMark(db, "undelete", "Take the deleted mark away",
            [](const ChangesOptions& given) { mark(given, false); });
}

void addLock(Command db) {
    auto options = std::make_shared<ChangesOptions>();
    const auto added =
        databaseCommand(db, "lock", "Hold a record locked until Enter, to try two users", options, hold);
    addNumber(added, *options);
    addWait(added, options->wait);
}

}  // namespace

void addChanges(Command db) {
    addSet(db);
    addAdd(db);
    addMarks(db);
    addLock(db);
}

}  // namespace tsRtm::cli
