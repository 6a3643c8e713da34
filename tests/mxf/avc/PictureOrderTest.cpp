#include "mxf/avc/AvcAnalyser.h"
#include "mxf/avc/PresentationOrder.h"
#include "tests/mxf/avc/BitStream.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace zanfcp::test;

constexpr bool kIdr = true;

/// One coded picture and the counts that 8.2.1 gives it.
struct Row {
    SliceRow slice;
    std::optional<std::int32_t> top, bottom;
    std::int64_t sequence = 0;
    bool hasGap = false;
};

void expectCounts(const SpsRow& sps, const std::vector<Row>& rows)
{
    CAvcAnalyser analyser;
    ASSERT_EQ(analyser.SetExtraData(joined({withStartCode(sps.nal()), withStartCode(ppsNal())})), 0);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE("picture " + std::to_string(i));
        SAvcPicture picture;
        ASSERT_EQ(analyser.Analyse(rows[i].slice.unit(), picture), 0);
        EXPECT_EQ(picture.order.hasTop, rows[i].top.has_value());
        EXPECT_EQ(picture.order.hasBottom, rows[i].bottom.has_value());
        EXPECT_EQ(picture.order.top, rows[i].top.value_or(0));
        EXPECT_EQ(picture.order.bottom, rows[i].bottom.value_or(0));
        EXPECT_EQ(picture.sequence, rows[i].sequence);
        EXPECT_EQ(picture.hasFrameNumGap, rows[i].hasGap);
    }
}

TEST(PictureOrderType0, LsbTurnsOverInBothDirectionsFromTheLastReference)
{
    expectCounts(
        {}, {
                {{.isIdr = kIdr, .order = lsb(0, 0)}, 0, 0},
                {{.type = 5, .frameNum = 1, .order = lsb(8, 1)}, 8, 9},               // 8 ahead is not yet a turn back
                {{.type = 6, .refIdc = 0, .frameNum = 2, .order = lsb(4, -1)}, 4, 3}, // bottom field first
                {{.type = 5, .frameNum = 2, .order = lsb(0, 0)}, 16, 16},
                {{.type = 6, .refIdc = 0, .frameNum = 3, .order = lsb(12, 0)}, 12, 12}, // 12 ahead of 0 is 4 before it
                {{.type = 6, .refIdc = 0, .frameNum = 3, .order = lsb(14, 0)}, 14, 14}, // the one before moved nothing
                {{.type = 5, .frameNum = 3, .order = lsb(6, 0)}, 22, 22},
                {{.isIdr = kIdr, .order = lsb(5, 0), .idrId = 1}, 5, 5, 1},
                {{.type = 5, .frameNum = 1, .order = lsb(15, 0)}, -1, -1, 1},
            });
}

TEST(PictureOrderType0, FieldsCountAloneAndTheSecondFollowsTheFirst)
{
    expectCounts(
        {},
        {
            {{.isIdr = kIdr, .field = Field::top, .order = lsb(14)}, -2, std::nullopt}, // more than half a turn from 0
            {{.type = 5, .field = Field::bottom, .order = lsb(15)}, std::nullopt, -1},
            {{.type = 5, .frameNum = 1, .field = Field::bottom, .order = lsb(2)}, std::nullopt, 2},
            {{.type = 5, .frameNum = 1, .field = Field::top, .order = lsb(3)}, 3, std::nullopt},
            {{.type = 5, .frameNum = 2, .order = lsb(12, 1)}, -4, -3},
        });
}

TEST(PictureOrderType0, Operation5StartsAnewAtTheLowerField)
{
    expectCounts(
        {},
        {
            {{.isIdr = kIdr, .order = lsb(0, 0)}, 0, 0},
            {{.type = 5, .frameNum = 1, .order = lsb(6, -1), .clears = true}, 1, 0, 1},
            {{.type = 5, .frameNum = 1, .order = lsb(9, 0)}, 9, 9, 1}, // 8 ahead of the top field's 1, not 9 of 0
            {{.type = 5, .frameNum = 2, .field = Field::bottom, .order = lsb(12), .clears = true}, std::nullopt, 0, 2},
            {{.type = 5, .frameNum = 0, .field = Field::top, .order = lsb(9)},
             -7,
             std::nullopt,
             2}, // behind a bottom: 0
        });
}

/// delta_pic_order_always_zero_flag 0, offsets -2 for others, 1 to the bottom field, a cycle of 4 and 6.
const BitRow kCycle = BitRow{}.ue(1).u(1, 0).se(-2).se(1).ue(2).se(4).se(6);

BitRow deltas(int first, int second)
{
    return BitRow{}.se(first).se(second);
}

TEST(PictureOrderType1, CyclesOfOffsetsAndTurnsOfFrameNum)
{
    expectCounts(
        {.order = kCycle, .allowsGaps = true},
        {
            {{.isIdr = kIdr, .order = deltas(0, 0)}, 0, 1},
            {{.type = 5, .frameNum = 1, .order = deltas(0, 0)}, 4, 5},
            {{.type = 6, .refIdc = 0, .frameNum = 2, .order = deltas(0, 0)}, 2, 3}, // as frame 1, less 2
            {{.type = 5, .frameNum = 2, .order = deltas(0, 0)}, 10, 11},
            {{.type = 5, .frameNum = 3, .order = deltas(3, -1)}, 17, 17},          // 14 + 3, and 17 + 1 - 1
            {{.type = 5, .frameNum = 15, .order = deltas(0, 0)}, 74, 75, 0, true}, // 7 cycles and 4
            {{.type = 5, .frameNum = 2, .order = deltas(0, 0)}, 90, 91, 0, true},  // frame 18: 8 cycles and 10
            {{.type = 5, .frameNum = 3, .field = Field::top, .order = BitRow{}.se(1)}, 95, std::nullopt},
            {{.type = 5, .frameNum = 3, .field = Field::bottom, .order = BitRow{}.se(-1)}, std::nullopt, 94},
            {{.type = 5, .frameNum = 4, .order = deltas(0, 0), .clears = true}, 0, 1, 1},
            {{.type = 5, .frameNum = 1, .order = deltas(0, 0)}, 4, 5, 1}, // frame_num counts from 0 again, no turn
        });
}

TEST(PictureOrderType2, OutputOrderIsDecodingOrder)
{
    expectCounts(
        {.order = BitRow{}.ue(2)},
        {
            {{.isIdr = kIdr}, 0, 0},
            {{.type = 5, .frameNum = 1}, 2, 2},
            {{.type = 5, .refIdc = 0, .frameNum = 2}, 3, 3},
            {{.type = 5, .frameNum = 2, .field = Field::top}, 4, std::nullopt},
            {{.type = 5, .frameNum = 2, .field = Field::bottom}, std::nullopt, 4},
            {{.type = 5, .frameNum = 15}, 30, 30, 0, true}, // a gap that the set does not allow is told all the same
            {{.type = 5, .frameNum = 0}, 32, 32},
            {{.type = 5, .frameNum = 1, .clears = true}, 0, 0, 1},
            {{.type = 5, .frameNum = 1}, 2, 2, 1},
            {{.type = 5, .refIdc = 0, .frameNum = 8}, 15, 15, 1, true},
            {{.type = 5, .frameNum = 8}, 16, 16, 1}, // the one before was no reference
        });
}

TEST(PictureOrderType1, SenselessOffsetsWrap)
{
    BitRow order = BitRow{}.ue(1).u(1, 0).se(-0x7FFFFFFF).se(0x7FFFFFFF).ue(255);
    for (int i = 0; i < 255; ++i)
        order.se(0x7FFFFFFF);
    CAvcAnalyser analyser;
    ASSERT_EQ(analyser.SetExtraData(joined({withStartCode(SpsRow{.order = order}.nal()), withStartCode(ppsNal())})), 0);
    SAvcPicture picture;
    for (unsigned i = 0; i < 100; ++i)
        EXPECT_EQ(
            analyser.Analyse(
                SliceRow{.type = 5, .refIdc = i % 2, .frameNum = (i * 7) % 16, .order = deltas(0x7FFFFFFF, -0x7FFFFFFF)}
                    .unit(),
                picture),
            0);
}

} // namespace
