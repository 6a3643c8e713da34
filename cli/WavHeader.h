#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zanfcp::cli {

/// The sound in a WAV file.
struct WavFormat {
    enum class Coding : std::uint8_t { pcm, aLaw };

    Coding coding = Coding::pcm;
    std::uint16_t channels = 0;
    std::uint32_t sampleRate = 0;     ///< Hz
    std::uint16_t bits = 0;           ///< that count in each sample
    std::uint16_t bytesPerSample = 0; ///< of one channel: `bits` and the zeros below them
};

/// All that stands in front of the samples: RIFF/WAVE, RF64 where 32 bits do not hold the sizes. Its length depends on
/// the format alone, so that it can be written again once the size is known.
/// \param dataBytes  nothing where the size will never be known: programs then read on to the end of the stream
/// Source: Microsoft, Multiple Channel Audio Data and WAVE Files; EBU Tech 3306.
std::string wavHeader(const WavFormat& format, std::optional<std::uint64_t> dataBytes);

/// Bytes that follow the samples: chunks have even sizes.
inline std::size_t wavPadding(std::uint64_t dataBytes)
{
    return static_cast<std::size_t>(dataBytes % 2);
}

} // namespace zanfcp::cli
