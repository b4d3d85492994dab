// tsrtm options list, get, set, delete: the settings of the library and of applications.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/options/OptionList.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/ErrorText.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/Terminal.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::cli {
namespace {

struct OptionsChoice {
    OptionScope scope;
    std::string name;
    std::string value;
    bool all = false;
    bool json = false;
};

platform::SettingsCare& care() { return rtmMain::system().settingsCare; }

[[noreturn]] void complain(const char* what, HKeys hive, platform::SystemError error) {
    const bool damaged = error == platform::SystemError::readFault;
    throw CliError(std::string(what) + " " + toUtf8(care().location(storesHive(hive))) + ": " +
                   (damaged ? "it is damaged; its values are kept as they are until you put it away"
                            : systemErrorText(error)));
}

// The library goes on with defaults where a store cannot be read; whoever looks wants to know.
void needReadable(HKeys hive) {
    if (const auto error = care().check(storesHive(hive)); failed(error))
        complain("cannot read", hive, error);
}

void change(HKeys hive, platform::SystemError error) {
    if (failed(error)) complain("cannot write", hive, error);
}

const char* typeName(OptionKind kind) noexcept {
    return kind == OptionKind::flag ? "flag" : kind == OptionKind::number ? "number" : "text";
}

Json valueJson(const Option& option, const Text& value) {
    if (option.kind == OptionKind::flag) return value != u"0";
    if (option.kind == OptionKind::number) return roundToInt32(Val(value));
    return toUtf8(value);
}

std::string valueText(const Option& option, const Text& value) {
    if (option.kind == OptionKind::flag) return value != u"0" ? "true" : "false";
    return printable(value);
}

Json optionJson(const OptionList& list, const Option& option) {
    const Text stored = list.stored(option);
    return {{"option", option.label},
            {"value", valueJson(option, list.value(option))},
            {"type", typeName(option.kind)},
            {"from", list.source(option)},
            {"stored", stored.empty() ? Json() : Json(toUtf8(stored))},
            {"name", toUtf8(option.name)},
            {"key", toUtf8(option.path)},
            {"hive", option.hive == HKEY_LOCAL_MACHINE ? "machine" : "user"}};
}

void list(const OptionsChoice& options) {
    const OptionList list(options.scope);
    needReadable(list.hive());
    if (options.json) {
        JsonList out("options");
        for (const auto& option : list.all()) out.add(jsonText(optionJson(list, option)));
        return;
    }
    Table table({{"Option", 18}, {"Value", 24}, {"From", 4}});
    for (const auto& option : list.all())
        table.row(
            {printable(fromUtf8(option.label)), valueText(option, list.value(option)), list.source(option)});
    if (options.scope.app) return;
    for (const auto& key : list.keys())
        std::cout << "see also: tsrtm options list --app '" << printable(key) << "'\n";
}

void get(const OptionsChoice& options) {
    const OptionList list(options.scope);
    const Option option = list.find(options.name);
    needReadable(option.hive);
    const bool known = option.rule || option.library;
    if (!known && !store().get(storesHive(option.hive), option.path, option.name))
        throw CliError("no value '" + options.name + "' in " + toUtf8(option.path));
    if (options.json)
        std::cout << jsonText(optionJson(list, option)) << '\n';
    else
        std::cout << valueText(option, list.value(option)) << '\n';
}

void set(const OptionsChoice& options) {
    const OptionList list(options.scope);
    const Option option = list.find(options.name);
    const Text value = OptionList::storable(option, options.value);
    change(option.hive, store().set(storesHive(option.hive), option.path, option.name, value));
}

void removeAll(const OptionsChoice& options, const OptionList& list) {
    if (!options.name.empty()) throw CliError("give a name or --all, not both");
    // An id of delimiters alone is the root, too.
    if (options.scope.app.value_or("").find_first_not_of('\\') == std::string::npos)
        throw CliError("--all deletes the settings of one application; name it with --app ID");
    change(list.hive(), store().removeKey(storesHive(list.hive()), list.path()));
}

void remove(const OptionsChoice& options) {
    const OptionList list(options.scope);
    if (options.all) return removeAll(options, list);
    const Option option = list.find(options.name);
    needReadable(option.hive);
    if (!store().get(storesHive(option.hive), option.path, option.name))
        throw CliError("no value '" + options.name + "' in " + toUtf8(option.path));
    change(option.hive, store().remove(storesHive(option.hive), option.path, option.name));
}

Command addOne(Command group, const std::shared_ptr<OptionsChoice>& options, const char* name,
               const char* help, void (*run)(const OptionsChoice&)) {
    const auto command = group.add(name, help);
    command
        .option("--app", options->scope.app,
                "Of the application with this id; without it, what holds for all applications")
        .typeName("ID");
    command.flag("--machine", options->scope.machine, "Of the machine, for all users");
    command.onRun([options, run] { run(*options); });
    return command;
}

constexpr const char* kNameHelp = "An option as 'list' shows it, or any other value's name";

}  // namespace

void addOptions(Command app) {
    const auto group = app.add("options", "Settings of the library and of applications");
    group.needsCommand();
    group.footer(
        "Settings are kept for each user, some for the machine (--machine). Flags are true or false. What "
        "is\n"
        "not stored has a default, which 'list' shows as such.\n"
        "Examples:\n"
        "  tsrtm options list\n"
        "  tsrtm options set NetWait 10                          (seconds until a wait for a lock ends)\n"
        "  tsrtm options set Schriftart Arial                    (for all applications without their own)\n"
        "  tsrtm options set ShowEndeDialog false --app Kanzlei\n"
        "  tsrtm options set RunTimeDir /srv/programm/ --machine");
    auto options = std::make_shared<OptionsChoice>();
    addJson(addOne(group, options, "list", "Show all options with their values", list), options->json);

    options = std::make_shared<OptionsChoice>();
    auto command = addOne(group, options, "get", "Show what holds, the default too", get);
    command.option("NAME", options->name, kNameHelp).required();
    addJson(command, options->json);

    options = std::make_shared<OptionsChoice>();
    command = addOne(group, options, "set", "Store a value", set);
    command.option("NAME", options->name, kNameHelp).required();
    command.option("VALUE", options->value, "true or false, a number, or a text").required();

    options = std::make_shared<OptionsChoice>();
    command =
        addOne(group, options, "delete", "Delete a stored value, so that the default holds again", remove);
    const auto name = command.option("NAME", options->name, kNameHelp);
    const auto all = command.flag("--all", options->all, "All settings of the application that --app names");
    command.onRun([options, name, all] {
        if (name.count() + all.count() == 0) failMissing("NAME or --all");
        remove(*options);
    });
}

}  // namespace tsRtm::cli
