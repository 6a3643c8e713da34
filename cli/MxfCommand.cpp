#include "cli/MxfCommands.h"

namespace zanfcp::cli {

std::vector<Command> addMxf(CLI::App& parent)
{
    CLI::App* group = parent.add_subcommand("mxf", "Look into MXF files: info, dump, samples, extract, stream");
    group->require_subcommand(1);
    group->footer("Each command has a help of its own: zanfcp mxf COMMAND --help\n\nExit codes: " +
                  std::string(kExitCodes));
    return {addMxfInfo(*group), addMxfDump(*group), addMxfSamples(*group), addMxfExtract(*group), addMxfStream(*group)};
}

} // namespace zanfcp::cli
