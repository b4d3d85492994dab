// tsrtm db watch: changes by others as they happen.
#include <chrono>
#include <functional>
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/Terminal.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::cli {
namespace {

constexpr std::chrono::milliseconds kBetweenLooks{200};

struct WatchOptions {
    std::string name;
    std::vector<std::string> fields;
    int32 count = 0;
    bool json = false;
};

// Every record as it was at the last look, by a number that changes with it.
class Watcher {
 public:
    Watcher(Session& session, const WatchOptions& options)
        : session_(session),
          options_(options),
          map_(session.control()),
          fields_(map_.select(options.fields)),
          record_(session) {
        look([](const char*, int32) {});
    }

    void run() {
        tell("watching " + std::to_string(seen_.size()) + " records of '" + session_.name() + "'");
        while (options_.count == 0 || told_ < options_.count) {
            rtmMain::system().clock.sleep(kBetweenLooks);
            if (!session_.db().InPlace())
                throw CliError("'" + session_.name() + "' was moved, removed or replaced");
            look([&](const char* what, int32 number) { show(what, number); });
        }
    }

 private:
    struct Seen {
        std::size_t content = 0;
        bool deleted = false;
    };

    template <class Changed>
    void look(Changed changed) {
        int32 number = 0;
        while (record_.read(++number)) {
            const Seen now{contentNow(), record_.deleted()};
            const bool isNew = static_cast<std::size_t>(number) > seen_.size();
            if (isNew) seen_.emplace_back();
            Seen& before = seen_[static_cast<std::size_t>(number - 1)];
            const char* what = isNew                           ? "added"
                               : before.deleted != now.deleted ? (now.deleted ? "deleted" : "undeleted")
                               : before.content != now.content ? "changed"
                                                               : nullptr;
            before = now;
            if (what) changed(what, number);
        }
    }
    std::size_t contentNow() const {
        std::size_t sum = 0;
        for (int32 field = 1; field <= map_.count(); ++field)
            sum = sum * 1099511628211u ^ std::hash<TextView>()(record_.field(field));
        return sum;
    }
    void show(const char* what, int32 number) {
        if (options_.count != 0 && told_ >= options_.count) return;
        ++told_;
        if (options_.json) {
            std::cout << jsonText({{"event", what}, {"record", recordJson(record_, map_, fields_)}})
                      << std::endl;
            return;
        }
        std::string line = what + (" " + std::to_string(number));
        for (const int32 field : fields_)
            if (!record_.field(field).empty())
                line += "  " + map_.label(field) + "=" + printable(record_.field(field));
        std::cout << line << std::endl;
    }
    static void tell(const std::string& text) { std::cerr << text << std::endl; }

    Session& session_;
    const WatchOptions& options_;
    FieldMap map_;
    std::vector<int32> fields_;
    RecordReader record_;
    std::vector<Seen> seen_;
    int32 told_ = 0;
};

}  // namespace

void addWatch(Command db) {
    auto options = std::make_shared<WatchOptions>();
    const auto command = db.add("watch", "Show what others change, as it happens, until interrupted");
    addDatabase(command, options->name);
    addFields(command, options->fields);
    addLimit(command, options->count, "End after so many changes");
    addJson(command, options->json);
    command.footer(
        "A line a change: added, changed, deleted or undeleted, the number of the record and its\n"
        "fields. A new memo changes its record, and so does a row of a chain that becomes its first\n"
        "one, or the last one where the chain has two pointers.");
    command.onRun([options] {
        Session session(options->name, Use::read);
        Watcher(session, *options).run();
    });
}

}  // namespace tsRtm::cli
