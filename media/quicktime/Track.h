#pragma once

#include "MediaType.h"
#include "SampleLocation.h"
#include "SoundDescription.h"
#include "TimecodeDescription.h"
#include "VideoDescription.h"

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

} // namespace zanfcp::quicktime
