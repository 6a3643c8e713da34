#pragma once

#include "../../platform/FourCC.h"
#include "../../platform/Result.h"

#include <cstdint>

namespace zanfcp::quicktime {

class Window;
struct Box;

/// What a sound sample description says of the samples.
struct SoundDescription {
    FourCC format;                    ///< codec: 'sowt', 'in24', 'lpcm', 'mp4a' …
    double sampleRate = 0;            ///< Hz; 0 where the description leaves it to the media header
    std::uint32_t bitsPerChannel = 0; ///< of one uncompressed sample; 0 for compressed formats
    std::uint32_t channelCount = 0;
};

/// Reads descriptions of version 0, 1 and 2, and those of MP4 files.
/// \param tableVersion  version of the 'stsd' box around: version 1 makes a description of version 1 one of MP4
/// \return truncated when the entry is shorter than a sound sample description of its version
/// Source: Apple, QuickTime File Format, "Sound Sample Descriptions"; ISO/IEC 14496-12, 12.2.3; ISO/IEC 23003-5, 5.
Result<SoundDescription> parseSoundDescription(Window& window, const Box& entry, std::uint8_t tableVersion);

} // namespace zanfcp::quicktime
