#include "mxf/demuxer/AvcFacts.h"
#include "mxf/mxfDemux.h"
#include "tests/support/ShellTools.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

using zanfcp::test::askFfprobe;
using zanfcp::test::succeeds;
using zanfcp::test::TempFolder;

namespace {

// The descriptors of these files say nothing of profile, level and depth.
TEST(AvcFacts, ComeFromTheFirstPicture)
{
    if (!succeeds("ffmpeg -version")) GTEST_SKIP() << "no ffmpeg";
    struct Case {
        const char* arguments;
        std::uint8_t profile;
        std::uint32_t depth, horizontal, vertical;
        std::uint16_t maxGop;
    };
    const Case cases[] = {
        {"-c:v libx264 -preset ultrafast -pix_fmt yuv420p -bf 2", 77, 8, 2, 2, 0},
        {"-c:v libx264 -preset ultrafast -pix_fmt yuv422p10le -profile:v high422 -level 5.1", 122, 10, 2, 1, 0},
        {"-c:v libx264 -x264-params avcintra-class=100 -pix_fmt yuv422p10le", 122, 10, 2, 1, 1},
    };
    const TempFolder folder;
    const std::string path = folder.file("test.mxf");
    const std::unique_ptr<TamrelMxf::CMxfDemuxer, void (*)(TamrelMxf::CMxfDemuxer*)> demuxer{mxfDemuxNew(),
                                                                                             mxfDemuxFree};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.arguments);
        ASSERT_TRUE(succeeds("ffmpeg -y -f lavfi -i testsrc2=s=1920x1080:r=25 -f lavfi -i sine=r=48000 -t 0.2 " +
                             std::string(c.arguments) + " -c:a pcm_s24le " + path));
        ASSERT_EQ(mxfDemuxOpen(demuxer.get(), path.c_str(), nullptr, nullptr), 0);
        mxf_stream_format format{};
        ASSERT_EQ(mxfDemuxGetStreamFormat(demuxer.get(), 0, &format), 0);
        EXPECT_EQ(format.profile, c.profile);
        EXPECT_EQ(std::to_string(format.level),
                  askFfprobe(folder, "-select_streams v -show_entries stream=level", path));
        EXPECT_EQ(format.component_depth, c.depth);
        EXPECT_EQ(format.horizontal_subsampling, c.horizontal);
        EXPECT_EQ(format.vertical_subsampling, c.vertical);
        EXPECT_EQ(format.max_gop, c.maxGop);
        ASSERT_GT(format.extra_data_size, 8U);
        EXPECT_EQ(format.extra_data[4] & 0x1F, 7) << "no sequence parameter set behind the first start code";
    }
}

TEST(AvcFacts, IntraStreamsWithoutSetsGetThoseOfTheirClass)
{
    using namespace TamrelMxf;
    constexpr std::uint8_t kClass100At1080i25[16] = {0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01, 0x0A,
                                                     0x04, 0x01, 0x02, 0x02, 0x01, 0x32, 0x31, 0x02};
    constexpr std::uint8_t kSlice[] = {0, 0, 0, 1, 0x65, 0x88, 0x84, 0x21};
    SStreamFormat format;
    format.type = EStreamType::picture;
    format.essenceKind = EEssenceKind::avc;
    format.editRate = {25, 1};
    CompleteAvcFormat(format, kSlice);
    EXPECT_EQ(format.profile, 0) << "nothing tells";
    EXPECT_TRUE(format.extraData.empty());

    std::ranges::copy(kClass100At1080i25, format.coding.bytes.begin());
    CompleteAvcFormat(format, kSlice);
    EXPECT_EQ(format.profile, 122);
    EXPECT_EQ(format.componentDepth, 10U);
    EXPECT_EQ(format.verticalSubsampling, 1U);
    EXPECT_EQ(format.displayed.height, 1080U);
    EXPECT_EQ(format.maxGop, 1);
    EXPECT_FALSE(format.extraData.empty());
}

} // namespace
