#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Text.h"
#include "xml/Labels.h"

namespace zanfcp::cli {
namespace {

ExitCode labels(Console& console)
{
    const bool fromPreferences = PELInitializeFCPLabelStrings();
    for (std::uint32_t index = 1; index <= 5; ++index) {
        const auto name = PELLabelForColor(index);
        if (!name) return kFailed;
        console.print(std::to_string(index) + "  " + printable(*name) + "\n");
    }
    const std::string path = labelPreferencesPath();
    if (fromPreferences)
        console.note("from " + printable(path) + "\n");
    else
        console.note("the English defaults: there is no complete list in " +
                     (path.empty() ? std::string("a home folder") : printable(path)) + "\n");
    return kDone;
}

} // namespace

Command addLabels(CLI::App& parent)
{
    CLI::App* app = parent.add_subcommand("labels", "List the five colour labels of clips, bins and sequences");
    return {
        .app = app,
        .details = "Documents name labels by these texts, which users of the editing application can change. They are "
                   "read from its preferences file when there is one, and are the English defaults otherwise; a line "
                   "on standard error says which.",
        .examples = {{"zanfcp labels", "the names, in the order of their colours"},
                     {"zanfcp build *.mov --set clipLabel=\"Best Take\" -o show.xml", "label all clips"}},
        .run = labels,
    };
}

} // namespace zanfcp::cli
