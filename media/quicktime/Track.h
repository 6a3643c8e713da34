#pragma once

#include "DataReference.h"
#include "MediaTime.h"
#include "SampleTable.h"

#include <cstdint>
#include <optional>

namespace zanfcp::quicktime {

/// One track of a movie, enabled or not. Of the three descriptions at most the one of its media type is there, and
/// that only where the track has a sample description.
struct Track {
    FourCC mediaType;             ///< kVideoMedia, kSoundMedia, kTimecodeMedia or any other
    std::uint32_t identifier = 0; ///< 0 where the track has no header
    /// Samples a second over the whole track; 0 where it has none or they last no time.
    float nominalFrameRate = 0;
    std::optional<VideoDescription> video;
    std::optional<SoundDescription> sound;
    std::optional<TimecodeDescription> timecode;

    /// The first sample that is shown; looked for in timecode tracks alone.
    struct FirstSample {
        FourCC format; ///< of its own sample description
        /// Absent where the tables do not lead to it, or its data lies in another file.
        std::optional<SampleLocation> location;
    };
    std::optional<FirstSample> firstSample; ///< absent in a timecode track without samples
};

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
