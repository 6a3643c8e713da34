#pragma once

#include <string>
#include <string_view>

namespace zanfcp::cli {

/// What the validator printed about its standard input, with `name` in place of the "-" that it was told: lines made
/// printable, at most 50 of them.
std::string validatorMessages(std::string_view output, std::string_view name);

} // namespace zanfcp::cli
