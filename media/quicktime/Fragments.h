#pragma once

#include "Box.h"
#include "SampleDurations.h"
#include "SampleTable.h"

#include <cstdint>
#include <optional>
#include <unordered_map>

namespace zanfcp::quicktime {

/// What the fragments of one track add to it.
struct TrackFragments {
    /// Stands in where a fragment does not say ('trex').
    struct Defaults {
        std::uint32_t description = 1; ///< 1-based sample description
        std::uint32_t duration = 0;    ///< units of the media's timescale
        std::uint32_t size = 0;        ///< bytes
    };
    Defaults defaults;
    SampleDurations durations;                 ///< of all samples of all fragments read
    std::optional<SampleLocation> firstSample; ///< absent until a fragment places it
};
/// By track identifier.
using FragmentedTracks = std::unordered_map<std::uint32_t, TrackFragments>;

/// The announcement that fragments follow ('mvex').
struct MovieExtends {
    std::uint64_t duration = 0; ///< of movie and fragments, in units of the movie's timescale; 0: not said ('mehd')
    FragmentedTracks tracks;
    std::uint64_t entriesRead = 0; ///< samples of all runs whose durations were read one by one
};

/// \return truncated, malformed or limit
/// Source: ISO/IEC 14496-12, 8.8.1 to 8.8.3.
Result<MovieExtends> parseMovieExtends(Window& window, Extent body);

/// Adds one movie fragment ('moof') to the tracks that it belongs to; tracks that were not announced are stepped over.
/// \return truncated, malformed or limit (kMaxRunEntries); what had been added before stays
/// Source: ISO/IEC 14496-12, 8.8.4 to 8.8.8.
Status readMovieFragment(Window& window, const Box& fragment, MovieExtends& movie);

} // namespace zanfcp::quicktime
