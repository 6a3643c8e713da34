#pragma once

#include "Box.h"
#include "DataReference.h"
#include "SampleTable.h"
#include "Track.h"

#include <cstdint>

namespace zanfcp::quicktime {

/// A track as its own headers tell it, before fragments are added.
struct ParsedTrack {
    Track track;
    std::uint32_t timescale = 1; ///< of the media, > 0
    /// Of the samples in the movie itself, in units of `timescale`.
    std::uint64_t mediaDuration = 0;
    SampleTable samples;
    DataPlace dataPlace = DataPlace::thisFile;
};

/// \return the first fault in what every track must have: media header, handler, and tables that hold what they count
/// Source: ISO/IEC 14496-12, 8.3 and 8.4; Apple, QuickTime File Format, "Track Atoms" and "Media Atoms".
Result<ParsedTrack> parseTrack(Window& window, Extent body);

} // namespace zanfcp::quicktime
