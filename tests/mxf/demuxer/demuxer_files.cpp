#include "mxf/demuxer/MxfDemuxer.h"
#include "mxf/mxfDemux.h"
#include "platform/FourCC.h"
#include "tests/support/RecordingSnitcher.h"
#include "tests/support/ShellTools.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

using testing::IsEmpty;
using zanfcp::test::askFfprobe;
using zanfcp::test::RecordingSnitcher;
using zanfcp::test::succeeds;
using zanfcp::test::TempFolder;

namespace {

struct Case {
    const char* name;
    const char* arguments; ///< of ffmpeg, up to the path
    std::uint32_t streams = 1;
    std::uint32_t height = 0, storedHeight = 0; ///< as stored: of a field where fields are apart
    std::uint8_t interlaced = 0;
    std::uint8_t kind = 0, family = 0;
    std::uint32_t wrapping = 1;
    std::uint32_t rateCode = 2500;
    std::uint32_t start = 0;
    std::uint16_t base = 25;
    std::uint32_t dropFrame = 0;
    std::uint32_t pattern = 0x01010900;
    std::uint32_t mode = 1;
    std::uint32_t bits = 24, channels = 1;
};

const Case kCases[] = {
    {.name = "MPEG-2 422P@HL 1080i50 with two sounds",
     .arguments = "-f lavfi -i testsrc2=s=1920x1080:r=25 -f lavfi -i sine=r=48000 -f lavfi -i sine=r=48000 -map 0 -map "
                  "1 -map 2 -t 0.24 -c:v mpeg2video -pix_fmt yuv422p -profile:v 0 -level:v 2 -b:v 50M -flags "
                  "+ildct+ilme -top 1 -c:a pcm_s24le -timecode 10:11:12:13 -f mxf",
     .streams = 3,
     .height = 540,
     .storedHeight = 544,
     .interlaced = 1,
     .kind = 2,
     .family = 4,
     .start = ((10 * 60 + 11) * 60 + 12) * 25 + 13},
    {.name = "MPEG-2 MP@HL 720p59.94, drop-frame",
     .arguments = "-f lavfi -i testsrc2=s=1280x720:r=60000/1001 -t 0.2 -c:v mpeg2video -pix_fmt yuv420p -profile:v 4 "
                  "-level:v 4 -b:v 35M -timecode '00:01:00;04' -f mxf",
     .height = 720,
     .storedHeight = 720,
     .kind = 2,
     .family = 3,
     .rateCode = 5994,
     .start = 3600,
     .base = 60,
     .dropFrame = 1},
    {.name = "AVC 1080p",
     .arguments = "-f lavfi -i testsrc2=s=1920x1080:r=24000/1001 -t 0.2 -c:v libx264 -preset ultrafast -pix_fmt "
                  "yuv420p -timecode 01:00:00:00 -f mxf",
     .height = 1080,
     .storedHeight = 1088,
     .kind = 4,
     .rateCode = 2398,
     .start = 86400,
     .base = 24},
    {.name = "D-10",
     .arguments = "-f lavfi -i testsrc2=s=720x608:r=25 -t 0.2 -c:v mpeg2video -pix_fmt yuv422p -b:v 50000k -minrate "
                  "50000k -maxrate 50000k -bufsize 2000000 -rc_init_occupancy 2000000 -intra_vlc 1 -qmax 12 -g 1 -ps 1 "
                  "-dc 10 -flags +ildct+low_delay -top 1 -vtag mx5p -timecode 00:00:10:00 -f mxf_d10",
     .height = 304,
     .storedHeight = 304,
     .interlaced = 1,
     .kind = 2,
     .family = 2,
     .start = 250},
    {.name = "OP-Atom VC-3",
     .arguments = "-f lavfi -i testsrc2=s=1920x1080:r=25 -t 0.24 -c:v dnxhd -b:v 120M -pix_fmt yuv422p -timecode "
                  "02:00:00:00 -f mxf_opatom",
     .height = 1080,
     .storedHeight = 1088,
     .kind = 6,
     .wrapping = 2,
     .start = 180000,
     .pattern = 0x10030000,
     .mode = 2},
    {.name = "MPEG-2 422P@HL 1080i59.94, drop-frame",
     .arguments = "-f lavfi -i testsrc2=s=1920x1080:r=30000/1001 -frames:v 3 -c:v mpeg2video -pix_fmt yuv422p "
                  "-profile:v 0 -level:v 2 -b:v 50M -flags +ildct+ilme -top 1 -timecode '10:11:12;13' -f mxf",
     .height = 540,
     .storedHeight = 544,
     .interlaced = 1,
     .kind = 2,
     .family = 4,
     .rateCode = 2997,
     .start = ((10 * 60 + 11) * 60 + 12) * 30 + 13 - 2 * (611 - 61),
     .base = 30,
     .dropFrame = 1},
    {.name = "MPEG-2 MP@HL 1440 wide, interlaced, stereo of 16 bits",
     .arguments = "-f lavfi -i testsrc2=s=1440x1080:r=25 -f lavfi -i sine=r=48000 -t 0.12 -c:v mpeg2video -pix_fmt "
                  "yuv420p -profile:v 4 -level:v 4 -b:v 25M -aspect 16:9 -flags +ildct+ilme -top 1 -c:a pcm_s16le -ac "
                  "2 -f mxf",
     .streams = 2,
     .height = 540,
     .storedHeight = 544,
     .interlaced = 1,
     .kind = 2,
     .family = 3,
     .bits = 16,
     .channels = 2},
    {.name = "MPEG-2 422P@HL 1080p59.94",
     .arguments = "-f lavfi -i testsrc2=s=1920x1080:r=60000/1001 -frames:v 3 -c:v mpeg2video -pix_fmt yuv422p "
                  "-profile:v 0 -level:v 2 -b:v 50M -f mxf",
     .height = 1080,
     .storedHeight = 1088,
     .kind = 2,
     .family = 4,
     .rateCode = 5994,
     .base = 60},
    {.name = "ProRes 422, 720p50",
     .arguments = "-f lavfi -i testsrc2=s=1280x720:r=50 -frames:v 3 -c:v prores -profile:v 2 -pix_fmt yuv422p10le "
                  "-f mxf",
     .height = 720,
     .storedHeight = 720,
     .kind = 8,
     .rateCode = 5000,
     .base = 50},
    {.name = "OP-Atom VC-3, interlaced",
     .arguments = "-f lavfi -i testsrc2=s=1920x1080:r=25 -frames:v 3 -c:v dnxhd -b:v 120M -pix_fmt yuv422p -flags "
                  "+ildct+ilme -top 1 -f mxf_opatom",
     .height = 540,
     .storedHeight = 544,
     .interlaced = 1,
     .kind = 6,
     .wrapping = 2,
     .pattern = 0x10030000,
     .mode = 2},
    {.name = "OP-Atom DV",
     .arguments = "-f lavfi -i testsrc2=s=720x576:r=25 -frames:v 3 -c:v dvvideo -pix_fmt yuv420p -f mxf_opatom",
     .height = 288,
     .storedHeight = 288,
     .interlaced = 1,
     .kind = 3,
     .wrapping = 2,
     .pattern = 0x10030000,
     .mode = 2},
};

TEST(RealFiles, AreDescribedAsTheyWereMade)
{
    if (!succeeds("ffmpeg -version")) GTEST_SKIP() << "no ffmpeg";
    const TempFolder folder;
    const std::string path = folder.file("test.mxf");
    const std::unique_ptr<TamrelMxf::CMxfDemuxer, void (*)(TamrelMxf::CMxfDemuxer*)> demuxer{mxfDemuxNew(),
                                                                                             mxfDemuxFree};
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        ASSERT_TRUE(succeeds(std::string("ffmpeg -y ") + c.arguments + " " + path));
        RecordingSnitcher sink;
        ASSERT_EQ(mxfDemuxOpen(demuxer.get(), path.c_str(), nullptr, &sink), 0);
        mxf_file_info info{};
        ASSERT_EQ(mxfDemuxGetFileInfo(demuxer.get(), &info), 0);
        EXPECT_EQ(std::to_string(info.duration),
                  askFfprobe(folder, "-count_packets -select_streams v -show_entries stream=nb_read_packets", path));
        EXPECT_EQ(std::to_string(info.file_size), askFfprobe(folder, "-show_entries format=size", path));
        EXPECT_EQ(std::to_string(info.stream_count), askFfprobe(folder, "-show_entries format=nb_streams", path));
        EXPECT_EQ(info.stream_count, c.streams);
        EXPECT_EQ(info.operational_pattern, c.pattern);
        EXPECT_EQ(info.muxing_mode, c.mode);
        EXPECT_EQ(info.complete, 1U);
        EXPECT_EQ(info.header_partition_status, 4U);
        EXPECT_EQ(info.start_timecode, c.start);
        EXPECT_EQ(info.timecode_base, c.base);
        EXPECT_EQ(info.drop_frame, c.dropFrame);
        EXPECT_EQ(info.mark_in, -1);

        for (std::uint32_t i = 0; i < info.stream_count; ++i) {
            mxf_stream_format format{};
            ASSERT_EQ(mxfDemuxGetStreamFormat(demuxer.get(), static_cast<int>(i), &format), 0);
            EXPECT_EQ(format.stream_type, i == 0 ? 1U : 2U);
            EXPECT_EQ(format.wrapping, c.wrapping);
            EXPECT_EQ(format.start_offset, 0);
            EXPECT_EQ(format.frame_rate_code, c.rateCode);
            if (i == 0) {
                EXPECT_EQ(format.height, c.height);
                EXPECT_EQ(format.stored_height, c.storedHeight);
                EXPECT_EQ(format.interlaced, c.interlaced);
                EXPECT_EQ(format.essence_kind, c.kind);
                EXPECT_EQ(format.family, c.family);
                EXPECT_STRNE(format.codec_name, "");
                EXPECT_EQ(std::to_string(format.width),
                          askFfprobe(folder, "-select_streams v -show_entries stream=width", path));
            } else {
                EXPECT_EQ(format.sample_rate, 48000);
                EXPECT_EQ(format.bits_per_sample, c.bits);
                EXPECT_EQ(format.channels, c.channels);
                EXPECT_EQ(format.block_align, c.channels * c.bits / 8);
            }
        }
        mxf_identification identification{};
        ASSERT_EQ(mxfDemuxGetIdentification(demuxer.get(), 0, &identification), 0);
        const std::wstring product = identification.product_name;
        EXPECT_EQ(std::string(product.begin(), product.end()),
                  askFfprobe(folder, "-show_entries format_tags=product_name", path));
        mxf_top_pack material{};
        EXPECT_EQ(mxfDemuxGetTopPack(demuxer.get(), 0, &material, true), 0);
        EXPECT_EQ(material.umid[0], 0x06);
        EXPECT_THAT(sink.lines, testing::Each(testing::StartsWith("info: ")));
    }
}

/// What another writer makes: labels of its own choice, no timecode, no padding, metadata in header and footer.
struct PipelineCase {
    const char* name;
    const char* source;   ///< of ffmpeg, up to the path of the elementary stream; null for none
    const char* pipeline; ///< in the folder of that stream, up to the muxer and its output
    std::uint32_t width = 0, height = 0, rateCode = 0;
    std::uint8_t kind = 0, family = 0;
    const char* codec = "";
    std::uint32_t sounds = 0, bits = 0, channels = 0;
};
constexpr const char* kTestSound = "audiotestsrc num-buffers=5 samplesperbuffer=1920 ! audio/x-raw,rate=48000,";
const PipelineCase kPipelines[] = {
    {.name = "MPEG-2 at 1080, labelled as main level",
     .source = "-f lavfi -i testsrc2=s=1920x1080:r=25 -frames:v 5 -c:v mpeg2video -pix_fmt yuv422p -profile:v 0 "
               "-level:v 2 stream.m2v",
     .pipeline = "filesrc location=stream.m2v ! mpegvideoparse",
     .width = 1920,
     .height = 1080,
     .rateCode = 2500,
     .kind = 2,
     .codec = "mp2v",
     .sounds = 1,
     .bits = 24,
     .channels = 2},
    {.name = "AVC byte stream",
     .source = "-f lavfi -i testsrc2=s=1280x720:r=60000/1001 -frames:v 5 -c:v libx264 -preset ultrafast stream.h264",
     .pipeline = "filesrc location=stream.h264 ! h264parse ! video/x-h264,stream-format=byte-stream,alignment=au",
     .width = 1280,
     .height = 720,
     .rateCode = 5994,
     .kind = 4,
     .codec = "avc1"},
    {.name = "RGB samples and two sounds",
     .source = nullptr,
     .pipeline = "videotestsrc num-buffers=5 ! video/x-raw,format=RGB,width=320,height=240,framerate=25/1",
     .width = 320,
     .height = 240,
     .rateCode = 2500,
     .kind = 1,
     .codec = "raw ",
     .sounds = 2,
     .bits = 16,
     .channels = 1},
};

TEST(RealFiles, OfAnotherWriterAreDescribedAsTheyWereMade)
{
    if (!succeeds("gst-inspect-1.0 mxfmux")) GTEST_SKIP() << "no GStreamer";
    const TempFolder folder;
    const std::string path = folder.file("test.mxf");
    const std::string here = "cd " + folder.path().string() + " && ";
    for (const PipelineCase& c : kPipelines) {
        SCOPED_TRACE(c.name);
        ASSERT_TRUE(c.source == nullptr || succeeds(here + "ffmpeg -y " + c.source));
        std::string pipeline = std::string(c.pipeline) + " ! mxfmux name=m ! filesink location=test.mxf";
        const std::string sound = std::string(kTestSound) + "format=S" + std::to_string(c.bits) +
                                  "LE,channels=" + std::to_string(c.channels) + " ! m.";
        for (std::uint32_t i = 0; i < c.sounds; ++i)
            pipeline += " " + sound;
        ASSERT_TRUE(succeeds(here + "timeout 60 gst-launch-1.0 " + pipeline)) << pipeline;

        const std::unique_ptr<TamrelMxf::CMxfDemuxer, void (*)(TamrelMxf::CMxfDemuxer*)> demuxer{mxfDemuxNew(),
                                                                                                 mxfDemuxFree};
        RecordingSnitcher sink;
        ASSERT_EQ(mxfDemuxOpen(demuxer.get(), path.c_str(), nullptr, &sink), 0);
        EXPECT_THAT(sink.lines, testing::Each(testing::StartsWith("info: ")));
        mxf_file_info info{};
        ASSERT_EQ(mxfDemuxGetFileInfo(demuxer.get(), &info), 0);
        EXPECT_EQ(info.complete, 1U);
        EXPECT_EQ(info.duration, 5);
        EXPECT_EQ(std::to_string(info.duration),
                  askFfprobe(folder, "-select_streams v -show_entries stream=duration_ts", path));
        EXPECT_EQ(info.start_timecode, 0U);
        EXPECT_EQ(info.operational_pattern, 0x01010900U);
        ASSERT_EQ(info.stream_count, 1 + c.sounds);
        for (std::uint32_t i = 0; i < info.stream_count; ++i) {
            mxf_stream_format format{};
            ASSERT_EQ(mxfDemuxGetStreamFormat(demuxer.get(), static_cast<int>(i), &format), 0);
            EXPECT_EQ(format.wrapping, 1U);
            EXPECT_EQ(format.frame_rate_code, c.rateCode);
            if (format.stream_type == 1) {
                EXPECT_EQ(format.width, c.width);
                EXPECT_EQ(format.height, c.height);
                EXPECT_EQ(format.essence_kind, c.kind);
                EXPECT_EQ(format.family, c.family);
                EXPECT_EQ(zanfcp::FourCC{format.codec}.text(), c.codec);
            } else {
                EXPECT_EQ(format.essence_kind, 32U) << "PCM";
                EXPECT_EQ(format.sample_rate, 48000);
                EXPECT_EQ(format.bits_per_sample, c.bits);
                EXPECT_EQ(format.channels, c.channels);
            }
        }
    }
}

TEST(RealFiles, SoundAloneIsCountedInSamplesAndLiesInOnePiece)
{
    if (!succeeds("ffmpeg -version")) GTEST_SKIP() << "no ffmpeg";
    const TempFolder folder;
    const std::string path = folder.file("sound.mxf");
    const std::unique_ptr<TamrelMxf::CMxfDemuxer, void (*)(TamrelMxf::CMxfDemuxer*)> demuxer{mxfDemuxNew(),
                                                                                             mxfDemuxFree};
    for (const std::uint32_t bits : {16U, 24U}) {
        SCOPED_TRACE(bits);
        ASSERT_TRUE(succeeds("ffmpeg -y -f lavfi -i sine=r=48000 -t 0.4 -c:a pcm_s" + std::to_string(bits) +
                             "le -timecode 01:00:00:00 -f mxf_opatom " + path));
        ASSERT_EQ(mxfDemuxOpen(demuxer.get(), path.c_str(), nullptr, nullptr), 0);
        mxf_file_info info{};
        ASSERT_EQ(mxfDemuxGetFileInfo(demuxer.get(), &info), 0);
        EXPECT_EQ(info.duration, 19200);
        EXPECT_EQ(info.edit_rate_num, 48000);
        EXPECT_EQ(info.start_timecode, 90000U);
        EXPECT_EQ(info.muxing_mode, 2U);
        mxf_stream_format format{};
        ASSERT_EQ(mxfDemuxGetStreamFormat(demuxer.get(), 0, &format), 0);
        EXPECT_EQ(format.stream_type, 2U);
        EXPECT_EQ(format.wrapping, 2U);
        EXPECT_EQ(format.bits_per_sample, bits);
        EXPECT_EQ(format.block_align, bits / 8);
    }
}

TEST(RealFiles, SayTheSameBehindARunInAndWithoutTheirEnd)
{
    if (!succeeds("ffmpeg -version")) GTEST_SKIP() << "no ffmpeg";
    const TempFolder folder;
    const std::string path = folder.file("test.mxf");
    ASSERT_TRUE(
        succeeds("ffmpeg -y -f lavfi -i testsrc2=s=320x240:r=25 -f lavfi -i sine=r=48000 -t 0.4 -c:v mpeg2video "
                 "-c:a pcm_s16le -timecode 01:00:00:00 " +
                 path));
    const std::string whole = zanfcp::test::readFile(path);
    std::size_t packSize = 0; // of the random index pack: the last four bytes
    for (const char c : whole.substr(whole.size() - 4))
        packSize = packSize << 8 | static_cast<unsigned char>(c);
    constexpr std::size_t kFooterField = 20 + 24;
    constexpr std::size_t kPatternField = 20 + 64 + 12;
    const std::string withoutPack = whole.substr(0, whole.size() - packSize);
    std::string op2a = whole;
    op2a[kPatternField] = 2;
    std::string wrongFooter = withoutPack;
    wrongFooter[kFooterField + 7] ^= 0x55;
    const struct {
        const char* name;
        std::string bytes;
        std::uint32_t complete, pattern;
    } cases[] = {
        {"as it is", whole, 1, 0x01010900},
        {"run-in", std::string(5000, 'x') + whole, 1, 0x01010900},
        {"no random index pack", withoutPack, 1, 0x01010900},
        {"nor a true footer offset", wrongFooter, 0, 0x01010900},
        {"cut in the essence", whole.substr(0, whole.size() / 2), 0, 0x01010900},
        {"another operational pattern", op2a, 1, 0x02010900},
    };
    const std::unique_ptr<TamrelMxf::CMxfDemuxer, void (*)(TamrelMxf::CMxfDemuxer*)> demuxer{mxfDemuxNew(),
                                                                                             mxfDemuxFree};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string changed = folder.write("changed.mxf", c.bytes);
        ASSERT_EQ(mxfDemuxOpen(demuxer.get(), changed.c_str(), nullptr, nullptr), 0);
        mxf_file_info info{};
        ASSERT_EQ(mxfDemuxGetFileInfo(demuxer.get(), &info), 0);
        EXPECT_EQ(info.duration, 10);
        EXPECT_EQ(info.start_timecode, 90000U);
        EXPECT_EQ(info.stream_count, 2U);
        EXPECT_EQ(info.complete, c.complete);
        EXPECT_EQ(info.operational_pattern, c.pattern);
    }
}

} // namespace
