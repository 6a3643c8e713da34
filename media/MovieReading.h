#pragma once

#include "PELMovieProperties.h"
#include "quicktime/Asset.h"

#include <optional>
#include <string>

namespace zanfcp {

// The steps in which the properties of a QuickTime movie are read. Each fills its own fields of a record that was all
// zero before the first; what the movie does not have stays zero.

/// hasVideo, width, height, pixelAspectRatio and anamorphic from the first video track.
void PEL_ReadVideoDimensions(PELMovieProperties& properties, const quicktime::Asset& asset);

/// From the first video track: nominalFrameRate, duration, and that rate, truncated, as a provisional
/// timecode.rate.timebase (29.97 becomes 29). Their product is formed with 32-bit floats.
void PEL_ReadVideoFrameCount(PELMovieProperties& properties, const quicktime::Asset& asset);

/// videoCodec, but for its fieldDominance, from the first video track. Name and type name are "Unknown" where the
/// movie has no such track or names no codec in ASCII.
void PEL_ReadVideoCodec(PELMovieProperties& properties, const quicktime::Asset& asset);

/// hasAudio, audioSampleRate and audioBitDepth from the first sound track, and both counts.
void PEL_ReadAudioProperties(PELMovieProperties& properties, const quicktime::Asset& asset);

/// audioTrackCount alone.
void PEL_ReadAudioTrackCount(PELMovieProperties& properties, const quicktime::Asset& asset);

/// hasTimecode, and what PEL_ReadStartTimecodeAndReel reads of the first timecode track.
void PEL_ReadTimecodeTrack(PELMovieProperties& properties, const quicktime::Asset& asset);

/// reel and timecode, rate included. The reel is "Unknown" where the track has no source reference name; a longer one
/// is cut after the last whole character that fits. Selects the track's rate process-wide. \param track  one of the
/// asset's timecode tracks
void PEL_ReadStartTimecodeAndReel(PELMovieProperties& properties, const quicktime::Asset& asset,
                                  const quicktime::Track& track);

/// Borrowed from the asset; null when it has no track of that type.
const quicktime::Track* PEL_GetFirstMovieTrackOfType(const quicktime::Asset& asset, FourCC mediaType);

/// The first timecode sample as a label at the selected rate.
/// \param track  one of the asset's timecode tracks, or null
/// \return nothing without a track or sample and for samples other than 'tmcd'; nothing and an error line where the
///   sample has no data
std::optional<std::string> readFirstTimecodeSampleFromAsset(const quicktime::Asset& asset,
                                                            const quicktime::Track* track);

/// videoCodec.fieldDominance: none, unless `options` say "interlaced" and the timebase is neither 24 nor above 30;
/// then lower for DV, else upper.
void PEL_SetVideoFieldDominance(PELMovieProperties& properties, const PELDictionary& options);

/// duration of a movie without picture: the length of the asset at the real rate of its first timecode track,
/// truncated to frames; 0 without such a track. A movie with picture keeps its duration.
void PEL_MeasureSoundFile(PELMovieProperties& properties, const quicktime::Asset& asset);

} // namespace zanfcp
