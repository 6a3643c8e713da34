#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/HostConnection.h"

#include <memory>

namespace zanfcp::cli {
namespace {

struct Arguments {
    std::string file;
    bool flag = false; ///< --overwrite, or --discard
    HostConnection connection;

    FileURL url() const { return FileURL::fileURLWithPath(file); } // empty for no file
};

ExitCode open(const Arguments& arguments, Console& console)
{
    UnixSocketChannel channel = arguments.connection.channel();
    auto event = ZANFCPEvent::eventWithType(EventCode::openProject, channel);
    event.openFile(arguments.url(), EventCode::projectFile);
    return sendEvent(event, arguments.connection, console) ? kDone : kFailed;
}

ExitCode save(const Arguments& arguments, Console& console)
{
    UnixSocketChannel channel = arguments.connection.channel();
    auto event = ZANFCPEvent::eventWithType(EventCode::saveProject, channel);
    if (!arguments.file.empty()) event.saveProjectToURL(arguments.url(), arguments.flag);
    return sendEvent(event, arguments.connection, console) ? kDone : kFailed;
}

ExitCode close(const Arguments& arguments, Console& console)
{
    UnixSocketChannel channel = arguments.connection.channel();
    auto event = ZANFCPEvent::eventWithType(EventCode::closeProject, channel);
    event.closeProjectAtURL(arguments.url(), !arguments.flag);
    return sendEvent(event, arguments.connection, console) ? kDone : kFailed;
}

} // namespace

Command addOpen(CLI::App& parent)
{
    auto arguments = std::make_shared<Arguments>();
    CLI::App* app = parent.add_subcommand("open", "Have the host open a project file");
    app->add_option("FILE", arguments->file, "the project, in the host's folder")
        ->required()
        ->type_name("")
        ->check(notEmpty());
    addConnectionOptions(*app, arguments->connection);
    return {
        .app = app,
        .details = "The project becomes the current one. A project that is open already comes to the front.",
        .examples = {{"zanfcp open ~/projects/show.xml", "open a project"}},
        .fileTypes = {"xml"},
        .run = [arguments](Console& console) { return open(*arguments, console); },
    };
}

Command addSave(CLI::App& parent)
{
    auto arguments = std::make_shared<Arguments>();
    CLI::App* app = parent.add_subcommand("save", "Have the host save the current project");
    app->add_option("FILE", arguments->file, "where, in the host's folder; its own file without it")
        ->type_name("")
        ->check(notEmpty());
    app->add_flag("--overwrite", arguments->flag, "replace FILE when it exists");
    addConnectionOptions(*app, arguments->connection);
    return {
        .app = app,
        .details = "A project that is saved as another file goes on there.",
        .examples = {{"zanfcp save", "into its own file"},
                     {"zanfcp save ~/projects/show.xml --overwrite", "as a file that may exist"}},
        .fileTypes = {"xml"},
        .run = [arguments](Console& console) { return save(*arguments, console); },
    };
}

Command addClose(CLI::App& parent)
{
    auto arguments = std::make_shared<Arguments>();
    CLI::App* app = parent.add_subcommand("close", "Have the host save and close a project");
    app->add_option("--project", arguments->file, "the project, in the host's folder; the current one without it")
        ->type_name("FILE")
        ->check(notEmpty());
    app->add_flag("--discard", arguments->flag, "close it without saving");
    addConnectionOptions(*app, arguments->connection);
    return {
        .app = app,
        .details = "The project that was current before it comes to the front.",
        .examples = {{"zanfcp close", "save and close the current project"},
                     {"zanfcp close --discard", "give up what was not saved"}},
        .run = [arguments](Console& console) { return close(*arguments, console); },
    };
}

} // namespace zanfcp::cli
