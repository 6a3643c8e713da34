#include "mxf/essence/MemoryEssenceInput.h"
#include "mxf/essence/MxfInterleavedParser.h"
#include "tests/mxf/essence/BuiltFile.h"
#include "tests/mxf/essence/EssenceFile.h"
#include "tests/support/ShellTools.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace TamrelMxf::test;

/// Pictures of two streams side by side, whose groups are of different kinds and lengths; no index.
TEST(TwoPictures, InOneContainerHaveEachItsOwnOrder)
{
    const zanfcp::test::TempFolder folder;
    const std::string path = folder.file("a.mxf");
    std::vector<Taken> expected[2];
    const char* const codings[] = {"-bf 2 -g 12", "-bf 3 -x264-params open-gop=1:keyint=9:min-keyint=9"};
    for (std::size_t i = 0; i < 2; ++i) {
        if (!zanfcp::test::succeeds("ffmpeg -nostdin -y -f lavfi -i testsrc2=s=160x128:r=25:d=1.6 -c:v libx264 " +
                                    std::string{codings[i]} + " " + path))
            GTEST_SKIP() << "no ffmpeg with this encoder";
        Playing playing{path};
        ASSERT_EQ(playing.PlayAll(), kEnded);
        expected[i] = playing.streams[0].taken;
        ASSERT_EQ(expected[i].size(), 40U);
    }
    MxfBuilder file;
    file.partition({.bodySID = 1});
    std::vector<SEssenceTrack> tracks(2);
    for (std::size_t unit = 0; unit < 40; ++unit)
        for (std::uint32_t i = 0; i < 2; ++i)
            file.klv(ulOf(0x060E2B3401020101, 0x0D01030115020501 + i), expected[i][unit].bytes);
    file.partition({.kind = 4});
    for (std::uint32_t i = 0; i < 2; ++i) {
        tracks[i].stream = i;
        tracks[i].format.type = EStreamType::picture;
        tracks[i].format.essenceKind = EEssenceKind::avc;
        tracks[i].format.bodySid = 1;
        tracks[i].format.trackNumber = 0x15020501 + i;
        tracks[i].format.editRate = {25, 1};
    }
    CMxfUlDict dict;
    CRandomIndexPack partitions{nullptr, dict, 0};
    CMemoryEssenceInput input{file.bytes, true};
    const SEssenceContext context{
        .input = input, .dict = dict, .partitions = partitions, .index = nullptr, .start = {}, .logger = {}};
    for (const std::uint32_t asked : {0U, 1U}) { // whose walk comes first
        CMxfInterleavedParser parser{context, tracks};
        Keeper keepers[2];
        for (std::uint32_t i = 0; i < 2; ++i)
            ASSERT_EQ(parser.AddStream(i, &keepers[i]), 0);
        for (std::int64_t unit = 39; unit >= 0; --unit) {
            SCOPED_TRACE(unit);
            mxf_dmuxer_seek seek{};
            seek.stream = asked;
            seek.position = unit;
            seek.flags = mxf_seek_stored;
            ASSERT_EQ(parser.Seek(seek), 0);
            ASSERT_EQ(parser.Push(), kDelivered);
            for (const std::uint32_t i : {asked, 1 - asked}) {
                const mxf_sample& wanted = expected[i][static_cast<std::size_t>(unit)].sample;
                mxf_sample_info info{};
                info.stream = i;
                ASSERT_EQ(parser.GetSampleInfo(unit, info), 0);
                EXPECT_EQ(info.pts, wanted.pts);
                EXPECT_EQ(info.flags & mxf_sample_key, wanted.flags & mxf_sample_key);
                EXPECT_EQ(keepers[i].taken.back().sample.pts, wanted.pts);
                EXPECT_EQ(keepers[i].taken.back().sample.dts, wanted.dts);
                EXPECT_EQ(keepers[i].taken.back().sample.flags & mxf_sample_key, wanted.flags & mxf_sample_key);

                seek.stream = i;
                seek.position = wanted.pts;
                seek.flags = mxf_seek_exact;
                ASSERT_EQ(parser.Seek(seek), 0);
                EXPECT_EQ(seek.edit_unit, unit);
            }
        }
    }
}

} // namespace
