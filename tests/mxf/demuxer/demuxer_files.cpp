#include "mxf/demuxer/MxfDemuxer.h"
#include "mxf/mxfDemux.h"
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
                EXPECT_EQ(format.bits_per_sample, 24U);
                EXPECT_EQ(format.channels, 1U);
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

} // namespace
