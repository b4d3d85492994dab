// tsrtm: the command line tool for those who look after databases.
#include <CLI/CLI.hpp>
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Session.hpp"
#include "cli/shared/Terminal.hpp"

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

int complain(const std::string& message) {
    std::cout.flush();
    std::cerr << "tsrtm: " << message << '\n';
    return kFailed;
}

// The first line of what CLI11 says, and where to read more.
int complainOfUsage(const CLI::App& app, const CLI::ParseError& error) {
    std::string path = "tsrtm";
    for (const auto* at = &app; !at->get_subcommands().empty();) {
        at = at->get_subcommands().front();
        path += " " + at->get_name();
    }
    std::string message = error.what();
    // CLI11 misses a command before it looks at the words it could not place.
    const auto words = app.remaining(true);
    if (dynamic_cast<const CLI::RequiredError*>(&error) && !words.empty())
        message = "no command or option '" + words.front() + "'";
    complain(message.substr(0, message.find('\n')) + " (see: " + path + " --help)");
    return kWrongUsage;
}

void addCommands(CLI::App& app) {
    using namespace tsRtm::cli;
    app.require_subcommand(1);
    auto* db = app.add_subcommand("db", "Databases: make, look, search, change, import and export");
    db->require_subcommand(1);
    addCreate(*db);
    addLooks(*db);
    addSearches(*db);
    addChanges(*db);
    addImport(*db);
    addExport(*db);
    addMemos(*db);
    addChains(*db);
    addProps(*db);
    addBulk(*db);
    addCare(*db);
    addStatistics(*db);
    addBackup(*db);
    addWatch(*db);
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
    addCompletion(app);
}

}  // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    CLI::App app("Looks after databases of tsRtm.", "tsrtm");
    app.set_version_flag("--version", "tsrtm " TSRTM_VERSION);
    app.footer(
        "Exit status: 0 done, 1 failed (one line on standard error says why), 2 wrong usage.\n"
        "Examples:\n"
        "  tsrtm db create Kunden --field NAME:text:30 --field ORT:text:30 --index NAME --max 100000\n"
        "  tsrtm db import Kunden kunden.csv\n"
        "  tsrtm db list Kunden --from M --limit 10\n"
        "  tsrtm db goto Kunden Müller --json");
    int status = 0;
    try {
        addCommands(app);
        tsRtm::cli::startLibrary();
        app.parse(argc, argv);
    } catch (const CLI::Success& done) {
        return app.exit(done);
    } catch (const tsRtm::cli::CliStatus& end) {
        status = end.status;
    } catch (const CLI::ParseError& error) {
        return complainOfUsage(app, error);
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
