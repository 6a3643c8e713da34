#include "mxf/avc/NalUnit.h"
#include "tests/mxf/essence/BuiltFile.h"
#include "tests/mxf/essence/EssenceFile.h"
#include "tests/support/ShellTools.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace TamrelMxf::test;

/// Pictures, an element each, without an index.
Bytes FileOf(const std::vector<Bytes>& pictures, bool isAvc)
{
    Built built;
    built.standard.hasSound = false;
    if (isAvc) {
        built.standard.pictureContainer = "06.0E.2B.34.04.01.01.0A.0D.01.03.01.02.10.60.01";
        built.standard.pictureCoding = "06.0E.2B.34.04.01.01.0A.04.01.02.02.01.31.20.00";
    }
    built.essence = [&](MxfBuilder& file) {
        for (const Bytes& picture : pictures)
            file.klv(kPictureElement, picture);
    };
    return built.File();
}

/// Parameter sets and whatever else stands in front of the first slice.
Bytes SetsOf(const Bytes& picture)
{
    CNalReader reader = CNalReader::AnnexB(picture);
    Bytes sets;
    while (reader.Next() && !HasSliceHeader(reader.Type()))
        if (reader.Type() == ENalType::sequenceParameterSet || reader.Type() == ENalType::pictureParameterSet)
            sets = Join(sets, Bytes{0, 0, 0, 1}, Bytes{reader.Whole().begin(), reader.Whole().end()});
    return sets;
}

/// Stored places in the order in which they are shown.
std::vector<std::size_t> Shown(const std::vector<Taken>& taken, std::size_t from)
{
    std::map<std::int64_t, std::size_t> shown;
    for (std::size_t i = from; i < taken.size(); ++i)
        EXPECT_TRUE(shown.emplace(taken[i].sample.pts, i - from).second) << "two at " << taken[i].sample.pts;
    std::vector<std::size_t> order;
    for (const auto& [pts, stored] : shown)
        order.push_back(stored);
    return order;
}

TEST(Recording, ThatBeginsInsideAGroupKeepsTheOrderOfItsPictures)
{
    const zanfcp::test::TempFolder folder;
    const std::string path = folder.file("a.mxf");
    for (const std::string coding : {"mpeg2video -g 12 -bf 2", "libx264 -bf 2 -x264-params keyint=12:min-keyint=12",
                                     "libx264 -bf 3 -x264-params open-gop=1:keyint=12:min-keyint=12"}) {
        if (!zanfcp::test::succeeds("ffmpeg -nostdin -y -f lavfi -i testsrc2=s=160x128:r=25:d=1.6 -c:v " + coding +
                                    " " + path))
            GTEST_SKIP() << "no ffmpeg with this encoder";
        const bool isAvc = coding.starts_with("libx264");
        Playing whole{path};
        ASSERT_EQ(whole.PlayAll(), kEnded);
        const std::vector<Taken>& all = whole.streams[0].taken;
        const Bytes sets = isAvc ? SetsOf(all[0].bytes) : Bytes{};
        for (std::size_t from = 0; from < 14; ++from) {
            SCOPED_TRACE(coding + ", from " + std::to_string(from));
            std::vector<Bytes> pictures;
            for (std::size_t i = from; i < all.size(); ++i)
                pictures.push_back(all[i].bytes);
            if (isAvc && from > 0) pictures[0] = Join(sets, pictures[0]);
            Playing cut{FileOf(pictures, isAvc)};
            ASSERT_EQ(cut.PlayAll(), kEnded);
            const std::vector<Taken> played = cut.streams[0].taken;
            ASSERT_EQ(played.size(), pictures.size());
            EXPECT_EQ(Shown(played, 0), Shown(all, from));
            for (std::size_t i = 0; i < played.size(); ++i) {
                EXPECT_EQ(played[i].sample.flags & mxf_sample_key, all[from + i].sample.flags & mxf_sample_key) << i;
                const Taken* again = cut.After(0, static_cast<std::int64_t>(i), mxf_seek_stored);
                ASSERT_NE(again, nullptr);
                EXPECT_EQ(again->sample.pts, played[i].sample.pts) << i;
                EXPECT_EQ(again->sample.flags & mxf_sample_key, played[i].sample.flags & mxf_sample_key) << i;
            }
        }
    }
}

/// Of the first picture nothing but its parameter sets is left.
TEST(Recording, WithoutItsFirstKeyFrameHasNoOtherInItsPlace)
{
    const zanfcp::test::TempFolder folder;
    const std::string path = folder.file("a.mxf");
    if (!zanfcp::test::succeeds("ffmpeg -nostdin -y -f lavfi -i testsrc2=s=160x128:r=25:d=0.8 -c:v libx264 -bf 2 "
                                "-x264-params keyint=12:min-keyint=12 " +
                                path))
        GTEST_SKIP() << "no ffmpeg with this encoder";
    Playing whole{path};
    ASSERT_EQ(whole.PlayAll(), kEnded);
    const std::vector<Taken>& all = whole.streams[0].taken;
    for (const bool hasSets : {true, false}) {
        SCOPED_TRACE(hasSets);
        std::vector<Bytes> pictures;
        for (const Taken& one : all)
            pictures.push_back(one.bytes);
        pictures[0] = hasSets ? SetsOf(pictures[0]) : Bytes{0, 0, 1, 9, 0xF0};
        Playing cut{FileOf(pictures, true)};
        ASSERT_EQ(cut.PlayAll(), kEnded);
        const std::vector<Taken> played = cut.streams[0].taken;
        ASSERT_EQ(played.size(), all.size());
        for (std::size_t i = 0; i < played.size(); ++i) {
            const bool isKey = i > 0 && (all[i].sample.flags & mxf_sample_key) != 0;
            EXPECT_EQ((played[i].sample.flags & mxf_sample_key) != 0, isKey) << i;
            mxf_sample_info info{};
            ASSERT_EQ(cut.demuxer.GetIdxEntryInfo(0, static_cast<int>(i), &info), 0);
            EXPECT_EQ((info.flags & mxf_sample_key) != 0, isKey) << i;
            EXPECT_EQ(info.pts, played[i].sample.pts) << i;
            EXPECT_TRUE(!hasSets || played[i].sample.pts == all[i].sample.pts) << i;
        }
    }
}

} // namespace
