// tsrtm db stats: what the files of a database hold, and what a reorganisation would gain.
#include <cmath>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "cli/Commands.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/Progress.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "tsRtm/database/DatabaseCare.hpp"

namespace tsRtm::cli {
namespace {

struct StatisticsOptions {
    std::string name;
    bool json = false;
};

std::string percent(float64 share) { return std::to_string(std::lround(share * 100)) + "%"; }

// "412", "12.3 K", "1.5 M".
std::string size(uint64 bytes) {
    auto value = static_cast<float64>(bytes);
    const char* unit = " KMGT";
    for (; value >= 1024 && unit[1] != '\0'; ++unit) value /= 1024;
    if (*unit == ' ') return std::to_string(bytes);
    std::ostringstream out;
    out << std::fixed << std::setprecision(1) << value << ' ' << *unit;
    return out.str();
}

Json statisticsJson(const IndexStatistics& index) {
    return {{"file", toUtf8(index.file)}, {"bytes", index.bytes},         {"levels", index.levels},
            {"nodes", index.nodes},       {"freeNodes", index.freeNodes}, {"keys", index.keys},
            {"fill", index.fill()},       {"afterSort", index.afterSort}};
}

Json storeJson(const StoreStatistics& store) {
    return {{"file", toUtf8(store.file)}, {"bytes", store.bytes},     {"entries", store.entries},
            {"used", store.used},         {"deleted", store.deleted}, {"free", store.free},
            {"lost", store.lost()},       {"gain", store.gain()}};
}

template <class Items, class Form>
Json listJson(const Items& items, Form form) {
    Json list = Json::array();
    for (const auto& item : items) list.push_back(form(item));
    return list;
}

void printJson(const DatabaseStatistics& stats) {
    const Json data{{"bytes", stats.bytes},
                    {"records", stats.records},
                    {"deleted", stats.deleted},
                    {"recordBytes", stats.recordBytes}};
    std::cout << jsonText({{"data", data},
                           {"indexes", listJson(stats.indexes, statisticsJson)},
                           {"memos", listJson(stats.memos, storeJson)},
                           {"chains", listJson(stats.chains, storeJson)},
                           {"gain", stats.gain()}})
              << '\n';
}

void print(const DatabaseStatistics& stats) {
    Table table(
        {{"File", 14}, {"Size", 9, true}, {"Used", 9, true}, {"Free", 9, true}, {"Lost", 9, true}, {"", 1}});
    const uint64 deleted = static_cast<uint64>(stats.deleted) * stats.recordBytes;
    table.row({"Data.tsd", size(stats.bytes), size(stats.bytes - std::min(stats.bytes, deleted)),
               size(deleted), "0",
               std::to_string(stats.records) + " records, " + std::to_string(stats.deleted) + " deleted"});
    for (const auto& index : stats.indexes) {
        const uint64 free = index.bytes - std::min(index.bytes, index.afterSort);
        const std::string what = index.levels == 0 ? std::string("array")
                                                   : std::to_string(index.levels) + " levels, " +
                                                         std::to_string(index.nodes) + " nodes " +
                                                         percent(index.fill()) + " full";
        table.row({toUtf8(index.file), size(index.bytes), size(index.bytes - free), size(free), "0", what});
    }
    const auto stores = [&](const std::vector<StoreStatistics>& list, const char* what) {
        for (const auto& store : list)
            table.row({toUtf8(store.file), size(store.bytes), size(store.used), size(store.free),
                       size(store.lost()), std::to_string(store.entries) + what});
    };
    stores(stats.memos, " texts");
    stores(stats.chains, " rows");
    std::cout << "a reorganisation would gain " << size(stats.gain()) << (stats.gain() < 1024 ? " bytes" : "")
              << '\n';
}

void run(const StatisticsOptions& options) {
    Session session(options.name, Use::read);
    DatabaseStatistics stats;
    {
        Progress progress("Looking", "records");
        stats =
            DatabaseCare(session.db()).statistics([&](uint64 done, uint64 of) { progress.update(done, of); });
    }
    session.check("cannot look through '" + options.name + "'");
    options.json ? printJson(stats) : print(stats);
}

}  // namespace

void addStatistics(Command db) {
    auto options = std::make_shared<StatisticsOptions>();
    const auto command = db.add(
        "stats",
        "Sizes, room that is free or lost, depth and fill of indexes, and what a reorganisation gains");
    addDatabase(command, options->name);
    addJson(command, options->json);
    command.footer(
        "Free room of chains is used again; all of it is given back by: tsrtm db rebuild. Lost room is\n"
        "what deaths left: nothing leads to it.");
    command.onRun([options] { run(*options); });
}

}  // namespace tsRtm::cli
