#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/OptionTable.h"
#include "cli/Timecodes.h"

#include <algorithm>
#include <iterator>
#include <memory>

namespace zanfcp::cli {
namespace {

std::string joined(const std::vector<std::string>& words, const char* separator)
{
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : separator) + word;
    return text;
}

std::vector<std::string> optionNames(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_snames())
            names.push_back("-" + name);
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    }
    return names;
}

/// The names after which a value stands, as a pattern of `case`.
std::string optionPattern(const CLI::App& app, const CLI::Option& option)
{
    std::vector<std::string> patterns;
    for (const std::string& name : option.get_snames())
        patterns.push_back("\"" + commandName(app) + " -" + name + "\"");
    for (const std::string& name : option.get_lnames())
        patterns.push_back("\"" + commandName(app) + " --" + name + "\"");
    return joined(patterns, " | ");
}

/// The shell command that offers values for an option, by what its help calls them.
std::string offer(const CLI::App& app, const std::string& valueName)
{
    if (valueName == "KEY=VALUE") {
        std::vector<std::string> keys;
        for (const SettableOption& option : settableOptions())
            keys.push_back(option.path + "=");
        return "_zanfcp_words '" + joined(keys, " ") + "'; compopt -o nospace 2>/dev/null";
    }
    if (valueName == "RATE") return "_zanfcp_words '" + joined(rateNames(), " ") + "'";
    if (valueName.ends_with(".json")) return "_zanfcp_files json";
    if (valueName == "DIR") return "_zanfcp_files"; // folders alone
    if (valueName == "FILE") return "_zanfcp_files xml";
    if (valueName == "FORMAT") return "_zanfcp_words 'raw wav'";
    if (valueName == "OUT") return commandName(app).starts_with("mxf ") ? "_zanfcp_files wav" : "_zanfcp_files xml";
    return ":";
}

/// The commands that help shows, and their groups, by full names; what belongs to a group stands before it.
std::vector<const CLI::App*> completedApps(const CLI::App& parent)
{
    std::vector<const CLI::App*> apps;
    for (const CLI::App* app : parent.get_subcommands(nullptr)) {
        if (app->get_group().empty()) continue;
        std::ranges::copy(completedApps(*app), std::back_inserter(apps));
        apps.push_back(app);
    }
    return apps;
}

/// The commands that can stand behind this one.
std::string subcommandNames(const CLI::App& parent)
{
    std::vector<std::string> names;
    for (const CLI::App* app : parent.get_subcommands(nullptr))
        if (!app->get_group().empty()) names.push_back(app->get_name());
    return joined(names, " ");
}

std::string bashCompletion(const CLI::App& parent, const std::vector<Command>& commands)
{
    const std::vector<const CLI::App*> apps = completedApps(parent);
    std::vector<std::string> ways;
    for (const CLI::App* app : apps)
        ways.push_back("'" + commandName(*app->get_parent()) + " " + app->get_name() + "'");

    std::string text = R"(# bash completion for zanfcp

_zanfcp_words() {
    local word
    while IFS= read -r word; do COMPREPLY+=("$word"); done < <(compgen -W "$1" -- "$cur")
}

# Folders, and files with one of the extensions.
_zanfcp_files() {
    local word extension
    compopt -o filenames 2>/dev/null
    while IFS= read -r word; do COMPREPLY+=("$word"); done < <(compgen -d -- "$cur")
    for extension; do
        while IFS= read -r word; do COMPREPLY+=("$word"); done < <(compgen -f -X "!*.$extension" -- "$cur")
    done
}

_zanfcp() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]} command='' i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; i++)); do
        case "$command ${COMP_WORDS[i]}" in
)";
    text += "        " + joined(ways, " | ") +
            ") command=${command:+$command }${COMP_WORDS[i]} ;;\n        esac\n    done\n";
    text += "    case \"$command $prev\" in\n";
    for (const CLI::App* app : apps)
        for (const CLI::Option* option : app->get_options())
            if (!option->get_positional() && option->get_items_expected_max() > 0 && !option->get_type_name().empty())
                text += "    " + optionPattern(*app, *option) + ") " + offer(*app, option->get_type_name()) +
                        "; return ;;\n";
    text += "    esac\n    case \"$command $cur\" in\n";
    text += "    ' -'*) _zanfcp_words '" + joined(optionNames(parent), " ") + "' ;;\n";
    text += "    ' '*) _zanfcp_words '" + subcommandNames(parent) + "' ;;\n";
    for (const CLI::App* app : apps) {
        const std::string name = commandName(*app);
        const auto command = std::ranges::find(commands, app, &Command::app);
        text += "    '" + name + " -'*) _zanfcp_words '" + joined(optionNames(*app), " ") + "' ;;\n";
        if (const std::string names = subcommandNames(*app); !names.empty())
            text += "    '" + name + " '*) _zanfcp_words '" + names + "' ;;\n";
        else if (command != commands.end() && !command->fileTypes.empty())
            text += "    '" + name + " '*) _zanfcp_files " + joined(command->fileTypes, " ") + " ;;\n";
    }
    return text + "    esac\n}\n\ncomplete -F _zanfcp zanfcp\n";
}

} // namespace

Command addCompletion(CLI::App& parent, const std::vector<Command>& commands)
{
    auto shell = std::make_shared<std::string>();
    CLI::App* app = parent.add_subcommand("completion", "Print the completion file of a shell")->group("");
    app->add_option("SHELL", *shell, "bash")->required()->type_name("")->check(CLI::IsMember({"bash"}));
    return {
        .app = app,
        .details = "For packages, which install what this prints.",
        .examples = {{"source <(zanfcp completion bash)", "complete in this shell"}},
        .run =
            [shell, &parent, &commands](Console& console) { // bash is the one shell there is
                console.print(bashCompletion(parent, commands));
                return kDone;
            },
    };
}

} // namespace zanfcp::cli
