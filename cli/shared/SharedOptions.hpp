#pragma once
// Arguments and options that several commands have.
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "cli/shared/Command.hpp"
#include "cli/shared/TextFiles.hpp"
#include "cli/shared/Walk.hpp"

namespace tsRtm::cli {

// The positional argument of every command on a database.
void addDatabase(Command command, std::string& name);
// A command on the database whose name stands behind it.
template <class Options>
Command databaseCommand(Command above, const char* name, const char* help,
                        const std::shared_ptr<Options>& options,
                        std::type_identity_t<void (*)(const Options&)> run) {
    const auto added = above.add(name, help);
    addDatabase(added, options->name);
    added.onRun([options, run] { run(*options); });
    return added;
}
void addJson(Command command, bool& json);
void addFields(Command command, std::vector<std::string>& fields);
// The order alone, the limit alone, the deleted records; or all that a WalkOptions has.
void addIndex(Command command, WalkOptions& options);
void addLimit(Command command, int32& limit, const char* help = "At most so many records");
void addDeleted(Command command, WalkOptions& options);
void addWalkOptions(Command command, WalkOptions& options);
// `automatic` is offered to readers only.
void addEncoding(Command command, FileEncoding& encoding, bool reading);
void addSeparator(Command command, std::string& separator);

}  // namespace tsRtm::cli
