#pragma once

#include "../../platform/FourCC.h"
#include "../../platform/Result.h"

#include <cstdint>
#include <optional>
#include <string>

namespace zanfcp::quicktime {

class Window;
struct Box;

/// What a video sample description says of the pictures.
struct VideoDescription {
    FourCC format;                         ///< codec: 'avc1', 'apch', 'dvc ' …
    std::int32_t width = 0;                ///< coded, pixels
    std::int32_t height = 0;               ///< coded, pixels
    std::uint32_t apertureWidth = 0;       ///< clean aperture, truncated to whole pixels; without one, as coded
    std::uint32_t apertureHeight = 0;      ///< the same
    std::optional<std::string> formatName; ///< name of the compressor in UTF-8; absent where it is empty
    std::optional<FourCC> vendor;          ///< absent where it is 0
    std::int32_t spatialQuality = 0;       ///< 0 to 1024
    std::int32_t temporalQuality = 0;      ///< 0 to 1024
};

/// \return truncated when the entry is shorter than a video sample description. A broken clean aperture counts as none.
/// Source: Apple, QuickTime File Format, "Video Sample Description"; ISO/IEC 14496-12, 12.1.3 and 12.1.4.
Result<VideoDescription> parseVideoDescription(Window& window, const Box& entry);

} // namespace zanfcp::quicktime
