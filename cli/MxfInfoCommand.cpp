#include "cli/Console.h"
#include "cli/MxfCommands.h"
#include "cli/MxfInfoText.h"

#include <memory>

namespace zanfcp::cli {
namespace {

struct Arguments {
    std::string path;
    bool json = false;
};

ExitCode info(const Arguments& arguments, Console& console)
{
    const MxfFile file = openMxfFile(arguments.path, console);
    if (!file.demuxer) return kFailed;
    const Json facts = mxfFacts(file);
    // Names on Linux are bytes; what is no UTF-8 is replaced, since JSON cannot hold it.
    console.print(arguments.json ? facts.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n"
                                 : mxfInfoText(facts));
    return kDone;
}

} // namespace

Command addMxfInfo(CLI::App& group)
{
    auto arguments = std::make_shared<Arguments>();
    CLI::App* app = group.add_subcommand("info", "Show all that the header of an MXF file says");
    app->add_option("FILE", arguments->path, "an MXF file")->required()->type_name("")->check(notEmpty());
    app->add_flag("--json", arguments->json, "the same facts as one JSON object, for other programs");
    return {
        .app = app,
        .details = "Operational pattern and completeness, duration and start timecode, streams, partitions, who wrote "
                   "the file, packages with their tracks, marks, descriptive metadata. Durations count edit units of "
                   "their track. Streams are numbered as all commands number them. A file that is still being written "
                   "is shown as far as its header goes. In the JSON object, what the file leaves out is null, and "
                   "\"schemaVersion\" is raised when a key changes.",
        .examples = {{"zanfcp mxf info CAM_A.mxf", "everything, for a person"},
                     {"zanfcp mxf info --json CAM_A.mxf | jq -r .start.label", "the start timecode alone"}},
        .fileTypes = {"mxf"},
        .run = [arguments](Console& console) { return info(*arguments, console); },
    };
}

} // namespace zanfcp::cli
