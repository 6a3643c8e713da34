#pragma once

#include "Box.h"
#include "MediaType.h"
#include "SoundDescription.h"
#include "TimecodeDescription.h"
#include "VideoDescription.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace zanfcp::quicktime {

/// The descriptions in a sample description table ('stsd'). The first one speaks for the track; of it, the member that
/// belongs to the track's media type is set.
struct SampleDescriptions {
    struct Entry {
        FourCC format;
        std::uint16_t dataReference = 0; ///< 1-based entry of the data references; 0 where the entry is too short
    };
    std::vector<Entry> entries; ///< in file order, the first kMaxSampleDescriptions
    std::optional<VideoDescription> video;
    std::optional<SoundDescription> sound;
    std::optional<TimecodeDescription> timecode;
};

/// \return truncated or malformed when the table or its first entry is cut short; a broken later entry ends the list
/// Source: ISO/IEC 14496-12, 8.5.2; Apple, QuickTime File Format, "Sample Description Atoms".
Result<SampleDescriptions> parseSampleDescriptions(Window& window, Extent body, FourCC mediaType);

} // namespace zanfcp::quicktime
