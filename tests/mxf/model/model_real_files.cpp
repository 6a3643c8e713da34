#include "mxf/klv/Klv.h"
#include "mxf/klv/PartitionPack.h"
#include "mxf/labels/UlDict.h"
#include "mxf/model/HeaderModel.h"
#include "mxf/model/Links.h"
#include "mxf/model/StreamFormat.h"
#include "mxf/model/Timing.h"
#include "platform/FourCC.h"
#include "tests/support/ShellTools.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace TamrelMxf;
using zanfcp::FourCC;
using zanfcp::test::askFfprobe;
using zanfcp::test::succeeds;
using zanfcp::test::TempFolder;

namespace {

/// The header metadata of the first partition of a file.
struct RealFile {
    SUl pattern;
    SHeaderSets sets;
    SHeaderModel model;
    std::vector<SStreamFormat> streams;
};

RealFile Read(const std::string& path)
{
    const std::string content = zanfcp::test::readFile(path);
    std::span<const std::uint8_t> rest{reinterpret_cast<const std::uint8_t*>(content.data()), content.size()};
    RealFile file;
    CKlv klv;
    CMxfUlDict dict;
    dict.Init();
    EXPECT_EQ(klv.View(rest), kSuccess);
    CPartitionPack pack;
    EXPECT_EQ(pack.ImportFrom(&klv, dict, 0), kSuccess);
    file.pattern = pack.operationalPattern;
    do {
        rest = rest.subspan(static_cast<std::size_t>(klv.TotalSize()));
        EXPECT_EQ(klv.View(rest), kSuccess);
    } while (klv.Key().bytes[4] == 0x01); // fill
    file.sets = ReadHeaderSets(rest.first(std::min<std::size_t>(rest.size(), pack.extent.headerByteCount)));
    file.model = BuildHeaderModel(file.sets);
    for (const SStreamLink& link : LinkStreams(file.model))
        file.streams.push_back(DescribeStream(link));
    return file;
}

struct Expected {
    std::uint32_t width = 0, storedHeight = 0, displayedHeight = 0; ///< of a field where fields are stored
    std::int32_t displayedY = 0;
    std::uint32_t rateCode = 0;
    bool interlaced = false;
    EEssenceKind kind = EEssenceKind::unknown;
    std::uint8_t profile = 0, family = 0;
    FourCC codec;
    EWrapping wrapping = EWrapping::frame;
    std::uint32_t sounds = 0, bits = 0, channels = 0;
    std::int64_t startTimecode = 0;
    std::uint16_t base = 25;
    bool dropFrame = false;
    std::string pattern = "OP1a";
    EMuxingMode mode = EMuxingMode::interleaved;
};

struct Case {
    const char* name;
    const char* arguments; ///< of ffmpeg, after the input
    std::string size, rate;
    int sounds; ///< inputs of a sine each
    Expected expected;
};

/// Half a second each; the expectations are how the file was made.
const Case kCases[] = {
    {"MPEG-2 422P@HL 1080i50, two tracks of 24 bits",
     "-c:v mpeg2video -pix_fmt yuv422p -profile:v 0 -level:v 2 -b:v 50M -flags +ildct+ilme -top 1 -c:a pcm_s24le "
     "-timecode 10:11:12:13 -f mxf",
     "1920x1080",
     "25",
     2,
     {.width = 1920,
      .storedHeight = 544,
      .displayedHeight = 540,
      .rateCode = 2500,
      .interlaced = true,
      .kind = EEssenceKind::mpegPicture,
      .profile = 2,
      .family = 4,
      .codec = FourCC{"mp2v"},
      .sounds = 2,
      .bits = 24,
      .channels = 1,
      .startTimecode = ((10 * 60 + 11) * 60 + 12) * 25 + 13}},
    {"MPEG-2 422P@HL 1080p23.976 without sound",
     "-c:v mpeg2video -pix_fmt yuv422p -profile:v 0 -level:v 2 -b:v 50M -timecode 01:00:00:00 -f mxf",
     "1920x1080",
     "24000/1001",
     0,
     {.width = 1920,
      .storedHeight = 1088,
      .displayedHeight = 1080,
      .rateCode = 2398,
      .kind = EEssenceKind::mpegPicture,
      .profile = 2,
      .family = 4,
      .codec = FourCC{"mp2v"},
      .startTimecode = 86400,
      .base = 24}},
    {"MPEG-2 MP@HL 720p59.94, drop-frame",
     "-c:v mpeg2video -pix_fmt yuv420p -profile:v 4 -level:v 4 -b:v 35M -c:a pcm_s16le -timecode '00:01:00;04' -f mxf",
     "1280x720",
     "60000/1001",
     1,
     {.width = 1280,
      .storedHeight = 720,
      .displayedHeight = 720,
      .rateCode = 5994,
      .kind = EEssenceKind::mpegPicture,
      .profile = 2,
      .family = 3,
      .codec = FourCC{"mp2v"},
      .sounds = 1,
      .bits = 16,
      .channels = 1,
      .startTimecode = 3600,
      .base = 60,
      .dropFrame = true}},
    {"AVC 1080p25, baseline",
     "-c:v libx264 -preset ultrafast -profile:v baseline -pix_fmt yuv420p -c:a pcm_s16le -f mxf",
     "1920x1080",
     "25",
     1,
     {.width = 1920,
      .storedHeight = 1088,
      .displayedHeight = 1080,
      .rateCode = 2500,
      .kind = EEssenceKind::avc,
      .profile = 66,
      .codec = FourCC{"avc1"},
      .sounds = 1,
      .bits = 16,
      .channels = 1}},
    {"VC-3 1080p29.97, eight tracks",
     "-c:v dnxhd -b:v 145M -pix_fmt yuv422p -c:a pcm_s24le -timecode '10:11:12;13' -f mxf",
     "1920x1080",
     "30000/1001",
     8,
     {.width = 1920,
      .storedHeight = 1088,
      .displayedHeight = 1080,
      .rateCode = 2997,
      .kind = EEssenceKind::vc3,
      .codec = FourCC{"AVdn"},
      .sounds = 8,
      .bits = 24,
      .channels = 1,
      .startTimecode = ((10 * 60 + 11) * 60 + 12) * 30 + 13 - 2 * (611 - 61),
      .base = 30,
      .dropFrame = true}},
    {"ProRes 422 HQ 720p50",
     "-c:v prores -profile:v 3 -pix_fmt yuv422p10le -c:a pcm_s16le -f mxf",
     "1280x720",
     "50",
     1,
     {.width = 1280,
      .storedHeight = 720,
      .displayedHeight = 720,
      .rateCode = 5000,
      .kind = EEssenceKind::proRes,
      .codec = FourCC{"apch"},
      .sounds = 1,
      .bits = 16,
      .channels = 1,
      .base = 50}},
    {"JPEG 2000, 24 frames a second",
     "-c:v jpeg2000 -pix_fmt yuv422p -f mxf",
     "640x368",
     "24",
     0,
     {.width = 640,
      .storedHeight = 368,
      .displayedHeight = 368,
      .rateCode = 2400,
      .kind = EEssenceKind::jpeg2000,
      .codec = FourCC{"mjp2"},
      .base = 24}},
    {"DV 625 lines",
     "-c:v dvvideo -pix_fmt yuv420p -f mxf",
     "720x576",
     "25",
     0,
     {.width = 720,
      .storedHeight = 288,
      .displayedHeight = 288,
      .rateCode = 2500,
      .interlaced = true,
      .kind = EEssenceKind::dv,
      .codec = FourCC{"dvcp"}}},
    {"D-10 50 Mbit/s, 625 lines, stereo",
     "-c:v mpeg2video -pix_fmt yuv422p -b:v 50000k -minrate 50000k -maxrate 50000k -bufsize 2000000 "
     "-rc_init_occupancy 2000000 -intra_vlc 1 -qmax 12 -g 1 -ps 1 -dc 10 -flags +ildct+low_delay -top 1 -vtag mx5p "
     "-c:a pcm_s16le -ac 2 -timecode 00:00:10:00 -f mxf_d10",
     "720x608",
     "25",
     1,
     {.width = 720,
      .storedHeight = 304,
      .displayedHeight = 288,
      .displayedY = 16,
      .rateCode = 2500,
      .interlaced = true,
      .kind = EEssenceKind::mpegPicture,
      .profile = 2,
      .family = 2,
      .codec = FourCC{"mx5p"},
      .sounds = 1,
      .bits = 16,
      .channels = 2,
      .startTimecode = 250}},
    // The label says frames; that one KLV holds them all, its writer does not say.
    {"OP-Atom VC-3",
     "-c:v dnxhd -b:v 120M -pix_fmt yuv422p -timecode 02:00:00:00 -f mxf_opatom",
     "1920x1080",
     "25",
     0,
     {.width = 1920,
      .storedHeight = 1088,
      .displayedHeight = 1080,
      .rateCode = 2500,
      .kind = EEssenceKind::vc3,
      .codec = FourCC{"AVdn"},
      .startTimecode = 180000,
      .pattern = "OP-Atom",
      .mode = EMuxingMode::singleStream}},
};

TEST(RealFiles, SayHowTheyWereMade)
{
    if (!succeeds("ffmpeg -version")) GTEST_SKIP() << "no ffmpeg";
    const TempFolder folder;
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        const std::string path = folder.file("test.mxf");
        std::string command = "ffmpeg -y -f lavfi -i testsrc2=s=" + c.size + ":r=" + c.rate;
        std::string maps = " -map 0:v";
        for (int i = 1; i <= c.sounds; ++i) {
            command += " -f lavfi -i sine=r=48000";
            maps += " -map " + std::to_string(i) + ":a";
        }
        command += maps + " -t 0.5 " + c.arguments + " " + path;
        ASSERT_TRUE(succeeds(command)) << command;

        const RealFile file = Read(path);
        const Expected& e = c.expected;
        EXPECT_EQ(file.model.noteCount, 0U);
        EXPECT_FALSE(file.sets.isCut);
        EXPECT_EQ(OperationalPatternName(file.pattern), e.pattern);
        EXPECT_EQ(DetectMuxingMode(file.model, file.pattern), e.mode);
        ASSERT_FALSE(file.model.identifications.empty());
        EXPECT_FALSE(file.model.identifications[0].productName.empty());

        const SDuration duration = CalculateDuration(file.model);
        EXPECT_GT(duration.editUnits, 5);
        EXPECT_EQ(std::to_string(duration.editUnits),
                  askFfprobe(folder, "-count_packets -select_streams v -show_entries stream=nb_read_packets", path));
        EXPECT_EQ(duration.source, SDuration::ESource::picture);
        const SStartTimecode timecode = FindStartTimecode(file.model);
        EXPECT_EQ(timecode.start.start, e.startTimecode);
        EXPECT_EQ(timecode.start.base, e.base);
        EXPECT_EQ(timecode.start.dropFrame, e.dropFrame);

        ASSERT_EQ(file.streams.size(), 1 + e.sounds);
        for (const SStreamFormat& stream : file.streams) {
            EXPECT_EQ(stream.wrapping, e.wrapping);
            EXPECT_EQ(stream.bodySid, 1U);
            EXPECT_NE(stream.trackNumber, 0U);
            EXPECT_NE(stream.materialTrackId, 0U);
            EXPECT_EQ(stream.frameRateCode, e.rateCode);
            if (stream.type == EStreamType::picture) {
                EXPECT_EQ(stream.width, e.width);
                EXPECT_EQ(stream.height, e.storedHeight);
                EXPECT_EQ(stream.displayed, (SRectangle{0, e.displayedY, e.width, e.displayedHeight}));
                EXPECT_EQ(stream.frameHeight, e.storedHeight * (e.interlaced ? 2 : 1));
                EXPECT_EQ(stream.isInterlaced, e.interlaced);
                EXPECT_EQ(stream.essenceKind, e.kind);
                EXPECT_EQ(stream.profile, e.profile);
                EXPECT_EQ(stream.family, e.family);
                EXPECT_EQ(FourCC{stream.codec}.text(), e.codec.text());
            } else {
                EXPECT_EQ(stream.type, EStreamType::sound);
                EXPECT_EQ(stream.essenceKind, EEssenceKind::pcm);
                EXPECT_EQ(stream.sampleRate, 48000);
                EXPECT_EQ(stream.bitsPerSample, e.bits);
                EXPECT_EQ(stream.channelCount, e.channels);
                EXPECT_EQ(stream.blockAlign, e.channels * e.bits / 8);
            }
        }
        // A second reader agrees on the number of streams.
        EXPECT_EQ(askFfprobe(folder, "-show_entries format=nb_streams", path), std::to_string(file.streams.size()));
    }
}

TEST(RealFiles, SoundAloneCountsItsOwnEditUnits)
{
    if (!succeeds("ffmpeg -version")) GTEST_SKIP() << "no ffmpeg";
    const TempFolder folder;
    const std::string path = folder.file("sound.mxf");
    ASSERT_TRUE(succeeds("ffmpeg -y -f lavfi -i sine=r=48000 -t 1 -c:a pcm_s24le -f mxf_opatom " + path));
    const RealFile file = Read(path);
    ASSERT_EQ(file.streams.size(), 1U);
    EXPECT_EQ(file.streams[0].type, EStreamType::sound);
    EXPECT_EQ(file.streams[0].bitsPerSample, 24U);
    const SDuration duration = CalculateDuration(file.model);
    EXPECT_EQ(duration.source, SDuration::ESource::sound);
    EXPECT_EQ(Rescale(duration.editUnits, duration.editRate, {48000, 1}), 48000);
}

} // namespace
