#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/HelpText.h"
#include "cli/Suggestion.h"
#include "media/MXFMovieProperties.h"

#include <algorithm>
#include <exception>
#include <fcntl.h>
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

std::vector<std::string> visibleNames(const std::vector<Command>& commands)
{
    std::vector<std::string> names;
    for (const Command& command : commands)
        if (!command.app->get_group().empty()) names.push_back(command.app->get_name());
    return names;
}

/// The option that was most likely meant by one that does not exist.
std::string hintForOption(const std::string& wrongOption, const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options())
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    const auto near = nearestName(wrongOption.substr(0, wrongOption.find('=')), names);
    return near ? "; did you mean " + *near + "?" : "";
}

ExitCode wrongUsage(const CLI::ParseError& fault, const CLI::App& app, const std::vector<Command>& commands,
                    Console& console)
{
    const CLI::App* used = &app;
    for (const Command& command : commands)
        if (command.app->parsed()) used = command.app;
    std::string text = fault.what();
    std::ranges::replace(text, '\n', ' ');
    const std::vector<std::string> spare = app.remaining(true);
    if (used == &app && !spare.empty() && !spare.front().starts_with('-')) {
        text = "there is no command \"" + spare.front() + "\"";
        if (const auto near = nearestName(spare.front(), visibleNames(commands)))
            text += "; did you mean " + *near + "?";
    } else if (!spare.empty() && spare.front().starts_with("--")) {
        text = "there is no option " + spare.front() + hintForOption(spare.front(), *used);
    }
    console.error(text);
    console.errorLines("Try: zanfcp " + (used == &app ? "" : used->get_name() + " ") + "--help\n");
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

    std::vector<Command> commands = {addInspect(app),  addBuild(app), addValidate(app), addLabels(app),
                                     addTimecode(app), addHost(app),  addSend(app),     addGet(app),
                                     addOpen(app),     addSave(app),  addClose(app)};
    commands.reserve(commands.size() + 2);
    commands.push_back(addCompletion(app, commands));
    commands.push_back(addMan(app, commands));
    for (const Command& command : commands) {
        addSwitches(*command.app, switches);
        command.app->footer(helpFooter(command));
    }
    app.footer("Each command has a help of its own: zanfcp COMMAND --help\n\nExit codes: " + std::string(kExitCodes));

    if (argc < 2) {
        console.errorLines(app.help());
        return kWrongUsage;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        const auto used = app.get_subcommands();
        console.print(used.empty() ? app.help() : used.front()->help("zanfcp"));
        return kDone;
    } catch (const CLI::CallForVersion& version) {
        console.print(version.what() + std::string("\n"));
        return kDone;
    } catch (const CLI::ParseError& fault) {
        return wrongUsage(fault, app, commands, console);
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

int runProgram(int argc, const char* const* argv)
{
    holdStandardStreams();
    setMXFMessageStream(stderr); // standard output is for results
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
