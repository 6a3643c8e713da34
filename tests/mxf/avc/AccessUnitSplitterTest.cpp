#include "tests/mxf/avc/Splitting.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace zanfcp::test;

using Offsets = std::vector<std::uint64_t>;

const ByteRow kSets = joined({withStartCode(SpsRow{}.nal()), withStartCode(ppsNal()), withStartCode(ppsNal(1))});
const ByteRow kDelimiter{0, 0, 0, 1, 9, 0xF0};
const ByteRow kSei{0, 0, 1, 6, 5, 1, 0, 0x80};
const ByteRow kFiller{0, 0, 1, 12, 0xFF, 0x80, 0, 0, 0};
const ByteRow kPrefix{0, 0, 1, 0x6E, 0x40, 0x80, 7};
const ByteRow kEndOfSequence{0, 0, 1, 10};

/// A part of a stream; '|' in front of those that begin a picture, and a frame.
struct Part {
    ByteRow bytes;
    bool beginsPicture = false;
    bool beginsFrame = false;
};

void expectUnits(const std::vector<Part>& parts)
{
    ByteRow stream;
    Offsets pictures, frames;
    for (const Part& part : parts) {
        if (part.beginsPicture) pictures.push_back(stream.size());
        if (part.beginsFrame) frames.push_back(stream.size());
        stream.insert(stream.end(), part.bytes.begin(), part.bytes.end());
    }
    for (const std::size_t step : {std::size_t{1}, std::size_t{2}, std::size_t{3}, std::size_t{7}, stream.size()}) {
        EXPECT_EQ(unitStarts(stream, CAccessUnitSplitter::EUnit::picture, step), pictures) << step;
        EXPECT_EQ(unitStarts(stream, CAccessUnitSplitter::EUnit::frame, step), frames) << step;
    }
}

ByteRow slice(const SliceRow& row)
{
    return row.unit();
}

TEST(AccessUnitSplitter, WhatStandsInFrontOfSlicesBelongsToThem)
{
    expectUnits({
        {joined({kDelimiter, kSets, kSei}), true, true},
        {slice({.isIdr = true, .order = lsb(0, 0)})},
        {slice({.isIdr = true, .order = lsb(0, 0), .firstMacroblock = 4})},
        {joined({kFiller, kEndOfSequence})},
        {kSei, true, true}, // the same header as before, but what stands in front tells
        {slice({.isIdr = true, .order = lsb(0, 0)})},
        {joined({kSets, kDelimiter}), true, true},
        {slice({.type = 5, .frameNum = 1, .order = lsb(2, 0)})},
        {joined({kPrefix, slice({.type = 5, .frameNum = 1, .order = lsb(2, 0), .firstMacroblock = 1})})},
        {joined({kPrefix, slice({.type = 5, .frameNum = 2, .order = lsb(4, 0)})}), true, true},
        {kDelimiter}, // no picture follows
    });
}

TEST(AccessUnitSplitter, EveryFieldThatTellsPicturesApart)
{
    expectUnits({
        {joined({kSets, slice({.isIdr = true, .order = lsb(0, 0)})}), true, true},
        {slice({.isIdr = true, .order = lsb(0, 0), .idrId = 1}), true, true},
        {slice({.type = 5, .order = lsb(0, 0)}), true, true},                // no IDR
        {slice({.type = 5, .frameNum = 1, .order = lsb(0, 0)}), true, true}, // frame_num
        {slice({.type = 6, .refIdc = 0, .frameNum = 1, .order = lsb(0, 0)}), true, true},
        {slice({.type = 5, .refIdc = 0, .frameNum = 1, .order = lsb(0, 0), .firstMacroblock = 2})}, // other type: same
        {slice({.type = 6, .refIdc = 0, .frameNum = 1, .order = lsb(2, 0)}), true, true},
        {slice({.type = 6, .refIdc = 0, .frameNum = 1, .order = lsb(2, 1)}), true, true},
        {slice({.type = 6, .refIdc = 0, .frameNum = 1, .order = lsb(2, 1), .pps = 1}), true, true},
        {slice({.type = 5, .refIdc = 3, .frameNum = 2, .order = lsb(4, 0)}), true, true},
        {slice({.type = 5, .refIdc = 1, .frameNum = 2, .order = lsb(4, 0)})}, // both references: same
    });
}

TEST(AccessUnitSplitter, TwoFieldsMakeAFrame)
{
    using enum Field;
    expectUnits({
        {joined({kSets, slice({.isIdr = true, .field = top, .order = lsb(0)})}), true, true},
        {slice({.type = 5, .field = bottom, .order = lsb(1)}), true},
        {slice({.type = 5, .field = bottom, .order = lsb(1), .firstMacroblock = 1})},
        {joined({kDelimiter, slice({.type = 5, .frameNum = 1, .field = bottom, .order = lsb(2)})}), true, true},
        {joined({kSei, slice({.type = 5, .frameNum = 1, .field = top, .order = lsb(3)})}), true},
        {slice({.type = 5, .frameNum = 2, .field = top, .order = lsb(4)}), true, true},    // alone
        {slice({.type = 5, .frameNum = 3, .field = bottom, .order = lsb(6)}), true, true}, // other frame_num
        {slice({.type = 5, .frameNum = 3, .field = bottom, .order = lsb(7)}), true, true}, // same parity
        {slice({.isIdr = true, .field = top, .order = lsb(0)}), true, true},
        {slice({.isIdr = true, .field = bottom, .order = lsb(1)}), true}, // same idr_pic_id
        {slice({.type = 5, .frameNum = 1, .field = top, .order = lsb(2), .clears = true}), true, true},
        {slice({.type = 5, .frameNum = 0, .field = bottom, .order = lsb(3)}), true}, // 0 follows operation 5
    });
}

TEST(AccessUnitSplitter, WithoutParameterSetsTheFirstMacroblockTells)
{
    expectUnits({
        {slice({.isIdr = true, .order = lsb(0, 0)}), true, true},
        {slice({.type = 5, .order = lsb(0, 0), .firstMacroblock = 3})},
        {slice({.type = 5, .order = lsb(0, 0)}), true, true},
    });
}

} // namespace
