// tsrtm db props list, get, set, names: the named properties of records.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/db/RecordLock.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/tables/DatenTab.hpp"

namespace tsRtm::cli {
namespace {

struct PropsOptions {
    std::string name;
    int32 number = 0;
    std::string key;
    std::vector<std::string> words;
    std::optional<int32> wait;
    bool json = false;
};

void needProperties(Session& session) {
    if (session.control().PropFeld() == 0)
        throw CliError("'" + session.name() + "' has no field of properties");
}

std::shared_ptr<clsTSRecord> recordOf(Session& session, int32 number) {
    session.needRecord(number);
    needProperties(session);
    auto record = session.db().Record(number);
    session.check("cannot read record " + std::to_string(number));
    return record;
}

void list(const PropsOptions& options) {
    Session session(options.name, Use::read);
    const auto table = recordOf(session, options.number)->Properties();
    session.check("cannot read the properties of record " + std::to_string(options.number));
    Json json = Json::object();
    for (int32 row = 1; row <= table->Count(); ++row) {
        const auto key = toUtf8(table->Item(row, 1)), value = toUtf8(table->Item(row, 2));
        if (!options.json)
            std::cout << key << '=' << value << '\n';
        else if (!json.find(key))  // the first one counts
            json[key] = value;
    }
    if (options.json) std::cout << jsonText(json) << '\n';
}

void get(const PropsOptions& options) {
    Session session(options.name, Use::read);
    std::cout << toUtf8(recordOf(session, options.number)->Property(fromUtf8(options.key))) << '\n';
    session.check("cannot read the properties of record " + std::to_string(options.number));
}

void set(const PropsOptions& options) {
    Session session(options.name, Use::change);
    needProperties(session);
    const RecordLock lock(session, options.number, options.wait);
    const auto record = recordOf(session, options.number);
    for (const auto& word : options.words) {
        const auto equals = word.find('=');
        if (equals == std::string::npos) throw CliError("'" + word + "' is not of the form KEY=VALUE");
        record->Property(fromUtf8(word.substr(0, equals)), fromUtf8(word.substr(equals + 1)));
    }
    if (!record->Update())
        session.fail("record " + std::to_string(options.number) + " was not stored", record->Error());
}

void names(const PropsOptions& options) {
    Session session(options.name, Use::read);
    needProperties(session);
    session.db().FindPropertyNames();
    session.check("cannot read the properties of '" + session.name() + "'");
    const auto table = session.db().PropertyNames();
    Json json = Json::object();
    for (int32 row = 1; row <= table->Count(); ++row) {
        const auto key = toUtf8(table->Item(row, 1));
        if (options.json)
            json[key] = static_cast<int32>(table->Value(row, 2));
        else
            std::cout << key << ": " << toUtf8(table->Item(row, 2)) << '\n';
    }
    if (options.json) std::cout << jsonText(json) << '\n';
}

Command propertyCommand(Command props, const char* name, const char* help,
                        const std::shared_ptr<PropsOptions>& options, void (*run)(const PropsOptions&)) {
    const auto added = databaseCommand(props, name, help, options, run);
    if (run != names) added.option("NR", options->number, "Record number").required();
    return added;
}

}  // namespace

void addProps(Command db) {
    const auto props = db.add("props", "Named properties of records");
    props.needsCommand();

    auto options = std::make_shared<PropsOptions>();
    addJson(propertyCommand(props, "list", "Show all properties of a record", options, list), options->json);

    options = std::make_shared<PropsOptions>();
    propertyCommand(props, "get", "Print one property of a record", options, get)
        .option("KEY", options->key, "Its name, without regard to case")
        .required();

    options = std::make_shared<PropsOptions>();
    const auto stored = propertyCommand(props, "set", "Set properties of a record", options, set);
    stored.option("KEY=VALUE", options->words, "Name and text").required();
    addWait(stored, options->wait);
    stored.footer("Example:\n  tsrtm db props set Kunden 17 Farbe=rot Stufe=3");

    options = std::make_shared<PropsOptions>();
    addJson(propertyCommand(props, "names", "Show which properties there are, and how many records have them",
                            options, names),
            options->json);
}

}  // namespace tsRtm::cli
