#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zanfcp {

/// Which field of an interlaced picture comes first.
enum class PELFieldDominance : std::uint32_t {
    undecided = 0,
    none = 1, ///< progressive
    upper = 2,
    lower = 3,
};

/// "none", "upper" or "lower"; nothing for any other value. For documents.
std::optional<std::string> PEL_StringFromPELFieldDominance(PELFieldDominance dominance);
/// The same names; "<unknown>" for any other value. For descriptions.
std::string NSStringFromPELFieldDominance(PELFieldDominance dominance);
/// Exact match; undecided for any other text.
PELFieldDominance PELFieldDominanceFromString(std::string_view name);

} // namespace zanfcp
