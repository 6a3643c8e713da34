#pragma once

#include <cstdint>
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

} // namespace zanfcp
