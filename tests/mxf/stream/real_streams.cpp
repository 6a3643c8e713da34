#include "mxf/mxfDemux.h"
#include "tests/mxf/stream/Pushing.h"
#include "tests/support/ShellTools.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

using testing::ElementsAre;
using zanfcp::test::readFile;
using zanfcp::test::succeeds;
using zanfcp::test::TempFolder;

namespace TamrelMxf::test {
namespace {

/// What the demuxer of files delivers of all streams.
std::map<std::uint32_t, std::vector<Taken>> samplesOf(const std::string& path)
{
    const std::unique_ptr<CMxfDemuxer, void (*)(CMxfDemuxer*)> demuxer{mxfDemuxNew(), mxfDemuxFree};
    std::map<std::uint32_t, Receiver> receivers;
    std::map<std::uint32_t, std::vector<Taken>> samples;
    mxf_file_info info{};
    if (mxfDemuxOpen(demuxer.get(), path.c_str(), nullptr, nullptr) != 0) return samples;
    if (mxfDemuxGetFileInfo(demuxer.get(), &info) != 0 || mxfDemuxCreateParser(demuxer.get(), 0) != 0) return samples;
    for (std::uint32_t i = 0; i < info.stream_count; ++i)
        (void)mxfDemuxAddStream(demuxer.get(), 0, static_cast<int>(i), &receivers[i]);
    while (mxfDemuxPush(demuxer.get(), 0) == 0) {
    }
    for (auto& [stream, receiver] : receivers)
        samples[stream] = std::move(receiver.taken);
    return samples;
}

struct Case {
    const char* name;
    const char* arguments; ///< of ffmpeg, up to the path
    std::size_t streams;
    std::size_t pictures;
};

const Case kCases[] = {
    {"MPEG-2 long GOP and two sounds",
     "-f lavfi -i testsrc2=s=720x576:r=25 -f lavfi -i sine=r=48000 -f lavfi -i sine=r=48000 -map 0 -map 1 -map 2 -t 2 "
     "-c:v mpeg2video -pix_fmt yuv422p -b:v 4M -bf 2 -g 12 -c:a pcm_s24le -f mxf",
     3, 50},
    {"H.264 with B pictures, 29.97",
     "-f lavfi -i testsrc2=s=320x240:r=30000/1001 -f lavfi -i sine=r=48000 -t 1 -c:v libx264 -bf 2 -c:a pcm_s16le "
     "-f mxf",
     2, 30},
    {"ProRes", "-f lavfi -i testsrc2=s=640x360:r=24 -t 0.5 -c:v prores -profile:v 2 -pix_fmt yuv422p10le -f mxf", 1,
     12},
    {"D-10 with sound",
     "-f lavfi -i testsrc2=s=720x608:r=25 -f lavfi -i sine=r=48000 -t 0.4 -c:v mpeg2video -pix_fmt yuv422p -b:v 30000k "
     "-minrate 30000k -maxrate 30000k -bufsize 1200000 -rc_init_occupancy 1200000 -intra_vlc 1 -qmax 12 -g 1 -ps 1 "
     "-dc 10 -flags +ildct+low_delay -top 1 -vtag mx3p -c:a pcm_s16le -ac 2 -f mxf_d10",
     2, 10},
};

TEST(RealStreams, DeliverWhatTheFileDelivers)
{
    if (!succeeds("ffmpeg -version")) GTEST_SKIP() << "no ffmpeg";
    const TempFolder folder;
    const std::string path = folder.file("test.mxf");
    for (const Case& c : kCases) {
        ASSERT_TRUE(succeeds(std::string("ffmpeg -y ") + c.arguments + " " + path)) << c.name;
        const auto expected = samplesOf(path);
        ASSERT_EQ(expected.size(), c.streams) << c.name;
        ASSERT_EQ(expected.at(0).size(), c.pictures) << c.name;
        const std::string content = readFile(path);
        const Bytes bytes(content.begin(), content.end());

        std::uint32_t random = 3;
        std::size_t pushed = 0;
        const auto next = [&random] { return (random = random * 1664525 + 1013904223) >> 8; };
        const std::pair<const char*, std::function<std::size_t()>> slices[] = {
            {"whole", [&] { return bytes.size(); }},
            {"megabytes", [] { return std::size_t{1} << 20; }},
            {"random", [&] { return std::size_t{next() % (1U << (next() % 17))}; }},
            {"single bytes", [&] { return std::size_t{++pushed < 20'000 || pushed % 2 == 0 ? 1U : 1009U}; }},
        };
        for (const auto& [name, slice] : slices) {
            SCOPED_TRACE(std::string(c.name) + ", " + name);
            Pushing pushing;
            pushing.push(bytes, slice);
            ASSERT_TRUE(pushing.gets(mxf_stream_ended));
            EXPECT_THAT(pushing.events(), ElementsAre(1, 2));
            EXPECT_THAT(pushing.sink.lines, testing::IsEmpty());
            ASSERT_EQ(pushing.receivers.size(), expected.size());
            for (const auto& [stream, samples] : expected) {
                const std::vector<Taken>& taken = pushing.receivers[stream].taken;
                ASSERT_EQ(taken.size(), samples.size()) << stream;
                for (std::size_t i = 0; i < taken.size(); ++i) {
                    EXPECT_EQ(taken[i].editUnit, samples[i].editUnit);
                    EXPECT_EQ(taken[i].position, samples[i].position);
                    EXPECT_EQ(taken[i].pts, samples[i].pts) << stream << " " << i;
                    EXPECT_EQ(taken[i].dts, samples[i].dts) << stream << " " << i;
                    EXPECT_EQ(taken[i].flags, samples[i].flags & ~mxf_sample_last) << stream << " " << i;
                    EXPECT_TRUE(taken[i].bytes == samples[i].bytes) << stream << " " << i;
                }
            }
        }
    }
}

} // namespace
} // namespace TamrelMxf::test
