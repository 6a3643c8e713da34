#include "platform/ByteReader.h"

#include "platform/FourCC.h"
#include "platform/Result.h"

#include <array>
#include <gtest/gtest.h>

namespace zanfcp {
namespace {

constexpr auto kBytes = [] {
    std::array<std::byte, 16> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::byte>(0xF0 + i);
    return bytes;
}();

TEST(ByteReader, ReadsBigEndian)
{
    ByteReader in{kBytes, 100};
    EXPECT_EQ(in.read<std::uint8_t>(), 0xF0);
    EXPECT_EQ(in.read<std::uint16_t>(), 0xF1F2);
    EXPECT_EQ(in.read<std::int8_t>(), -13);
    EXPECT_EQ(in.read<std::int32_t>(), -0xB0A0909);
    EXPECT_EQ(in.offset(), 108U);
    EXPECT_EQ(in.read<std::uint64_t>(), 0xF8F9FAFBFCFDFEFFU);
    EXPECT_TRUE(in.ok());
    EXPECT_EQ(in.remaining(), 0U);
}

TEST(ByteReader, FailureIsForGood)
{
    ByteReader in{kBytes};
    in.skip(13);
    EXPECT_EQ(in.read<std::uint32_t>(), 0U);
    EXPECT_FALSE(in.ok());
    EXPECT_EQ(in.read<std::uint8_t>(), 0U) << "though three bytes are left";
    EXPECT_TRUE(in.take(0).empty());
    EXPECT_FALSE(in.sub(1).ok());

    ByteReader huge{kBytes};
    huge.skip(8);
    huge.skip(SIZE_MAX); // position + count wraps
    EXPECT_FALSE(huge.ok());
    EXPECT_EQ(huge.remaining(), 8U);
}

TEST(ByteReader, PartsSeeNothingBeyondTheirEnd)
{
    ByteReader in{kBytes, 1000};
    in.skip(2);
    ByteReader part = in.sub(4);
    EXPECT_EQ(part.offset(), 1002U);
    EXPECT_EQ(part.read<std::uint64_t>(), 0U);
    EXPECT_FALSE(part.ok());
    EXPECT_TRUE(in.ok()) << "the parent is not harmed";
    EXPECT_EQ(in.read<std::uint8_t>(), 0xF6);
}

TEST(ByteReader, CountsAreComparedWithWhatFollows)
{
    std::array<std::byte, 12> bytes{};
    bytes[3] = std::byte{2};
    EXPECT_EQ(ByteReader{bytes}.readCount(4), 2U);
    ByteReader tooMany{bytes};
    EXPECT_EQ(tooMany.readCount(5), 0U);
    EXPECT_FALSE(tooMany.ok());
    bytes.fill(std::byte{0xFF});
    ByteReader lie{bytes};
    EXPECT_EQ(lie.readCount(SIZE_MAX), 0U);
    EXPECT_FALSE(lie.ok());
}

TEST(FourCC, PrintsOnlyWhatIsPrintable)
{
    EXPECT_EQ(FourCC{"moov"}.value, 0x6D6F6F76U);
    EXPECT_EQ(FourCC{0xA96E616DU}.text(), "?nam");
    EXPECT_EQ(FourCC{0x7F1F207EU}.text(), "?? ~");
}

TEST(Error, PathGrowsOnTheWayOut)
{
    const Status deep = Error{.fault = Fault::malformed, .what = "timescale is zero", .offset = 812, .path = "mdhd"};
    const Status outer = Status{deep}.under("trak").under("moov");
    EXPECT_EQ(outer.error().text(), "moov/trak/mdhd, byte 812: timescale is zero");
    EXPECT_EQ((Error{.what = "no such file"}.text()), "no such file");
    EXPECT_TRUE(Status{}.under("moov"));
}

} // namespace
} // namespace zanfcp
