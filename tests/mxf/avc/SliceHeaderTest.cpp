#include "mxf/Status.h"
#include "mxf/avc/AvcAnalyser.h"
#include "tests/mxf/avc/Splitting.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace zanfcp::test;

/// Two and three references, explicit weights for P and B, redundant pictures.
ByteRow weightedPps(unsigned id)
{
    BitRow bits = BitRow{}.ues({id, 0}).u(1, 0).u(1, 1).ues({0, 1, 2}).u(1, 1).u(2, 1).se(0).se(0).se(0).u(3, 1);
    return nalOf(0x68, bits);
}

/// High profile, type 2 order, 64x64 frames.
ByteRow highSps(unsigned chroma, bool hasSeparatePlanes)
{
    BitRow bits = BitRow{}.u(8, 244).u(8, 0).u(8, 30).ues({0, chroma});
    if (chroma == 3) bits.u(1, hasSeparatePlanes);
    return nalOf(0x67, bits.ues({0, 0}).u(2, 0).ues({0, 2, 4}).u(1, 0).ues({3, 3}).u(1, 1).u(1, 1).u(2, 0));
}

/// All kinds of commands; operation 5 is the last, so it is found only if everything in front was read right.
const BitRow kMarking = BitRow{}.u(1, 1).ues({1, 9, 2, 1, 3, 0, 1, 4, 2, 6, 0, 5, 0});

TEST(SliceHeader, ReferencesAndWeightsAreSteppedOver)
{
    const BitRow modified = BitRow{}.u(1, 1).ues({0, 5, 1, 2, 2, 0, 3});
    const BitRow luma = BitRow{}.u(1, 1).se(-7).se(3);
    const BitRow luma0 = BitRow{}.u(2, 0).add(luma).u(1, 0);
    const BitRow colour = BitRow{}.u(1, 1).se(1).se(-2).se(30).se(-40);
    struct Case {
        const char* name;
        unsigned chroma;
        bool hasSeparatePlanes;
        unsigned type;
        BitRow references; ///< from the number of references to the weights
    };
    const Case cases[] = {
        {"P of one reference", 1, false, 5, BitRow{}.u(1, 1).ue(0).add(modified).ues({3, 2}).add(luma).add(colour)},
        {"P of the set's two", 3, false, 0, BitRow{}.u(2, 0).ues({3, 2}).u(1, 0).u(1, 0).add(luma).add(colour)},
        {"SP", 1, false, 3, BitRow{}.u(2, 0).ues({3, 2}).u(2, 0).u(2, 0)},
        {"P without chroma", 0, false, 5, BitRow{}.u(2, 0).ue(3).add(luma).u(1, 0)},
        {"P of one colour plane", 3, true, 5, BitRow{}.u(2, 0).ue(3).add(luma).u(1, 0)},
        {"B", 1, false, 6,
         BitRow{}.u(2, 2).add(modified).add(modified).ues({3, 2}).u(2, 0).add(luma).u(2, 0).add(colour).add(luma0)},
        {"B of own numbers", 1, false, 1,
         BitRow{}.u(1, 0).u(1, 1).ues({0, 0}).u(2, 0).ues({3, 2}).u(2, 0).add(luma).add(colour)},
        {"I", 1, false, 7, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CAvcParameterSets sets;
        ASSERT_EQ(sets.Add(highSps(c.chroma, c.hasSeparatePlanes)) + sets.Add(weightedPps(0)), 0);
        BitRow bits = BitRow{}.ues({0, c.type, 0});
        if (c.hasSeparatePlanes) bits.u(2, 2);
        bits.u(4, 1).ue(0).add(c.references).add(kMarking);
        SAvcSliceHeader slice;
        ASSERT_EQ(slice.Parse(nalOf(0x21, bits), sets), kSuccess);
        EXPECT_TRUE(slice.clearsReferences);
        EXPECT_EQ(slice.colourPlane, c.hasSeparatePlanes ? 2 : 0);
        EXPECT_EQ(slice.isTypeOfAllSlices, c.type >= 5);

        const ByteRow whole = nalOf(0x21, bits);
        for (std::size_t size = 0; size + 1 < whole.size(); ++size)
            EXPECT_NE(SAvcSliceHeader{}.Parse(std::span{whole}.first(size), sets), kSuccess) << size;
    }
}

TEST(SliceHeader, ListsWithoutEndAndNumbersOutOfRangeAreRefused)
{
    CAvcParameterSets sets;
    ASSERT_EQ(sets.Add(highSps(1, false)) + sets.Add(weightedPps(0)), 0);
    BitRow endlessList = BitRow{}.u(1, 0).u(1, 1), endlessMarking = BitRow{}.u(1, 1);
    for (int i = 0; i < 200; ++i) {
        endlessList.ues({0, 0});
        endlessMarking.ues({1, 0});
    }
    const std::pair<unsigned, BitRow> cases[] = {
        {5, endlessList},
        {7, endlessMarking},
        {5, BitRow{}.u(1, 0).u(1, 1).ue(4).u(32, 0xFFFFFFFF)}, // a command of multi-view slices
        {5, BitRow{}.u(1, 1).ue(32).u(32, 0xFFFFFFFF)},
        {7, BitRow{}.u(1, 1).ue(7).u(32, 0xFFFFFFFF)},
    };
    for (const auto& [type, rest] : cases) {
        const ByteRow nal = nalOf(0x21, BitRow{}.ues({0, type, 0}).u(4, 1).ue(0).add(rest));
        EXPECT_EQ(SAvcSliceHeader{}.Parse(nal, sets), kFailed);
    }
}

TEST(SliceHeader, RedundantPicturesAreNoPicturesOfTheirOwn)
{
    const ByteRow sets =
        joined({withStartCode(highSps(1, false)), withStartCode(weightedPps(0)), withStartCode(weightedPps(1))});
    const auto slice = [](unsigned pps, unsigned redundant) {
        return withStartCode(nalOf(0x21, BitRow{}.ues({0, 7, pps}).u(4, 1).ue(redundant).u(1, 0).u(16, 0x5A5A)));
    };
    const ByteRow stream = joined({sets, slice(0, 0), slice(1, 1), slice(0, 0), slice(1, 0)});
    const auto starts = unitStarts(stream, CAccessUnitSplitter::EUnit::picture, stream.size());
    EXPECT_EQ(starts, (std::vector<std::uint64_t>{0, stream.size() - slice(1, 0).size()}));

    CAvcAnalyser analyser;
    SAvcPicture picture;
    EXPECT_EQ(analyser.Analyse(joined({sets, slice(1, 1)}), picture), kNoSuchItem) << "the primary picture is lost";
    EXPECT_TRUE(picture.isDamaged);
}

} // namespace
