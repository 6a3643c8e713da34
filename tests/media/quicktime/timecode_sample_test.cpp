#include "tests/media/quicktime/ReadAsset.h"
#include "tests/support/MovieBuilder.h"

#include <gtest/gtest.h>

using namespace zanfcp;
using namespace zanfcp::test;

namespace {

/// Three samples of four bytes, a second each, in two chunks: 1 and 2 at offset 28, 3 at offset 100.
MovieTrack threeSamples(const Bytes& edits = {})
{
    MovieTrack track = timecodeTrack();
    track.times = {{3, 25000}};
    track.sizes = {4, 4, 4};
    track.chunks = {{1, 2, 1}, {2, 1, 1}};
    track.offsets = {28, 100};
    track.editList = edits;
    return track;
}

TEST(TimecodeSample, LiesWhereTheTablesSay)
{
    MovieTrack oneSize = threeSamples(editList({{2400, 25000}}));
    oneSize.commonSize = 4;
    MovieTrack otherSizes = threeSamples(editList({{2400, 25000}}));
    otherSizes.sizes = {12, 4, 4};
    const auto compact = [&otherSizes](std::uint32_t bits, std::int32_t mediaTime) {
        MovieTrack track = otherSizes;
        track.sizeBits = bits;
        track.editList = editList({{2400, mediaTime}});
        return track;
    };
    MovieTrack unevenTimes = threeSamples(editList({{2400, 10000}}));
    unevenTimes.times = {{1, 10000}, {1, 19999}, {1, 50000}};
    MovieTrack laterTimes = threeSamples(editList({{2400, 30000}}));
    laterTimes.times = unevenTimes.times;

    struct Case {
        const char* name;
        MovieTrack track;
        std::uint64_t offset;
    };
    const Case cases[] = {
        {"one sample", timecodeTrack(), 28},
        {"first of several", threeSamples(), 28},
        {"after a gap at the start", threeSamples(editList({{600, -1}, {2400, 0}})), 28},
        {"after two gaps", threeSamples(editList({{600, -1}, {600, -1}, {2400, 0}})), 28},
        {"trimmed, but not beyond the first", threeSamples(editList({{2400, 24999}})), 28},
        {"trimmed to the second, in the same chunk", threeSamples(editList({{2400, 25000}})), 32},
        {"trimmed to the third, in the next chunk", threeSamples(editList({{2400, 50001}})), 100},
        {"gap, then trimmed", threeSamples(editList({{600, -1}, {2400, 50000}})), 100},
        {"nothing but a gap", threeSamples(editList({{600, -1}})), 28},
        {"edit list without entries", threeSamples(editList({})), 28},
        {"edit list that counts more than it has", threeSamples(atom("elst", Bytes{}.u32(0).u32(9))), 28},
        {"edit list longer than its box", threeSamples(lyingAtom("elst", 5000, Bytes{}.zeros(8))), 28},
        {"samples of one size", oneSize, 32},
        {"samples of several sizes", otherSizes, 40},
        {"sizes of 16 bits", compact(16, 25000), 40},
        {"sizes of 8 bits", compact(8, 25000), 40},
        {"sizes of 4 bits, in the lower half", compact(4, 25000), 40},
        {"sizes of 4 bits, in the upper half", compact(4, 50000), 100},
        {"samples of several lengths, the second", unevenTimes, 32},
        {"samples of several lengths, the third", laterTimes, 100},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Bytes file = movieFile({.tracks = {c.track}});
        const auto asset = readAsset(file);
        ASSERT_TRUE(asset) << asset.error().text();
        const auto& first = asset->tracks()[0].firstSample;
        ASSERT_TRUE(first && first->location);
        EXPECT_EQ(first->location->offset, c.offset);
        EXPECT_EQ(first->location->size, 4U);
        EXPECT_EQ(first->format, FourCC{"tmcd"});
    }
}

TEST(TimecodeSample, HasTheFormatOfItsOwnDescription)
{
    MovieTrack track = timecodeTrack();
    track.descriptions = {timecodeEntry({}), timecodeEntry({.format = "tc64"})};
    track.chunks = {{1, 1, 2}};
    const Bytes file = movieFile({.tracks = {track}});
    const auto asset = readAsset(file);
    ASSERT_TRUE(asset) << asset.error().text();
    EXPECT_EQ(asset->tracks()[0].timecode->format, FourCC{"tmcd"});
    EXPECT_EQ(asset->tracks()[0].firstSample->format, FourCC{"tc64"});
}

TEST(TimecodeSample, MissingDataIsAFaultOfTheSampleAlone)
{
    const auto edited = [](auto edit) {
        MovieTrack track = timecodeTrack();
        edit(track);
        return track;
    };
    struct Case {
        const char* name;
        MovieTrack track;
        Fault fault;
    };
    const Case cases[] = {
        {"beyond the file", edited([](MovieTrack& t) { t.offsets = {0x7FFFFFFF}; }), Fault::truncated},
        {"shorter than a frame number", edited([](MovieTrack& t) { t.sizes = {3}; }), Fault::truncated},
        {"in another file", edited([](MovieTrack& t) { t.referenceFlags = 0; }), Fault::notFound},
        {"no chunk", edited([](MovieTrack& t) { t.offsets = {}; }), Fault::notFound},
        {"no chunk table entry", edited([](MovieTrack& t) { t.chunks = {}; }), Fault::notFound},
        {"chunk 0", edited([](MovieTrack& t) {
             t.chunks = {{0, 1, 1}};
         }),
         Fault::notFound},
        {"no samples a chunk", edited([](MovieTrack& t) {
             t.chunks = {{1, 0, 1}};
         }),
         Fault::notFound},
        {"chunks in the wrong order", edited([](MovieTrack& t) {
             t.chunks = {{2, 1, 1}, {1, 1, 1}};
         }),
         Fault::notFound},
        {"trimmed away", edited([](MovieTrack& t) {
             t.editList = editList({{1, 100000}});
         }),
         Fault::notFound},
        {"no samples", edited([](MovieTrack& t) { t.sizes = {}; }), Fault::notFound},
        {"sizes of 12 bits", edited([](MovieTrack& t) { t.sizeBits = 12; }), Fault::notFound},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Bytes file = movieFile({.tracks = {c.track}});
        const auto asset = readAsset(file);
        ASSERT_TRUE(asset) << asset.error().text();
        std::array<std::byte, 4> sample{};
        const Status read = asset->readFirstSample(asset->tracks()[0], sample);
        ASSERT_FALSE(read);
        EXPECT_EQ(toString(read.error().fault), toString(c.fault)) << read.error().text();
        EXPECT_EQ(asset->tracks()[0].timecode->frameQuanta, 25);
    }
}

} // namespace
