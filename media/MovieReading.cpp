#include "media/MovieReading.h"

#include "platform/ByteReader.h"
#include "platform/Log.h"
#include "timecode/PELTimecodeObject.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace zanfcp {
namespace {

using quicktime::Asset;
using quicktime::Track;

constexpr std::string_view kUnknown = "Unknown";

/// Frames. One more would mean "undefined", and the file would be refused instead of kept.
constexpr NSInteger kLongestDuration = NSIntegerMax - 1;

/// Toward zero; bounded by the range of the integer, 0 for what is no number.
template <typename Integer> Integer truncated(double number)
{
    if (std::isnan(number)) return 0;
    if (number >= static_cast<double>(std::numeric_limits<Integer>::max())) return std::numeric_limits<Integer>::max();
    if (number <= static_cast<double>(std::numeric_limits<Integer>::min())) return std::numeric_limits<Integer>::min();
    return static_cast<Integer>(number);
}

/// Copies as much of `text` as fits with its terminator, whole UTF-8 characters only.
template <std::size_t N> void copyBounded(std::string_view text, std::array<char, N>& field)
{
    std::size_t length = std::min(text.size(), N - 1);
    const auto continues = [text](std::size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80; };
    if (length < text.size())
        while (length > 0 && continues(length))
            --length;
    field = {};
    text.substr(0, length).copy(field.data(), length);
}

bool isAscii(std::string_view text)
{
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

struct Aspect {
    PELPixelAspectRatio ratio;
    bool anamorphic;
};

/// The shape of a pixel, told from the raster.
Aspect classify(const quicktime::VideoDescription& video, Aspect before)
{
    constexpr std::uint32_t kWideAperture = 1024; // 16:9 on a raster of 720
    Aspect aspect = before;
    switch (video.width) {
    case 720:
        if (video.apertureHeight == 480 || video.apertureHeight == 486) aspect.ratio = PELPixelAspectRatio::ntsc601;
        if (video.apertureHeight == 576) aspect.ratio = PELPixelAspectRatio::pal601;
        aspect.anamorphic = video.apertureWidth >= kWideAperture;
        break;
    case 960: aspect.ratio = PELPixelAspectRatio::hd960x720; break;
    case 1280:
        aspect.ratio = video.height == 1080 ? PELPixelAspectRatio::hd1280x1080 : PELPixelAspectRatio::square;
        break;
    case 1440: aspect.ratio = PELPixelAspectRatio::hd1440x1080; break;
    default: aspect.ratio = PELPixelAspectRatio::square; break;
    }
    return aspect;
}

} // namespace

const Track* PEL_GetFirstMovieTrackOfType(const Asset& asset, FourCC mediaType)
{
    return asset.firstTrackWithMediaType(mediaType);
}

void PEL_ReadVideoDimensions(PELMovieProperties& properties, const Asset& asset)
{
    const Track* track = PEL_GetFirstMovieTrackOfType(asset, quicktime::kVideoMedia);
    if (!track) return;
    properties.hasVideo = true;
    const quicktime::VideoDescription video = track->video.value_or(quicktime::VideoDescription{});
    properties.width = video.width;
    properties.height = video.height;
    const Aspect aspect = classify(video, {properties.pixelAspectRatio, properties.anamorphic});
    properties.pixelAspectRatio = aspect.ratio;
    properties.anamorphic = aspect.anamorphic;
}

void PEL_ReadVideoFrameCount(PELMovieProperties& properties, const Asset& asset)
{
    const Track* track = PEL_GetFirstMovieTrackOfType(asset, quicktime::kVideoMedia);
    if (!track) return;
    const float frameRate = track->nominalFrameRate;
    properties.nominalFrameRate = static_cast<double>(frameRate);
    properties.timecode.rate.timebase = truncated<NSInteger>(frameRate);
    const float frames = frameRate * static_cast<float>(asset.duration().seconds());
    properties.duration = std::min(truncated<NSInteger>(frames), kLongestDuration);
}

void PEL_ReadVideoCodec(PELMovieProperties& properties, const Asset& asset)
{
    const Track* track = PEL_GetFirstMovieTrackOfType(asset, quicktime::kVideoMedia);
    PELCodecProperties& codec = properties.videoCodec;
    const bool isDescribed = track && track->video;
    const bool isNamed = isDescribed && track->video->formatName && isAscii(*track->video->formatName);
    const std::string_view name = isNamed ? std::string_view{*track->video->formatName} : kUnknown;
    copyBounded(name, codec.name);
    copyBounded(name, codec.typeName);
    if (!isDescribed) return;
    codec.typeCode = track->video->format;
    if (track->video->vendor) codec.vendorCode = track->video->vendor->text();
    codec.spatialQuality = track->video->spatialQuality;
    codec.temporalQuality = track->video->temporalQuality;
}

void PEL_ReadAudioProperties(PELMovieProperties& properties, const Asset& asset)
{
    const Track* track = PEL_GetFirstMovieTrackOfType(asset, quicktime::kSoundMedia);
    if (!track) return;
    properties.hasAudio = true;
    if (track->sound) {
        properties.audioSampleRate = truncated<std::uint64_t>(track->sound->sampleRate);
        properties.audioBitDepth = track->sound->bitsPerChannel;
    }
    PEL_ReadAudioTrackCount(properties, asset);
    properties.audioChannelCount = properties.audioTrackCount;
}

void PEL_ReadAudioTrackCount(PELMovieProperties& properties, const Asset& asset)
{
    properties.audioTrackCount = asset.countTracksWithMediaType(quicktime::kSoundMedia);
}

void PEL_ReadTimecodeTrack(PELMovieProperties& properties, const Asset& asset)
{
    const Track* track = PEL_GetFirstMovieTrackOfType(asset, quicktime::kTimecodeMedia);
    if (!track) return;
    properties.hasTimecode = true;
    PEL_ReadStartTimecodeAndReel(properties, asset, *track);
}

void PEL_ReadStartTimecodeAndReel(PELMovieProperties& properties, const Asset& asset, const Track& track)
{
    const quicktime::TimecodeDescription description = track.timecode.value_or(quicktime::TimecodeDescription{});
    copyBounded(description.sourceReferenceName ? std::string_view{*description.sourceReferenceName} : kUnknown,
                properties.reel);
    const PELRate rate = PELRateMake(description.frameQuanta, (description.flags & quicktime::kDropFrameFlag) != 0);
    PELSetFPSForRate(rate); // the label is printed at this rate
    properties.timecode = PELTimecodeMakeWithCString(readFirstTimecodeSampleFromAsset(asset, &track), rate);
}

std::optional<std::string> readFirstTimecodeSampleFromAsset(const Asset& asset, const Track* track)
{
    if (!track || !track->firstSample) return std::nullopt;
    std::array<std::byte, 4> bytes{};
    if (!asset.readFirstSample(*track, bytes)) {
        ZAN_LOG_ERROR("PELMovieUtilities: Could not get data from block buffer");
        return std::nullopt;
    }
    if (track->firstSample->format != FourCC{"tmcd"}) return std::nullopt;
    return PELTimecodeObject::timecodeWithFrames(ByteReader{bytes}.read<std::uint32_t>()).description();
}

void PEL_SetVideoFieldDominance(PELMovieProperties& properties, const PELDictionary& options)
{
    const bool interlaced = options.boolFor("interlaced");
    const NSInteger fps = properties.timecode.rate.timebase;
    PELFieldDominance& dominance = properties.videoCodec.fieldDominance;
    if (interlaced && fps != 24 && fps < 31)
        dominance = PEL_CodecIsDV(properties) ? PELFieldDominance::lower : PELFieldDominance::upper;
    else
        dominance = PELFieldDominance::none;
}

void PEL_MeasureSoundFile(PELMovieProperties& properties, const Asset& asset)
{
    const Track* track = PEL_GetFirstMovieTrackOfType(asset, quicktime::kTimecodeMedia);
    if (properties.hasVideo || !track || !track->timecode || track->timecode->frameDuration == 0) return;
    __extension__ using Wide = unsigned __int128;
    const quicktime::MediaTime length = asset.duration();
    const Wide frames =
        Wide{length.value} * track->timecode->timescale / (Wide{length.timescale} * track->timecode->frameDuration);
    constexpr Wide kMost{static_cast<std::uint64_t>(kLongestDuration)};
    properties.duration = static_cast<NSInteger>(std::min(frames, kMost));
}

} // namespace zanfcp
