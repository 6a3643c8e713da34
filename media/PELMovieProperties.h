#pragma once

#include "../platform/FileURL.h"
#include "../platform/FourCC.h"
#include "../platform/PELValue.h"
#include "../timecode/PELTimecode.h"
#include "../xml/PELFieldDominance.h"
#include "../xml/PELPixelAspectRatio.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace zanfcp {

/// What a file says of its picture codec.
struct PELCodecProperties {
    std::array<char, 32> name{};           ///< for display, zero-terminated
    std::array<char, 32> typeName{};       ///< zero-terminated
    FourCC typeCode;                       ///< 'avc1', 'dvc ', 'xd5c' …
    std::optional<std::string> vendorCode; ///< four characters, where the file names one
    std::int32_t spatialQuality = 0;
    std::int32_t temporalQuality = 0;
    std::int32_t keyframeRate = 0;
    std::int32_t dataRate = 0;
    PELFieldDominance fieldDominance = PELFieldDominance::undecided;

    friend bool operator==(const PELCodecProperties&, const PELCodecProperties&) = default;
};

/// What one media file says of itself. A plain value, all zero before it is read.
struct PELMovieProperties {
    bool hasVideo = false;
    NSInteger width = 0;  ///< coded picture width in pixels
    NSInteger height = 0; ///< coded picture height in pixels
    PELPixelAspectRatio pixelAspectRatio = PELPixelAspectRatio::notSet;
    bool anamorphic = false; ///< 16:9 material on a 4:3 raster
    NSInteger duration = 0;  ///< frames
    PELCodecProperties videoCodec;
    bool hasAudio = false;
    std::uint64_t audioSampleRate = 0; ///< samples a second
    std::uint64_t audioBitDepth = 0;   ///< bits a sample, 0 for compressed formats
    std::uint64_t audioTrackCount = 0;
    std::uint64_t audioChannelCount = 0; ///< always the track count: one channel a track
    bool hasTimecode = false;
    PELTimecode timecode;         ///< start timecode; its rate is the file's frame rate
    std::array<char, 256> reel{}; ///< reel (tape) name in UTF-8, zero-terminated
    /// Bytes that a QuickTime file lacks at its end of what it announces, because it was cut short.
    std::uint64_t missingBytes = 0;
    /// Pictures a second as the file times them, 29.97 for example, whatever its timecode counts; 0 without picture.
    double nominalFrameRate = 0;

    friend bool operator==(const PELMovieProperties&, const PELMovieProperties&) = default;
};

/// Key of the options dictionary, boolean: a file without picture gets its duration from the length of the asset at
/// the real rate of its timecode track, truncated to frames. Without it such a file has duration 0.
inline constexpr char PELMeasureSoundFiles[] = "measureSoundFiles";

/// Fills `properties` (zeroed first) from the file at `url`, chosen by its extension, case-sensitively: "mov" or "mxf".
/// \param options  only "interlaced" and "measureSoundFiles" are read
/// \return 0, or -38 for an unknown extension or an unreadable file, `properties` then all zero.
/// Selects the rate of the file's timecode process-wide; read files one after another.
std::int32_t PELGetPropertiesOfMovieAtURL(const FileURL& url, PELMovieProperties& properties,
                                          const PELDictionary& options);

/// 'dvc ', 'dvcp' or 'dvpp'.
bool PEL_CodecIsDV(const PELMovieProperties& properties);
/// Upper or lower field first.
bool PEL_IsInterlaced(const PELMovieProperties& properties);

std::string NSStringFromPELCodecProperties(const PELCodecProperties& codec);
std::string NSStringFromPELMovieProperties(const PELMovieProperties& properties);

} // namespace zanfcp
