#include "cli/shared/Command.hpp"

#include <CLI/CLI.hpp>

namespace tsRtm::cli {

CommandOption CommandOption::required() const { return CommandOption(*option_->required()); }
CommandOption CommandOption::typeName(const std::string& word) const {
    return CommandOption(*option_->type_name(word));
}
CommandOption CommandOption::description(const std::string& text) const {
    return CommandOption(*option_->description(text));
}
CommandOption CommandOption::delimiter(char between) const {
    return CommandOption(*option_->delimiter(between));
}
CommandOption CommandOption::expected(int values) const { return CommandOption(*option_->expected(values)); }
CommandOption CommandOption::expected(int least, int most) const {
    return CommandOption(*option_->expected(least, most));
}
CommandOption CommandOption::excludes(CommandOption other) const {
    return CommandOption(*option_->excludes(other.option_));
}
CommandOption CommandOption::excludes(const std::string& other) const {
    return CommandOption(*option_->excludes(other));
}
CommandOption CommandOption::needs(CommandOption other) const {
    return CommandOption(*option_->needs(other.option_));
}

CommandOption CommandOption::check(std::function<std::string(const std::string&)> refusal) const {
    return CommandOption(*option_->check(std::move(refusal)));
}
CommandOption CommandOption::range(int32 first, int32 last) const {
    return CommandOption(*option_->check(CLI::Range(first, last)));
}
CommandOption CommandOption::positive() const { return CommandOption(*option_->check(CLI::PositiveNumber)); }
CommandOption CommandOption::oneOf(const std::vector<std::string>& words, InHelp inHelp) const {
    CLI::IsMember member(words);
    if (inHelp == InHelp::hidden) member.description("");
    return CommandOption(*option_->check(member));
}

std::size_t CommandOption::count() const { return option_->count(); }
std::string CommandOption::longName() const {
    const auto& names = option_->get_lnames();
    return names.empty() ? "" : names.front();
}
std::string CommandOption::description() const { return option_->get_description(); }
bool CommandOption::takesValue() const { return option_->get_expected_max() > 0; }

Command Command::add(const std::string& name, const std::string& help) const {
    return Command(*app_->add_subcommand(name, help));
}
void Command::needsCommand() const { app_->require_subcommand(1); }
void Command::footer(const std::string& text) const { app_->footer(text); }
void Command::onRun(std::function<void()> work) const { app_->callback(std::move(work)); }

CommandOption Command::option(const std::string& name, std::string& value, const std::string& help) const {
    return CommandOption(*app_->add_option(name, value, help));
}
CommandOption Command::option(const std::string& name, std::optional<std::string>& value,
                              const std::string& help) const {
    return CommandOption(*app_->add_option(name, value, help));
}
CommandOption Command::option(const std::string& name, std::vector<std::string>& values,
                              const std::string& help) const {
    return CommandOption(*app_->add_option(name, values, help));
}
CommandOption Command::option(const std::string& name, int32& value, const std::string& help) const {
    return CommandOption(*app_->add_option(name, value, help));
}
CommandOption Command::option(const std::string& name, std::optional<int32>& value,
                              const std::string& help) const {
    return CommandOption(*app_->add_option(name, value, help));
}
CommandOption Command::option(const std::string& name, std::vector<int32>& values,
                              const std::string& help) const {
    return CommandOption(*app_->add_option(name, values, help));
}
CommandOption Command::flag(const std::string& name, bool& value, const std::string& help) const {
    return CommandOption(*app_->add_flag(name, value, help));
}
CommandOption Command::number(const std::string& name, std::function<void(int32)> take,
                              const std::string& help, const std::map<std::string, int32>& words,
                              Letters letters) const {
    auto* option = app_->add_option_function<int32>(name, std::move(take), help);
    auto transformer = letters == Letters::anyCase ? CLI::CheckedTransformer(words, CLI::ignore_case)
                                                   : CLI::CheckedTransformer(words);
    return CommandOption(*option->transform(transformer.description("")));
}
CommandOption Command::operator[](const std::string& name) const {
    return CommandOption(*app_->get_option(name));
}

std::string Command::name() const { return app_->get_name(); }
std::string Command::description() const { return app_->get_description(); }
std::vector<Command> Command::commands() const {
    std::vector<Command> out;
    for (auto* command : app_->get_subcommands([](const CLI::App*) { return true; }))
        out.emplace_back(*command);
    return out;
}
std::vector<CommandOption> Command::options() const {
    std::vector<CommandOption> out;
    for (auto* option : app_->get_options()) out.emplace_back(*option);
    return out;
}

void failMissing(const std::string& what) { throw CLI::RequiredError(what); }

CommandLine::CommandLine(const std::string& name, const std::string& description, const std::string& version)
    : app_(std::make_unique<CLI::App>(description, name)) {
    app_->set_version_flag("--version", version);
}
CommandLine::~CommandLine() = default;

bool CommandLine::run(int argc, char** argv) {
    try {
        app_->parse(argc, argv);
    } catch (const CLI::Success& done) {
        app_->exit(done);
        return false;
    } catch (const CLI::RequiredError& error) {
        complain(error, true);
    } catch (const CLI::ParseError& error) {
        complain(error, false);
    }
    return true;
}

// The first line of what the parser says, and where to read more.
void CommandLine::complain(const std::exception& error, bool missing) const {
    std::string path = app_->get_name();
    for (const auto* at = app_.get(); !at->get_subcommands().empty();) {
        at = at->get_subcommands().front();
        path += " " + at->get_name();
    }
    std::string message = error.what();
    // The parser misses a command before it looks at the words it could not place.
    const auto words = app_->remaining(true);
    if (missing && !words.empty()) message = "no command or option '" + words.front() + "'";
    throw UsageError(message.substr(0, message.find('\n')) + " (see: " + path + " --help)");
}

}  // namespace tsRtm::cli
