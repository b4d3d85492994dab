// tsrtm db list, find, goto, get: records by order, text, key and number.
#include <algorithm>
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "tsRtm/database/clsTSRecord.hpp"

namespace tsRtm::cli {
namespace {

struct SearchesOptions {
    std::string name;
    std::string key;
    int32 number = 0;
    WalkOptions walk;
    std::vector<std::string> fields;
    bool json = false;
};

// What a listing takes, told to stop at the limit.
class Taker {
 public:
    Taker(Session& session, const FieldMap& map, const SearchesOptions& options)
        : options_(options),
          record_(session),
          list_(session, map, map.select(options.fields), options.json) {}
    bool operator()(int32 number) {
        if (!record_.read(number) || (record_.deleted() && !options_.walk.deleted)) return true;
        list_.add(record_);
        ++taken_;
        return options_.walk.limit == 0 || taken_ < options_.walk.limit;
    }
    int32 taken() const noexcept { return taken_; }

 private:
    const SearchesOptions& options_;
    RecordReader record_;
    RecordList list_;
    int32 taken_ = 0;
};

void list(const SearchesOptions& options) {
    Session session(options.name, Use::read);
    const FieldMap map(session.control());
    const Range range = rangeOf(session, map, options.walk);
    Taker taker(session, map, options);
    walk(session, range, options.walk.descending, [&](int32 number) { return taker(number); });
}

void find(const SearchesOptions& options) {
    Session session(options.name, Use::read);
    auto& db = session.db();
    const FieldMap map(session.control());
    db.SetIndex(indexFor(session.control(), map, options.walk.index));
    Taker taker(session, map, options);
    const Text text = fromUtf8(options.key);
    const int32 count = session.count();
    // Behind the last one, so that the search begins with the first.
    db.Gehezu(u"#" + toText(int64{count} + 1));
    for (int32 before = 0;;) {
        const auto record = db.Finde(text);
        session.check("cannot search '" + session.name() + "'");
        if (!record || db.LogSatz() <= before) break;  // around once
        before = db.LogSatz();
        if (!taker(record->Satznummer()) || before >= count) break;
    }
    if (taker.taken() == 0) std::cerr << "nothing in '" << session.name() << "' contains the text\n";
}

void goTo(const SearchesOptions& options) {
    Session session(options.name, Use::read);
    auto& db = session.db();
    const FieldMap map(session.control());
    const int32 index = indexFor(session.control(), map, options.walk.index);
    const Text key = fromUtf8(options.key);
    db.SetIndex(index);
    db.Gehezu(key);
    session.check("cannot go to '" + options.key + "'");
    const bool there = session.count() != 0 && !db.EOFile();
    const int32 position = session.count() == 0 ? 1 : db.LogSatz();
    // Others may have added records since they were counted, not since the search.
    const int32 count = std::max(session.count(), there ? position : position - 1);
    const bool exact = there && db.Exist(key, index);
    RecordReader record(session);
    if (there && !record.read(db.AktSatzNr())) session.fail("cannot read the record", 57);
    const auto fields = map.select(options.fields);
    if (options.json) {
        const Json json{{"position", position},
                        {"of", count},
                        {"exact", exact},
                        {"record", there ? recordJson(record, map, fields) : Json()}};
        std::cout << jsonText(json) << '\n';
        return;
    }
    std::cout << "position " << position << " of " << count << ", "
              << (exact   ? "exact"
                  : there ? "the first key that is not below"
                          : "behind the last record")
              << '\n';
    if (there) printRecord(record, map, fields);
}

void get(const SearchesOptions& options) {
    Session session(options.name, Use::read);
    session.needRecord(options.number);
    const FieldMap map(session.control());
    RecordReader record(session);
    if (!record.read(options.number))
        session.fail("cannot read record " + std::to_string(options.number), 57);
    const auto fields = map.select(options.fields);
    if (options.json)
        std::cout << jsonText(recordJson(record, map, fields)) << '\n';
    else
        printRecord(record, map, fields);
}

void addList(Command db) {
    auto options = std::make_shared<SearchesOptions>();
    const auto added = databaseCommand(db, "list", "List records in the order of an index", options, list);
    addWalkOptions(added, options->walk);
    addFields(added, options->fields);
    addJson(added, options->json);
    added.footer("Example:\n  tsrtm db list Kunden --index ORT --from Berlin --to Bremen --limit 20");
}

void addFind(Command db) {
    auto options = std::make_shared<SearchesOptions>();
    const auto added = databaseCommand(db, "find", "List records that contain a text, without regard to case",
                                       options, find);
    added.option("TEXT", options->key, "What to search").required();
    addIndex(added, options->walk);
    addLimit(added, options->walk.limit);
    addDeleted(added, options->walk);
    addFields(added, options->fields);
    addJson(added, options->json);
}

void addGoto(Command db) {
    auto options = std::make_shared<SearchesOptions>();
    const auto added = databaseCommand(
        db, "goto", "Show the first record whose key is not below, and its position", options, goTo);
    added.option("KEY", options->key, "A key of the index; \"#5\" is its fifth position").required();
    addIndex(added, options->walk);
    addFields(added, options->fields);
    addJson(added, options->json);
}

void addGet(Command db) {
    auto options = std::make_shared<SearchesOptions>();
    const auto added = databaseCommand(db, "get", "Show a record by its number", options, get);
    added.option("NR", options->number, "Record number, from 1").required();
    addFields(added, options->fields);
    addJson(added, options->json);
}

}  // namespace

void addSearches(Command db) {
    addList(db);
    addFind(db);
    addGoto(db);
    addGet(db);
}

}  // namespace tsRtm::cli
