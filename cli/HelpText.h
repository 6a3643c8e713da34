#pragma once

#include "cli/Commands.h"

#include <string>
#include <string_view>

namespace zanfcp::cli {

/// `text` in lines of at most `width` columns, each but the first behind `indent` blanks.
std::string wrapped(std::string_view text, std::size_t indent, std::size_t width = 100);

/// What stands below the options in the help of a command: details, examples, exit codes, and for "build" the options
/// of a project.
std::string helpFooter(const Command& command);

/// An option as it is typed: "-o,--output OUT".
std::string optionSynopsis(const CLI::Option& option);

} // namespace zanfcp::cli
