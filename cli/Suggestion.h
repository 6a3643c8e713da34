#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zanfcp::cli {

/// The name that `word` was most likely meant to be: the one with the fewest changed, missing, spare or swapped
/// letters, upper and lower case alike. Nothing when none comes near.
std::optional<std::string> nearestName(std::string_view word, std::span<const std::string> names);

} // namespace zanfcp::cli
