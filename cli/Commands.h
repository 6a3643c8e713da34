#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

namespace zanfcp::cli {

class Console;

/// What the process ends with.
enum ExitCode : int {
    kDone = 0,
    kFailed = 1,
    kWrongUsage = 2,
    kNotChecked = 3, ///< of validate alone: the validator could not do its work
};

/// The exit codes, as help and the manual page list them.
inline constexpr const char* kExitCodes = "0 done, 1 failed (nothing was written), 2 wrong usage";

/// A command line worth trying, and what it does.
struct Example {
    std::string line;
    std::string meaning;
};

/// One subcommand, or one of a group such as "mxf info": its options, which the parser fills in, and what runs then.
struct Command {
    CLI::App* app = nullptr; ///< owned by the parent it was added to
    std::string details;     ///< what its one-line description leaves open, in whole paragraphs
    std::vector<Example> examples;
    std::vector<std::string> fileTypes{}; ///< extensions of the files it takes, for shell completion
    std::string ownExitCode{};            ///< one more than kExitCodes, and what it means
    std::function<ExitCode(Console&)> run;
};

/// What a person types to reach it, without the program's name: "build", "mxf info".
std::string commandName(const CLI::App& app);

/// Refuses an empty file name or place, as a shell variable that is not set gives: it must not quietly stand for
/// another one, or for none.
inline CLI::Validator notEmpty()
{
    return {[](const std::string& value) { return std::string(value.empty() ? "must not be empty" : ""); }, ""};
}

// Each adds its subcommand to `parent`.
Command addInspect(CLI::App& parent);
Command addBuild(CLI::App& parent);
Command addValidate(CLI::App& parent);
Command addLabels(CLI::App& parent);
Command addTimecode(CLI::App& parent);
Command addHost(CLI::App& parent);
Command addSend(CLI::App& parent);
Command addGet(CLI::App& parent);
Command addOpen(CLI::App& parent);
Command addSave(CLI::App& parent);
Command addClose(CLI::App& parent);
/// Adds the group "mxf" to `parent`. \return the commands in it
std::vector<Command> addMxf(CLI::App& parent);
/// Hidden from help: for packages, which install what it prints. `commands` is borrowed and read when it runs.
Command addCompletion(CLI::App& parent, const std::vector<Command>& commands);
Command addMan(CLI::App& parent, const std::vector<Command>& commands);

/// Runs the command: parses the arguments, which include the program's name, and returns what the process ends with.
int runProgram(int argc, const char* const* argv);

} // namespace zanfcp::cli
