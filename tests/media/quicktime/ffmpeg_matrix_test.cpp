#include "media/PELMovieProperties.h"
#include "tests/support/Ffmpeg.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace zanfcp;
using namespace zanfcp::test;

namespace {

using Arguments = std::vector<std::string>;

/// A clip as ffmpeg is told to make it, and what follows from that.
struct Clip {
    std::string name;
    // Picture
    Arguments codec = {"-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p"};
    std::string format = "avc1"; ///< the codec's four characters
    int width = 128;
    int height = 96;
    int rate = 25; ///< counted frames a second
    bool isNTSC = false;
    int frames = 0; ///< 0: one second of counted frames
    // Sound
    int soundTracks = 0;
    int channels = 2;
    Arguments soundCodec = {"-c:a", "pcm_s16le"};
    int bits = 16;
    int sampleRate = 48000;
    // Labels
    std::string timecode = {}; ///< with ";" before the frames for drop-frame; empty for none
    std::string reel = {};
    Arguments container = {};
    // Expectations
    PELPixelAspectRatio ratio = PELPixelAspectRatio::square;

    int frameCount() const { return frames > 0 ? frames : rate; }
    bool isFragmented() const { return !container.empty() && container.back().find("frag") != std::string::npos; }
    bool isDropFrame() const { return timecode.find(';') != std::string::npos; }
};

std::ostream& operator<<(std::ostream& out, const Clip& clip)
{
    return out << clip.name;
}

void make(const Clip& clip, const std::string& path)
{
    const std::string rate = clip.isNTSC ? std::to_string(clip.rate * 1000) + "/1001" : std::to_string(clip.rate);
    const std::string size = std::to_string(clip.width) + "x" + std::to_string(clip.height);
    const double seconds = clip.frameCount() * (clip.isNTSC ? 1.001 : 1.0) / clip.rate;
    Arguments all{"-f", "lavfi", "-i", "color=gray:s=" + size + ":r=" + rate};
    for (int i = 0; i < clip.soundTracks; ++i)
        all.insert(all.end(), {"-f", "lavfi", "-i",
                               "anullsrc=r=" + std::to_string(clip.sampleRate) + ":cl=" +
                                   (clip.channels == 1 ? "mono" : "stereo") + ":d=" + std::to_string(seconds)});
    for (int i = 0; i <= clip.soundTracks; ++i)
        all.insert(all.end(), {"-map", std::to_string(i)});
    all.insert(all.end(), {"-frames:v", std::to_string(clip.frameCount())});
    all.insert(all.end(), clip.codec.begin(), clip.codec.end());
    all.insert(all.end(), clip.soundCodec.begin(), clip.soundCodec.end());
    if (!clip.timecode.empty()) all.insert(all.end(), {"-timecode", clip.timecode});
    if (!clip.reel.empty()) all.insert(all.end(), {"-metadata:s:v", "reel_name=" + clip.reel});
    all.insert(all.end(), clip.container.begin(), clip.container.end());
    all.push_back(path);
    runFfmpeg(all);
}

PELMovieProperties readProperties(const std::string& path, const PELDictionary& options = {})
{
    PELMovieProperties properties;
    EXPECT_EQ(PELGetPropertiesOfMovieAtURL(FileURL::fileURLWithPath(path), properties, options), 0);
    return properties;
}

class FfmpegClip : public testing::TestWithParam<Clip> {};

TEST_P(FfmpegClip, IsReadAsItWasMade)
{
    const Clip& clip = GetParam();
    const TempFolder folder;
    const std::string path = folder.file("clip.mov");
    make(clip, path);
    const PELMovieProperties read = readProperties(path);

    EXPECT_TRUE(read.hasVideo);
    EXPECT_EQ(read.width, clip.width);
    EXPECT_EQ(read.height, clip.height);
    EXPECT_EQ(read.pixelAspectRatio, clip.ratio);
    EXPECT_FALSE(read.anamorphic);
    EXPECT_EQ(read.duration, clip.frameCount());
    EXPECT_EQ(read.videoCodec.typeCode.text(), clip.format);
    EXPECT_EQ(read.videoCodec.vendorCode, "FFMP");

    EXPECT_EQ(read.hasAudio, clip.soundTracks > 0);
    EXPECT_EQ(read.audioTrackCount, static_cast<std::uint64_t>(clip.soundTracks));
    EXPECT_EQ(read.audioChannelCount, static_cast<std::uint64_t>(clip.soundTracks));
    EXPECT_EQ(read.audioSampleRate, clip.soundTracks > 0 ? static_cast<std::uint64_t>(clip.sampleRate) : 0);
    EXPECT_EQ(read.audioBitDepth, clip.soundTracks > 0 ? static_cast<std::uint64_t>(clip.bits) : 0);

    const bool hasTimecode = !clip.timecode.empty();
    EXPECT_EQ(read.hasTimecode, hasTimecode);
    // Without labels the rate is cut: 29.97 to 29.
    EXPECT_EQ(read.timecode.rate.timebase, clip.rate - (clip.isNTSC && !hasTimecode ? 1 : 0));
    EXPECT_EQ(read.timecode.rate.isNTSC, clip.isDropFrame() || (clip.isNTSC && clip.rate == 24));
    std::string label = clip.timecode;
    std::replace(label.begin(), label.end(), ';', ':');
    EXPECT_EQ(std::string(read.timecode.string.data()), label);
    EXPECT_EQ(std::string(read.reel.data()), clip.reel.empty() ? (hasTimecode ? "Unknown" : "") : clip.reel);

    auto second = probe(path);
    EXPECT_EQ(read.videoCodec.typeCode.text(), second["streams.stream.0.codec_tag_string"]);
    EXPECT_EQ(std::to_string(read.width), second["streams.stream.0.width"]);
    EXPECT_EQ(std::to_string(read.height), second["streams.stream.0.height"]);
    EXPECT_EQ(std::string(read.videoCodec.name.data()), second["streams.stream.0.tags.encoder"]);
    if (!clip.isFragmented()) {
        EXPECT_EQ(std::to_string(read.duration), second["streams.stream.0.nb_frames"]);
    }
    if (hasTimecode) {
        EXPECT_EQ(clip.timecode, second["streams.stream.0.tags.timecode"]);
    }
    if (clip.soundTracks > 0) {
        EXPECT_EQ(std::to_string(read.audioSampleRate), second["streams.stream.1.sample_rate"]);
    }
    int soundStreams = 0;
    for (const auto& [key, value] : second)
        soundStreams += key.ends_with("codec_type") && value == "audio" ? 1 : 0;
    EXPECT_EQ(read.audioTrackCount, static_cast<std::uint64_t>(soundStreams));
}

std::vector<Clip> codecs()
{
    return {
        {.name = "H264", .timecode = "01:00:00:00", .reel = "A001"},
        {.name = "ProRes", .codec = {"-c:v", "prores"}, .format = "apcn", .timecode = "01:00:00:00"},
        {.name = "ProResHQ", .codec = {"-c:v", "prores_ks", "-profile:v", "3"}, .format = "apch"},
        {.name = "DVPal",
         .codec = {"-c:v", "dvvideo", "-pix_fmt", "yuv420p"},
         .format = "dvcp",
         .width = 720,
         .height = 576,
         .timecode = "10:00:00:00",
         .ratio = PELPixelAspectRatio::pal601},
        {.name = "DVNtsc",
         .codec = {"-c:v", "dvvideo", "-pix_fmt", "yuv411p"},
         .format = "dvc ",
         .width = 720,
         .height = 480,
         .rate = 30,
         .isNTSC = true,
         .timecode = "10:00:00;00",
         .ratio = PELPixelAspectRatio::ntsc601},
        {.name = "MJPEG", .codec = {"-c:v", "mjpeg", "-pix_fmt", "yuvj420p"}, .format = "jpeg"},
        {.name = "DNxHR",
         .codec = {"-c:v", "dnxhd", "-profile:v", "dnxhr_lb", "-pix_fmt", "yuv422p"},
         .format = "AVdh",
         .width = 256,
         .height = 128},
        {.name = "DNxHD",
         .codec = {"-c:v", "dnxhd", "-b:v", "36M", "-pix_fmt", "yuv422p"},
         .format = "AVdn",
         .width = 1920,
         .height = 1080,
         .frames = 5},
        {.name = "MPEG2", .codec = {"-c:v", "mpeg2video", "-pix_fmt", "yuv420p"}, .format = "m2v1"},
    };
}

std::vector<Clip> rates()
{
    struct Rate {
        const char* name;
        int rate;
        bool isNTSC;
        const char* timecode;
    };
    const Rate all[] = {
        {"23976", 24, true, "01:02:03:04"}, {"24", 24, false, "01:02:03:04"},      {"25", 25, false, "23:59:59:24"},
        {"2997", 30, true, "00:01:00:00"},  {"2997Drop", 30, true, "00:01:00;02"}, {"30", 30, false, "00:00:59:29"},
        {"50", 50, false, "09:59:00:49"},   {"5994Drop", 60, true, "00:09:00;04"}, {"60", 60, false, "12:00:00:59"},
    };
    std::vector<Clip> clips;
    for (const Rate& rate : all) {
        clips.push_back({.name = std::string("Labelled") + rate.name,
                         .rate = rate.rate,
                         .isNTSC = rate.isNTSC,
                         .timecode = rate.timecode});
        if (std::string_view{rate.timecode}.find(';') == std::string_view::npos)
            clips.push_back({.name = std::string("Bare") + rate.name, .rate = rate.rate, .isNTSC = rate.isNTSC});
    }
    return clips;
}

std::vector<Clip> sizes()
{
    using Ratio = PELPixelAspectRatio;
    struct Size {
        int width;
        int height;
        Ratio ratio;
    };
    const Size all[] = {{720, 480, Ratio::ntsc601},       {720, 486, Ratio::ntsc601}, {720, 576, Ratio::pal601},
                        {960, 720, Ratio::hd960x720},     {1280, 720, Ratio::square}, {1280, 1080, Ratio::hd1280x1080},
                        {1440, 1080, Ratio::hd1440x1080}, {1920, 1080, Ratio::square}};
    std::vector<Clip> clips;
    for (const Size& size : all)
        clips.push_back({.name = "Size" + std::to_string(size.width) + "x" + std::to_string(size.height),
                         .width = size.width,
                         .height = size.height,
                         .frames = 5,
                         .ratio = size.ratio});
    return clips;
}

std::vector<Clip> sounds()
{
    const Arguments pcm24 = {"-c:a", "pcm_s24le"};
    const Arguments aac = {"-c:a", "aac", "-b:a", "32k"};
    return {
        {.name = "Stereo16", .soundTracks = 1},
        {.name = "Stereo16BigEnd", .soundTracks = 1, .soundCodec = {"-c:a", "pcm_s16be"}},
        {.name = "Stereo24", .soundTracks = 1, .soundCodec = pcm24, .bits = 24},
        {.name = "Stereo32", .soundTracks = 1, .soundCodec = {"-c:a", "pcm_s32le"}, .bits = 32},
        {.name = "StereoFloat", .soundTracks = 1, .soundCodec = {"-c:a", "pcm_f32le"}, .bits = 32},
        {.name = "StereoDouble", .soundTracks = 1, .soundCodec = {"-c:a", "pcm_f64be"}, .bits = 64},
        {.name = "StereoAAC", .soundTracks = 1, .soundCodec = aac, .bits = 0},
        {.name = "StereoALAC", .soundTracks = 1, .soundCodec = {"-c:a", "alac"}, .bits = 0},
        {.name = "Stereo44100", .soundTracks = 1, .sampleRate = 44100},
        {.name = "Stereo96000", .soundTracks = 1, .soundCodec = pcm24, .bits = 24, .sampleRate = 96000},
        {.name = "TwoStereo24", .soundTracks = 2, .soundCodec = pcm24, .bits = 24, .timecode = "01:00:00:00"},
        {.name = "EightMono16", .soundTracks = 8, .channels = 1},
        {.name = "EightMonoAAC", .soundTracks = 8, .channels = 1, .soundCodec = aac, .bits = 0},
    };
}

std::vector<Clip> containers()
{
    const Arguments aac = {"-c:a", "aac"};
    const Arguments fragmented = {"-movflags", "frag_keyframe+empty_moov"};
    const Arguments manyFragments = {"-g", "5", "-movflags", "frag_keyframe+empty_moov+default_base_moof"};
    std::vector<Clip> clips = {
        {.name = "FastStart", .container = {"-movflags", "faststart"}},
        {.name = "Fragmented", .container = fragmented},
        {.name = "FragmentedAAC", .soundTracks = 1, .soundCodec = aac, .bits = 0, .container = fragmented},
        {.name = "FragmentedBehindMovie", .container = {"-g", "5", "-movflags", "frag_keyframe"}},
        {.name = "ManyFragments", .rate = 50, .soundTracks = 2, .container = manyFragments},
        {.name = "FragmentsOfSixtieths", .rate = 60, .isNTSC = true, .container = manyFragments},
    };
    for (std::size_t i = 0, count = clips.size(); i < count; ++i) {
        Clip labelled = clips[i];
        labelled.name += "Labelled";
        labelled.timecode = labelled.isNTSC ? "01:00:00;04" : "01:00:00:04";
        labelled.reel = "Röll 7";
        clips.push_back(labelled);
    }
    return clips;
}

std::string nameOf(const testing::TestParamInfo<Clip>& info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Codec, FfmpegClip, testing::ValuesIn(codecs()), nameOf);
INSTANTIATE_TEST_SUITE_P(Rate, FfmpegClip, testing::ValuesIn(rates()), nameOf);
INSTANTIATE_TEST_SUITE_P(Size, FfmpegClip, testing::ValuesIn(sizes()), nameOf);
INSTANTIATE_TEST_SUITE_P(Sound, FfmpegClip, testing::ValuesIn(sounds()), nameOf);
INSTANTIATE_TEST_SUITE_P(Container, FfmpegClip, testing::ValuesIn(containers()), nameOf);

TEST(FfmpegSoundFile, IsMeasuredAtTheRateOfItsLabels)
{
    const TempFolder folder;
    const std::string camera = folder.file("camera.mov");
    const std::string sound = folder.file("sound.mov");
    make({.name = "Camera", .rate = 30, .isNTSC = true, .soundTracks = 2, .timecode = "02:00:00:00"}, camera);
    runFfmpeg({"-i", camera, "-map", "0:a", "-map", "0:d", "-c", "copy", sound});
    const PELMovieProperties read = readProperties(sound, {{"measureSoundFiles", true}});
    EXPECT_FALSE(read.hasVideo);
    EXPECT_EQ(read.audioTrackCount, 2U);
    EXPECT_TRUE(read.hasTimecode);
    EXPECT_EQ(std::string(read.timecode.string.data()), "02:00:00:00");
    EXPECT_EQ(read.timecode.rate, (PELRate{30, false}));
    EXPECT_EQ(read.duration, 30);
    EXPECT_EQ(probe(sound)["format.duration"], "1.001000");
    EXPECT_EQ(readProperties(sound).duration, 0);
}

} // namespace
