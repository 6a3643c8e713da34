#pragma once

#include "../../platform/FourCC.h"
#include "../../platform/Result.h"

#include <cstdint>
#include <optional>
#include <string>

namespace zanfcp::quicktime {

class Window;
struct Box;

/// What a timecode sample description says of the labels.
struct TimecodeDescription {
    FourCC format;                   ///< 'tmcd' for samples of 32 bits, 'tc64' for 64
    std::uint32_t flags = 0;         ///< bit 0: drop frame
    std::uint32_t timescale = 0;     ///< units a second
    std::uint32_t frameDuration = 0; ///< units a frame: timescale / frameDuration is the real rate
    std::uint8_t frameQuanta = 0;    ///< whole frames a label second
    /// Name of the tape in UTF-8; absent where the file has none or an empty one.
    std::optional<std::string> sourceReferenceName;
};

inline constexpr std::uint32_t kDropFrameFlag = 1;

/// \return truncated when the entry is shorter than a timecode sample description. A broken source reference counts
///   as none.
/// Source: Apple, QuickTime File Format, "Timecode Sample Description".
Result<TimecodeDescription> parseTimecodeDescription(Window& window, const Box& entry);

} // namespace zanfcp::quicktime
