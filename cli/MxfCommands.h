#pragma once

#include "cli/Commands.h"

namespace zanfcp::cli {

// Each adds its command to the group "mxf"; addMxf calls them all.
Command addMxfInfo(CLI::App& group);
Command addMxfDump(CLI::App& group);

} // namespace zanfcp::cli
