// tsrtm db check, sort: whether the indexes are right, and building them anew.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/Progress.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/Terminal.hpp"

namespace tsRtm::cli {
namespace {

struct CareOptions {
    std::string name;
    std::optional<std::string> index;
    bool repair = false;
    bool json = false;
};

Subscription watch(Session& session, Progress& progress) {
    return session.db().UpdateProgress.connect([&progress](int32, int32 done, int32 of) {
        if (done >= 0 && of > 0) progress.update(static_cast<uint64>(done), static_cast<uint64>(of));
    });
}

void print(const std::vector<Text>& findings, bool sound, const CareOptions& options) {
    if (options.json) {
        Json lines = Json::array();
        for (const auto& finding : findings) lines.push_back(toUtf8(finding));
        std::cout << jsonText({{"sound", sound}, {"findings", lines}}) << '\n';
        return;
    }
    for (const auto& finding : findings) std::cout << printable(finding) << '\n';
    if (sound) std::cout << "sound\n";
}

void check(const CareOptions& options) {
    Session session(options.name, options.repair ? Use::change : Use::read);
    auto& db = session.db();
    bool sound = false;
    {
        Progress progress("Checking", "records");
        const auto watching = watch(session, progress);
        sound = db.Check(options.repair, {});
    }
    session.check("cannot check '" + options.name + "'");
    print(db.Befunde(), sound, options);
    if (sound) return;
    if (!options.repair)
        throw CliError("'" + options.name + "' has faults; rebuild its indexes with: tsrtm db check " +
                       options.name + " --repair");
    if (!db.Check(false, {}))
        throw CliError("'" + options.name +
                       "' still has faults: somebody else has it open, or the device fails");
    throw CliError("'" + options.name + "' had faults; its indexes are rebuilt");
}

void sort(const CareOptions& options) {
    Session session(options.name, Use::alone);
    const FieldMap map(session.control());
    const int32 index = options.index ? map.index(*options.index) : -1;
    if (index == 0) throw CliError("the order of storage is no index");
    Progress progress("Sorting", "records");
    const auto watching = watch(session, progress);
    if (session.db().Sort(index)) return;
    session.check("cannot build the indexes of '" + options.name + "'");
    throw CliError("cannot build the indexes of '" + options.name + "': somebody else has it open");
}

}  // namespace

void addCare(Command db) {
    auto checked = std::make_shared<CareOptions>();
    const auto check_ =
        db.add("check", "Hold every index against the records; exit status 1 where one is wrong");
    addDatabase(check_, checked->name);
    check_.flag("--repair", checked->repair, "Rebuild what is wrong");
    addJson(check_, checked->json);
    check_.onRun([checked] { check(*checked); });

    auto sorted = std::make_shared<CareOptions>();
    const auto sort_ = db.add("sort", "Build the indexes anew");
    addDatabase(sort_, sorted->name);
    sort_.option("--index", sorted->index, "Only the index that begins with this field").typeName("FIELD");
    sort_.onRun([sorted] { sort(*sorted); });
}

}  // namespace tsRtm::cli
