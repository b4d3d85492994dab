// tsrtm: the command line tool for those who look after databases.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Session.hpp"
#include "cli/shared/Terminal.hpp"

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

int complain(const std::string& message, int status = kFailed) {
    std::cout.flush();
    std::cerr << "tsrtm: " << message << '\n';
    return status;
}

void addCommands(tsRtm::cli::Command app) {
    using namespace tsRtm::cli;
    app.needsCommand();
    const auto db = app.add("db", "Databases: make, look, search, change, import and export");
    db.needsCommand();
    addCreate(db);
    addLooks(db);
    addSearches(db);
    addChanges(db);
    addImport(db);
    addExport(db);
    addMemos(db);
    addChains(db);
    addProps(db);
    addBulk(db);
    addCare(db);
    addStatistics(db);
    addBackup(db);
    addWatch(db);
    addBanks(app);
    addMessages(app);
    addRtf(app);
    addOptions(app);
    addHash(app);
    addDates(app);
    addHolidays(app);
    addWorkday(app);
    addTables(app);
    addChecks(app);
    addPayments(app);
    addPlaces(app);
    addTermine(app);
    addPrint(app);
    addLetters(app);
    addPrinters(app);
    addCompletion(app);
}

}  // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    tsRtm::cli::CommandLine line("tsrtm", "Looks after databases of tsRtm.", "tsrtm " TSRTM_VERSION);
    line.root().footer(
        "Exit status: 0 done, 1 failed (one line on standard error says why), 2 wrong usage.\n"
        "Examples:\n"
        "  tsrtm db create Kunden --field NAME:text:30 --field ORT:text:30 --index NAME --max 100000\n"
        "  tsrtm db import Kunden kunden.csv\n"
        "  tsrtm db list Kunden --from M --limit 10\n"
        "  tsrtm db goto Kunden Müller --json");
    int status = 0;
    try {
        addCommands(line.root());
        tsRtm::cli::startLibrary();
        if (!line.run(argc, argv)) return 0;
    } catch (const tsRtm::cli::CliStatus& end) {
        status = end.status;
    } catch (const tsRtm::cli::UsageError& error) {
        return complain(error.what(), kWrongUsage);
    } catch (const tsRtm::cli::CliError& error) {
        return complain(error.what());
    } catch (const tsRtm::Failure& failure) {
        return complain(tsRtm::cli::failureText(failure));
    } catch (const std::exception& error) {
        return complain(error.what());
    }
    if (!std::cout.flush()) return complain("cannot write to standard output");
    return status;
}
