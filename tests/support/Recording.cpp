#include "tests/support/Recording.h"

namespace zanfcp::test {
namespace {

constexpr PELRate kRate{.timebase = 25, .isNTSC = false};

void addSound(PELMovieProperties& properties, std::uint64_t audioTracks)
{
    if (audioTracks == 0) return;
    properties.hasAudio = true;
    properties.audioSampleRate = 48000;
    properties.audioBitDepth = 24;
    properties.audioTrackCount = audioTracks;
    properties.audioChannelCount = audioTracks;
}

} // namespace

PELMovieProperties emptyMovie(NSInteger startFrames, NSInteger duration)
{
    PELMovieProperties properties;
    properties.duration = duration;
    properties.timecode.rate = kRate;
    properties.timecode.frames = static_cast<std::uint64_t>(startFrames);
    return properties;
}

PELMovieProperties soundMovie(std::string_view startTimecode, NSInteger duration, std::uint64_t audioTracks)
{
    PELMovieProperties properties;
    properties.duration = duration;
    properties.hasTimecode = true;
    properties.timecode = PELTimecodeMakeWithString(startTimecode, kRate);
    setField(properties.reel, "SND_001");
    addSound(properties, audioTracks);
    return properties;
}

PELMovieProperties cameraMovie(std::string_view startTimecode, NSInteger duration, std::uint64_t audioTracks)
{
    PELMovieProperties properties = soundMovie(startTimecode, duration, audioTracks);
    setField(properties.reel, "A001");
    properties.hasVideo = true;
    properties.width = 1920;
    properties.height = 1080;
    properties.pixelAspectRatio = PELPixelAspectRatio::square;
    setField(properties.videoCodec.name, "H.264");
    setField(properties.videoCodec.typeName, "H.264");
    properties.videoCodec.typeCode = FourCC{"avc1"};
    properties.videoCodec.vendorCode = "appl";
    properties.videoCodec.spatialQuality = 512;
    properties.videoCodec.temporalQuality = 256;
    properties.videoCodec.fieldDominance = PELFieldDominance::none;
    return properties;
}

std::shared_ptr<PELFileElement> makeFile(std::string_view name, const PELMovieProperties& properties)
{
    const std::string path = "/Volumes/Show 12/" + std::string(name);
    return PELFileElement::fileElementWithURLMovieProperties(FileURL::fileURLWithPath(path), properties);
}

PELFileElements showRecording()
{
    PELMovieProperties third = cameraMovie("01:00:04:00", 1000, 2);
    third.width = 720;
    third.height = 576;
    third.pixelAspectRatio = PELPixelAspectRatio::pal601;
    third.anamorphic = true;
    third.videoCodec.fieldDominance = PELFieldDominance::lower;
    const PELFileElements files{makeFile("A001.mov", cameraMovie("01:00:00:00", 1000, 2)),
                                makeFile("B001.mov", cameraMovie("01:00:08:00", 900, 0)), makeFile("C001.mov", third),
                                makeFile("SOUND.mov", soundMovie("01:00:02:00", 1200, 4))};
    PELFileElement::calculateOffsetsForFiles(files);
    PELFileElement::calculateMediaDelaysForFiles(files);
    return files;
}

} // namespace zanfcp::test
