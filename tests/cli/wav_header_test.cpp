#include "cli/WavHeader.h"

#include <gtest/gtest.h>

namespace zanfcp::cli {
namespace {

std::uint64_t number(const std::string& header, std::size_t at, std::size_t count)
{
    std::uint64_t value = 0;
    for (std::size_t i = count; i-- > 0;)
        value = value << 8 | static_cast<std::uint8_t>(header.at(at + i));
    return value;
}

constexpr WavFormat kStereo{.channels = 2, .sampleRate = 48000, .bits = 16, .bytesPerSample = 2};

TEST(WavHeader, SizesMoveInto64BitsWhereTheyNoLongerFit)
{
    constexpr std::uint64_t kUnknown = 0xFFFFFFFF;
    constexpr std::uint64_t kLargest = kUnknown - 1 - 72; // the RIFF chunk holds 72 bytes besides the samples
    const std::size_t length = wavHeader(kStereo, 0).size();
    EXPECT_EQ(length, 80U);
    struct Case {
        std::optional<std::uint64_t> bytes;
        bool isLong;
    };
    for (const Case& c : {Case{0, false}, Case{7, false}, Case{kLargest, false}, Case{kLargest + 1, true},
                          Case{std::uint64_t{1} << 40, true}, Case{std::nullopt, false}}) {
        SCOPED_TRACE(c.bytes.value_or(1));
        const std::string header = wavHeader(kStereo, c.bytes);
        ASSERT_EQ(header.size(), length);
        EXPECT_EQ(header.substr(0, 4), c.isLong ? "RF64" : "RIFF");
        EXPECT_EQ(header.substr(8, 8), c.isLong ? "WAVEds64" : "WAVEJUNK");
        const bool is32Bit = c.bytes && !c.isLong;
        const std::uint64_t padded = c.bytes.value_or(0) + wavPadding(c.bytes.value_or(0));
        EXPECT_EQ(number(header, 4, 4), is32Bit ? length - 8 + padded : kUnknown);
        EXPECT_EQ(number(header, length - 4, 4), is32Bit ? *c.bytes : kUnknown);
        EXPECT_EQ(number(header, 16, 4), 28U);
        EXPECT_EQ(number(header, 20, 8), c.isLong ? length - 8 + padded : 0);
        EXPECT_EQ(number(header, 28, 8), c.isLong ? *c.bytes : 0);
        EXPECT_EQ(number(header, 36, 8), c.isLong ? *c.bytes / 4 : 0);
    }
}

TEST(WavHeader, FormatsBeyondStereoOf16BitsAreExtensible)
{
    struct Case {
        WavFormat format;
        std::uint64_t tag, bytes, validBits;
    };
    const Case cases[] = {
        {kStereo, 1, 16, 0},
        {{.channels = 1, .sampleRate = 8000, .bits = 8, .bytesPerSample = 1}, 1, 16, 0},
        {{.channels = 3, .sampleRate = 48000, .bits = 16, .bytesPerSample = 2}, 0xFFFE, 40, 16},
        {{.channels = 2, .sampleRate = 48000, .bits = 20, .bytesPerSample = 3}, 0xFFFE, 40, 20},
        {{.coding = WavFormat::Coding::aLaw, .channels = 1, .sampleRate = 8000, .bits = 8, .bytesPerSample = 1},
         6,
         18,
         0},
    };
    for (const Case& c : cases) {
        const std::string header = wavHeader(c.format, 48000);
        SCOPED_TRACE(c.format.bits);
        const std::size_t at = header.find("fmt ");
        EXPECT_EQ(number(header, at + 4, 4), c.bytes);
        EXPECT_EQ(number(header, at + 8, 2), c.tag);
        const std::uint64_t block = std::uint64_t{c.format.channels} * c.format.bytesPerSample;
        EXPECT_EQ(number(header, at + 16, 4), c.format.sampleRate * block);
        EXPECT_EQ(number(header, at + 20, 2), block);
        EXPECT_EQ(number(header, at + 22, 2), c.format.bytesPerSample * 8U);
        if (c.validBits != 0) {
            EXPECT_EQ(number(header, at + 26, 2), c.validBits);
            EXPECT_EQ(number(header, at + 32, 2), 1U); // PCM, as the sub-format says
        }
        EXPECT_EQ(header.find("fact") != std::string::npos, c.tag == 6); // required of all that is not PCM
    }
}

} // namespace
} // namespace zanfcp::cli
