#pragma once

#include "cli/MxfFacts.h"

#include <string>

namespace zanfcp::cli {

/// The facts of one file as a page for a person; everything that came from the file made printable. Long lists of
/// partitions and of components are shortened.
std::string mxfInfoText(const Json& facts);

} // namespace zanfcp::cli
