#include "media/MovieReading.h"
#include "tests/support/LogCapture.h"
#include "tests/support/MovieBuilder.h"
#include "tests/support/TempFolder.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace zanfcp;
using namespace zanfcp::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

struct Read {
    std::int32_t status = 0;
    PELMovieProperties properties;
};

Read readFileNamed(std::string_view name, const Bytes& file, const PELDictionary& options = {})
{
    const TempFolder folder;
    const FileURL url = FileURL::fileURLWithPath(folder.write(name, file.str()));
    Read read;
    read.properties.width = 77; // must not survive
    read.properties.reel[0] = 'x';
    read.status = PELGetPropertiesOfMovieAtURL(url, read.properties, options);
    return read;
}

PELMovieProperties readMovie(const Movie& movie, const PELDictionary& options = {})
{
    const Read read = readFileNamed("clip.mov", movieFile(movie), options);
    EXPECT_EQ(read.status, 0);
    return read.properties;
}

/// Four seconds of pictures.
MovieTrack pictures(std::uint32_t timescale, std::uint32_t frameDuration, const VideoEntry& entry = {})
{
    MovieTrack track;
    track.timescale = timescale;
    track.descriptions = {videoEntry(entry)};
    track.times = {{4 * timescale / frameDuration, frameDuration}};
    return track;
}

std::string_view textOf(const auto& field)
{
    return field.data();
}

TEST(MovieProperties, OnlyLowerCaseMovIsRead)
{
    const Bytes valid = movieFile({});
    EXPECT_EQ(readFileNamed("clip.mov", valid).status, 0);
    for (const char* name : {"clip.MOV", "clip.Mov", "clip.mp4", "clip.mov.bak", "clip", "mov", ".mov"}) {
        SCOPED_TRACE(name);
        const Read read = readFileNamed(name, valid);
        EXPECT_EQ(read.status, -38);
        EXPECT_EQ(read.properties, PELMovieProperties{});
    }
}

TEST(MovieProperties, UnreadableFileIsRefusedWithItsReason)
{
    const Bytes valid = movieFile({});
    for (const Bytes& file : {Bytes{}, Bytes{}.text("This is no movie"), valid.first(valid.size() - 1)}) {
        const LogCapture log;
        const Read read = readFileNamed("clip.mov", file);
        EXPECT_EQ(read.status, -38);
        EXPECT_EQ(read.properties, PELMovieProperties{});
        EXPECT_THAT(log.errors(), ElementsAre(HasSubstr("clip.mov: ")));
    }
    PELMovieProperties properties;
    EXPECT_EQ(PELGetPropertiesOfMovieAtURL(FileURL::fileURLWithPath("/nowhere/clip.mov"), properties, {}), -38);
}

TEST(MovieProperties, PixelAspectFollowsFromTheRaster)
{
    using Ratio = PELPixelAspectRatio;
    struct Case {
        std::uint16_t width;
        std::uint16_t height;
        std::uint32_t apertureWidth; ///< 0: none
        std::uint32_t apertureHeight;
        Ratio ratio;
        bool anamorphic;
    };
    const Case cases[] = {
        {720, 480, 0, 0, Ratio::ntsc601, false},
        {720, 486, 0, 0, Ratio::ntsc601, false},
        {720, 486, 720, 486, Ratio::ntsc601, false},
        {720, 576, 0, 0, Ratio::pal601, false},
        {720, 576, 1023, 576, Ratio::pal601, false},
        {720, 576, 1024, 576, Ratio::pal601, true},
        {720, 480, 1280, 480, Ratio::ntsc601, true},
        {720, 576, 704, 480, Ratio::ntsc601, false}, // the aperture's height decides, not the picture's
        {720, 480, 720, 470, Ratio::notSet, false},
        {720, 405, 0, 0, Ratio::notSet, false},
        {720, 405, 1024, 405, Ratio::notSet, true},
        {960, 720, 0, 0, Ratio::hd960x720, false},
        {960, 540, 0, 0, Ratio::hd960x720, false},
        {1280, 720, 0, 0, Ratio::square, false},
        {1280, 1080, 0, 0, Ratio::hd1280x1080, false},
        {1280, 720, 1280, 1080, Ratio::square, false}, // here the coded height decides
        {1440, 1080, 0, 0, Ratio::hd1440x1080, false},
        {1440, 720, 1920, 1080, Ratio::hd1440x1080, false},
        {1920, 1080, 1888, 1062, Ratio::square, false},
        {4096, 2160, 0, 0, Ratio::square, false},
        {719, 576, 1024, 576, Ratio::square, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.width) + "x" + std::to_string(c.height) + " aperture " +
                     std::to_string(c.apertureWidth) + "x" + std::to_string(c.apertureHeight));
        VideoEntry entry{.width = c.width, .height = c.height};
        if (c.apertureWidth != 0) entry.extensions = cleanAperture(c.apertureWidth, c.apertureHeight);
        const PELMovieProperties read = readMovie({.tracks = {pictures(25, 1, entry)}});
        EXPECT_TRUE(read.hasVideo);
        EXPECT_EQ(read.width, c.width);
        EXPECT_EQ(read.height, c.height);
        EXPECT_EQ(read.pixelAspectRatio, c.ratio);
        EXPECT_EQ(read.anamorphic, c.anamorphic);
    }
}

TEST(MovieProperties, DurationIsTheProductOfFloats)
{
    struct Case {
        const char* name;
        std::uint32_t timescale;
        std::uint32_t frameDuration;
        std::uint32_t movieTimescale;
        std::uint32_t movieDuration;
        NSInteger frames;
        NSInteger timebase;
    };
    const Case cases[] = {
        {"25", 25, 1, 600, 2400, 100, 25},
        {"23.976", 24000, 1001, 24000, 24 * 1001, 24, 23},
        {"29.97", 30000, 1001, 30000, 1800 * 1001, 1800, 29},
        {"59.94", 60000, 1001, 1000, 1001, 60, 59},
        {"half a frame too few is cut", 25, 1, 1000, 3980, 99, 25},
        // Exact: 108010.999. The float nearest to the product is 108011.
        {"rounded up by the floats", 30000, 1001, 1000, 3603967, 108011, 29},
        // Exact: 25000001. Floats hold even numbers only there.
        {"beyond whole numbers in a float", 25, 1, 100, 100000004, 25000002, 25},
        {"no length", 25, 1, 600, 0, 0, 25},
        {"more than an integer holds", 0xFFFFFFFF, 1, 1, 0xFFFFFFFE, NSIntegerMax - 1, 4294967296},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const PELMovieProperties read = readMovie({.timescale = c.movieTimescale,
                                                   .duration = c.movieDuration,
                                                   .tracks = {pictures(c.timescale, c.frameDuration)}});
        EXPECT_EQ(read.duration, c.frames);
        EXPECT_EQ(read.timecode.rate.timebase, c.timebase);
    }
}

TEST(MovieProperties, NtscIsForcedFor23Alone)
{
    const auto labels = [](std::uint8_t quanta, std::uint32_t flags) {
        return timecodeTrack({.flags = flags, .frameQuanta = quanta});
    };
    struct Case {
        const char* name;
        std::vector<MovieTrack> tracks;
        PELRate rate;
    };
    const Case cases[] = {
        {"23.976 with timecode", {pictures(24000, 1001), labels(24, 0)}, {24, true}},
        {"23.976 without", {pictures(24000, 1001)}, {23, true}},
        {"24 with timecode", {pictures(24, 1), labels(24, 0)}, {24, false}},
        {"29.97 without timecode", {pictures(30000, 1001)}, {29, false}},
        {"29.97 non-drop", {pictures(30000, 1001), labels(30, 0)}, {30, false}},
        {"29.97 drop", {pictures(30000, 1001), labels(30, 1)}, {30, true}},
        {"59.94 drop", {pictures(60000, 1001), labels(60, 1)}, {60, true}},
        {"59.94 without timecode", {pictures(60000, 1001)}, {59, false}},
        {"30, other flags are not drop-frame", {pictures(30, 1), labels(30, 0xFFFFFFFE)}, {30, false}},
        {"sound with timecode of 24", {soundTrack(), labels(24, 0)}, {24, false}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const PELMovieProperties properties = readMovie({.tracks = c.tracks});
        EXPECT_EQ(properties.timecode.rate, c.rate);
        EXPECT_NEAR(properties.nominalFrameRate, std::atof(c.name), 0.005) << "the pictures' own; 0 of sound";
    }
}

TEST(MovieProperties, StartTimecodeIsReadAtItsOwnRate)
{
    struct Case {
        const char* name;
        TimecodeEntry entry;
        std::uint32_t frames;
        const char* label;
        bool dropFrame;
    };
    const Case cases[] = {
        {"25", {.frameQuanta = 25}, 90000, "01:00:00:00", false},
        {"drop-frame", {.flags = 1, .frameQuanta = 30}, 1800, "00:01:00:02", true},
        {"not drop-frame", {.frameQuanta = 30}, 1800, "00:01:00:00", false},
        {"59.94", {.flags = 1, .frameQuanta = 60}, 3600, "00:01:00:04", true},
        {"50", {.frameQuanta = 50}, 49, "00:00:00:49", false},
        {"midnight", {.frameQuanta = 25}, 0, "00:00:00:00", false},
        {"a rate nobody knows counts 25", {.frameQuanta = 48}, 25, "00:00:01:00", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        PELSetFPSForRate({.timebase = 60, .isNTSC = false}); // whatever was selected before must not matter
        const PELMovieProperties read = readMovie({.tracks = {timecodeTrack(c.entry)}, .frames = c.frames});
        EXPECT_TRUE(read.hasTimecode);
        EXPECT_EQ(read.timecode.kind, 1);
        EXPECT_EQ(textOf(read.timecode.string), c.label);
        EXPECT_EQ(read.timecode.frames, c.frames);
        EXPECT_EQ(read.timecode.hasDropframe, c.dropFrame);
        EXPECT_EQ(read.timecode.rate.timebase, c.entry.frameQuanta);
    }
}

TEST(MovieProperties, UnreadTimecodeSampleLeavesTheTimecodeUnparsed)
{
    constexpr const char* kNoData = "PELMovieUtilities: Could not get data from block buffer";
    MovieTrack outside = timecodeTrack();
    outside.offsets = {0x7FFFFFFF};
    MovieTrack tooShort = timecodeTrack();
    tooShort.sizes = {2};
    MovieTrack none = timecodeTrack();
    none.sizes = {};
    MovieTrack longSample = timecodeTrack({.format = "tc64"});
    longSample.sizes = {8};

    struct Case {
        const char* name;
        MovieTrack track;
        bool logs;
    };
    const Case cases[] = {
        {"beyond the file", outside, true},
        {"two bytes long", tooShort, true},
        {"no sample", none, false},
        {"64 bits", longSample, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const LogCapture log;
        const PELMovieProperties read = readMovie({.tracks = {c.track}, .frames = 90000});
        EXPECT_TRUE(read.hasTimecode);
        EXPECT_EQ(textOf(read.timecode.string), "");
        EXPECT_EQ(read.timecode.frames, 0U);
        EXPECT_EQ(read.timecode.rate, (PELRate{25, false}));
        EXPECT_EQ(textOf(read.reel), "Unknown");
        if (c.logs)
            EXPECT_THAT(log.errors(), ElementsAre(kNoData));
        else
            EXPECT_THAT(log.lines(), IsEmpty());
    }
}

TEST(MovieProperties, ReelIsCutAfterTheLastWholeCharacter)
{
    std::string umlauts;
    for (int i = 0; i < 200; ++i)
        umlauts += "ü";
    std::string shifted = "x" + umlauts;
    struct Case {
        const char* name;
        std::string reel;
        std::string expected;
    };
    const Case cases[] = {
        {"short", "A001", "A001"},
        {"as long as the field", std::string(255, 'r'), std::string(255, 'r')},
        {"longer", std::string(256, 'r'), std::string(255, 'r')},
        {"two bytes a character, cut between", shifted, shifted.substr(0, 255)},
        {"two bytes a character, cut inside", umlauts, umlauts.substr(0, 254)},
        {"none", "", "Unknown"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Bytes name = c.reel.empty() ? Bytes{} : sourceReference(c.reel, 0x55C4);
        const PELMovieProperties read = readMovie({.tracks = {timecodeTrack({.extensions = name})}});
        EXPECT_EQ(textOf(read.reel), c.expected);
    }
    EXPECT_EQ(textOf(readMovie({}).reel), "") << "without a timecode track";
}

TEST(MovieProperties, CodecNameIsAsciiOrUnknown)
{
    struct Case {
        const char* name;
        std::string stated;
        std::string expected;
    };
    const Case cases[] = {
        {"plain", "Apple ProRes 422", "Apple ProRes 422"},
        {"as long as the field", std::string(31, 'c'), std::string(31, 'c')},
        {"empty", "", "Unknown"},
        {"not ASCII", "Cod\xC3\xA9k", "Unknown"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto codec = readMovie({.tracks = {pictures(25, 1, {.format = "dvcp", .name = c.stated})}}).videoCodec;
        EXPECT_EQ(textOf(codec.name), c.expected);
        EXPECT_EQ(textOf(codec.typeName), c.expected);
        EXPECT_EQ(codec.typeCode, FourCC{"dvcp"});
        EXPECT_EQ(codec.vendorCode, "appl");
        EXPECT_EQ(codec.spatialQuality, 1023);
        EXPECT_EQ(codec.temporalQuality, 512);
        EXPECT_EQ(codec.keyframeRate, 0);
        EXPECT_EQ(codec.dataRate, 0);
    }
}

TEST(MovieProperties, MovieWithoutPictureLeavesThePictureAlone)
{
    const PELMovieProperties read = readMovie({.tracks = {soundTrack(), timecodeTrack()}, .frames = 90000});
    EXPECT_FALSE(read.hasVideo);
    EXPECT_EQ(read.width, 0);
    EXPECT_EQ(read.pixelAspectRatio, PELPixelAspectRatio::notSet);
    EXPECT_EQ(read.duration, 0);
    EXPECT_EQ(textOf(read.videoCodec.name), "Unknown");
    EXPECT_EQ(textOf(read.videoCodec.typeName), "Unknown");
    EXPECT_EQ(read.videoCodec.typeCode, FourCC{});
    EXPECT_EQ(read.videoCodec.vendorCode, std::nullopt);
    EXPECT_EQ(read.videoCodec.fieldDominance, PELFieldDominance::none);
    EXPECT_TRUE(read.hasAudio);
    EXPECT_TRUE(read.hasTimecode);
}

TEST(MovieProperties, TrackWithoutDescriptionIsStillATrack)
{
    MovieTrack video = pictures(25, 1);
    video.descriptions = {};
    MovieTrack sound = soundTrack();
    sound.descriptions = {};
    MovieTrack timecode = timecodeTrack();
    timecode.descriptions = {};
    const PELMovieProperties read = readMovie({.tracks = {video, sound, timecode}});
    EXPECT_TRUE(read.hasVideo);
    EXPECT_EQ(read.pixelAspectRatio, PELPixelAspectRatio::square);
    EXPECT_EQ(textOf(read.videoCodec.name), "Unknown");
    EXPECT_EQ(read.audioTrackCount, 1U);
    EXPECT_EQ(read.audioSampleRate, 0U);
    EXPECT_TRUE(read.hasTimecode);
    EXPECT_EQ(read.timecode.rate.timebase, 0);
}

TEST(MovieProperties, SoundIsThatOfTheFirstTrackAndCountsTracks)
{
    struct Case {
        const char* name;
        std::vector<MovieTrack> tracks;
        std::uint64_t rate;
        std::uint64_t bits;
        std::uint64_t count;
    };
    const MovieTrack stereo = soundTrack();
    const MovieTrack other = soundTrack(soundEntry2("lpcm", 96000, 24));
    const Case cases[] = {
        {"none", {pictures(25, 1)}, 0, 0, 0},
        {"one stereo track", {stereo}, 48000, 16, 1},
        {"two stereo tracks", {stereo, stereo}, 48000, 16, 2},
        {"first of two kinds", {other, stereo}, 96000, 24, 2},
        {"eight", std::vector<MovieTrack>(8, stereo), 48000, 16, 8},
        {"a rate with a fraction is cut", {soundTrack(soundEntry2("lpcm", 47952.9, 16))}, 47952, 16, 1},
        {"a negative rate", {soundTrack(soundEntry2("lpcm", -48000, 16))}, 0, 16, 1},
        {"no number", {soundTrack(soundEntry2("lpcm", std::numeric_limits<double>::quiet_NaN(), 16))}, 0, 16, 1},
        {"beyond all numbers", {soundTrack(soundEntry2("lpcm", 1e300, 16))}, ~0ULL, 16, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const PELMovieProperties read = readMovie({.tracks = c.tracks});
        EXPECT_EQ(read.hasAudio, c.count > 0);
        EXPECT_EQ(read.audioSampleRate, c.rate);
        EXPECT_EQ(read.audioBitDepth, c.bits);
        EXPECT_EQ(read.audioTrackCount, c.count);
        EXPECT_EQ(read.audioChannelCount, c.count);
    }
}

TEST(MovieProperties, FieldDominanceNeedsAnInterlacedRate)
{
    using Fields = PELFieldDominance;
    struct Case {
        const char* format;
        NSInteger timebase;
        bool interlaced;
        Fields dominance;
    };
    const Case cases[] = {
        {"avc1", 25, true, Fields::upper}, {"avc1", 25, false, Fields::none}, {"avc1", 30, true, Fields::upper},
        {"avc1", 31, true, Fields::none},  {"avc1", 50, true, Fields::none},  {"avc1", 24, true, Fields::none},
        {"avc1", 23, true, Fields::upper}, {"dvc ", 24, true, Fields::none},  {"dvc ", 29, true, Fields::lower},
        {"dvcp", 25, true, Fields::lower}, {"dvpp", 25, true, Fields::lower}, {"dvcp", 25, false, Fields::none},
        {"dvh5", 25, true, Fields::upper}, {"", 0, true, Fields::upper},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.format) + " " + std::to_string(c.timebase));
        PELMovieProperties properties;
        if (*c.format != '\0') properties.videoCodec.typeCode = FourCC{*reinterpret_cast<const char(*)[5]>(c.format)};
        properties.timecode.rate.timebase = c.timebase;
        PEL_SetVideoFieldDominance(properties, {{"interlaced", c.interlaced}});
        EXPECT_EQ(properties.videoCodec.fieldDominance, c.dominance);
        EXPECT_EQ(PEL_IsInterlaced(properties), c.dominance != Fields::none);
    }
}

TEST(MovieProperties, FieldDominanceGoesByTheTimecodeTrackWhereThereIsOne)
{
    const PELDictionary interlaced{{"interlaced", true}};
    const auto dominance = [&](std::vector<MovieTrack> tracks) {
        return readMovie({.tracks = std::move(tracks)}, interlaced).videoCodec.fieldDominance;
    };
    EXPECT_EQ(dominance({pictures(30000, 1001, {.format = "dvc "})}), PELFieldDominance::lower);
    EXPECT_EQ(dominance({pictures(24000, 1001)}), PELFieldDominance::upper) << "23 is not 24";
    EXPECT_EQ(dominance({pictures(24000, 1001), timecodeTrack({.frameQuanta = 24})}), PELFieldDominance::none);
    EXPECT_EQ(dominance({pictures(50, 1), timecodeTrack({.frameQuanta = 25})}), PELFieldDominance::upper);
}

TEST(MovieProperties, SoundFilesAreMeasuredOnDemand)
{
    struct Case {
        const char* name;
        std::vector<MovieTrack> tracks;
        std::uint32_t movieTimescale;
        std::uint32_t movieDuration;
        NSInteger frames;
    };
    const auto rate = [](std::uint32_t timescale, std::uint32_t frameDuration, std::uint8_t quanta) {
        return timecodeTrack({.timescale = timescale, .frameDuration = frameDuration, .frameQuanta = quanta});
    };
    const Case cases[] = {
        {"25", {soundTrack(), rate(25, 1, 25)}, 48000, 192000, 100},
        {"part of a frame is cut", {soundTrack(), rate(25, 1, 25)}, 48000, 191999, 99},
        {"the real rate, not the counted one", {soundTrack(), rate(30000, 1001, 30)}, 30000, 1800 * 1001, 1800},
        {"one unit less", {soundTrack(), rate(30000, 1001, 30)}, 30000, 1800 * 1001 - 1, 1799},
        {"longer than a float is exact", {soundTrack(), rate(24000, 1001, 24)}, 600, 4000000000, 159840159},
        {"no timecode track", {soundTrack()}, 600, 2400, 0},
        {"no real rate", {soundTrack(), rate(25, 0, 25)}, 600, 2400, 0},
        {"picture: as ever", {pictures(50, 1), rate(25, 1, 25)}, 600, 2400, 200},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Movie movie{.timescale = c.movieTimescale, .duration = c.movieDuration, .tracks = c.tracks};
        EXPECT_EQ(readMovie(movie, {{PELMeasureSoundFiles, true}}).duration, c.frames);
    }
    const Movie sound{.tracks = {soundTrack(), timecodeTrack()}};
    EXPECT_EQ(readMovie(sound).duration, 0);
    EXPECT_EQ(readMovie(sound, {{"measureSoundFiles", false}}).duration, 0);
}

TEST(MovieProperties, AudioTrackCountCanBeReadAlone)
{
    const TempFolder folder;
    const auto asset =
        quicktime::Asset::open(folder.write("clip.mov", movieFile({.tracks = {soundTrack(), soundTrack()}}).str()));
    ASSERT_TRUE(asset);
    PELMovieProperties properties;
    PEL_ReadAudioTrackCount(properties, *asset);
    PELMovieProperties expected;
    expected.audioTrackCount = 2;
    EXPECT_EQ(properties, expected);
}

TEST(MovieProperties, DescriptionIsWrittenToTheBlank)
{
    PELMovieProperties properties;
    EXPECT_EQ(NSStringFromPELCodecProperties(properties.videoCodec),
              std::string("name: , typeName: , typeCode: ") + std::string(4, '\0') +
                  ", vendorCode: (null), spatialQuality: 0, temporalQuality: 0, keyframeRate: 0, dataRate: 0, "
                  "fieldDominance: <unknown>");

    properties.hasVideo = true;
    properties.width = 720;
    properties.height = (1LL << 32) + 576; // printed as 32 bits
    properties.pixelAspectRatio = PELPixelAspectRatio::pal601;
    properties.duration = -1;
    std::string_view{"DV PAL"}.copy(properties.videoCodec.name.data(), 31);
    std::string_view{"DV"}.copy(properties.videoCodec.typeName.data(), 31);
    properties.videoCodec.typeCode = FourCC{"dvcp"};
    properties.videoCodec.vendorCode = "appl";
    properties.videoCodec.spatialQuality = 1023;
    properties.videoCodec.fieldDominance = PELFieldDominance::lower;
    properties.hasAudio = true;
    properties.audioSampleRate = 48000;
    properties.audioBitDepth = 16;
    properties.audioTrackCount = 2;
    properties.audioChannelCount = 2;
    properties.hasTimecode = true;
    properties.timecode = PELTimecodeMakeWithString("01:00:00:00", {.timebase = 25, .isNTSC = false});
    std::string_view{"Tape 1"}.copy(properties.reel.data(), 255);
    EXPECT_EQ(NSStringFromPELMovieProperties(properties),
              " \t\t\t{"
              "\n\t\t\t\thasVideo: 1 "
              "\n\t\t\t\tdimensions: 720 x 576 "
              "\n\t\t\t\tpixelAspectRatio: PAL-601 "
              "\n\t\t\t\tanamorphic: 0 "
              "\n\t\t\t\tduration: -1 "
              "\n\t\t\t\tvideoCodec: {name: DV PAL, typeName: DV, typeCode: dvcp, vendorCode: appl, spatialQuality: "
              "1023, temporalQuality: 0, keyframeRate: 0, dataRate: 0, fieldDominance: lower} "
              "\n\t\t\t\thasAudio: 1 "
              "\n\t\t\t\taudioSampleRate: 48000 "
              "\n\t\t\t\taudioBitDepth: 16 "
              "\n\t\t\t\taudioTrackCount: 2 "
              "\n\t\t\t\taudioChannelCount: 2 "
              "\n\t\t\t\thasTimecode: 1 "
              "\n\t\t\t\ttimecode: rate: {timebase: 25, isNTSC: 0}, string: 01:00:00:00 "
              "\n\t\t\t\treel: Tape 1 "
              "\n\t\t\t}");
}

} // namespace
