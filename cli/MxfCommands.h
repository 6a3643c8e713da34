#pragma once

#include "cli/Commands.h"

namespace zanfcp::cli {

// Each adds its command to the group "mxf"; addMxf calls them all.
Command addMxfInfo(CLI::App& group);
Command addMxfDump(CLI::App& group);
Command addMxfSamples(CLI::App& group);
Command addMxfExtract(CLI::App& group);
Command addMxfStream(CLI::App& group);

} // namespace zanfcp::cli
