#include "cli/shared/SharedOptions.hpp"

#include <CLI/CLI.hpp>

namespace tsRtm::cli {
namespace {

std::string atLeastOne(const std::string& text) {
    const bool digits = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
    return digits && text.find_first_not_of('0') != std::string::npos ? "" : "must be 1 or more";
}

std::string oneSeparator(const std::string& text) {
    return text.size() == 1 && text.find_first_of("\"\r\n") == std::string::npos
               ? ""
               : "must be one character, no quote";
}

}  // namespace

void addDatabase(CLI::App& command, std::string& name) {
    command.add_option("DB", name, "The database: a directory, with or without its ending .DBD")->required();
}

void addJson(CLI::App& command, bool& json) { command.add_flag("--json", json, "Write JSON"); }

void addFields(CLI::App& command, std::vector<std::string>& fields) {
    command.add_option("--fields", fields, "Only these fields, by name or number")
        ->delimiter(',')
        ->type_name("F,...");
}

void addIndex(CLI::App& command, WalkOptions& options) {
    command
        .add_option("--index", options.index,
                    "Order: the index that begins with this field; 0 is the order of storage")
        ->type_name("FIELD");
}

void addLimit(CLI::App& command, int32& limit, const char* help) {
    command.add_option("--limit", limit, help)->check(atLeastOne)->type_name("N");
}

void addDeleted(CLI::App& command, WalkOptions& options) {
    command.add_flag("--deleted", options.deleted, "With the records that are marked as deleted");
}

void addWalkOptions(CLI::App& command, WalkOptions& options) {
    addIndex(command, options);
    command.add_option("--from", options.from, "Begin at the first key that is not below")->type_name("KEY");
    command
        .add_option("--to", options.to, "End behind the last key that is not above or begins with this one")
        ->type_name("KEY");
    addLimit(command, options.limit);
    command.add_flag("--descending", options.descending, "From the end to the beginning");
    addDeleted(command, options);
}

void addEncoding(CLI::App& command, FileEncoding& encoding, bool reading) {
    std::map<std::string, FileEncoding> words{{"utf8", FileEncoding::utf8},
                                              {"latin1", FileEncoding::latin1},
                                              {"1252", FileEncoding::cp1252},
                                              {"850", FileEncoding::cp850}};
    if (reading) words.emplace("auto", FileEncoding::automatic);
    command
        .add_option(
            "--encoding", encoding,
            reading
                ? "Of the file: auto (the default: utf8 where it fits, else 1252), utf8, latin1, 1252 or 850"
                : "Of the file: utf8 (the default), latin1, 1252 or 850")
        ->transform(CLI::CheckedTransformer(words, CLI::ignore_case).description(""))
        ->type_name("NAME");
}

void addSeparator(CLI::App& command, std::string& separator) {
    command.add_option("--separator", separator, "Between fields, one character; the comma without it")
        ->check(oneSeparator)
        ->type_name("C");
}

}  // namespace tsRtm::cli
