#include "mxf/avc/AvcAnalyser.h"
#include "mxf/avc/PresentationOrder.h"
#include "tests/mxf/avc/Splitting.h"
#include "tests/mxf/avc/StreamFiles.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <span>
#include <string>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace zanfcp::test;

struct Made {
    const char* name;
    const char* size; ///< pixels
    const char* pixelFormat;
    const char* options;    ///< of ffmpeg
    const char* parameters; ///< of the encoder
};

void PrintTo(const Made& made, std::ostream* out)
{
    *out << made.name;
}

const Made kMade[] = {
    {"NoB", "64x48", "yuv420p", "-bf 0", "keyint=8"},
    {"OneB", "62x46", "yuv420p", "-bf 1", "keyint=9"},
    {"ThreeB", "64x48", "yuv420p", "-bf 3", "b-adapt=0:b-pyramid=none:keyint=11"},
    {"Pyramid", "80x48", "yuv420p", "-bf 3", "b-adapt=0:b-pyramid=normal:ref=4:keyint=20:weightp=2"},
    {"StrictPyramid", "64x48", "yuv420p", "-bf 2", "b-adapt=0:b-pyramid=strict:keyint=12"},
    {"OpenGop", "64x48", "yuv420p", "-bf 3", "b-adapt=0:open-gop=1:keyint=8:min-keyint=8"},
    {"IntraRefresh", "64x48", "yuv420p", "-bf 0", "intra-refresh=1:keyint=8"},
    {"TopFirstMbaff", "64x64", "yuv420p", "-bf 2 -flags +ilme+ildct", "tff=1:b-adapt=0:keyint=12"},
    {"BottomFirst422", "126x74", "yuv422p10le", "-bf 2 -flags +ilme+ildct", "bff=1:b-adapt=0:keyint=12"},
    {"FakeInterlaced", "64x64", "yuv420p", "-bf 2", "fake-interlaced=1:b-adapt=0"},
    {"Chroma444", "62x46", "yuv444p", "-bf 2", "b-adapt=0:keyint=6"},
    {"Monochrome", "64x48", "gray", "-bf 1", "keyint=6"},
    {"IntraOnly", "66x50", "yuv422p10le", "-bf 0", "keyint=1"},
    {"Slices", "64x96", "yuv420p", "-bf 2", "slices=4:b-adapt=0"},
    {"Baseline", "64x48", "yuv420p", "-profile:v baseline", "keyint=8:slices=2"},
    {"Delimiters", "64x48", "yuv420p", "-bf 2 -b:v 200k -maxrate 200k -bufsize 200k -aspect 16:9",
     "aud=1:nal-hrd=cbr:filler=1:b-adapt=0:fullrange=on:colorprim=bt709:transfer=bt709:colormatrix=bt709"},
};

class RealStream : public testing::TestWithParam<Made> {
protected:
    void SetUp() override
    {
        const Made& made = GetParam();
        stream_ = folder_.file("s.h264");
        runFfmpeg(std::string("-f lavfi -i testsrc2=r=30000/1001:s=") + made.size +
                  " -frames:v 26 -c:v libx264 -pix_fmt " + made.pixelFormat + " " + made.options + " -x264-params " +
                  made.parameters + ":threads=1 " + stream_);
        bytes_ = bytesOf(stream_);
        starts_ = unitStarts(bytes_, CAccessUnitSplitter::EUnit::frame, 1000);
    }
    std::span<const std::uint8_t> unit(std::size_t i) const
    {
        const std::size_t end = i + 1 < starts_.size() ? starts_[i + 1] : bytes_.size();
        return std::span{bytes_}.subspan(starts_[i], end - starts_[i]);
    }
    std::vector<SAvcPicture> analysed(CAvcAnalyser& analyser) const
    {
        std::vector<SAvcPicture> pictures(starts_.size());
        for (std::size_t i = 0; i < pictures.size(); ++i)
            EXPECT_EQ(analyser.Analyse(unit(i), pictures[i]), 0) << i;
        return pictures;
    }

    void comparePicturesAndTheirOrder() const;
    void compareTimesAfterTheStatedDelay() const;
    void compareFormat() const;

    TempFolder folder_;
    std::string stream_;
    ByteRow bytes_;
    std::vector<std::uint64_t> starts_;
};

void RealStream::comparePicturesAndTheirOrder() const
{
    const auto packets = probed(folder_, "packets", stream_);
    const auto frames = probed(folder_, "frames", stream_);
    CAvcAnalyser analyser;
    const std::vector<SAvcPicture> pictures = analysed(analyser);
    ASSERT_EQ(pictures.size(), packets.size());
    ASSERT_EQ(pictures.size(), frames.size());
    const std::vector<std::int64_t> shown = PresentationIndexes(pictures);
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        SCOPED_TRACE("picture " + std::to_string(i));
        const SAvcPicture& picture = pictures[i];
        EXPECT_EQ(std::to_string(starts_[i]), packets[i].at("pos"));
        EXPECT_EQ(std::to_string(unit(i).size()), packets[i].at("size"));
        EXPECT_EQ(picture.isIdr || picture.recoveryPoint, packets[i].at("flags").starts_with("K"));
        auto frame = frames[static_cast<std::size_t>(shown[i])];
        EXPECT_EQ(frame["coded_picture_number"], std::to_string(i));
        EXPECT_EQ(frame["pict_type"], std::string(1, "IPB"[static_cast<int>(picture.type)]));
        EXPECT_EQ(picture.isIntra, picture.type == EAvcPictureType::i);
        const bool isShownAsFields = frame["interlaced_frame"] == "1";
        EXPECT_EQ(picture.coding == EAvcCoding::mbaffFrame,
                  isShownAsFields && GetParam().name != std::string("FakeInterlaced"));
        if (isShownAsFields) {
            EXPECT_EQ(frame["top_field_first"] == "1", picture.isTopFirst);
        }
    }
}

void RealStream::compareTimesAfterTheStatedDelay() const
{
    CAvcAnalyser analyser, thorough{CAvcAnalyser::EScan::allSlices};
    const std::vector<SAvcPicture> pictures = analysed(analyser);
    const std::vector<std::int64_t> shown = PresentationIndexes(pictures);
    CPresentationOrder order;
    std::vector<SAvcTimes> times;
    for (std::size_t i = 0; i <= pictures.size(); ++i) {
        if (i < pictures.size())
            order.Push(pictures[i]);
        else
            order.Flush();
        while (const auto next = order.Pop())
            times.push_back(*next);
    }
    ASSERT_EQ(times.size(), pictures.size());
    for (std::size_t i = 0; i < times.size(); ++i) {
        EXPECT_EQ(times[i].pts, shown[i]) << i;
        EXPECT_LE(times[i].dts, times[i].pts) << i;
    }
    EXPECT_EQ(order.LateUnits(), 0);
    EXPECT_EQ(analysed(thorough)[5].type, pictures[5].type);
}

void RealStream::compareFormat() const
{
    CAvcAnalyser analyser;
    analysed(analyser);
    const SAvcFormat format = *analyser.Format();
    auto stream = probed(folder_, "streams", stream_).at(0);
    EXPECT_EQ(format.profileName, stream["profile"]);
    EXPECT_EQ(std::to_string(format.levelIdc), stream["level"]);
    EXPECT_EQ(std::to_string(format.displayWidth), stream["width"]);
    EXPECT_EQ(std::to_string(format.displayHeight), stream["height"]);
    EXPECT_EQ(std::to_string(format.reorderFrames), stream["has_b_frames"]);
    EXPECT_EQ(std::to_string(format.lumaDepth), stream["bits_per_raw_sample"]);
    EXPECT_EQ(format.frameRate, (SAvcRatio{30000, 1001}));
    const SAvcRatio sample = format.sampleAspect.value_or(SAvcRatio{1, 1});
    EXPECT_EQ(std::to_string(sample.num) + ":" + std::to_string(sample.den), stream["sample_aspect_ratio"]);
    EXPECT_EQ(format.isFullRange, stream["color_range"] == "pc");
    EXPECT_EQ(format.colourPrimaries == 1, stream["color_primaries"] == "bt709");
    const char* chroma[] = {"gray", "yuv420p", "yuv422p", "yuv444p"};
    const std::string pixels = stream["pix_fmt"];
    EXPECT_TRUE(pixels.starts_with(chroma[static_cast<int>(format.chroma)]) || pixels == "yuvj420p") << pixels;

    runFfmpeg("-i " + stream_ + " -c copy " + folder_.file("s.mp4"));
    const std::string movie = readFile(folder_.file("s.mp4"));
    const std::string record{format.configuration.begin(), format.configuration.end()};
    const std::size_t box = movie.find("avcC");
    ASSERT_NE(box, std::string::npos);
    EXPECT_EQ(movie.substr(box + 4, record.size()), record) << "as another writer makes it";
}

TEST_P(RealStream, HeadersTellWhatADecoderFinds)
{
    comparePicturesAndTheirOrder();
    compareTimesAfterTheStatedDelay();
    compareFormat();
}

INSTANTIATE_TEST_SUITE_P(All, RealStream, testing::ValuesIn(kMade), [](const auto& test) { return test.param.name; });

TEST(RealStreams, ParameterSetsMayChangeInsideAStream)
{
    const TempFolder folder;
    ByteRow bytes;
    for (const char* format : {"testsrc2=s=64x48", "testsrc2=s=96x80", "testsrc2=s=64x48"}) {
        runFfmpeg(std::string("-f lavfi -i ") + format + " -frames:v 5 -c:v libx264 -bf 2 " + folder.file("s.h264"));
        const ByteRow part = bytesOf(folder.file("s.h264"));
        bytes.insert(bytes.end(), part.begin(), part.end());
    }
    auto starts = unitStarts(bytes, CAccessUnitSplitter::EUnit::picture, bytes.size());
    ASSERT_EQ(starts.size(), 15U);
    starts.push_back(bytes.size());
    CAvcAnalyser analyser;
    for (std::size_t i = 0; i < 15; ++i) {
        SAvcPicture picture;
        ASSERT_EQ(analyser.Analyse(std::span{bytes}.subspan(starts[i], starts[i + 1] - starts[i]), picture), 0);
        EXPECT_EQ(picture.sequence, static_cast<std::int64_t>(i / 5));
        EXPECT_EQ(analyser.Format()->displayWidth, i / 5 == 1 ? 96U : 64U);
    }
}

} // namespace
