#include "tests/media/quicktime/ReadAsset.h"
#include "tests/support/MovieBuilder.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace zanfcp;
using namespace zanfcp::test;

namespace {

quicktime::Track readTrack(const MovieTrack& track)
{
    const Bytes file = movieFile({.tracks = {track}});
    const auto asset = readAsset(file);
    EXPECT_TRUE(asset) << asset.error().text();
    return asset ? asset->tracks().at(0) : quicktime::Track{};
}

quicktime::VideoDescription readVideo(const VideoEntry& entry)
{
    MovieTrack track;
    track.descriptions = {videoEntry(entry)};
    return readTrack(track).video.value();
}

TEST(VideoDescription, StatesCodecSizeAndQuality)
{
    const auto video = readVideo({.format = "apch", .width = 1440, .height = 1080, .name = "Apple ProRes 422 (HQ)"});
    EXPECT_EQ(video.format, FourCC{"apch"});
    EXPECT_EQ(video.width, 1440);
    EXPECT_EQ(video.height, 1080);
    EXPECT_EQ(video.formatName, "Apple ProRes 422 (HQ)");
    EXPECT_EQ(video.vendor, FourCC{"appl"});
    EXPECT_EQ(video.temporalQuality, 512);
    EXPECT_EQ(video.spatialQuality, 1023);
}

TEST(VideoDescription, FirstOfSeveralCounts)
{
    MovieTrack track;
    track.descriptions = {videoEntry({.format = "dvc ", .width = 720}), videoEntry({.format = "avc1"})};
    const auto read = readTrack(track);
    EXPECT_EQ(read.video->format, FourCC{"dvc "});
    EXPECT_EQ(read.video->width, 720);
}

TEST(VideoDescription, NamesAndVendorsMayBeMissing)
{
    EXPECT_EQ(readVideo({.name = ""}).formatName, std::nullopt);
    EXPECT_EQ(readVideo({.name = std::string("AB\0CD", 5)}).formatName, "AB");
    EXPECT_EQ(readVideo({.name = "Caf\x8E"}).formatName, "Café") << "Mac OS Roman";
    EXPECT_EQ(readVideo({.vendor = std::string(4, '\0')}).vendor, std::nullopt);
    EXPECT_EQ(readTrack({.descriptions = {}}).video, std::nullopt);
    MovieTrack tooLong; // a length byte beyond the field
    tooLong.descriptions = {videoEntry({.name = std::string(31, 'x')}).withU8(50, 200)};
    EXPECT_EQ(readTrack(tooLong).video->formatName, std::string(31, 'x'));
}

TEST(VideoDescription, CleanApertureIsCutToWholePixels)
{
    const auto fraction = [](std::uint32_t width, std::uint32_t widthOver, std::uint32_t height,
                             std::uint32_t heightOver) {
        return atom("clap", Bytes{}.u32(width).u32(widthOver).u32(height).u32(heightOver).u32(0).u32(1).u32(0).u32(1));
    };
    struct Case {
        const char* name;
        Bytes extensions;
        std::uint32_t width;
        std::uint32_t height;
    };
    const Case cases[] = {
        {"none: as coded", {}, 720, 576},
        {"whole numbers", cleanAperture(703, 575), 703, 575},
        {"fractions", fraction(49137, 70, 11519, 20), 701, 575},
        {"wider than coded", cleanAperture(1024, 576), 1024, 576},
        {"behind other extensions", atom("fiel", Bytes{}.u16(1)).add(cleanAperture(704, 480)), 704, 480},
        {"over zero: as coded", fraction(704, 0, 480, 1), 720, 576},
        {"cut short: as coded", atom("clap", Bytes{}.u32(704).u32(1).u32(480)), 720, 576},
        {"longer than the description: as coded", lyingAtom("clap", 4000, Bytes{}.zeros(32)), 720, 576},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto video = readVideo({.format = "dvcp", .width = 720, .height = 576, .extensions = c.extensions});
        EXPECT_EQ(video.apertureWidth, c.width);
        EXPECT_EQ(video.apertureHeight, c.height);
        EXPECT_EQ(video.height, 576);
    }
}

TEST(SoundDescription, BitsAreThoseOfAnUncompressedSample)
{
    const auto configured = [](std::uint8_t bits) { return atom("pcmC", Bytes{}.u32(0).u8(1).u8(bits)); };
    struct Case {
        const char* name;
        Bytes entry;
        double rate;
        std::uint32_t bits;
    };
    const Case cases[] = {
        {"16 bits, little end first", soundEntry({.format = "sowt"}), 48000, 16},
        {"16 bits, big end first", soundEntry({.format = "twos"}), 48000, 16},
        {"8 bits", soundEntry({.format = "raw ", .sampleSize = 8}), 48000, 8},
        {"24 bits where the field always says 16", soundEntry({.format = "in24", .version = 1}), 48000, 24},
        {"32 bits", soundEntry({.format = "in32", .version = 1}), 48000, 32},
        {"floats", soundEntry({.format = "fl32", .version = 1}), 48000, 32},
        {"doubles", soundEntry({.format = "fl64", .version = 1}), 48000, 64},
        {"44.1 kHz", soundEntry({.sampleRate = 44100U << 16}), 44100, 16},
        {"a rate with a fraction", soundEntry({.sampleRate = (22254U << 16) + 0x8BA3}), 22254 + 0x8BA3 / 65536.0, 16},
        {"version 2, 24 bits", soundEntry2("lpcm", 96000, 24), 96000, 24},
        {"version 2, 192 kHz", soundEntry2("lpcm", 192000, 32), 192000, 32},
        {"version 2, compressed", soundEntry2("mp4a", 96000, 16), 96000, 0},
        {"AAC", soundEntry({.format = "mp4a", .version = 1}), 48000, 0},
        {"AAC as in MP4", soundEntry({.format = "mp4a"}), 48000, 0},
        {"AC-3", soundEntry({.format = "ac-3"}), 48000, 0},
        {"lossless, but compressed", soundEntry({.format = "alac"}), 48000, 0},
        {"configured integers", soundEntry({.format = "ipcm", .extensions = configured(24)}), 48000, 24},
        {"configured floats", soundEntry({.format = "fpcm", .extensions = configured(64)}), 48000, 64},
        {"configuration missing", soundEntry({.format = "ipcm"}), 48000, 16},
        {"rate of 0: that of the media", soundEntry({.format = "mp4a", .sampleRate = 0}), 48000, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto track = readTrack(soundTrack(c.entry));
        ASSERT_TRUE(track.sound);
        EXPECT_EQ(track.sound->sampleRate, c.rate);
        EXPECT_EQ(track.sound->bitsPerChannel, c.bits);
        EXPECT_EQ(track.sound->channelCount, 2U);
    }
}

TEST(SoundDescription, Version1InATableOfVersion1IsOneOfMP4)
{
    // It has no QuickTime fields: what follows is an extension.
    const Bytes entry = soundEntry({.format = "ipcm", .extensions = atom("pcmC", Bytes{}.u32(0).u8(1).u8(24))});
    const Bytes file = movieFile({.tracks = {soundTrack(Bytes{entry}.with(16, Bytes{}.u16(1)))}});
    const std::size_t table = file.str().find("stsd") + 4;
    const Bytes asMP4 = file.withU8(table, 1);
    const auto asset = readAsset(asMP4);
    ASSERT_TRUE(asset) << asset.error().text();
    EXPECT_EQ(asset->tracks()[0].sound->bitsPerChannel, 24U);
}

TEST(TimecodeDescription, StatesRateAndFlags)
{
    const auto track =
        readTrack(timecodeTrack({.flags = 3, .timescale = 30000, .frameDuration = 1001, .frameQuanta = 30}));
    ASSERT_TRUE(track.timecode);
    EXPECT_EQ(track.timecode->flags, 3U);
    EXPECT_EQ(track.timecode->timescale, 30000U);
    EXPECT_EQ(track.timecode->frameDuration, 1001U);
    EXPECT_EQ(track.timecode->frameQuanta, 30);
    EXPECT_EQ(track.timecode->sourceReferenceName, std::nullopt);
}

TEST(TimecodeDescription, ReelNameIsFoundInAllItsForms)
{
    constexpr std::uint16_t kEnglish = 0;
    constexpr std::uint16_t kUnspecified = 0x7FFF;
    constexpr std::uint16_t kUndetermined = 0x55C4; // "und", packed
    using namespace std::string_view_literals;
    struct Case {
        const char* name;
        Bytes extensions;
        std::optional<std::string> reel;
    };
    const Case cases[] = {
        {"plain", sourceReference("A001C003"), "A001C003"},
        {"UTF-8 under a Macintosh language", sourceReference("B\xC3\xA4r", kEnglish), "Bär"},
        {"UTF-8 under no language", sourceReference("B\xC3\xA4r", kUnspecified), "Bär"},
        {"UTF-8 under a packed language", sourceReference("B\xC3\xA4r", kUndetermined), "Bär"},
        {"Mac OS Roman", sourceReference("B\x8Ar", kEnglish), "Bär"},
        {"UTF-16", sourceReference("\xFE\xFF\0B\0\xE4\0r\xD8\x3C\xDF\xA5"sv, kUndetermined), "Bär🎥"},
        {"UTF-16, little end first", sourceReference("\xFF\xFE\x42\0\xE4\0"sv, kUndetermined), "Bä"},
        {"UTF-16 with half a pair", sourceReference("\xFE\xFF\xD8\x3C\0r"sv, kUndetermined), "\xEF\xBF\xBDr"},
        {"not UTF-8 after all", sourceReference("\xED\xA0\x80"), "Ì†Ä"},
        {"with NULs behind", sourceReference("A001\0\0\0"sv), "A001"},
        {"inside user data", atom("udta", sourceReference("A001")), "A001"},
        {"behind something else", atom("free", Bytes{}.zeros(3)).add(sourceReference("A001")), "A001"},
        {"first of two", sourceReference("A001").add(sourceReference("B002")), "A001"},
        {"length beyond the box", atom("name", Bytes{}.u16(900).u16(0).text("A001")), "A001"},
        {"empty", sourceReference(""), std::nullopt},
        {"cut short", atom("name", Bytes{}.u16(4)), std::nullopt},
        {"longer than the description", lyingAtom("name", 900, Bytes{}.u16(4).u16(0).text("A001")), std::nullopt},
        {"none", {}, std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto track = readTrack(timecodeTrack({.extensions = c.extensions}));
        ASSERT_TRUE(track.timecode);
        EXPECT_EQ(track.timecode->sourceReferenceName, c.reel);
    }
}

} // namespace
