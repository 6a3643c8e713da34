#include "tests/media/quicktime/CountedAllocations.h"
#include "tests/media/quicktime/ReadAsset.h"
#include "tests/support/MovieBuilder.h"

#include <gtest/gtest.h>

using namespace zanfcp;
using namespace zanfcp::test;

namespace {

/// Whatever comes of it, it must come soon and at little cost. Returns whether the file was read.
bool readWithinBounds(const Bytes& file)
{
    const std::uint64_t before = allocatedBytes();
    bool isRead = false;
    {
        const auto asset = readAsset(file);
        isRead = asset.has_value();
        if (asset) {
            EXPECT_LE(asset->tracks().size(), file.size() / 8);
            std::array<std::byte, 4> sample{};
            for (const quicktime::Track& track : asset->tracks())
                (void)asset->readFirstSample(track, sample).has_value();
        } else {
            EXPECT_FALSE(asset.error().what.empty());
            EXPECT_LE(asset.error().offset, file.size());
        }
    }
    EXPECT_LE(allocatedBytes() - before, 32768 + 16 * file.size());
    return isRead;
}

/// All that the reader knows in less than three kilobytes: five tracks, and fragments behind them.
Bytes richMovie()
{
    MovieTrack video;
    video.descriptions = {videoEntry({.extensions = cleanAperture(1916, 1078)}), videoEntry({})};
    video.times = {{2, 1000}, {1, 1200}};
    video.sizes = {40, 40, 40};
    video.chunks = {{1, 3, 1}};
    MovieTrack timecode = timecodeTrack({.extensions = sourceReference("A001")});
    timecode.editList = editList({{600, -1}, {1800, 25000}});
    timecode.times = {{2, 20000}, {1, 60000}};
    timecode.sizes = {4, 4, 4};
    timecode.chunks = {{1, 2, 1}, {2, 1, 1}};
    timecode.offsets = {28, 28};
    const Bytes pcm = soundEntry({.format = "ipcm", .extensions = atom("pcmC", Bytes{}.u32(0).u8(1).u8(24))});
    const Bytes extends = atom("mvex", atom("trex", Bytes{}.u32(0).u32(1).u32(1).u32(1000).u32(40).u32(0)));
    const Bytes run = atom("trun", Bytes{}.u32(0x0301).u32(2).u32(0).u32(1000).u32(9).u32(1000).u32(9));
    const Bytes traf =
        atom("traf", atom("tfhd", Bytes{}.u32(0x02003B).u32(1).u64(0).u32(1).u32(1).u32(1).u32(0)).add(run));
    return movieFile({.tracks = {video, timecode, soundTrack(pcm), soundTrack(soundEntry2("lpcm", 48000, 24)),
                                 soundTrack(soundEntry({.format = "in24", .version = 1}))},
                      .atTheEnd = extends,
                      .frames = 7})
        .add(atom("moof", atom("mfhd", Bytes{}.u32(0).u32(1)).add(traf)));
}

TEST(HostileMovie, EveryPrefixIsSurvived)
{
    const Bytes valid = richMovie();
    ASSERT_TRUE(readWithinBounds(valid));
    for (std::size_t size = 0; size < valid.size(); ++size)
        readWithinBounds(valid.first(size));
}

TEST(HostileMovie, EveryChangedByteIsSurvived)
{
    const Bytes valid = richMovie();
    for (std::size_t at = 0; at < valid.size(); ++at) {
        const auto byte = static_cast<std::uint8_t>(valid.str()[at]);
        for (const int value : {0x00, 0xFF, byte + 1, byte - 1})
            readWithinBounds(valid.withU8(at, static_cast<std::uint8_t>(value)));
    }
}

TEST(HostileMovie, EveryLyingNumberIsSurvived)
{
    const Bytes valid = richMovie();
    for (std::size_t at = 0; at + 4 <= valid.size(); ++at)
        for (const std::uint32_t value : {0U, 1U, 7U, 8U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
            readWithinBounds(valid.withU32(at, value));
}

TEST(HostileMovie, NestingCostsNothing)
{
    constexpr std::uint32_t kDepth = 200'000;
    Bytes file;
    for (std::uint32_t depth = 0; depth < kDepth; ++depth)
        file.u32((kDepth - depth) * 8).text(depth == 0 ? "moov" : "trak");
    EXPECT_FALSE(readWithinBounds(file));
}

TEST(HostileMovie, AMillionTracksEndAtTheLimit)
{
    constexpr std::size_t kTracks = 1'000'000;
    const Bytes mediaHeader = atom("mdhd", Bytes{}.u32(0).u32(0).u32(0).u32(600).u32(0).u32(0));
    const Bytes media = atom("mdia", Bytes{mediaHeader}.add(atom("hdlr", Bytes{}.u32(0).text("mhlrvide"))));
    const Bytes track = atom("trak", media);
    std::string body = movieHeader(600, 0).str();
    body.reserve(body.size() + kTracks * track.size());
    for (std::size_t i = 0; i < kTracks; ++i)
        body += track.str();
    const Bytes file = atom("moov", Bytes{std::move(body)});
    EXPECT_FALSE(readWithinBounds(file));
    const auto asset = readAsset(file);
    ASSERT_FALSE(asset);
    EXPECT_EQ(asset.error().fault, Fault::limit);
}

TEST(HostileMovie, BoxesWithoutEndAreNotWalkedForEver)
{
    constexpr std::size_t kBoxes = 3'000'000;
    std::string boxes;
    for (std::size_t i = 0; i < kBoxes; ++i)
        boxes += atom("free", {}).str();
    for (const Bytes& file : {Bytes{boxes}, atom("moov", Bytes{movieHeader(600, 0)}.text(boxes))}) {
        const auto asset = readAsset(file);
        ASSERT_FALSE(asset);
        EXPECT_EQ(asset.error().fault, Fault::limit);
    }
}

} // namespace
