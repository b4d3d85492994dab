#include "cli/shared/SharedOptions.hpp"

#include "cli/shared/Command.hpp"

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

void addDatabase(Command command, std::string& name) {
    command.option("DB", name, "The database: a directory, with or without its ending .DBD").required();
}

void addJson(Command command, bool& json) { command.flag("--json", json, "Write JSON"); }

void addFields(Command command, std::vector<std::string>& fields) {
    command.option("--fields", fields, "Only these fields, by name or number")
        .delimiter(',')
        .typeName("F,...");
}

void addIndex(Command command, WalkOptions& options) {
    command
        .option("--index", options.index,
                "Order: the index that begins with this field; 0 is the order of storage")
        .typeName("FIELD");
}

void addLimit(Command command, int32& limit, const char* help) {
    command.option("--limit", limit, help).check(atLeastOne).typeName("N");
}

void addDeleted(Command command, WalkOptions& options) {
    command.flag("--deleted", options.deleted, "With the records that are marked as deleted");
}

void addWalkOptions(Command command, WalkOptions& options) {
    addIndex(command, options);
    command.option("--from", options.from, "Begin at the first key that is not below").typeName("KEY");
    command.option("--to", options.to, "End behind the last key that is not above or begins with this one")
        .typeName("KEY");
    addLimit(command, options.limit);
    command.flag("--descending", options.descending, "From the end to the beginning");
    addDeleted(command, options);
}

void addEncoding(Command command, FileEncoding& encoding, bool reading) {
    std::map<std::string, FileEncoding> words{{"utf8", FileEncoding::utf8},
                                              {"latin1", FileEncoding::latin1},
                                              {"1252", FileEncoding::cp1252},
                                              {"850", FileEncoding::cp850}};
    if (reading) words.emplace("auto", FileEncoding::automatic);
    command
        .choice(
            "--encoding", encoding,
            reading
                ? "Of the file: auto (the default: utf8 where it fits, else 1252), utf8, latin1, 1252 or 850"
                : "Of the file: utf8 (the default), latin1, 1252 or 850",
            words, Letters::anyCase)
        .typeName("NAME");
}

void addSeparator(Command command, std::string& separator) {
    command.option("--separator", separator, "Between fields, one character; the comma without it")
        .check(oneSeparator)
        .typeName("C");
}

}  // namespace tsRtm::cli
