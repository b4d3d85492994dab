#pragma once
// Arguments and options that several commands have.
#include <string>
#include <vector>

#include "cli/shared/TextFiles.hpp"
#include "cli/shared/Walk.hpp"

namespace CLI {
class App;
}

namespace tsRtm::cli {

// The positional argument of every command on a database.
void addDatabase(CLI::App& command, std::string& name);
void addJson(CLI::App& command, bool& json);
void addFields(CLI::App& command, std::vector<std::string>& fields);
// The order alone, the limit alone, the deleted records; or all that a WalkOptions has.
void addIndex(CLI::App& command, WalkOptions& options);
void addLimit(CLI::App& command, int32& limit, const char* help = "At most so many records");
void addDeleted(CLI::App& command, WalkOptions& options);
void addWalkOptions(CLI::App& command, WalkOptions& options);
// `automatic` is offered to readers only.
void addEncoding(CLI::App& command, FileEncoding& encoding, bool reading);
void addSeparator(CLI::App& command, std::string& separator);

}  // namespace tsRtm::cli
