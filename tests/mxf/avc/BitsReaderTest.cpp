#include "mxf/avc/BitsReader.h"
#include "mxf/avc/BitsWriter.h"
#include "mxf/avc/NalUnit.h"
#include "tests/mxf/avc/BitStream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace {

using namespace TamrelMxf;
using namespace zanfcp::test;

TEST(BitsReader, ReadsEveryCodeAtEveryBitPosition)
{
    const std::int64_t values[] = {0, 1, -1, 2, 7, -8, 254, 255, -256, 65535, -65536, 0x7FFFFFFF, -0x7FFFFFFF};
    for (unsigned shift = 0; shift < 64; ++shift) {
        SCOPED_TRACE(shift);
        BitRow row;
        row.u(shift, 0x5A5A5A5A5A5A5A5A).u(32, 0xFFFFFFFF).u(0, 0).u(1, 1);
        for (const std::int64_t value : values)
            row.se(value).ue(value < 0 ? 0xFFFFFFFE : static_cast<std::uint64_t>(value));
        const ByteRow bytes = row.bytes();
        CBitsReader bits{bytes, CBitsReader::EEmulationBytes::kept};
        bits.Skip(shift);
        EXPECT_EQ(bits.Bits(32), 0xFFFFFFFF);
        EXPECT_EQ(bits.Bits(0), 0U);
        EXPECT_TRUE(bits.Flag());
        for (const std::int64_t value : values) {
            EXPECT_EQ(bits.Se(), value);
            EXPECT_EQ(bits.Ue(), value < 0 ? 0xFFFFFFFE : static_cast<std::uint32_t>(value));
        }
        EXPECT_TRUE(bits.IsOk());
        EXPECT_EQ(bits.BitsRead(), row.text.size());
    }
}

TEST(BitsReader, EmulationBytesAreRemovedWhereverTheyStand)
{
    std::mt19937 random{7};
    for (int round = 0; round < 300; ++round) {
        BitRow payload; // few values, so that starts of start codes are frequent, across every border of the cache
        for (int i = 0; i < 40; ++i)
            payload.u(8, random() % 3 == 0 ? random() % 5 : 0);
        const ByteRow plain = payload.bytes();
        const ByteRow nal = nalOf(0x67, payload);
        CBitsReader bits{std::span{nal}.subspan(1)};
        for (std::size_t i = 0; i < plain.size() * 2; ++i) {
            EXPECT_TRUE(bits.MoreRbspData());
            ASSERT_EQ(bits.Bits(4), i % 2 == 0 ? plain[i / 2] >> 4 : plain[i / 2] & 15)
                << "round " << round << " at " << i;
        }
        EXPECT_FALSE(bits.MoreRbspData()) << "only the stop bit is left";
        for (std::size_t from = 0; from < 8; ++from) { // stepped over, they count as little
            CBitsReader skipping{std::span{nal}.subspan(1)};
            skipping.Bits(static_cast<unsigned>(from));
            skipping.Skip(8 * (plain.size() - 1) - from);
            EXPECT_EQ(skipping.Bits(8), plain.back());
            EXPECT_EQ(skipping.BitsRead(), 8 * plain.size());
        }

        CBitsWriter writer;
        for (const std::uint8_t byte : plain)
            writer.Bits(byte, 8);
        writer.TrailingBits();
        EXPECT_EQ(writer.NalUnit(0x67), nal);
    }
}

TEST(BitsReader, ReadingPastTheEndFailsForGood)
{
    const ByteRow bytes{0xFF, 0x80};
    CBitsReader bits{bytes};
    EXPECT_EQ(bits.Bits(12), 0xFF8U);
    EXPECT_EQ(bits.Bits(5), 0U);
    EXPECT_FALSE(bits.IsOk());
    EXPECT_EQ(bits.Bits(1), 0U);
    EXPECT_EQ(bits.Ue(), 0U);
    EXPECT_FALSE(bits.MoreRbspData());

    CBitsReader skipping{bytes};
    skipping.Skip(std::numeric_limits<std::uint64_t>::max());
    EXPECT_FALSE(skipping.IsOk());

    const ByteRow zeros(20, 0);
    for (const ByteRow& row : {ByteRow{}, ByteRow{0}, zeros, joined({{0, 0, 0, 0}, {0x80, 0, 0, 0, 0, 0}})}) {
        CBitsReader code{row, CBitsReader::EEmulationBytes::kept};
        EXPECT_EQ(code.Ue(), 0U) << "a code of more than 63 bits, or without an end";
        EXPECT_FALSE(code.IsOk());
        EXPECT_FALSE(CBitsReader{row}.MoreRbspData() && row.size() != 10);
    }
}

TEST(BitsReader, ZeroWordsBehindTheStopBitAreNoData)
{
    const ByteRow bytes{0xA0, 0x80, 0, 0, 3, 0, 0, 3};
    CBitsReader bits{bytes};
    EXPECT_TRUE(bits.MoreRbspData());
    bits.Bits(8);
    EXPECT_FALSE(bits.MoreRbspData());
}

TEST(NalReader, FindsUnitsBehindStartCodesOfEitherLength)
{
    const ByteRow bytes{0xFF, 0, 0, 1, 0x67, 5, 0, 0, 0, 0, 1, 0x68, 0, 0, 1, 0, 0, 1, 0x65, 1, 1, 0, 1, 7, 0, 0, 0};
    const std::vector<std::pair<std::size_t, ByteRow>> expected{
        {1, {0x67, 5}}, {7, {0x68}}, {15, {0x65, 1, 1, 0, 1, 7}}};
    for (const bool asksForEnds : {true, false}) {
        CNalReader units = CNalReader::AnnexB(bytes);
        for (const auto& [offset, nal] : expected) {
            ASSERT_TRUE(units.Next());
            EXPECT_EQ(units.Offset(), offset);
            EXPECT_TRUE(std::ranges::equal(units.Head().first(nal.size()), nal));
            if (asksForEnds) {
                EXPECT_TRUE(std::ranges::equal(units.Whole(), nal));
            }
        }
        EXPECT_FALSE(units.Next());
        EXPECT_FALSE(units.Next());
    }
}

TEST(NalReader, LengthsAreHeldAgainstWhatIsLeft)
{
    const ByteRow bytes{0, 2, 0x67, 5, 0, 0, 0, 1, 0x68, 0xFF, 0xFF, 0x65, 9};
    CNalReader units = CNalReader::LengthPrefixed(bytes, 2);
    ASSERT_TRUE(units.Next());
    EXPECT_TRUE(std::ranges::equal(units.Whole(), ByteRow{0x67, 5}));
    ASSERT_TRUE(units.Next());
    EXPECT_EQ(units.Type(), ENalType::pictureParameterSet);
    EXPECT_FALSE(units.IsCutShort());
    ASSERT_TRUE(units.Next());
    EXPECT_TRUE(std::ranges::equal(units.Head(), ByteRow{0x65, 9}));
    EXPECT_TRUE(units.IsCutShort());
    EXPECT_FALSE(units.Next());
}

TEST(NalReader, StartCodesAreFoundAmongTheirParts)
{
    std::mt19937 random{3};
    for (int round = 0; round < 2000; ++round) {
        ByteRow bytes(random() % 24);
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(random() % 8 == 0 ? 2 : random() % 2);
        const std::size_t from = random() % 6;
        const ByteRow code{0, 0, 1};
        const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(std::min(from, bytes.size()));
        const auto found = std::search(first, bytes.end(), code.begin(), code.end());
        EXPECT_EQ(FindStartCode(bytes, from), static_cast<std::size_t>(found - bytes.begin()));
    }
}

} // namespace
