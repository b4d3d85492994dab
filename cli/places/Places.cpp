// tsrtm places import, tsrtm plz: postal codes and places.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/CsvTable.hpp"
#include "cli/shared/CsvWriter.hpp"
#include "cli/shared/ErrorText.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/Rejects.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/Terminal.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/places/PlaceImport.hpp"
#include "tsRtm/places/clsPlzOrt.hpp"

namespace tsRtm::cli {
namespace {

constexpr int32 kLocked = 70;

struct PlacesOptions {
    std::string file, streets;
    std::string folder = ".";
    std::string country = "DE";
    std::string word, street;
    std::string separator = ",";
    FileEncoding encoding = FileEncoding::automatic;
    int32 limit = 20;
    bool json = false;
};

const char* faultText(PlaceFault fault) noexcept {
    switch (fault) {
        case PlaceFault::none:
            return "";
        case PlaceFault::name:
            return "name: empty, too long, or with a character that code page 1252 lacks";
        case PlaceFault::code:
            return "postal code: no five digits";
        case PlaceFault::box:
            return "code of boxes: no five digits";
        case PlaceFault::municipality:
            return "municipality: not up to eight digits";
    }
    return "";
}

std::string databaseName(const PlacesOptions& options, TextView name) {
    return toUtf8(FilesTopic::MakePath({Variant(fromUtf8(options.folder)), Variant(Text(name))}));
}

// The rows of a file; those that are none go to the rejects. Gives `read(table)` for each row of the country.
template <class Row, class Read>
std::vector<Row> rowsOf(CsvTable& table, Rejects& rejects, Read read) {
    std::vector<Row> rows;
    while (table.next()) {
        std::optional<Row> row;
        if (table.fault().empty())
            row = read();
        else
            rejects.add(table.line(), "no row: " + table.fault());
        if (!row) continue;
        const auto fault = faultOf(*row);
        if (fault == PlaceFault::none)
            rows.push_back(std::move(*row));
        else
            rejects.add(table.line(), faultText(fault));
    }
    return rows;
}

std::size_t needAny(const CsvTable& table, std::initializer_list<const char16_t*> names) {
    for (const auto* name : names)
        if (const auto column = table.find(name)) return *column;
    throw CliError("no column '" + toUtf8(*names.begin()) + "' in the file");
}
std::optional<std::size_t> findAny(const CsvTable& table, std::initializer_list<const char16_t*> names) {
    for (const auto* name : names)
        if (const auto column = table.find(name)) return column;
    return std::nullopt;
}

void finish(Rejects& rejects) {
    rejects.finish();
    if (rejects.count() > 0) std::cout << rejects.told() << '\n';
}

std::vector<PlaceRow> readPlaces(const PlacesOptions& options, Rejects& rejects) {
    CsvTable table(options.file, options.encoding, options.separator);
    const auto code = needAny(table, {u"zipcode", u"zip", u"plz"}),
               place = needAny(table, {u"place", u"ort"});
    const auto country = findAny(table, {u"country_code", u"country", u"land"});
    const auto community = findAny(table, {u"community_code", u"community", u"gemeinde"});
    const auto box = findAny(table, {u"box_zipcode", u"box", u"postfach"});
    return rowsOf<PlaceRow>(table, rejects, [&]() -> std::optional<PlaceRow> {
        if (country && !equalIgnoringCase(table.cell(country), fromUtf8(options.country)))
            return std::nullopt;
        return PlaceRow{Text(trim(table.cell(place))), Text(trim(table.cell(community))),
                        Text(trim(table.cell(code))), Text(trim(table.cell(box)))};
    });
}

std::vector<StreetRow> readStreets(const PlacesOptions& options, Rejects& rejects) {
    CsvTable table(options.streets, options.encoding, options.separator);
    const auto code = needAny(table, {u"zipcode", u"zip", u"plz"}),
               place = needAny(table, {u"place", u"ort"});
    const auto street = needAny(table, {u"street", u"strasse"});
    const auto community = findAny(table, {u"community_code", u"community", u"gemeinde"});
    return rowsOf<StreetRow>(table, rejects, [&]() -> std::optional<StreetRow> {
        return StreetRow{Text(trim(table.cell(place))), Text(trim(table.cell(community))),
                         Text(trim(table.cell(street))), Text(trim(table.cell(code)))};
    });
}

// The database for writing, made where there is none.
std::unique_ptr<Session> openForImport(const std::string& name, bool (*create)(DatabasesTopic&, TextView),
                                       bool (*fits)(const clsControl&)) {
    const Text control = FilesTopic::MakePath({Variant(databaseFolder(name)), Variant(u"Control.tsd")});
    if (!FilesTopic::Exist(control)) {
        clsRtm rtm;
        if (!create(rtm, databaseFolder(name)))
            throw CliError("cannot make '" + name + "': " + databaseErrorText(rtmMain::state().F));
    }
    auto session = std::make_unique<Session>(name, Use::change);
    if (!fits(session->control())) throw CliError("'" + name + "' is another database");
    return session;
}

void needDone(const PlaceImportResult& result, const std::string& name) {
    if (result.error == kLocked)
        throw CliError("somebody has '" + name +
                       "' open: all programs that look places up have to be closed for an import");
    if (result.error != 0) throw CliError("cannot fill '" + name + "': " + databaseErrorText(result.error));
}

void import(const PlacesOptions& options) {
    Rejects rejects(options.file + ".rejects.csv");
    auto rows = readPlaces(options, rejects);
    if (rows.empty()) throw CliError("'" + options.file + "' has no place of " + options.country);
    const std::string name = databaseName(options, placeRegister::kPlaces);
    const auto places = openForImport(name, placeRegister::createPlaces, placeRegister::arePlaces);
    const auto result = importPlaces(places->db(), std::move(rows));
    needDone(result, name);
    std::cout << "imported " << result.codes << " codes, " << result.sharedCodes << " of them shared, of "
              << result.places << " places\n";
    finish(rejects);
    if (options.streets.empty()) return;
    Rejects streetRejects(options.streets + ".rejects.csv");
    const auto streetRows = readStreets(options, streetRejects);
    const std::string streetName = databaseName(options, placeRegister::kStreets);
    const auto streets = openForImport(streetName, placeRegister::createStreets, placeRegister::areStreets);
    const auto streetResult = importStreets(streets->db(), places->db(), streetRows);
    needDone(streetResult, streetName);
    std::cout << "imported " << streetResult.stored << " streets";
    if (streetResult.unknown > 0) std::cout << "; left out " << streetResult.unknown << " of unknown places";
    std::cout << '\n';
    finish(streetRejects);
}

struct Shown {
    Text code, place, municipality;
};

void show(const std::vector<Shown>& list, bool json) {
    if (json) {
        Json out = Json::array();
        for (const auto& entry : list)
            out.push_back({{"plz", toUtf8(entry.code)},
                           {"place", toUtf8(entry.place)},
                           {"municipality", toUtf8(entry.municipality)},
                           {"state", toUtf8(clsPlzOrt::StateOf(entry.municipality))}});
        std::cout << jsonText({{"places", std::move(out)}}) << '\n';
        return;
    }
    for (const auto& entry : list)
        std::cout << toUtf8(entry.code) << "  " << printable(entry.place) << "  "
                  << toUtf8(clsPlzOrt::StateOf(entry.municipality)) << '\n';
}

// All places of a code or of names that begin so, without asking.
std::vector<Shown> listed(Session& session, int32 field, const std::string& key, int32 limit, bool& more) {
    std::vector<Shown> found;
    const auto index = session.control().IndexNr(Variant(field));
    walk(session, keyRange(session, index, key, key), false, [&](int32 number) {
        const auto record = session.db().Record(number);
        if (!record || record->Deleted()) return true;
        more = static_cast<int32>(found.size()) >= limit;
        if (!more)
            found.push_back({record->Fields(field == fOrtePostfachPLZ ? fOrtePostfachPLZ : fOrteZustellPLZ),
                             record->Fields(fOrteName), record->Fields(fOrteGemeindeSchluessel)});
        return !more;
    });
    return found;
}

void plz(const PlacesOptions& options) {
    const std::string name = databaseName(options, placeRegister::kPlaces);
    if (!FilesTopic::Exist(FilesTopic::MakePath({Variant(databaseFolder(name)), Variant(u"Control.tsd")})))
        throw CliError("no places in '" + options.folder +
                       "'; make them with: tsrtm places import FILE.csv --to " + options.folder);
    rtmMain::state().runtimeDataDir = fromUtf8(options.folder);
    clsPlzOrt places;
    const Text typed(trim(fromUtf8(options.word)));
    if (typed.empty()) throw CliError("an empty word finds nothing");
    Shown found;
    const bool asks = canAsk() && !options.json;
    if (asks || !options.street.empty()) {
        if (!places.PLZOrt(typed, fromUtf8(options.street), found.code, found.place, found.municipality))
            throw CliError("nothing found or chosen for '" + options.word + "'");
        return show({found}, options.json);
    }
    bool more = false;
    Session session(name, Use::read);
    const bool code = IstZiffern(typed);
    auto list = listed(session, code ? fOrteZustellPLZ : fOrteName, options.word, options.limit, more);
    if (list.empty() && code) list = listed(session, fOrtePostfachPLZ, options.word, options.limit, more);
    if (list.empty() && !options.json) throw CliError("no place for '" + options.word + "'");
    show(list, options.json);
    if (more) std::cerr << "There are more places; --limit shows them.\n";
}

void addPlaceImport(Command places) {
    auto options = std::make_shared<PlacesOptions>();
    const auto command = places.add("import", "Make the databases of places from a CSV file");
    command
        .option("CSV", options->file,
                "Columns country_code, zipcode, place, community_code; if it has them, box_zipcode")
        .required();
    command.option("--streets", options->streets, "Columns place, community_code, street, zipcode")
        .typeName("CSV");
    command.option("--to", options->folder, "The folder of Orte and Strassen; this one without it")
        .typeName("DIR");
    command.option("--country", options->country, "Only rows of this country; DE without it")
        .typeName("CODE");
    addSeparator(command, options->separator);
    addEncoding(command, options->encoding, true);
    command.footer("All files change at once; nobody may have the databases open.");
    command.onRun([options] { import(*options); });
}

}  // namespace

void addPlaces(Command app) {
    const auto places = app.add("places", "Postal codes and places");
    places.needsCommand();
    places.footer("Example:\n  tsrtm places import places.csv --to data");
    addPlaceImport(places);

    auto options = std::make_shared<PlacesOptions>();
    const auto command = app.add("plz", "Places by postal code or name");
    command.option("WORD", options->word, "A code, or a name or its beginning").required();
    command.option("--street", options->street, "A street, where the street list is to be asked");
    command.option("--in", options->folder, "The folder of Orte; this one without it").typeName("DIR");
    addLimit(command, options->limit, "At most so many places; 20 without it");
    addJson(command, options->json);
    command.footer(
        "At a terminal one place is chosen as in the programs; else all that fit are listed.\n"
        "Examples:\n  tsrtm plz 52062\n  tsrtm plz Aachen --json");
    command.onRun([options] { plz(*options); });
}

}  // namespace tsRtm::cli
