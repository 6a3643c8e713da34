#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/HelpText.h"
#include "cli/Suggestion.h"
#include "media/MXFMovieProperties.h"

#include <algorithm>
#include <exception>
#include <fcntl.h>
#include <iterator>
#include <memory>
#include <unistd.h>

#ifndef ZANFCP_VERSION
#error "the build says which version this is"
#endif

namespace zanfcp::cli {
namespace {

struct Switches {
    bool quiet = false;
    bool verbose = false;
};

void addSwitches(CLI::App& app, Switches& switches)
{
    app.add_flag("-q,--quiet", switches.quiet, "show no tables and warnings on standard error; errors still show");
    app.add_flag("-v,--verbose", switches.verbose, "show every step on standard error");
}

/// A command or a group of them, by the name that its App has.
struct Entry {
    std::string_view name;
    std::vector<Command> (*add)(CLI::App& parent);
};

template <Command (*add)(CLI::App&)> std::vector<Command> one(CLI::App& parent)
{
    return {add(parent)};
}

constexpr Entry kEntries[] = {
    {"inspect", one<addInspect>}, {"build", one<addBuild>},       {"validate", one<addValidate>},
    {"labels", one<addLabels>},   {"timecode", one<addTimecode>}, {"host", one<addHost>},
    {"send", one<addSend>},       {"get", one<addGet>},           {"open", one<addOpen>},
    {"save", one<addSave>},       {"close", one<addClose>},       {"mxf", addMxf},
};

/// Adds the one that the first argument names: nothing that is said about it speaks of the others. Adds all when that
/// is no name, for help and suggestions, and for the completion and the manual page.
void addCommands(CLI::App& app, std::string_view firstArgument, std::vector<Command>& commands)
{
    const bool isNamed = std::ranges::find(kEntries, firstArgument, &Entry::name) != std::end(kEntries);
    for (const Entry& entry : kEntries)
        if (!isNamed || entry.name == firstArgument) std::ranges::move(entry.add(app), std::back_inserter(commands));
    if (isNamed) return;
    commands.push_back(addCompletion(app, commands));
    commands.push_back(addMan(app, commands));
}

/// The commands of the program or of a group that help shows.
std::vector<std::string> visibleNames(const CLI::App& parent)
{
    std::vector<std::string> names;
    for (const CLI::App* command : parent.get_subcommands(nullptr))
        if (!command->get_group().empty()) names.push_back(command->get_name());
    return names;
}

/// The command that was typed, as far as there is one: the program, a group or a command.
const CLI::App& usedApp(const CLI::App& app)
{
    const CLI::App* used = &app;
    while (!used->get_subcommands().empty())
        used = used->get_subcommands().front();
    return *used;
}

/// What is wrong with an option that was not taken, and which one was most likely meant.
std::string faultOfOption(const std::string& wrongOption, const CLI::App& app)
{
    const std::string text = wrongOption.substr(0, wrongOption.find('='));
    if (app.get_option_no_throw(text) != nullptr)
        return text + " belongs behind the command: zanfcp " + commandName(app) + " " + text;
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options())
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    const auto near = nearestName(text, names);
    return "there is no option " + wrongOption + (near ? "; did you mean " + *near + "?" : "");
}

ExitCode wrongUsage(const CLI::ParseError& fault, const CLI::App& app, Console& console)
{
    const CLI::App& used = usedApp(app);
    const bool isGroup = used.get_require_subcommand_min() > 0;
    const std::string name = commandName(used);
    const std::string before = name.empty() ? name : name + " ";
    std::string text = fault.what();
    std::ranges::replace(text, '\n', ' ');
    const std::vector<std::string> spare = app.remaining(true);
    if (isGroup && !spare.empty() && !spare.front().starts_with('-')) {
        text = "there is no command \"" + before + spare.front() + "\"";
        if (const auto near = nearestName(spare.front(), visibleNames(used)))
            text += "; did you mean " + before + *near + "?";
    } else if (!spare.empty() && spare.front().starts_with('-') && spare.front() != "-") {
        text = faultOfOption(spare.front(), used);
    }
    console.error(text);
    console.errorLines("Try: zanfcp " + before + "--help\n");
    return kWrongUsage;
}

ExitCode run(int argc, const char* const* argv, Console& console)
{
    CLI::App app{"Turns the files of one multi-camera recording into a Final Cut Pro 7 project.", "zanfcp"};
    app.get_formatter()->column_width(28);
    app.set_help_flag("-h,--help", "show this help");
    app.set_version_flag("--version", std::string("zanfcp ") + ZANFCP_VERSION, "show the version");
    app.require_subcommand(1);
    Switches switches;
    addSwitches(app, switches);

    std::vector<Command> commands;
    addCommands(app, argc < 2 ? "" : argv[1], commands);
    for (CLI::App* group :
         app.get_subcommands([](const CLI::App* one) { return one->get_require_subcommand_min() > 0; }))
        addSwitches(*group, switches);
    for (const Command& command : commands)
        addSwitches(*command.app, switches);
    app.footer("Each command has a help of its own: zanfcp COMMAND --help\n\nExit codes: " + std::string(kExitCodes));

    if (argc < 2) {
        console.errorLines(app.help());
        return kWrongUsage;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        for (const Command& command : commands)
            command.app->footer(helpFooter(command));
        const auto used = app.get_subcommands();
        console.print(used.empty() ? app.help() : used.front()->help("zanfcp"));
        return kDone;
    } catch (const CLI::CallForVersion& version) {
        console.print(version.what() + std::string("\n"));
        return kDone;
    } catch (const CLI::ParseError& fault) {
        return wrongUsage(fault, app, console);
    }
    console.setQuiet(switches.quiet);
    console.setVerbose(switches.verbose);
    const auto chosen = std::ranges::find_if(commands, [](const Command& command) { return command.app->parsed(); });
    return chosen->run(console);
}

/// A standard stream that was closed would lend its number to the next file that is opened, and messages would be
/// written into it.
void holdStandardStreams()
{
    for (int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(descriptor, F_GETFD) == -1) (void)::open("/dev/null", O_RDONLY);
}

} // namespace

std::string commandName(const CLI::App& app)
{
    if (app.get_parent() == nullptr) return {};
    const std::string group = commandName(*app.get_parent());
    return (group.empty() ? "" : group + " ") + app.get_name();
}

int runProgram(int argc, const char* const* argv)
{
    holdStandardStreams();
    Console console;
    ExitCode code = kFailed;
    try {
        code = run(argc, argv, console);
    } catch (const std::exception& fault) {
        console.error(fault.what());
    }
    const bool written = console.finish();
    return code == kDone && !written ? kFailed : code;
}

} // namespace zanfcp::cli
