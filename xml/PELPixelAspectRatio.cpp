#include "xml/PELPixelAspectRatio.h"

#include <array>
#include <cstddef>

namespace zanfcp {
namespace {

/// Index n is the name of the ratio n + 1.
constexpr auto kNames = std::to_array<std::string_view>(
    {"square", "NTSC-601", "PAL-601", "HD-(960x720)", "HD-(1280x1080)", "HD-(1440x1080)"});

} // namespace

std::string NSStringFromPELPixelAspectRatio(PELPixelAspectRatio ratio)
{
    const auto number = static_cast<std::size_t>(ratio);
    return std::string(number >= 1 && number <= kNames.size() ? kNames[number - 1] : "<not set>");
}

PELPixelAspectRatio PELPixelAspectRatioFromString(std::string_view name)
{
    for (std::size_t i = 0; i < kNames.size(); ++i)
        if (kNames[i] == name) return static_cast<PELPixelAspectRatio>(i + 1);
    return PELPixelAspectRatio::notSet;
}

} // namespace zanfcp
