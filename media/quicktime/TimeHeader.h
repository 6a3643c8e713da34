#pragma once

#include "Window.h"

#include <optional>

namespace zanfcp::quicktime {

/// What a movie header ('mvhd') and a media header ('mdhd') begin with.
struct TimeHeader {
    std::uint32_t timescale = 0;           ///< units a second, > 0
    std::optional<std::uint64_t> duration; ///< in those units; absent: the file says that it is not known
};

/// \return truncated when `body` is too short, malformed for a timescale of 0, unsupported for a version above 1
/// Source: ISO/IEC 14496-12, 8.2.2 and 8.4.2; Apple, QuickTime File Format, "Movie Header Atoms".
Result<TimeHeader> parseTimeHeader(Window& window, Extent body);

/// The identifier in a track header ('tkhd'). \return as parseTimeHeader
/// Source: ISO/IEC 14496-12, 8.3.2.
Result<std::uint32_t> parseTrackIdentifier(Window& window, Extent body);

} // namespace zanfcp::quicktime
