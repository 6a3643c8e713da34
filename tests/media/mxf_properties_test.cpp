#include "media/MXFMovieProperties.h"
#include "tests/mxf/model/StandardFile.h"
#include "tests/support/Ffmpeg.h"
#include "tests/support/MxfBuilder.h"
#include "tests/support/TempFolder.h"
#include "timecode/PELTimecodeObject.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace zanfcp;
using testing::HasSubstr;
using zanfcp::test::runFfmpeg;
using zanfcp::test::TempFolder;

namespace {

std::string_view textOf(const auto& field)
{
    return field.data();
}

/// The properties of a file, whatever rate was selected before.
PELMovieProperties read(const std::string& path, const PELDictionary& options = {})
{
    PELSetFPSForRate(PELRateMake(30, true));
    testing::internal::CaptureStdout();
    PELMovieProperties properties;
    properties.width = 77; // must not survive
    EXPECT_EQ(PELGetPropertiesOfMovieAtURL(FileURL::fileURLWithPath(path), properties, options), 0);
    (void)testing::internal::GetCapturedStdout();
    return properties;
}

/// A whole file around header metadata.
PELMovieProperties readBuilt(const TamrelMxf::test::StandardFile& file, const PELDictionary& options = {})
{
    TamrelMxf::test::MxfBuilder builder;
    builder.partition({.bodySID = 1, .metadata = file.Bytes()}).essence(1000).partition({.kind = 4});
    builder.stateFooter().randomIndexPack();
    const TempFolder folder;
    return read(folder.write("built.mxf", std::string(builder.bytes.begin(), builder.bytes.end())), options);
}

TEST(FrameRateCodes, AreWholeFramesHundredthsOrThousandths)
{
    const struct {
        NSInteger timebase;
        std::vector<std::uint32_t> codes;
    } cases[] = {
        {24, {24, 2398, 2400, 24000}}, {25, {25, 2500, 25000}},           {30, {29, 30, 2997, 3000, 30000}},
        {50, {50, 5000, 50000}},       {60, {59, 60, 5994, 6000, 60000}}, {0, {0, 23, 1200, 2399, 4800, 23976}},
    };
    for (const auto& c : cases)
        for (const std::uint32_t code : c.codes)
            EXPECT_EQ(timebaseFromFrameInfo(code), c.timebase) << code;
}

TEST(XDCAMCodes, ComeFromFamilyWidthRateAndInterlacing)
{
    constexpr double k23976 = 24000.0 / 1001;
    constexpr double k2997 = 30000.0 / 1001;
    constexpr double k5994 = 60000.0 / 1001;
    const struct {
        std::uint8_t family;
        std::uint32_t width;
        double rate;
        std::uint8_t interlaced;
        FourCC code;
    } cases[] = {
        {4, 1920, k23976, 0, FourCC{"xd5d"}}, {4, 1920, 24, 1, FourCC{"xd5d"}},     {4, 1920, 25, 0, FourCC{"xd5e"}},
        {4, 1920, 25, 1, FourCC{"xd5c"}},     {4, 1920, k2997, 0, FourCC{"xd5f"}},  {4, 1920, 30, 1, FourCC{"xd5b"}},
        {4, 1920, 50, 0, FourCC{}},           {4, 1920, k5994, 0, FourCC{}},        {4, 1920, 24.5, 0, FourCC{}},
        {4, 1920, 40, 0, FourCC{}},           {4, 1280, k23976, 0, FourCC{"xdv4"}}, {4, 1280, 25, 0, FourCC{"xd55"}},
        {4, 1280, 25, 1, FourCC{"xd55"}},     {4, 1280, k2997, 0, FourCC{"xd51"}},  {4, 1280, 50, 0, FourCC{"xd5a"}},
        {4, 1280, k5994, 0, FourCC{"xd59"}},  {4, 1280, 40, 0, FourCC{}},           {4, 1440, 25, 0, FourCC{}},
        {3, 1920, 24, 0, FourCC{"xdvd"}},     {3, 1920, 25, 0, FourCC{"xdve"}},     {3, 1920, 25, 1, FourCC{"xdvc"}},
        {3, 1920, k2997, 0, FourCC{"xdvf"}},  {3, 1920, k2997, 1, FourCC{"xdvb"}},  {3, 1920, 50, 0, FourCC{}},
        {3, 1440, k23976, 0, FourCC{"xdv6"}}, {3, 1440, 25, 0, FourCC{"xdv7"}},     {3, 1440, 25, 1, FourCC{"xdv3"}},
        {3, 1440, k2997, 0, FourCC{"xdv8"}},  {3, 1440, k2997, 1, FourCC{"xdv2"}},  {3, 1440, k5994, 0, FourCC{}},
        {3, 1280, k23976, 0, FourCC{"xd54"}}, {3, 1280, 25, 0, FourCC{"xdv5"}},     {3, 1280, k2997, 0, FourCC{"xdv1"}},
        {3, 1280, 50, 0, FourCC{"xdva"}},     {3, 1280, k5994, 0, FourCC{"xdv9"}},  {3, 720, 25, 0, FourCC{}},
        {2, 1920, 25, 0, FourCC{}},           {5, 1440, 25, 0, FourCC{}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << int{c.family} << ' ' << c.width << ' ' << c.rate << ' '
                                        << int{c.interlaced});
        mxf_stream_format format{};
        format.family = c.family;
        format.width = c.width;
        format.frame_rate = c.rate;
        format.interlaced = c.interlaced;
        format.essence_kind = format.profile = 2;
        PELMovieProperties properties;
        propagateMXFCodecInfo(properties, format);
        EXPECT_EQ(properties.videoCodec.typeCode, c.code);
        EXPECT_EQ(textOf(properties.videoCodec.name), "XDCAM");
        EXPECT_EQ(textOf(properties.videoCodec.typeName), "XDCAM");
        EXPECT_EQ(properties.videoCodec.vendorCode, "appl");
        EXPECT_EQ(properties.videoCodec.spatialQuality, 1024);
        EXPECT_EQ(properties.videoCodec.temporalQuality, 0);
        for (std::uint8_t* only : {&format.essence_kind, &format.profile}) {
            *only = 1;
            propagateMXFCodecInfo(properties, format);
            EXPECT_EQ(properties.videoCodec.typeCode, FourCC{}) << "not MPEG-2";
            *only = 2;
        }
    }
}

TEST(MXFProperties, OfACameraFile)
{
    const PELMovieProperties properties = readBuilt({});
    EXPECT_TRUE(properties.hasVideo);
    EXPECT_EQ(properties.width, 1920);
    EXPECT_EQ(properties.height, 1080) << "540 lines a field";
    EXPECT_EQ(properties.pixelAspectRatio, PELPixelAspectRatio::square);
    EXPECT_EQ(properties.duration, 250);
    EXPECT_EQ(properties.nominalFrameRate, 25);
    EXPECT_TRUE(properties.hasAudio);
    EXPECT_EQ(properties.audioSampleRate, 48000U);
    EXPECT_EQ(properties.audioBitDepth, 24U);
    EXPECT_EQ(properties.audioTrackCount, 1U);
    EXPECT_EQ(properties.audioChannelCount, 1U);
    EXPECT_TRUE(properties.hasTimecode);
    EXPECT_EQ(properties.timecode.rate.timebase, 25);
    EXPECT_FALSE(properties.timecode.rate.isNTSC);
    EXPECT_EQ(properties.timecode.frames, 90000U);
    EXPECT_EQ(textOf(properties.reel), "Tape");
    EXPECT_EQ(properties.videoCodec.fieldDominance, PELFieldDominance::none);
}

TEST(MXFProperties, InterlacedOptionIsUpperFieldFirstAtEveryRate)
{
    PELDictionary options;
    options.set("interlaced", PELValue(true));
    EXPECT_EQ(readBuilt({.pictureRate = {24, 1}, .base = 24}, options).videoCodec.fieldDominance,
              PELFieldDominance::upper);
}

TEST(MXFProperties, SoundAloneIsMeasuredOnlyOnRequest)
{
    const TamrelMxf::test::StandardFile file{.materialStart = 1800,
                                             .fileStart = 1800,
                                             .materialSound = 48048,
                                             .fileSound = 48048,
                                             .pictureRate = {30000, 1001},
                                             .soundRate = {48000, 1},
                                             .base = 30,
                                             .dropFrame = true,
                                             .hasPicture = false};
    const PELMovieProperties plain = readBuilt(file);
    EXPECT_FALSE(plain.hasVideo);
    EXPECT_EQ(plain.duration, 0);
    EXPECT_EQ(plain.timecode.rate.timebase, 0);
    EXPECT_TRUE(plain.hasTimecode);

    PELDictionary options;
    options.set(PELMeasureSoundFiles, PELValue(true));
    const PELMovieProperties measured = readBuilt(file, options);
    EXPECT_EQ(measured.duration, 30);
    EXPECT_EQ(measured.timecode.rate.timebase, 30);
    EXPECT_EQ(measured.timecode.frames, 1800U);
    EXPECT_TRUE(measured.timecode.rate.isNTSC);
}

TEST(MXFProperties, UnreadableFileIsRefusedWithItsReason)
{
    // As long as what a reader looks at first: a shorter file would be waited for.
    const TempFolder folder;
    const FileURL url = FileURL::fileURLWithPath(folder.write("noise.mxf", std::string(70'000, 'x')));
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    PELMovieProperties properties;
    properties.width = 77;
    EXPECT_EQ(PELGetPropertiesOfMovieAtURL(url, properties, {}), -38);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "MXF Demuxer: Unable to open MXF Demuxer with error -1\n");
    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                HasSubstr("\nError: parse headers failure, no partition pack\n"));
    EXPECT_EQ(properties, PELMovieProperties{});
}

TEST(MXFProperties, MessagesGoWhereAProgramWantsThem)
{
    CMyLogger toStandardError{stderr};
    setMXFMessageSink(&toStandardError);
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    const TempFolder folder;
    const FileURL url = FileURL::fileURLWithPath(folder.write("noise.mxf", std::string(70'000, 'x')));
    PELMovieProperties properties;
    EXPECT_EQ(PELGetPropertiesOfMovieAtURL(url, properties, {}), -38);
    setMXFMessageSink(nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("Error: parse headers failure"));
}

TEST(MXFProperties, OfFilesThatFfmpegMakes)
{
    const struct {
        const char* name;
        std::vector<std::string> arguments;
        NSInteger width, height, timebase, frames;
        std::uint64_t start;
        bool dropFrame;
        FourCC code;
        std::uint64_t sounds, bits;
    } cases[] = {
        {"422P@HL 1080i50, eight sounds",
         {"-f",        "lavfi",       "-i",         "testsrc2=s=1920x1080:r=25:d=0.2",
          "-f",        "lavfi",       "-i",         "anullsrc=r=48000:cl=mono:d=0.2",
          "-map",      "0",           "-map",       "1",
          "-map",      "1",           "-map",       "1",
          "-map",      "1",           "-map",       "1",
          "-map",      "1",           "-map",       "1",
          "-map",      "1",           "-c:v",       "mpeg2video",
          "-pix_fmt",  "yuv422p",     "-profile:v", "0",
          "-level:v",  "2",           "-b:v",       "50M",
          "-flags",    "+ildct+ilme", "-c:a",       "pcm_s24le",
          "-timecode", "01:00:00:00"},
         1920,
         1080,
         25,
         5,
         90000,
         false,
         FourCC{"xd5c"},
         8,
         24},
        {"MP@HL 720p59.94, drop-frame",
         {"-f", "lavfi", "-i", "testsrc2=s=1280x720:r=60000/1001:d=0.2", "-c:v", "mpeg2video", "-pix_fmt", "yuv420p",
          "-profile:v", "4", "-level:v", "4", "-b:v", "35M", "-timecode", "00:01:00;04"},
         1280,
         720,
         60,
         12,
         3600,
         true,
         FourCC{"xdv9"},
         0,
         0},
        {"AVC 1080p23.976",
         {"-f", "lavfi", "-i", "testsrc2=s=1920x1080:r=24000/1001:d=0.25", "-c:v", "libx264", "-preset", "ultrafast",
          "-pix_fmt", "yuv420p", "-timecode", "10:11:12:13"},
         1920,
         1080,
         24,
         6,
         ((10 * 60 + 11) * 60 + 12) * 24 + 13,
         false,
         FourCC{},
         0,
         0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const TempFolder folder;
        const std::string path = folder.file("clip.mxf");
        std::vector<std::string> arguments = c.arguments;
        arguments.push_back(path);
        runFfmpeg(arguments);
        const PELMovieProperties properties = read(path);
        EXPECT_EQ(properties.width, c.width);
        EXPECT_EQ(properties.height, c.height);
        EXPECT_EQ(properties.duration, c.frames);
        EXPECT_EQ(properties.timecode.rate.timebase, c.timebase);
        EXPECT_EQ(properties.timecode.rate.isNTSC, c.dropFrame);
        EXPECT_EQ(properties.timecode.frames, c.start);
        EXPECT_EQ(properties.videoCodec.typeCode, c.code);
        EXPECT_EQ(properties.hasAudio, c.sounds > 0);
        EXPECT_EQ(properties.audioTrackCount, c.sounds);
        EXPECT_EQ(properties.audioChannelCount, c.sounds);
        EXPECT_EQ(properties.audioBitDepth, c.bits);
    }
}

} // namespace
