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

/// What a recording that broke off, or a length that is damaged, leaves of the one element of a file. Whether a picture
/// is whole shows only where the next one begins, or another key.
TEST(ClipThatIsCut, LosesNoPictureThatIsKnownToBeWhole)
{
    const zanfcp::test::TempFolder folder;
    const std::string raw = folder.file("a.es");
    for (const std::string coding : {"mpeg2video -bf 2 -g 6 -f mpeg2video", "libx264 -bf 2 -g 10 -f h264"}) {
        ASSERT_TRUE(zanfcp::test::succeeds("ffmpeg -nostdin -y -f lavfi -i testsrc2=s=160x128:r=25:d=0.8 -c:v " +
                                           coding + " " + raw));
        const std::string content = zanfcp::test::readFile(raw);
        const Bytes stream{content.begin(), content.end()};
        Built built = AvcClip(stream);
        if (coding.starts_with("mpeg")) {
            built.standard = {.hasSound = false};
            built.standard.pictureContainer = "06.0E.2B.34.04.01.01.02.0D.01.03.01.02.04.60.02";
        }
        const Bytes whole = built.File();
        Playing intact{whole};
        const std::vector<Bytes> pictures = PicturesOf(intact);
        ASSERT_EQ(pictures.size(), 20U);
        const auto begin = std::search(whole.begin(), whole.end(), stream.begin(), stream.end()) - whole.begin();
        const auto end = begin + std::ssize(stream);
        const auto last = std::ssize(pictures.back());
        struct Cut {
            const char* name;
            std::ptrdiff_t end;
            bool isLengthTooLong;
            std::size_t found;
        };
        const Cut cuts[] = {{"in the footer", end + 40, false, 20},
                            {"in the last picture", end - last / 2, false, 19},
                            {"in front of it", end - last, false, 18},
                            {"a length beyond the file", std::ssize(whole), true, 20},
                            {"both", end - last / 2, true, 19}};
        for (const Cut& c : cuts) {
            SCOPED_TRACE(coding + ": " + c.name);
            Bytes file{whole.begin(), whole.begin() + c.end};
            if (c.isLengthTooLong) file[static_cast<std::size_t>(begin) - 3] = 0x7F;
            Playing playing{file};
            EXPECT_EQ(playing.PlayAll(), c.end == std::ssize(whole) ? kEnded : kNeedsData);
            const std::vector<Taken>& found = playing.streams[0].taken;
            ASSERT_EQ(found.size(), c.found);
            for (std::size_t i = 0; i < c.found; ++i)
                EXPECT_EQ(found[i].bytes, pictures[i]) << i;
        }
    }
}

} // namespace
