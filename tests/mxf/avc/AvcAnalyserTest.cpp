#include "mxf/avc/AvcAnalyser.h"
#include "mxf/Status.h"
#include "mxf/avc/PresentationOrder.h"
#include "tests/mxf/avc/BitStream.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace zanfcp::test;

const ByteRow kSets = joined({withStartCode(SpsRow{}.nal()), withStartCode(ppsNal())});

SAvcPicture analysed(CAvcAnalyser& analyser, const ByteRow& unit, int status = kSuccess)
{
    SAvcPicture picture;
    EXPECT_EQ(analyser.Analyse(unit, picture), status);
    return picture;
}

TEST(AvcAnalyser, FieldPairsCountAsOneUnit)
{
    using enum Field;
    CAvcAnalyser analyser;
    SAvcPicture pair =
        analysed(analyser, joined({kSets, SliceRow{.isIdr = true, .field = top, .order = lsb(0)}.unit(),
                                   SliceRow{.isIdr = true, .field = top, .order = lsb(0), .firstMacroblock = 1}.unit(),
                                   SliceRow{.type = 5, .field = bottom, .order = lsb(1)}.unit()}));
    EXPECT_EQ(pair.coding, EAvcCoding::fieldPair);
    EXPECT_EQ(pair.order, (SPictureOrderCount{0, 1, true, true}));
    EXPECT_TRUE(pair.isIdr && pair.isKeyFrame && pair.isTopFirst && !pair.isIntra);
    EXPECT_EQ(pair.type, EAvcPictureType::i);

    pair = analysed(analyser,
                    joined({SliceRow{.type = 6, .refIdc = 0, .frameNum = 1, .field = bottom, .order = lsb(4)}.unit(),
                            SliceRow{.type = 6, .refIdc = 0, .frameNum = 1, .field = top, .order = lsb(5)}.unit()}));
    EXPECT_EQ(pair.order, (SPictureOrderCount{5, 4, true, true}));
    EXPECT_FALSE(pair.isTopFirst || pair.isReference || pair.isKeyFrame);
    EXPECT_EQ(pair.type, EAvcPictureType::b);

    const SAvcPicture lone =
        analysed(analyser, SliceRow{.type = 5, .frameNum = 1, .field = bottom, .order = lsb(8)}.unit());
    EXPECT_EQ(lone.coding, EAvcCoding::bottomField);
    EXPECT_FALSE(lone.order.hasTop);
    EXPECT_EQ(lone.order.Count(), 8);
    EXPECT_EQ(lone.decodeIndex, 2);

    const SliceRow anew{.type = 5, .frameNum = 3, .field = bottom, .order = lsb(13), .clears = true};
    pair = analysed(analyser,
                    joined({SliceRow{.type = 5, .frameNum = 3, .field = top, .order = lsb(12)}.unit(), anew.unit()}));
    EXPECT_TRUE(pair.startsSequence);
    EXPECT_EQ(pair.sequence, 1);
    EXPECT_EQ(pair.order.Count(), 0);
}

TEST(AvcAnalyser, AllSlicesTellWhatTheFirstDoesNot)
{
    const ByteRow unit = joined({kSets, SliceRow{.type = 2, .order = lsb(0, 0)}.unit(),
                                 SliceRow{.type = 6, .order = lsb(0, 0), .firstMacroblock = 3}.unit()});
    CAvcAnalyser quick, thorough{CAvcAnalyser::EScan::allSlices};
    const SAvcPicture first = analysed(quick, unit);
    EXPECT_EQ(first.type, EAvcPictureType::i);
    EXPECT_FALSE(first.isTypeOfAllSlices);
    const SAvcPicture all = analysed(thorough, unit);
    EXPECT_EQ(all.type, EAvcPictureType::b);
    EXPECT_TRUE(all.isTypeOfAllSlices && !all.isIntra);
}

TEST(AvcAnalyser, RecoveryPointsAndPictureTimingAreRead)
{
    // Delays of 16 and 8 bits, then pic_struct 4 (bottom field first).
    const BitRow hrd = BitRow{}.ue(0).u(8, 0).ues({0, 0}).u(1, 0).u(5, 0).u(5, 15).u(5, 7).u(5, 0);
    const BitRow vui = BitRow{}.u(5, 0).u(1, 1).add(hrd).u(1, 0).u(1, 0).u(1, 1).u(1, 0);
    const ByteRow sets = joined({withStartCode(SpsRow{.vui = vui}.nal()), withStartCode(ppsNal())});
    const auto sei = [](std::uint64_t frames) {
        const ByteRow point = BitRow{}.ue(frames).u(4, 8).bytes(); // exact, groups of slices unchanged
        BitRow bits = BitRow{}.u(8, 5).u(8, 255).u(8, 2);          // 257 bytes of the user's
        for (int i = 0; i < 257; ++i)
            bits.u(8, 0);
        bits.u(8, 1).u(8, 4).u(24, 0).u(8, 0x48).u(8, 6).u(8, point.size());
        for (const std::uint8_t byte : point)
            bits.u(8, byte);
        return withStartCode(nalOf(6, bits));
    };
    struct Case {
        std::uint64_t frames;
        unsigned type;
        bool isKey;
    };
    for (const Case& c : {Case{0, 7, true}, Case{0, 5, false}, Case{3, 7, false}}) {
        CAvcAnalyser analyser;
        const SAvcPicture picture =
            analysed(analyser, joined({sets, sei(c.frames), SliceRow{.type = c.type, .order = lsb(0, 0)}.unit()}));
        EXPECT_EQ(picture.recoveryPoint, (SAvcRecoveryPoint{static_cast<std::uint32_t>(c.frames), true, false}));
        EXPECT_EQ(picture.pictureStructure, 4);
        EXPECT_EQ(picture.isKeyFrame, c.isKey);
        EXPECT_FALSE(picture.isIdr);
        EXPECT_FALSE(analysed(analyser, SliceRow{.type = 5, .frameNum = 1, .order = lsb(2, 0)}.unit()).recoveryPoint);
    }
}

TEST(AvcAnalyser, DamagedUnitsKeepTheirPlace)
{
    CAvcAnalyser analyser;
    EXPECT_TRUE(analysed(analyser, SliceRow{.order = lsb(0, 0)}.unit(), kNotOpen).isDamaged);
    EXPECT_TRUE(analysed(analyser, {}, kNoSuchItem).isDamaged);
    EXPECT_EQ(analysed(analyser, joined({kSets, SliceRow{.isIdr = true, .order = lsb(0, 0)}.unit()})).decodeIndex, 2);
    analysed(analyser, SliceRow{.type = 5, .frameNum = 1, .order = lsb(6, 0)}.unit());
    const SAvcPicture cut = analysed(analyser, {0, 0, 1, 0x41, 0x9A}, kCutShort);
    EXPECT_EQ(cut.order.Count(), 6);
    EXPECT_EQ(cut.decodeIndex, 4);
    EXPECT_EQ(cut.reorderFrames, 16);
    EXPECT_TRUE(analysed(analyser, {0, 0, 1, 0x65, 0x9A, 0xFF, 0xFF}, kFailed).isDamaged) << "an IDR picture of type P";
    EXPECT_TRUE(analysed(analyser, {0, 0, 1, 0x41, 0x8E, 0xFF, 0xFF}, kFailed).isDamaged) << "slice_type 13";
}

TEST(AvcAnalyser, SamplesBehindLengthsFollowAConfigurationRecord)
{
    CAvcParameterSets sets;
    ASSERT_EQ(sets.Add(SpsRow{}.nal()) + sets.Add(ppsNal()), 0);
    CAvcAnalyser analyser;
    EXPECT_FALSE(analyser.Format());
    ASSERT_EQ(analyser.SetExtraData(ToAvcFormat(*sets.FirstSps(), sets).configuration), kSuccess);
    const ByteRow nal = SliceRow{.isIdr = true, .order = lsb(3, 0)}.nal();
    EXPECT_EQ(analysed(analyser, joined({{0, 0, 0, static_cast<std::uint8_t>(nal.size())}, nal})).order.top, 3);
    EXPECT_EQ(analyser.Format()->codedHeight, 64U);
    EXPECT_TRUE(analyser.Format()->isInterlaced);
}

/// Pictures by sequence and order count.
std::vector<SAvcPicture> pictures(const std::vector<std::pair<int, int>>& rows, std::uint8_t reorder)
{
    std::vector<SAvcPicture> all;
    for (const auto& [sequence, count] : rows) {
        SAvcPicture picture;
        picture.decodeIndex = static_cast<std::int64_t>(all.size());
        picture.sequence = sequence;
        picture.order = {count, count, true, true};
        picture.reorderFrames = reorder;
        all.push_back(picture);
    }
    return all;
}

TEST(PresentationOrder, PlacesUnitsAsSoonAsTheyAreCertain)
{
    // I P B B P B, then another sequence.
    const auto all = pictures({{0, 0}, {0, 6}, {0, 2}, {0, 4}, {0, 10}, {0, 8}, {1, 0}, {1, 2}}, 1);
    const std::vector<std::int64_t> expected{0, 3, 1, 2, 5, 4, 6, 7};
    EXPECT_EQ(PresentationIndexes(all), expected);
    EXPECT_EQ(ReorderDelay(expected), 1);

    const std::vector<std::size_t> deliveredAfter{0, 1, 1, 1, 4, 4, 6, 7};
    CPresentationOrder order;
    std::vector<SAvcTimes> times;
    for (std::size_t i = 0; i < all.size(); ++i) {
        order.Push(all[i]);
        while (const auto next = order.Pop())
            times.push_back(*next);
        EXPECT_EQ(times.size(), deliveredAfter[i]) << i;
    }
    order.Flush();
    while (const auto next = order.Pop())
        times.push_back(*next);
    ASSERT_EQ(times.size(), all.size());
    for (std::size_t i = 0; i < all.size(); ++i)
        EXPECT_EQ(times[i], (SAvcTimes{static_cast<std::int64_t>(i), static_cast<std::int64_t>(i) - 1, expected[i]}));
    EXPECT_EQ(order.LateUnits(), 0);
}

TEST(PresentationOrder, ABrokenPromiseCostsThePicturesItConcerns)
{
    const auto all = pictures({{0, 0}, {0, 8}, {0, 4}, {0, 16}, {0, 12}, {0, 24}, {0, 20}}, 0);
    CPresentationOrder order{100};
    std::vector<std::int64_t> pts;
    for (const SAvcPicture& picture : all)
        order.Push(picture);
    order.Flush();
    while (const auto next = order.Pop())
        pts.push_back(next->pts - 100);
    EXPECT_EQ(pts, (std::vector<std::int64_t>{0, 1, 2, 4, 3, 6, 5}));
    EXPECT_EQ(order.LateUnits(), 1);
}

TEST(PresentationOrder, FieldsInUnitsOfTheirOwnWaitAsFrames)
{
    auto all = pictures({{0, 0}, {0, 1}, {0, 8}, {0, 9}, {0, 4}, {0, 5}}, 1); // one frame may be reordered: two units
    CPresentationOrder order;
    std::vector<std::int64_t> pts;
    for (SAvcPicture& picture : all) {
        picture.coding = picture.decodeIndex % 2 == 0 ? EAvcCoding::topField : EAvcCoding::bottomField;
        order.Push(picture);
    }
    order.Flush();
    while (const auto next = order.Pop())
        pts.push_back(next->pts);
    EXPECT_EQ(pts, (std::vector<std::int64_t>{0, 1, 4, 5, 2, 3}));
}

TEST(PresentationOrder, WaitingIsBounded)
{
    CPresentationOrder order;
    SAvcPicture picture;
    picture.reorderFrames = 1;
    for (int i = 0; i < 5000; ++i) {
        picture.decodeIndex = i;
        picture.order = {i == 0 ? 100000 : i, 0, true, false}; // the first is output last
        order.Push(picture);
        if (i == 200) {
            EXPECT_TRUE(order.Pop());
        }
    }
}

} // namespace
