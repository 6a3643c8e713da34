#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zanfcp {

/// The pixel aspect ratios that the interchange format names. Any other value is "not set".
enum class PELPixelAspectRatio : std::uint32_t {
    notSet = 0,
    square = 1,
    ntsc601 = 2,     ///< "NTSC-601"
    pal601 = 3,      ///< "PAL-601"
    hd960x720 = 4,   ///< "HD-(960x720)"
    hd1280x1080 = 5, ///< "HD-(1280x1080)"
    hd1440x1080 = 6, ///< "HD-(1440x1080)"
};

/// The name in documents; "<not set>" for any value outside the list.
std::string NSStringFromPELPixelAspectRatio(PELPixelAspectRatio ratio);
/// Exact match; notSet for any other text.
PELPixelAspectRatio PELPixelAspectRatioFromString(std::string_view name);

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
