#include "cli/StreamExtractor.h"
#include "tests/support/TempFolder.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>

namespace zanfcp::cli {
namespace {

using test::readFile;
using test::TempFolder;

struct Unit {
    std::int64_t stored, pts, dts, duration;
    std::string bytes;
    std::uint32_t flags = 0;
};

std::string extract(const ExtractionPlan& plan, ExtractedRange range, const std::vector<Unit>& units,
                    StreamExtractor::Damage* damage = nullptr)
{
    const TempFolder folder;
    auto output = EssenceOutput::open(folder.file("out"));
    if (!output) return output.error().text();
    StreamExtractor extractor{*std::move(output), plan, range};
    for (const Unit& unit : units) {
        mxf_sample sample{};
        sample.edit_unit = unit.stored;
        sample.pts = unit.pts;
        sample.dts = unit.dts;
        sample.duration = unit.duration;
        sample.flags = unit.flags;
        sample.position = unit.stored * 100;
        sample.size = static_cast<std::uint32_t>(unit.bytes.size());
        sample.data = reinterpret_cast<const std::uint8_t*>(unit.bytes.data());
        EXPECT_EQ(extractor.TakeSample(sample), 0);
    }
    EXPECT_TRUE(extractor.finish());
    if (damage != nullptr) *damage = extractor.damage();
    return readFile(folder.file("out"));
}

TEST(StreamExtractor, PicturesOfARangeBringThoseTheyAreDecodedFrom)
{
    // I0 P3 B1 B2 P6 B4 B5, stored in this order.
    const std::vector<Unit> units = {{0, 0, -1, 1, "0"}, {1, 3, 0, 1, "3"}, {2, 1, 1, 1, "1"}, {3, 2, 2, 1, "2"},
                                     {4, 6, 3, 1, "6"},  {5, 4, 4, 1, "4"}, {6, 5, 5, 1, "5"}};
    struct Case {
        std::int64_t from, to;
        const char* run;
        const char* exact;
    };
    for (const Case& c : {Case{1, 3, "0312", "12"}, Case{0, 4, "0312", "0312"}, Case{4, 5, "031264", "4"},
                          Case{0, 1, "0", "0"}, Case{5, 7, "0312645", "65"}}) {
        EXPECT_EQ(extract({}, {.from = c.from, .to = c.to}, units), c.run);
        EXPECT_EQ(extract({}, {.from = c.from, .to = c.to, .isExact = true}, units), c.exact);
    }
}

TEST(StreamExtractor, SeveralEditUnitsOfSoundAreCutToTheRange)
{
    const std::vector<Unit> units = {{0, 0, 0, 4, "aabbccdd"}, {4, 4, 4, 4, "eeffgghh"}, {8, 8, 8, 2, "iijj"}};
    EXPECT_EQ(extract({}, {.from = 1, .to = 3}, units), "bbcc");
    EXPECT_EQ(extract({}, {.from = 3, .to = 5}, units), "ddee");
    EXPECT_EQ(extract({}, {.from = 5}, units), "ffgghhiijj");
    // In front of the first one that is played, and before all time.
    constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(extract({}, {}, {{0, -2, -2, 2, "aabb"}, {2, 0, 0, 2, "ccdd"}}), "aabbccdd");
    EXPECT_EQ(extract({}, {.from = 5}, {{0, kLeast, kLeast, 2, "aabb"}}), "");
}

TEST(StreamExtractor, WavSamplesKeepTheirOrderAndTheirChannels)
{
    const WavFormat stereo{.channels = 2, .sampleRate = 48000, .bits = 16, .bytesPerSample = 2};
    // The second sample lost its end: what is left of its last pair would swap left and right.
    const std::vector<Unit> units = {{0, 0, 0, 1, "12345678"}, {1, 1, 1, 1, "abcdef"}, {2, 2, 2, 1, "ABCD"}};
    EXPECT_EQ(extract({.wav = stereo}, {}, units).substr(80), "12345678abcdABCD");
    EXPECT_EQ(extract({.wav = stereo, .swapsBytes = true}, {}, units).substr(80), "21436587badcBADC");
    mxf_stream_format format{};
    format.essence_kind = 32;
    std::ranges::copy(std::to_array<std::uint8_t>({0x04, 0x02, 0x02, 0x01}), format.coding + 8);
    EXPECT_FALSE(isBigEndianSound(format));
    format.coding[12] = 0x7E;
    EXPECT_TRUE(isBigEndianSound(format));
    EXPECT_FALSE(wavFormatOf(format)); // no channels
    format.channels = 2;
    format.block_align = 6;
    format.sample_rate = 48000;
    format.bits_per_sample = 20;
    ASSERT_TRUE(wavFormatOf(format));
    EXPECT_EQ(wavFormatOf(format)->bytesPerSample, 3);
    EXPECT_EQ(wavFormatOf(format)->bits, 20);
    for (const std::uint32_t block : {0U, 5U, 0xFFFFFFFFU}) {
        format.block_align = block;
        EXPECT_FALSE(wavFormatOf(format)) << block;
    }
}

TEST(StreamExtractor, DamageIsCountedAndItsFirstPlaceKept)
{
    StreamExtractor::Damage damage;
    (void)extract({}, {},
                  {{0, 0, 0, 1, "a"}, {1, 1, 1, 1, "b", mxf_sample_damaged}, {4, 4, 4, 1, "c"}, {5, 5, 5, 1, "d"}},
                  &damage);
    EXPECT_EQ(damage.damaged, 1U);
    EXPECT_EQ(damage.lost, 2);
    EXPECT_EQ(damage.firstPosition, 100);
    EXPECT_EQ(damage.firstUnit, 1);
}

} // namespace
} // namespace zanfcp::cli
