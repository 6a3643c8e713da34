#include "media/PELMovieProperties.h"

#include "media/FixedText.h"
#include "media/MXFMovieProperties.h"
#include "media/MovieReading.h"
#include "media/ZANFCPAdditions.h"
#include "platform/Format.h"
#include "platform/Log.h"

namespace zanfcp {
namespace {

constexpr std::int32_t kUnreadable = -38;

std::int32_t readMovie(const FileURL& url, PELMovieProperties& properties, const PELDictionary& options)
{
    const Result<quicktime::Asset> asset = quicktime::Asset::open(url.path());
    if (!asset) {
        ZAN_LOG_ERROR("PELMovieUtilities: Could not read %s: %s", url.absoluteString().c_str(),
                      asset.error().text().c_str());
        return kUnreadable;
    }
    PEL_ReadVideoDimensions(properties, *asset);
    PEL_ReadVideoFrameCount(properties, *asset);
    const NSInteger provisionalRate = properties.timecode.rate.timebase;
    PEL_ReadVideoCodec(properties, *asset);
    properties.missingBytes = asset->missingBytes();
    PEL_ReadAudioProperties(properties, *asset);
    PEL_ReadTimecodeTrack(properties, *asset);
    PEL_SetVideoFieldDominance(properties, options);
    // 23.976: its timecode counts like 24 and cannot say so. 29.97 and 59.94 are left to the timecode track.
    if (provisionalRate == 23) properties.timecode.rate.isNTSC = true;
    if (options.boolFor(PELMeasureSoundFiles)) PEL_MeasureSoundFile(properties, *asset);
    return 0;
}

/// As %i prints an integer of 64 bits.
int int32(std::uint64_t number)
{
    return static_cast<int>(static_cast<std::uint32_t>(number));
}

int int32(NSInteger number)
{
    return int32(static_cast<std::uint64_t>(number));
}

} // namespace

std::int32_t PELGetPropertiesOfMovieAtURL(const FileURL& url, PELMovieProperties& properties,
                                          const PELDictionary& options)
{
    properties = {};
    if (url.pathExtension() == "mov") return readMovie(url, properties, options);
    if (url.pathExtension() == "mxf") return readMXFProperties(url, properties, options);
    return kUnreadable;
}

bool PEL_CodecIsDV(const PELMovieProperties& properties)
{
    const FourCC code = properties.videoCodec.typeCode;
    return code == FourCC{"dvc "} || code == FourCC{"dvcp"} || code == FourCC{"dvpp"};
}

bool PEL_IsInterlaced(const PELMovieProperties& properties)
{
    const PELFieldDominance dominance = properties.videoCodec.fieldDominance;
    return dominance == PELFieldDominance::upper || dominance == PELFieldDominance::lower;
}

std::string NSStringFromPELCodecProperties(const PELCodecProperties& codec)
{
    std::string text = "name: ";
    text.append(fixedText(codec.name)).append(", typeName: ").append(fixedText(codec.typeName));
    text.append(", typeCode: ").append(ZANFCPAdditions::stringWithFourCharCode(codec.typeCode));
    text.append(", vendorCode: ").append(codec.vendorCode.value_or("(null)"));
    text += format(", spatialQuality: %i, temporalQuality: %i, keyframeRate: %i, dataRate: %i", codec.spatialQuality,
                   codec.temporalQuality, codec.keyframeRate, codec.dataRate);
    return text.append(", fieldDominance: ").append(NSStringFromPELFieldDominance(codec.fieldDominance));
}

std::string NSStringFromPELMovieProperties(const PELMovieProperties& properties)
{
    std::string text = " \t\t\t{";
    const auto line = [&text](const char* label, const std::string& value) {
        text.append("\n\t\t\t\t").append(label).append(": ").append(value).append(" ");
    };
    const auto number = [](auto value) { return std::to_string(int32(value)); };
    const auto flag = [](bool value) { return std::string(value ? "1" : "0"); };
    line("hasVideo", flag(properties.hasVideo));
    line("dimensions", number(properties.width) + " x " + number(properties.height));
    line("pixelAspectRatio", NSStringFromPELPixelAspectRatio(properties.pixelAspectRatio));
    line("anamorphic", flag(properties.anamorphic));
    line("duration", number(properties.duration));
    line("videoCodec", std::string("{").append(NSStringFromPELCodecProperties(properties.videoCodec)).append("}"));
    line("hasAudio", flag(properties.hasAudio));
    line("audioSampleRate", number(properties.audioSampleRate));
    line("audioBitDepth", number(properties.audioBitDepth));
    line("audioTrackCount", number(properties.audioTrackCount));
    line("audioChannelCount", number(properties.audioChannelCount));
    line("hasTimecode", flag(properties.hasTimecode));
    line("timecode", NSStringFromPELTimecode(properties.timecode));
    line("reel", std::string(fixedText(properties.reel)));
    return text + "\n\t\t\t}";
}

} // namespace zanfcp
