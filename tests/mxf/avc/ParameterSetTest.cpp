#include "mxf/Status.h"
#include "mxf/avc/AvcConfiguration.h"
#include "mxf/avc/AvcFormat.h"
#include "tests/mxf/avc/BitStream.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace zanfcp::test;

/// The fields of a High 4:2:2 sequence parameter set that rows below vary.
struct HighSps {
    std::uint64_t id = 0, chroma = 2, lumaAbove8 = 2, chromaAbove8 = 2;
    BitRow scaling = BitRow{}.u(1, 0);
    std::uint64_t frameNumAbove4 = 0;
    BitRow order = BitRow{}.ue(2); ///< pic_order_cnt_type and what follows it
    std::uint64_t references = 1, width = 7, height = 3;
    unsigned isFrameOnly = 1;
    std::vector<std::uint64_t> crop = {};
    BitRow vui = {};
    unsigned profile = 122, constraints = 0, level = 41;

    ByteRow nal() const
    {
        BitRow bits = BitRow{}.u(8, profile).u(8, constraints).u(8, level).ues({id, chroma});
        if (chroma == 3) bits.u(1, 0);
        bits.ues({lumaAbove8, chromaAbove8}).u(1, 0).add(scaling).ue(frameNumAbove4).add(order);
        bits.ue(references).u(1, 0).ues({width, height}).u(1, isFrameOnly);
        if (isFrameOnly == 0) bits.u(1, 1);
        bits.u(1, 1).u(1, !crop.empty());
        for (const std::uint64_t side : crop)
            bits.ue(side);
        return nalOf(0x67, bits.u(1, !vui.text.empty()).add(vui));
    }
    SAvcSps parsed() const
    {
        SAvcSps sps;
        EXPECT_EQ(sps.Parse(nal()), kSuccess);
        return sps;
    }
};

TEST(SequenceParameterSet, ValuesOutOfRangeAndEarlyEndsAreRefused)
{
    ASSERT_EQ(SAvcSps{}.Parse(HighSps{}.nal()), kSuccess);
    const std::pair<const char*, HighSps> cases[] = {
        {"id", {.id = 32}},
        {"chroma format", {.chroma = 4}},
        {"luma depth", {.lumaAbove8 = 7}},
        {"chroma depth", {.chromaAbove8 = 7}},
        {"frame_num", {.frameNumAbove4 = 13}},
        {"order type", {.order = BitRow{}.ue(3)}},
        {"references", {.references = 17}},
        {"width", {.width = 4096}},
        {"height that wraps", {.height = 0xFFFFFFFE}},
        {"a scaling delta", {.scaling = BitRow{}.u(2, 3).se(128)}},
    };
    for (const auto& [name, sps] : cases)
        EXPECT_EQ(SAvcSps{}.Parse(sps.nal()), kFailed) << name;
    const ByteRow whole = HighSps{}.nal();
    for (std::size_t size = 0; size + 1 < whole.size(); ++size)
        EXPECT_EQ(SAvcSps{}.Parse(std::span{whole}.first(size)), kCutShort) << size;
    EXPECT_EQ(SAvcSps{}.Parse(ppsNal()), kFailed);
}

TEST(SequenceParameterSet, CroppingCountsInChromaSamplesOfFieldsOrFrames)
{
    struct Case {
        HighSps sps;
        std::uint32_t width, height;
    };
    const Case cases[] = {
        {{.chroma = 1, .crop = {1, 2, 0, 3}}, 122, 58},
        {{.chroma = 2, .crop = {1, 2, 0, 3}}, 122, 61},
        {{.chroma = 3, .crop = {1, 2, 0, 3}}, 125, 61},
        {{.chroma = 0, .crop = {1, 2, 0, 3}}, 125, 61},
        {{.chroma = 1, .height = 1, .isFrameOnly = 0, .crop = {0, 0, 1, 1}}, 128, 56},
        {{.chroma = 2, .crop = {0, 64, 0, 0}}, 128, 64}, // nothing would be left
        {{.chroma = 2, .crop = {0xFFFFFFFE, 0xFFFFFFFE, 0, 0}}, 128, 64},
    };
    for (const Case& c : cases) {
        const SAvcSps sps = c.sps.parsed();
        EXPECT_EQ(sps.Width(), c.width);
        EXPECT_EQ(sps.Height(), c.height);
    }
}

TEST(SequenceParameterSet, BufferingIsInferredFromLevelAndProfile)
{
    const BitRow lsbOrder = BitRow{}.ues({0, 0});
    const BitRow stated = BitRow{}.u(9, 1).u(1, 0).ues({0, 0, 0, 0, 2, 3}); // only bitstream_restriction
    struct Case {
        HighSps sps;
        std::uint32_t reorder, buffering;
        bool isIntraOnly;
    };
    const Case cases[] = {
        // 8x4 macroblocks: table A-1 gives more than 16 from level 1.1 on, and 396 / 32 at level 1.
        {{.order = lsbOrder, .level = 10}, 12, 12, false},
        {{.order = lsbOrder, .level = 11}, 16, 16, false},
        {{.order = lsbOrder, .width = 119, .height = 67, .level = 41}, 4, 4, false},
        {{.order = lsbOrder, .width = 119, .height = 33, .isFrameOnly = 0, .level = 40}, 4, 4, false},
        {{.order = lsbOrder, .constraints = 0x10}, 0, 0, true},
        {{.level = 10}, 0, 12, false},
        {{.order = lsbOrder, .references = 0, .level = 10}, 12, 12, true},
        {{.order = lsbOrder, .vui = stated}, 2, 3, false},
    };
    for (const Case& c : cases) {
        const SAvcSps sps = c.sps.parsed();
        EXPECT_EQ(sps.ReorderFrames(), c.reorder);
        EXPECT_EQ(sps.DecFrameBuffering(), c.buffering);
        EXPECT_EQ(sps.IsIntraOnly(), c.isIntraOnly);
    }
}

TEST(SequenceParameterSet, UsabilityInformationIsReadToItsEndThroughBothHrds)
{
    const BitRow hrd =
        BitRow{}.ue(1).u(8, 0x12).ues({9, 9}).u(1, 0).ues({8, 8}).u(1, 1).u(5, 20).u(5, 15).u(5, 7).u(5, 3);
    BitRow vui = BitRow{}.u(1, 1).u(8, 255).u(16, 80).u(16, 66).u(2, 3); // aspect ratio, overscan
    vui.u(1, 1).u(3, 2).u(1, 1).u(1, 1).u(8, 9).u(8, 16).u(8, 9);        // NTSC, full range, colours
    vui.u(1, 1).ues({5, 4}).u(1, 1).u(32, 1001).u(32, 60000).u(1, 1);
    vui.u(1, 1).add(hrd).u(1, 1).add(hrd).u(1, 0).u(1, 1);
    const BitRow whole = BitRow{vui}.u(1, 1).u(1, 1).ues({2, 1, 10, 10, 1, 4});
    const SAvcSps sps = HighSps{.vui = whole}.parsed();
    ASSERT_TRUE(sps.vui);
    EXPECT_EQ(sps.vui->sampleAspect, (SAvcRatio{40, 33}));
    EXPECT_EQ(sps.FrameRate(), (SAvcRatio{30000, 1001}));
    EXPECT_TRUE(sps.vui->isFixedFrameRate && sps.vui->isFullRange && sps.vui->hasPictureStructure);
    EXPECT_EQ(sps.vui->videoFormat, 2);
    EXPECT_EQ(sps.vui->transferCharacteristics, 16);
    EXPECT_EQ(sps.vui->removalDelayBits, 16);
    EXPECT_EQ(sps.vui->outputDelayBits, 8);
    EXPECT_EQ(sps.DecFrameBuffering(), 4U);

    EXPECT_FALSE(HighSps{.vui = vui}.parsed().vui) << "cut short: the rest of the set is good";
    const BitRow oddRate = BitRow{}.u(4, 0).u(1, 1).u(32, 0xFFFFFFFF).u(32, 0xFFFFFFFF).u(5, 0);
    EXPECT_EQ((HighSps{.vui = oddRate}.parsed().FrameRate()), (SAvcRatio{1, 2}));
    const BitRow noRate = BitRow{}.u(4, 0).u(1, 1).u(32, 0).u(32, 50).u(5, 0);
    EXPECT_FALSE(HighSps{.vui = noRate}.parsed().FrameRate());
}

TEST(ScalingLists, FallBackRulesAAndB)
{
    // Lists 0 to 5: standard by delta -8, absent, own, absent, absent, absent; 8x8: absent, own that stops at 20.
    const BitRow own = BitRow{}.u(1, 1).se(4).se(-12); // 12, then 0: the rest is 12
    const BitRow lists = BitRow{}.u(1, 1).se(-8).u(1, 0).add(own).u(3, 0).u(1, 0).u(1, 1).se(12).se(-20);
    const SScalingLists standard = SScalingLists::Default();
    SScalingLists::TList4x4 twelve;
    twelve.fill(12);
    SScalingLists::TList8x8 twenty;
    twenty.fill(20);

    const SAvcSps sps = HighSps{.scaling = BitRow{}.u(1, 1).add(lists)}.parsed();
    EXPECT_EQ(sps.scaling.lists4x4[0], standard.lists4x4[0]);
    EXPECT_EQ(sps.scaling.lists4x4[1], standard.lists4x4[0]);
    EXPECT_EQ(sps.scaling.lists4x4[2], twelve);
    EXPECT_EQ(sps.scaling.lists4x4[5], standard.lists4x4[3]);
    EXPECT_EQ(sps.scaling.lists8x8[0], standard.lists8x8[0]);
    EXPECT_EQ(sps.scaling.lists8x8[1], twenty);
    EXPECT_EQ(sps.scaling.lists8x8[5], twenty) << "what is not signalled follows the one before of its kind";

    const BitRow twelveLists = BitRow{}.u(1, 1).u(11, 0).u(1, 1).se(12).se(-20);
    const SAvcSps full = HighSps{.chroma = 3, .scaling = twelveLists}.parsed();
    EXPECT_EQ(full.scaling.lists8x8[3], standard.lists8x8[1]);
    EXPECT_EQ(full.scaling.lists8x8[5], twenty);
    EXPECT_EQ(full.Width(), 128U);

    // A picture's own matrix: list 1 own, all others absent, with and without the 8x8 transform.
    const auto pps = [&](bool has8x8) {
        BitRow bits = BitRow{}.ues({0, 0}).u(2, 0).ues({0, 0, 0}).u(3, 0).se(-38).se(0).se(-12).u(3, 0);
        bits.u(1, has8x8).u(1, 1).u(1, 0).add(own).u(4, 0);
        return nalOf(0x68, (has8x8 ? bits.u(2, 0) : bits).se(7));
    };
    const SAvcSps flat = HighSps{}.parsed();
    for (const bool has8x8 : {false, true}) {
        SAvcPps a, b;
        ASSERT_EQ(a.Parse(pps(has8x8), flat), kSuccess);
        ASSERT_EQ(b.Parse(pps(has8x8), sps), kSuccess);
        EXPECT_EQ(a.scaling.lists4x4[0], standard.lists4x4[0]);
        EXPECT_EQ(a.scaling.lists4x4[2], twelve);
        EXPECT_EQ(a.scaling.lists8x8[1], standard.lists8x8[1]);
        EXPECT_EQ(b.scaling.lists4x4[3], standard.lists4x4[3]);
        EXPECT_EQ(b.scaling.lists8x8[1], twenty);
        EXPECT_EQ(b.crQpOffset, 7);
        EXPECT_EQ(b.cbQpOffset, -12);
        EXPECT_EQ(b.initialQp, -12);
    }
    SAvcPps plain;
    ASSERT_EQ(plain.Parse(ppsNal(), sps), kSuccess);
    EXPECT_EQ(plain.scaling, sps.scaling);
    EXPECT_EQ(flat.scaling.lists8x8[3][63], 16);
}

TEST(PictureParameterSet, SliceGroupsOfEveryTypeAreSteppedOver)
{
    const SAvcSps sps = HighSps{}.parsed();
    const BitRow maps[] = {
        BitRow{}.ues({2, 0, 5, 6, 7}),      BitRow{}.ues({2, 1}),
        BitRow{}.ues({2, 2, 1, 2, 3, 4}),   BitRow{}.ues({1, 3}).u(1, 1).ue(9),
        BitRow{}.ues({1, 5}).u(1, 0).ue(9), BitRow{}.ues({4, 6, 4}).u(15, 0x5A5A), // three bits for each of five units
    };
    const BitRow tail = BitRow{}.ues({3, 1}).u(3, 6).se(1).se(2).se(-3).u(3, 5);
    for (const BitRow& map : maps) {
        SAvcPps pps;
        ASSERT_EQ(pps.Parse(nalOf(0x68, BitRow{}.ues({7, 0}).u(2, 3).add(map).add(tail)), sps), kSuccess);
        EXPECT_EQ(pps.referencesList0, 4);
        EXPECT_EQ(pps.weightedBipred, 2);
        EXPECT_EQ(pps.crQpOffset, -3);
        EXPECT_TRUE(pps.hasDeblockingControl && !pps.hasConstrainedIntra && pps.allowsRedundantPictures);
    }
    const BitRow broken[] = {BitRow{}.ue(8), BitRow{}.ues({1, 7}), BitRow{}.ues({0, 32, 0}),
                             BitRow{}.ues({0, 0, 0}).u(3, 3)};
    for (const BitRow& map : broken)
        EXPECT_EQ(SAvcPps{}.Parse(nalOf(0x68, BitRow{}.ues({7, 0}).u(2, 0).add(map).add(tail)), sps), kFailed);
    EXPECT_EQ(SAvcPps{}.Parse(nalOf(0x68, BitRow{}.ues({7, 0}).u(2, 0).ues({1, 6, 0xFFFFFFFE})), sps), kCutShort);
}

TEST(ParameterSets, PicturesFindTheirSequenceWhenItComesLateOrChanges)
{
    CAvcParameterSets sets;
    EXPECT_EQ(sets.Add(ppsNal(3, 1)), kSuccess);
    EXPECT_EQ(sets.Pps(3), nullptr);
    EXPECT_EQ(sets.Add(SpsRow{.id = 1}.nal()), kSuccess);
    ASSERT_NE(sets.Pps(3), nullptr);
    EXPECT_EQ(sets.Pps(3)->scaling, SScalingLists::Flat());
    EXPECT_EQ(sets.Add(HighSps{.id = 1, .scaling = BitRow{}.u(9, 0x100)}.nal()), kSuccess);
    EXPECT_EQ(sets.Pps(3)->scaling, SScalingLists::Default());
    EXPECT_EQ(sets.Add(HighSps{.id = 1, .chroma = 9}.nal()), kFailed);
    EXPECT_NE(sets.Pps(3), nullptr) << "a broken set replaces nothing";
    EXPECT_EQ(sets.Add(ByteRow(70000, 0x67)), kFailed);
    EXPECT_EQ(sets.Sps(0), nullptr);
}

TEST(ParameterSets, BytesThatNoByteStreamCanCarryAreLeftOutOrRefused)
{
    for (const ByteRow& nal : {HighSps{}.nal(), ppsNal()}) {
        CAvcParameterSets plain, padded;
        ByteRow bytes = nal;
        ASSERT_EQ(plain.Add(bytes), kSuccess);
        bytes.insert(bytes.end(), {0, 0});
        EXPECT_EQ(padded.Add(bytes), kSuccess);
        EXPECT_EQ(ToAnnexB(padded), ToAnnexB(plain));
        bytes.insert(bytes.end(), {1, 9});
        EXPECT_EQ(padded.Add(bytes), kFailed) << "a start code inside";
    }
}

TEST(AvcConfiguration, RecordsAndByteStreamsCarryTheSameSets)
{
    CAvcParameterSets sets;
    for (const ByteRow& nal : {HighSps{}.nal(), SpsRow{.id = 4}.nal(), ppsNal(), ppsNal(9, 4)})
        ASSERT_EQ(sets.Add(nal), kSuccess);
    const ByteRow record = ToAvcConfiguration(sets);
    for (const ByteRow& bytes : {record, ToAnnexB(sets)}) {
        CAvcParameterSets again;
        unsigned lengthSize = 9;
        ASSERT_EQ(ReadAvcExtraData(bytes, again, lengthSize), kSuccess);
        EXPECT_EQ(lengthSize, bytes[0] == 1 ? 4U : 0U);
        EXPECT_EQ(ToAnnexB(again), ToAnnexB(sets));
        EXPECT_NE(again.Pps(9), nullptr);
    }
    CAvcParameterSets none;
    unsigned lengthSize = 9;
    for (std::size_t size = 0; size < record.size() - 4; ++size) // the last four are optional
        EXPECT_EQ(ReadAvcExtraData(std::span{record}.first(size), none, lengthSize), kCutShort) << size;
    EXPECT_EQ(ReadAvcExtraData(ByteRow{1, 77, 0, 30, 0xFE, 0xE0, 0}, none, lengthSize), kFailed) << "lengths of 3";
    EXPECT_EQ(ReadAvcExtraData(ByteRow{1, 77, 0, 30, 0xFF, 0xE0, 0}, none, lengthSize), kNoSuchItem);
    EXPECT_EQ(ReadAvcExtraData(ByteRow{0, 0, 1, 9, 0x10}, none, lengthSize), kNoSuchItem);
    EXPECT_EQ(ReadAvcExtraData(ByteRow{2, 2}, none, lengthSize), kFailed);
    EXPECT_TRUE(ToAvcConfiguration(CAvcParameterSets{}).empty());
}

} // namespace
