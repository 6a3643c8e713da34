#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/HostConnection.h"
#include "platform/AtomicFile.h"

#include <memory>
#include <optional>

namespace zanfcp::cli {
namespace {

constexpr double kXMLVersion = 5.0;

struct Arguments {
    std::string output;
    std::string project;
    HostConnection connection;
};

ExitCode get(const Arguments& arguments, Console& console)
{
    UnixSocketChannel channel = arguments.connection.channel();
    auto event = ZANFCPEvent::eventWithType(EventCode::getProjectXML, channel);
    event.setXMLVersion(kXMLVersion);
    if (!arguments.project.empty()) event.setProjectURL(FileURL::fileURLWithPath(arguments.project));
    if (!sendEvent(event, arguments.connection, console)) return kFailed;
    std::optional<std::string> document;
    if (!event.getResultXMLData(document)) {
        console.error("the host answered without a document (" + std::to_string(event.status()) + ")");
        return kFailed;
    }
    if (arguments.output.empty() || arguments.output == "-") return console.print(*document) ? kDone : kFailed;

    auto file = AtomicFile::create(arguments.output);
    Status written = file ? file->write(*document) : Status(file.error());
    if (written) written = file->commit();
    if (!written) {
        console.error(written.error().what);
        return kFailed;
    }
    console.note("wrote " + arguments.output + "\n");
    return kDone;
}

} // namespace

Command addGet(CLI::App& parent)
{
    auto arguments = std::make_shared<Arguments>();
    CLI::App* app = parent.add_subcommand("get", "Write out the document of a project of the host");
    app->add_option("-o,--output", arguments->output, "where it is written; standard output without it")
        ->type_name("OUT")
        ->check(notEmpty());
    app->add_option("--project", arguments->project, "the project, in the host's folder; the current one without it")
        ->type_name("FILE")
        ->check(notEmpty());
    addConnectionOptions(*app, arguments->connection);
    return {
        .app = app,
        .details = "The document has all that was imported, saved or not.",
        .examples = {{"zanfcp get -o back.xml", "the current project"}},
        .run = [arguments](Console& console) { return get(*arguments, console); },
    };
}

} // namespace zanfcp::cli
