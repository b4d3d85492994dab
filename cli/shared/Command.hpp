#pragma once
// Commands, their arguments and options: a thin face of the parser of command lines. Only its own source
// includes the parser, which is dear to compile.
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tsRtm/types/Numbers.hpp"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace tsRtm::cli {

enum class InHelp { shown, hidden };
enum class Letters { exact, anyCase };

// An argument or option of a command. A handle; its calls give it back, so that they can be written in a row.
class CommandOption {
 public:
    explicit CommandOption(CLI::Option& option) noexcept : option_(&option) {}

    CommandOption required() const;
    CommandOption typeName(const std::string& word) const;  // what help shows for the value
    CommandOption description(const std::string& text) const;
    CommandOption delimiter(char between) const;  // several values in one word
    CommandOption expected(int values) const;
    CommandOption expected(int least, int most) const;  // most 0: no limit
    CommandOption excludes(CommandOption other) const;
    CommandOption excludes(const std::string& other) const;
    CommandOption needs(CommandOption other) const;

    // Why a word is refused, empty where it is not.
    CommandOption check(std::function<std::string(const std::string& word)> refusal) const;
    CommandOption range(int32 first, int32 last) const;
    CommandOption positive() const;
    CommandOption oneOf(const std::vector<std::string>& words, InHelp inHelp) const;

    // So often it was given.
    std::size_t count() const;
    // The long name without its dashes, empty where it has none.
    std::string longName() const;
    std::string description() const;
    bool takesValue() const;

 private:
    CLI::Option* option_;
};

// A command, or a group of commands. A handle, valid as long as the CommandLine; what its options store
// outlives it.
class Command {
 public:
    explicit Command(CLI::App& app) noexcept : app_(&app) {}

    Command add(const std::string& name, const std::string& help) const;
    // One of the commands below it is needed.
    void needsCommand() const;
    // Below its help.
    void footer(const std::string& text) const;
    void onRun(std::function<void()> work) const;

    // "--name" is an option, "NAME" an argument by its place. Several values go to a vector.
    CommandOption option(const std::string& name, std::string& value, const std::string& help) const;
    CommandOption option(const std::string& name, std::optional<std::string>& value,
                         const std::string& help) const;
    CommandOption option(const std::string& name, std::vector<std::string>& values,
                         const std::string& help) const;
    CommandOption option(const std::string& name, int32& value, const std::string& help) const;
    CommandOption option(const std::string& name, std::optional<int32>& value, const std::string& help) const;
    CommandOption option(const std::string& name, std::vector<int32>& values, const std::string& help) const;
    CommandOption flag(const std::string& name, bool& value, const std::string& help) const;
    // A word that stands for a value.
    template <class Value, class Into>
    CommandOption choice(const std::string& name, Into& into, const std::string& help,
                         const std::map<std::string, Value>& words, Letters letters) const {
        std::map<std::string, int32> numbers;
        for (const auto& [word, value] : words) numbers.emplace(word, static_cast<int32>(value));
        return number(
            name, [&into](int32 number) { into = static_cast<Value>(number); }, help, numbers, letters);
    }
    // The option of this name, which there is.
    CommandOption operator[](const std::string& name) const;

    std::string name() const;
    std::string description() const;
    std::vector<Command> commands() const;
    std::vector<CommandOption> options() const;

 private:
    CommandOption number(const std::string& name, std::function<void(int32)> take, const std::string& help,
                         const std::map<std::string, int32>& words, Letters letters) const;

    CLI::App* app_;
};

// What was typed is no command of the tool. Its text says what is wrong and where to read more.
class UsageError : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};
// For a command that needs one of several: ends it as a required argument that is missing would.
[[noreturn]] void failMissing(const std::string& what);

class CommandLine {
 public:
    CommandLine(const std::string& name, const std::string& description, const std::string& version);
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    Command root() const noexcept { return Command(*app_); }
    // Runs the command; what it throws goes on. False where the help or the version was asked for, and is
    // printed. Throws a UsageError.
    bool run(int argc, char** argv);

 private:
    [[noreturn]] void complain(const std::exception& error, bool missing) const;

    std::unique_ptr<CLI::App> app_;
};

}  // namespace tsRtm::cli
