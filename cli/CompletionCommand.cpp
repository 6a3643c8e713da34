#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/OptionTable.h"
#include "cli/Timecodes.h"

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
        patterns.push_back("\"" + app.get_name() + " -" + name + "\"");
    for (const std::string& name : option.get_lnames())
        patterns.push_back("\"" + app.get_name() + " --" + name + "\"");
    return joined(patterns, " | ");
}

/// The shell command that offers values for an option, by what its help calls them.
std::string offer(const std::string& valueName)
{
    if (valueName == "KEY=VALUE") {
        std::vector<std::string> keys;
        for (const SettableOption& option : settableOptions())
            keys.push_back(option.path + "=");
        return "_zanfcp_words '" + joined(keys, " ") + "'; compopt -o nospace 2>/dev/null";
    }
    if (valueName == "RATE") return "_zanfcp_words '" + joined(rateNames(), " ") + "'";
    if (valueName.ends_with(".json")) return "_zanfcp_files json";
    if (valueName == "OUT") return "_zanfcp_files xml";
    return ":";
}

std::string bashCompletion(const CLI::App& parent, const std::vector<Command>& commands)
{
    std::vector<std::string> names;
    for (const Command& command : commands)
        if (!command.app->get_group().empty()) names.push_back(command.app->get_name());

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
        case ${COMP_WORDS[i]} in
)";
    text += "        " + joined(names, " | ") + ") command=${COMP_WORDS[i]}; break ;;\n        esac\n    done\n";
    text += "    case \"$command $prev\" in\n";
    for (const Command& command : commands) {
        if (command.app->get_group().empty()) continue;
        for (const CLI::Option* option : command.app->get_options())
            if (!option->get_positional() && option->get_items_expected_max() > 0 && !option->get_type_name().empty())
                text += "    " + optionPattern(*command.app, *option) + ") " + offer(option->get_type_name()) +
                        "; return ;;\n";
    }
    text += "    esac\n    case \"$command $cur\" in\n";
    text += "    ' -'*) _zanfcp_words '" + joined(optionNames(parent), " ") + "' ;;\n";
    text += "    ' '*) _zanfcp_words '" + joined(names, " ") + "' ;;\n";
    for (const Command& command : commands) {
        if (command.app->get_group().empty()) continue;
        const std::string& name = command.app->get_name();
        text += "    '" + name + " -'*) _zanfcp_words '" + joined(optionNames(*command.app), " ") + "' ;;\n";
        if (!command.fileTypes.empty())
            text += "    '" + name + " '*) _zanfcp_files " + joined(command.fileTypes, " ") + " ;;\n";
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
