#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/HostConnection.h"
#include "cli/ReadFile.h"

#include <memory>

namespace zanfcp::cli {
namespace {

struct Arguments {
    std::string file;
    std::string project;
    HostConnection connection;
};

ExitCode send(const Arguments& arguments, Console& console)
{
    const bool fromInput = arguments.file == "-";
    const auto document = readWholeFile(fromInput ? "/dev/stdin" : arguments.file, EventLimits{}.parameterBytes);
    if (!document) {
        console.error((fromInput ? "standard input" : arguments.file) + ": " + document.error().what);
        return kFailed;
    }
    UnixSocketChannel channel = arguments.connection.channel();
    auto event = ZANFCPEvent::eventWithType(EventCode::importXML, channel);
    if (!arguments.project.empty()) event.setProjectURL(FileURL::fileURLWithPath(arguments.project));
    event.setXMLData(*document);
    return sendEvent(event, arguments.connection, console) ? kDone : kFailed;
}

} // namespace

Command addSend(CLI::App& parent)
{
    auto arguments = std::make_shared<Arguments>();
    CLI::App* app = parent.add_subcommand("send", "Import a document into a project of the host");
    app->add_option("FILE", arguments->file, "the document (.xml); - for standard input")
        ->required()
        ->type_name("")
        ->check(notEmpty());
    app->add_option("--project", arguments->project, "the project, in the host's folder; the current one without it")
        ->type_name("FILE")
        ->check(notEmpty());
    addConnectionOptions(*app, arguments->connection);
    return {
        .app = app,
        .details = "What is imported goes behind what the project holds. A project that does not exist is made; it "
                   "becomes the current one, and has a file once it is saved.",
        .examples = {{"zanfcp build *.mov --sequence | zanfcp send -", "build a project and hand it over"},
                     {"zanfcp send show.xml --project ~/projects/show.xml", "import into a certain project"}},
        .fileTypes = {"xml"},
        .run = [arguments](Console& console) { return send(*arguments, console); },
    };
}

} // namespace zanfcp::cli
