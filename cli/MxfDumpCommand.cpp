#include "cli/Console.h"
#include "cli/Inspection.h"
#include "cli/MxfCommands.h"
#include "cli/MxfDump.h"
#include "mxf/io/BufferedFileSource.h"

#include <memory>

namespace zanfcp::cli {
namespace {

ExitCode dump(const std::string& path, Console& console)
{
    console.beginStep(path);
    std::string problem = obstacle(path);
    const auto source = problem.empty() ? CBufferedFileSource2::Create(path.c_str(), 0) : nullptr;
    if (problem.empty() && !source) problem = "could not be opened";
    if (!problem.empty()) {
        console.error(path + ": " + problem);
        return kFailed;
    }
    const MxfDumpOutcome outcome = dumpMxf(*source, [&console](std::string_view line) { return console.print(line); });
    if (outcome.isStopped) return kFailed; // a failure to write is reported when the console finishes
    if (!outcome.isMxf) {
        console.error(path + ": is no MXF file: no partition pack among its first 65535 bytes");
        return kFailed;
    }
    if (!outcome.cut.empty()) {
        console.error(path + ": is cut short: " + outcome.cut);
        return kFailed;
    }
    if (outcome.rubbish > 0) console.warning(path + ": " + std::to_string(outcome.rubbish) + " bytes belong to no KLV");
    if (!outcome.hasFooter && !outcome.hasRip)
        console.warning(path + ": ends without footer partition and random index pack, as a file does that is "
                               "still being written");
    return kDone;
}

} // namespace

Command addMxfDump(CLI::App& group)
{
    auto path = std::make_shared<std::string>();
    CLI::App* app = group.add_subcommand("dump", "List every KLV of an MXF file");
    app->add_option("FILE", *path, "an MXF file")->required()->type_name("")->check(notEmpty());
    return {
        .app = app,
        .details =
            "A line for each KLV: its offset in the file and the length of its value in bytes, its key, and what "
            "that stands for. Below it what partition packs, the primer pack, the random index pack and sets "
            "hold, with names and in words; of index tables a summary. Essence is never read, so that large "
            "files take no longer than their number of KLVs asks for. What is no KLV is shown as a range. A "
            "file that ends in the middle of a KLV is shown as far as it goes, and ends in exit code 1.",
        .examples = {{"zanfcp mxf dump CAM_A.mxf | less", "look through a file"},
                     {"zanfcp mxf dump CAM_A.mxf | grep 'Partition Pack'", "its partitions alone"}},
        .fileTypes = {"mxf"},
        .run = [path](Console& console) { return dump(*path, console); },
    };
}

} // namespace zanfcp::cli
