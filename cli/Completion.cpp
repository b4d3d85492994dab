// tsrtm completion: scripts for shells, made from the commands themselves.
#include <iostream>
#include <sstream>

#include "cli/Commands.hpp"
#include "cli/shared/Command.hpp"

namespace tsRtm::cli {
namespace {

// A command by the words that lead to it, and what may follow them.
struct Node {
    std::string path;  // "db list", empty for the tool itself
    std::vector<Command> commands;
    std::vector<CommandOption> options;
};

void collect(Command app, const std::string& path, std::vector<Node>& into) {
    Node node{path, app.commands(), {}};
    for (const auto option : app.options())
        if (!option.longName().empty()) node.options.push_back(option);
    into.push_back(node);
    for (const auto command : node.commands)
        collect(command, path.empty() ? command.name() : path + " " + command.name(), into);
}

std::string words(const Node& node) {
    std::string out;
    const auto add = [&out](const std::string& word) { out += (out.empty() ? "" : " ") + word; };
    for (const auto command : node.commands) add(command.name());
    for (const auto option : node.options) add("--" + option.longName());
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
    for (const auto command : node.commands) condition += " " + command.name();
    return condition;
}

void fish(const std::vector<Node>& nodes) {
    for (const auto& node : nodes) {
        const std::string start = "complete -c tsrtm -n " + quoted(fishCondition(node));
        for (const auto command : node.commands)
            std::cout << start << " -f -a " << command.name() << " -d " << quoted(command.description())
                      << '\n';
        for (const auto option : node.options)
            std::cout << start << " -l " << option.longName() << (option.takesValue() ? " -r" : "") << " -d "
                      << quoted(option.description()) << '\n';
    }
}

}  // namespace

void addCompletion(Command app) {
    auto shell = std::make_shared<std::string>();
    const auto command =
        app.add("completion", "Print a script that completes commands and options in a shell");
    command.option("SHELL", *shell, "bash, zsh or fish")
        .required()
        .oneOf({"bash", "zsh", "fish"}, InHelp::shown);
    command.footer(
        "Once:     source <(tsrtm completion bash)\n"
        "For good: tsrtm completion bash > ~/.local/share/bash-completion/completions/tsrtm\n"
        "          tsrtm completion fish > ~/.config/fish/completions/tsrtm.fish");
    command.onRun([shell, app] {
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
