// tsrtm completion: scripts for shells, made from the commands themselves.
#include <CLI/CLI.hpp>
#include <iostream>

#include "cli/Commands.hpp"

namespace tsRtm::cli {
namespace {

// A command by the words that lead to it, and what may follow them.
struct Node {
    std::string path;  // "db list", empty for the tool itself
    std::vector<const CLI::App*> commands;
    std::vector<const CLI::Option*> options;
};

void collect(const CLI::App& app, const std::string& path, std::vector<Node>& into) {
    Node node{path, app.get_subcommands([](const CLI::App*) { return true; }), {}};
    for (const auto* option : app.get_options())
        if (!option->get_lnames().empty()) node.options.push_back(option);
    into.push_back(node);
    for (const auto* command : node.commands)
        collect(*command, path.empty() ? command->get_name() : path + " " + command->get_name(), into);
}

std::string words(const Node& node) {
    std::string out;
    const auto add = [&out](const std::string& word) { out += (out.empty() ? "" : " ") + word; };
    for (const auto* command : node.commands) add(command->get_name());
    for (const auto* option : node.options) add("--" + option->get_lnames().front());
    return out;
}

// Inside of single quotes, for a shell.
std::string quoted(const std::string& text) {
    std::string out = "'";
    for (const char c : text) {
        if (c == '\'')
            out += "'\\''";
        else
            out += c == '\n' ? ' ' : c;
    }
    return out + "'";
}

// The words that are commands lead to the node; its words complete a command or an option, files all else.
void bash(const std::vector<Node>& nodes) {
    std::cout << "_tsrtm() {\n"
                 "    local cur=${COMP_WORDS[COMP_CWORD]} path= words= i\n"
                 "    for ((i = 1; i < COMP_CWORD; i++)); do\n"
                 "        case \"$path${path:+ }${COMP_WORDS[i]}\" in\n";
    for (const auto& node : nodes)
        if (!node.path.empty())
            std::cout << "            " << quoted(node.path) << ") path=" << quoted(node.path) << " ;;\n";
    std::cout << "        esac\n"
                 "    done\n"
                 "    case \"$path\" in\n";
    for (const auto& node : nodes)
        std::cout << "        " << quoted(node.path) << ") words=" << quoted(words(node)) << " ;;\n";
    std::cout << "    esac\n"
                 "    COMPREPLY=($(compgen -W \"$words\" -- \"$cur\"))\n"
                 "}\n"
                 "complete -o default -F _tsrtm tsrtm\n";
}

void zsh(const std::vector<Node>& nodes) {
    std::cout << "#compdef tsrtm\n";
    std::cout << "autoload -U +X bashcompinit && bashcompinit\n";
    bash(nodes);
}

std::string fishCondition(const Node& node) {
    if (node.path.empty()) return "__fish_use_subcommand";
    std::string condition;
    std::istringstream path(node.path);
    for (std::string word; path >> word;)
        condition += (condition.empty() ? "" : "; and ") + ("__fish_seen_subcommand_from " + word);
    if (node.commands.empty()) return condition;
    condition += "; and not __fish_seen_subcommand_from";
    for (const auto* command : node.commands) condition += " " + command->get_name();
    return condition;
}

void fish(const std::vector<Node>& nodes) {
    for (const auto& node : nodes) {
        const std::string start = "complete -c tsrtm -n " + quoted(fishCondition(node));
        for (const auto* command : node.commands)
            std::cout << start << " -f -a " << command->get_name() << " -d "
                      << quoted(command->get_description()) << '\n';
        for (const auto* option : node.options)
            std::cout << start << " -l " << option->get_lnames().front()
                      << (option->get_expected_max() > 0 ? " -r" : "") << " -d "
                      << quoted(option->get_description()) << '\n';
    }
}

}  // namespace

void addCompletion(CLI::App& app) {
    auto shell = std::make_shared<std::string>();
    auto* command =
        app.add_subcommand("completion", "Print a script that completes commands and options in a shell");
    command->add_option("SHELL", *shell, "bash, zsh or fish")
        ->required()
        ->check(CLI::IsMember({"bash", "zsh", "fish"}));
    command->footer(
        "Once:     source <(tsrtm completion bash)\n"
        "For good: tsrtm completion bash > ~/.local/share/bash-completion/completions/tsrtm\n"
        "          tsrtm completion fish > ~/.config/fish/completions/tsrtm.fish");
    command->callback([shell, &app] {
        std::vector<Node> nodes;
        collect(app, {}, nodes);
        if (*shell == "fish")
            fish(nodes);
        else if (*shell == "zsh")
            zsh(nodes);
        else
            bash(nodes);
    });
}

}  // namespace tsRtm::cli
