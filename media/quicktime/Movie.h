#pragma once

#include "Fragments.h"
#include "MediaTime.h"
#include "TrackReading.h"

#include <optional>
#include <vector>

namespace zanfcp::quicktime {

/// A movie header ('moov') with its tracks, and what fragments behind it add.
struct Movie {
    std::uint32_t timescale = 1;           ///< units a second, > 0
    std::optional<std::uint64_t> duration; ///< in those units; absent: not known
    std::vector<ParsedTrack> tracks;       ///< in file order
    std::optional<MovieExtends> extends;   ///< present: fragments follow

    /// As Asset::duration.
    MediaTime totalDuration() const;
    /// The tracks, with their fragments added.
    std::vector<Track> finishTracks() &&;
};

/// \return as Asset::open
/// Source: Apple, QuickTime File Format, "Movie Atoms"; ISO/IEC 14496-12, 8.2.
Result<Movie> parseMovie(Window& window, Extent body);

} // namespace zanfcp::quicktime
