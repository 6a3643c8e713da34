#include "media/quicktime/limits.h"
#include "tests/media/quicktime/ReadAsset.h"
#include "tests/support/MovieBuilder.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace zanfcp;
using namespace zanfcp::test;
using quicktime::Asset;

namespace {

/// A movie without samples of its own.
Movie emptyMovie(const Bytes& extends)
{
    MovieTrack video;
    MovieTrack timecode = timecodeTrack();
    for (MovieTrack* track : {&video, &timecode}) {
        track->times = {};
        track->sizes = {};
        track->chunks = {};
        track->offsets = {};
        track->duration = 0;
    }
    return {.duration = 0, .tracks = {video, timecode}, .atTheEnd = atom("mvex", extends), .frames = 90000};
}

Bytes trackExtends(std::uint32_t track, std::uint32_t duration, std::uint32_t size)
{
    return atom("trex", Bytes{}.u32(0).u32(track).u32(1).u32(duration).u32(size).u32(0));
}

Bytes announced()
{
    return trackExtends(1, 1000, 40).add(trackExtends(2, 100000, 4));
}

/// A run of samples that say nothing of themselves.
Bytes plainRun(std::uint32_t count, std::uint32_t dataOffset = 0)
{
    return atom("trun", Bytes{}.u32(1).u32(count).u32(dataOffset));
}

Bytes fragment(const Bytes& tracks)
{
    return atom("moof", atom("mfhd", Bytes{}.u32(0).u32(1)).add(tracks)).add(atom("mdat", Bytes{}.zeros(16)));
}

Bytes trackFragment(std::uint32_t track, const Bytes& run)
{
    return atom("traf", atom("tfhd", Bytes{}.u32(0x020000).u32(track)).add(run));
}

TEST(Fragments, AddUpWhereTheMovieSaysNothing)
{
    const Bytes perSample =
        atom("trun", Bytes{}.u32(0x0301).u32(3).u32(0).u32(1000).u32(9).u32(1000).u32(9).u32(1000).u32(9));
    const Bytes ownDefault = atom("traf", atom("tfhd", Bytes{}.u32(0x020008).u32(1).u32(500)).add(plainRun(10)));
    const Bytes announcedLength = atom("mehd", Bytes{}.u32(0).u32(6000)).add(announced());
    const Bytes announcedLong = atom("mehd", Bytes{}.u32(1U << 24).u64(6000)).add(announced());
    const Bytes twoSeconds = fragment(trackFragment(1, plainRun(50)));
    Movie hybrid = emptyMovie(announced());
    hybrid.tracks[0] = MovieTrack{}; // four seconds in the movie itself

    struct Case {
        const char* name;
        Movie movie;
        Bytes fragments;
        double seconds;
        float rate;
    };
    const Case cases[] = {
        {"defaults of the movie", emptyMovie(announced()), Bytes{twoSeconds}.add(twoSeconds), 4, 25},
        {"defaults of the fragment", emptyMovie(announced()), fragment(ownDefault), 0.2, 50},
        {"samples of their own", emptyMovie(announced()), fragment(trackFragment(1, perSample)), 0.12, 25},
        {"two runs", emptyMovie(announced()), fragment(trackFragment(1, plainRun(5).add(plainRun(6)))), 0.44, 25},
        {"announced length", emptyMovie(announcedLength), twoSeconds, 10, 25},
        {"announced length of 64 bits", emptyMovie(announcedLong), twoSeconds, 10, 25},
        {"behind samples in the movie", hybrid, twoSeconds, 6, 25},
        {"the longest track", emptyMovie(announced()),
         fragment(trackFragment(1, plainRun(50)).add(trackFragment(2, plainRun(1)))), 4, 25},
        {"of a track nobody announced", emptyMovie(announced()),
         Bytes{twoSeconds}.add(fragment(trackFragment(9, plainRun(50)))), 2, 25},
        {"none", emptyMovie(announced()), {}, 0, 0},
        {"more samples than any file holds", emptyMovie(announced()), fragment(trackFragment(1, plainRun(0xFFFFFFFF))),
         4294967295.0 / 25, 25},
        {"a broken last one", emptyMovie(announced()),
         Bytes{twoSeconds}.add(fragment(trackFragment(1, atom("trun", Bytes{}.u32(0x0300).u32(50))))), 2, 25},
        {"cut off in the last one", emptyMovie(announced()), Bytes{twoSeconds}.add(twoSeconds.first(40)), 2, 25},
        {"without a header", emptyMovie(announced()), Bytes{twoSeconds}.add(fragment(atom("traf", plainRun(5)))), 2,
         25},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Bytes file = movieFile(c.movie).add(c.fragments);
        const auto asset = readAsset(file);
        ASSERT_TRUE(asset) << asset.error().text();
        EXPECT_EQ(asset->duration().seconds(), c.seconds);
        EXPECT_EQ(asset->tracks()[0].nominalFrameRate, c.rate);
    }
}

TEST(Fragments, RunsOfMoreSamplesThanADayHasAreNotRead)
{
    constexpr std::uint32_t kCount = quicktime::kMaxRunEntries + 1;
    constexpr std::uint32_t kRunSize = 16 + 4 * kCount; // a length for each sample
    const Bytes header = atom("tfhd", Bytes{}.u32(0x020000).u32(1));
    const auto trackSize = static_cast<std::uint32_t>(8 + header.size() + kRunSize);
    const Bytes hole = Bytes{}.u32(8 + trackSize).text("moof").u32(trackSize).text("traf").add(header);
    const Bytes movie = movieFile(emptyMovie(announced())).add(fragment(trackFragment(1, plainRun(50))));

    const TempFolder folder;
    const Bytes start = Bytes{movie}.add(hole).u32(kRunSize).text("trun").u32(0x0100).u32(kCount);
    const std::string path = folder.write("endless.mov", start.str());
    std::filesystem::resize_file(path, movie.size() + 8 + trackSize);
    const auto asset = Asset::open(path);
    ASSERT_TRUE(asset) << asset.error().text();
    EXPECT_EQ(asset->duration().seconds(), 2); // of the fragment before
    EXPECT_LE(asset->counts().bytes, 8U << 10);
}

TEST(Fragments, HoldTheFirstTimecodeSample)
{
    const Bytes base = movieFile(emptyMovie(announced()));
    const auto at = [&base](std::uint64_t offset) { return static_cast<std::uint32_t>(base.size() + offset); };
    const Bytes absolute = atom("traf", atom("tfhd", Bytes{}.u32(1).u32(2).u64(28)).add(plainRun(1)));
    const Bytes backwards = atom("traf", atom("tfhd", Bytes{}.u32(0x020000).u32(2)).add(plainRun(1, 28U - at(0))));
    const Bytes implicit = atom("traf", atom("tfhd", Bytes{}.u32(0).u32(2)).add(plainRun(1, 28U - at(0))));
    const Bytes ownSize = atom(
        "traf",
        atom("tfhd", Bytes{}.u32(1).u32(2).u64(28)).add(atom("trun", Bytes{}.u32(0x0300).u32(1).u32(100000).u32(8))));
    const Bytes later = fragment(trackFragment(2, plainRun(1, 5000)));

    struct Case {
        const char* name;
        Bytes fragments;
        std::uint64_t size;
    };
    const Case cases[] = {
        {"counted from the start of the file", fragment(absolute), 4},
        {"counted from the fragment", fragment(backwards), 4},
        {"counted from nothing named: the fragment", fragment(implicit), 4},
        {"of its own size", fragment(ownSize), 8},
        {"the first of two", fragment(absolute).add(later), 4},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Bytes file = Bytes{base}.add(c.fragments);
        const auto asset = readAsset(file);
        ASSERT_TRUE(asset) << asset.error().text();
        const quicktime::Track& track = asset->tracks()[1];
        ASSERT_TRUE(track.firstSample && track.firstSample->location);
        EXPECT_EQ(track.firstSample->format, FourCC{"tmcd"});
        EXPECT_EQ(track.firstSample->location->size, c.size);
        std::array<std::byte, 4> sample{};
        ASSERT_TRUE(asset->readFirstSample(track, sample));
        EXPECT_EQ(ByteReader{sample}.read<std::uint32_t>(), 90000U);
    }
}

TEST(Fragments, BrokenAnnouncementRefusesTheFile)
{
    const Bytes file = movieFile(emptyMovie(atom("trex", Bytes{}.u32(0).u32(1))));
    const auto asset = readAsset(file);
    ASSERT_FALSE(asset);
    EXPECT_EQ(asset.error().fault, Fault::truncated);
    EXPECT_EQ(asset.error().path, "moov/mvex/trex");
}

} // namespace
