#include "tests/mxf/avc/BitStream.h"
#include "tests/mxf/essence/BuiltFile.h"
#include "tests/mxf/essence/EssenceFile.h"
#include "tests/support/ShellTools.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace TamrelMxf::test;

TEST(ClipOfPictures, IsCutAtItsStartCodesWithoutAnIndex)
{
    const zanfcp::test::TempFolder folder;
    for (const auto& [group, between] : {std::pair{"6", "2"}, {"12", "0"}, {"1", "0"}}) {
        SCOPED_TRACE(group);
        const std::string path = folder.file("a.m2v");
        ASSERT_TRUE(zanfcp::test::succeeds("ffmpeg -nostdin -y -f lavfi -i testsrc2=s=160x128:r=25:d=0.8 "
                                           "-c:v mpeg2video -g " +
                                           std::string{group} + " -bf " + between + " " + path));
        const std::string stream = zanfcp::test::readFile(path);
        Built built;
        built.standard.hasSound = false;
        built.essence = [&](MxfBuilder& file) { file.klv(kPictureElement, {stream.begin(), stream.end()}); };
        Playing playing{built.File()};
        EXPECT_EQ(playing.PlayAll(), kEnded);
        const std::vector<Taken> played = playing.streams[0].taken;
        ASSERT_EQ(played.size(), 20U);
        const Bytes all = playing.streams[0].All();
        EXPECT_TRUE(std::ranges::equal(all, stream, {}, {}, [](char x) { return static_cast<std::uint8_t>(x); }));
        std::vector<bool> isShown(20);
        for (const Taken& one : played) {
            EXPECT_EQ(one.bytes[0] | one.bytes[1], 0);
            isShown.at(static_cast<std::size_t>(one.sample.pts)) = true;
            const Taken* again = playing.After(0, one.sample.pts, mxf_seek_exact);
            ASSERT_NE(again, nullptr);
            EXPECT_EQ(again->bytes, one.bytes);
            EXPECT_EQ(again->sample.pts, one.sample.pts);
        }
        EXPECT_EQ(std::ranges::count(isShown, true), 20);
    }
}

/// A file whose one element is a whole AVC stream.
Built AvcClip(const Bytes& stream)
{
    Built built;
    built.standard.hasSound = false;
    built.standard.pictureContainer = "06.0E.2B.34.04.01.01.0A.0D.01.03.01.02.10.60.02";
    built.standard.pictureCoding = "06.0E.2B.34.04.01.01.0A.04.01.02.02.01.31.20.00";
    built.essence = [stream](MxfBuilder& file) { file.klv(kPictureElement, stream); };
    return built;
}

std::vector<Bytes> PicturesOf(Playing& playing)
{
    EXPECT_EQ(playing.PlayAll(), kEnded);
    std::vector<Bytes> pictures;
    for (const Taken& one : playing.streams[0].taken)
        pictures.push_back(one.bytes);
    return pictures;
}

TEST(ClipOfAvc, KeepsFieldsTogetherAndSlicesWithTheirFrame)
{
    using namespace zanfcp::test;
    using enum Field;
    const ByteRow delimiter{0, 0, 0, 1, 9, 0xF0};
    const ByteRow sets = joined({withStartCode(SpsRow{}.nal()), withStartCode(ppsNal())});
    const auto slice = [](const SliceRow& row) { return row.unit(); };
    const ByteRow fields = joined({delimiter, sets, slice({.isIdr = true, .field = top, .order = lsb(0)}), delimiter,
                                   slice({.type = 5, .field = bottom, .order = lsb(1)})});
    const ByteRow bare =
        joined({slice({.type = 5, .frameNum = 1, .field = top, .order = lsb(2)}),
                slice({.type = 5, .frameNum = 1, .field = bottom, .order = lsb(3)}),
                slice({.type = 5, .frameNum = 1, .field = bottom, .order = lsb(3), .firstMacroblock = 1})});
    const ByteRow frame = joined({slice({.type = 5, .frameNum = 2, .order = lsb(4, 1)}),
                                  slice({.type = 5, .frameNum = 2, .order = lsb(4, 1), .firstMacroblock = 2})});
    const std::vector<Bytes> pictures{fields, bare, frame,
                                      joined({delimiter, slice({.type = 5, .frameNum = 3, .order = lsb(6, 1)})})};
    ByteRow stream;
    for (const Bytes& picture : pictures)
        stream.insert(stream.end(), picture.begin(), picture.end());
    Playing playing{AvcClip(stream).File()};
    EXPECT_EQ(PicturesOf(playing), pictures);
}

TEST(ClipOfAvc, HasTheEditUnitsOfTheFrameWrappedFile)
{
    const zanfcp::test::TempFolder folder;
    const std::string raw = folder.file("a.264"), wrapped = folder.file("a.mxf");
    for (const std::string options : {"-bf 2 -g 10", "-bf 0 -g 1 -x264-params slices=4:aud=1",
                                      "-bf 1 -flags +ildct+ilme -x264-params interlaced=1:tff=1:slices=2"}) {
        SCOPED_TRACE(options);
        ASSERT_TRUE(
            zanfcp::test::succeeds("ffmpeg -nostdin -y -f lavfi -i testsrc2=s=320x256:r=25:d=0.8 -c:v libx264 " +
                                   options + " -f h264 " + raw));
        ASSERT_TRUE(zanfcp::test::succeeds("ffmpeg -nostdin -y -r 25 -i " + raw + " -c copy " + wrapped));
        Playing expected{wrapped};
        const std::string stream = zanfcp::test::readFile(raw);
        Playing playing{AvcClip({stream.begin(), stream.end()}).File()};
        const std::vector<Bytes> pictures = PicturesOf(playing);
        EXPECT_EQ(pictures.size(), 20U);
        EXPECT_TRUE(pictures == PicturesOf(expected));
    }
}

} // namespace
