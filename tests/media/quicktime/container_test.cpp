#include "tests/media/quicktime/ReadAsset.h"
#include "tests/support/MovieBuilder.h"
#include "tests/support/TempFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace zanfcp;
using namespace zanfcp::test;
using quicktime::Asset;

namespace {

/// A picture and a timecode track, four seconds.
Movie smallMovie(const Bytes& atTheEnd = {})
{
    return {.tracks = {MovieTrack{}, timecodeTrack()}, .atTheEnd = atTheEnd, .frames = 90000};
}

Bytes head()
{
    return movieFileStart(90000);
}

void expectSmallMovie(const Asset& asset)
{
    EXPECT_EQ(asset.duration().seconds(), 4.0);
    ASSERT_EQ(asset.tracks().size(), 2U);
    EXPECT_EQ(asset.tracks()[0].video->width, 1920);
    EXPECT_EQ(asset.tracks()[0].nominalFrameRate, 25.0F);
    EXPECT_EQ(asset.tracks()[1].timecode->frameQuanta, 25);
    std::array<std::byte, 4> sample{};
    ASSERT_TRUE(asset.readFirstSample(asset.tracks()[1], sample));
    EXPECT_EQ(ByteReader{sample}.read<std::uint32_t>(), 90000U);
}

TEST(Container, IsReadInEveryLegalLayout)
{
    const Bytes filler = Bytes{}.zeros(100);
    const Bytes moov = movieAtom(smallMovie());
    const Bytes moovBody{moov.str().substr(8)};
    Movie shifted = smallMovie(); // the header before the media data moves the sample
    shifted.tracks[1].offsets = {20 + moov.size() + 8};
    const Bytes ftyp = head().first(20);
    const Bytes mediaData = Bytes{}.u32(90000).text("more");

    struct Case {
        const char* name;
        Bytes file;
    };
    const Case cases[] = {
        {"header behind the media data", movieFile(smallMovie())},
        {"header before the media data", Bytes{ftyp}.add(movieAtom(shifted)).add(atom("mdat", mediaData))},
        {"media data of size 0 to the end", Bytes{ftyp}.add(movieAtom(shifted)).add(lyingAtom("mdat", 0, mediaData))},
        {"header of size 0 to the end", head().add(lyingAtom("moov", 0, moovBody))},
        {"no file type", head().with(4, Bytes{}.text("free")).add(moov)},
        {"fillers around the header",
         head().add(atom("free", filler)).add(atom("skip", {})).add(atom("wide", {})).add(moov).add(atom("free", {}))},
        {"64-bit sizes", head().add(longAtom("free", filler)).add(longAtom("moov", moovBody))},
        {"junk behind the header", head().add(moov).text("junk")},
        {"unknown boxes behind the tracks", movieFile(smallMovie(atom("what", filler)))},
        {"filler inside the header", head().add(atom("moov", atom("free", filler).add(moovBody)))},
        {"user data with a 32-bit zero at its end", movieFile(smallMovie(atom("udta", Bytes{}.u32(0))))},
        {"a 32-bit zero at the end of the header", movieFile(smallMovie(Bytes{}.u32(0)))},
        {"zeros at the end of the header", movieFile(smallMovie(filler))},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto asset = readAsset(c.file);
        ASSERT_TRUE(asset) << asset.error().text();
        expectSmallMovie(*asset);
    }
}

TEST(Container, BrokenOptionalBoxCostsOnlyItself)
{
    const Bytes filler = Bytes{}.zeros(40);
    struct Case {
        const char* name;
        Bytes atTheEnd;
    };
    const Case cases[] = {
        {"user data longer than the header", lyingAtom("udta", 5000, filler)},
        {"user data shorter than its own header", lyingAtom("udta", 3, filler)},
        {"broken boxes inside user data", atom("udta", lyingAtom("\xA9swr", 5000, filler))},
        {"an unknown box longer than the header", lyingAtom("what", 0xFFFFFFFF, filler)},
        {"an unknown box with an impossible 64-bit size", Bytes{}.u32(1).text("what").u64(~0ULL)},
        {"an unknown box that ends inside its 64-bit size", Bytes{}.u32(1).text("what").u32(0)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Bytes file = movieFile(smallMovie(c.atTheEnd));
        const auto asset = readAsset(file);
        ASSERT_TRUE(asset) << asset.error().text();
        expectSmallMovie(*asset);
    }
}

TEST(Container, EachFaultIsReportedWithItsPlace)
{
    const Bytes valid = movieFile(smallMovie());
    {
        const auto asset = readAsset(valid);
        ASSERT_TRUE(asset); // so each edit below is the only fault
    }
    const auto at = [&valid](std::string_view type) { return valid.str().find(type); };
    const Bytes start = head();
    const auto header = [](const Bytes& body) { return Bytes{head()}.add(atom("moov", body)); };
    const Bytes mvhd = movieHeader(600, 2400);

    struct Case {
        const char* name;
        Bytes file;
        Fault fault;
        const char* path;
    };
    const Case cases[] = {
        {"empty", {}, Fault::notFound, ""},
        {"no header", start, Fault::notFound, ""},
        {"plain text", Bytes{}.text("#!/bin/sh\necho hello\n"), Fault::truncated, "in/s"},
        {"zeros", Bytes{}.zeros(1000), Fault::malformed, ""},
        {"cut inside the media data", start.first(30), Fault::truncated, "mdat"},
        {"cut inside the header", valid.first(valid.size() - 1), Fault::truncated, "moov"},
        {"no movie header", header(trackAtom({}, 1)), Fault::malformed, "moov"},
        {"movie header shorter than its own header", valid.withU32(at("mvhd") - 4, 7), Fault::malformed, "moov/mvhd"},
        {"movie header cut short", header(atom("mvhd", Bytes{}.zeros(8))), Fault::truncated, "moov/mvhd"},
        {"movie header of an unknown version", valid.withU8(at("mvhd") + 4, 2), Fault::unsupported, "moov/mvhd"},
        {"movie without a timescale", valid.withU32(at("mvhd") + 16, 0), Fault::malformed, "moov/mvhd"},
        {"compressed header", header(atom("cmov", Bytes{}.zeros(20))), Fault::unsupported, "moov"},
        {"reference movie", header(atom("rmra", Bytes{}.zeros(20))), Fault::unsupported, "moov"},
        {"bytes that are no box behind the tracks", movieFile(smallMovie(lyingAtom("\1\2\3\4", 5000, Bytes{}))),
         Fault::malformed, "moov/????"},
        {"track longer than the header", valid.withU32(at("trak") - 4, 50000), Fault::malformed, "moov/trak"},
        {"track shorter than its own header", valid.withU32(at("trak") - 4, 7), Fault::malformed, "moov/trak"},
        {"track that ends before its media does", valid.withU32(at("trak") - 4, 200), Fault::malformed,
         "moov/trak/mdia"},
        {"track without media", header(Bytes{mvhd}.add(atom("trak", {}))), Fault::malformed, "moov/trak"},
        {"media without a header", valid.with(at("mdhd"), Bytes{}.text("free")), Fault::malformed, "moov/trak/mdia"},
        {"media without a handler", valid.with(at("hdlr"), Bytes{}.text("free")), Fault::malformed, "moov/trak/mdia"},
        {"media without a timescale", valid.withU32(at("mdhd") + 16, 0), Fault::malformed, "moov/trak/mdia/mdhd"},
        {"times that are not there", valid.withU32(at("stts") + 8, 0xFFFFFFFF), Fault::malformed,
         "moov/trak/mdia/minf/stbl/stts"},
        {"description longer than its table", valid.withU32(at("avc1") - 4, 5000), Fault::malformed,
         "moov/trak/mdia/minf/stbl/stsd"},
        {"description shorter than a picture's", valid.withU32(at("avc1") - 4, 50), Fault::truncated,
         "moov/trak/mdia/minf/stbl/stsd/avc1"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto asset = readAsset(c.file);
        ASSERT_FALSE(asset);
        EXPECT_EQ(toString(asset.error().fault), toString(c.fault)) << asset.error().text();
        EXPECT_EQ(asset.error().path, c.path) << asset.error().text();
        EXPECT_LE(asset.error().offset, c.file.size());
    }
}

TEST(Container, DurationIsThatOfTheMovieHeader)
{
    MovieTrack unfinished;
    unfinished.times = {};
    const auto withHeader = [](const Bytes& header, const MovieTrack& track = {}) {
        return Bytes{head()}.add(atom("moov", Bytes{header}.add(trackAtom(track, 1)).add(trackAtom(soundTrack(), 2))));
    };
    const Bytes longHeader =
        atom("mvhd", Bytes{}.u32(1U << 24).u64(0).u64(0).u32(90000).u64(90000ULL * 3600 * 100).zeros(80));
    const Bytes unknownLong = atom("mvhd", Bytes{}.u32(1U << 24).u64(0).u64(0).u32(90000).u64(~0ULL).zeros(80));
    MovieTrack longer; // 5 s
    longer.times = {{125, 1000}};
    MovieTrack longTable; // 10 s, told by its 2000 entries alone
    longTable.duration = 0;
    longTable.times.assign(2000, {1, 125});

    struct Case {
        const char* name;
        Bytes file;
        quicktime::MediaTime duration;
    };
    const Case cases[] = {
        {"as stated, whatever the tracks say", withHeader(movieHeader(1000, 7007)), {7007, 1000}},
        {"64 bits", withHeader(longHeader), {90000ULL * 3600 * 100, 90000}},
        {"not known: the longest track", withHeader(movieHeader(600, 0xFFFFFFFF), longer), {125000, 25000}},
        {"64 bits, not known", withHeader(unknownLong, longer), {125000, 25000}},
        {"not known, nor in the media header", withHeader(movieHeader(600, 0xFFFFFFFF), longTable), {250000, 25000}},
        {"not known, no times: the media header",
         withHeader(movieHeader(600, 0xFFFFFFFF), unfinished),
         {100000, 25000}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto asset = readAsset(c.file);
        ASSERT_TRUE(asset) << asset.error().text();
        EXPECT_EQ(asset->duration(), c.duration) << asset->duration().value << "/" << asset->duration().timescale;
    }
}

TEST(Container, NominalRateComesFromTheTimes)
{
    using Times = std::vector<std::pair<std::uint32_t, std::uint32_t>>;
    Times varying(600, {1, 1000}); // more entries than are added up
    for (std::size_t i = 0; i < varying.size(); i += 2)
        varying[i].second = 1500;
    struct Case {
        const char* name;
        std::uint32_t timescale;
        std::uint32_t mediaDuration;
        Times times;
        float rate;
    };
    const Case cases[] = {
        {"constant", 25, 100, {{100, 1}}, 25.0F},
        {"23.976", 24000, 24024, {{24, 1001}}, 24000.0F / 1001.0F},
        {"constant, in several entries", 30000, 10010, {{4, 1001}, {6, 1001}}, 30000.0F / 1001.0F},
        {"last sample stretched", 25000, 100500, {{99, 1000}, {1, 1500}}, 25.0F},
        {"first sample stretched", 12800, 13074, {{1, 786}, {24, 512}}, 25.0F},
        {"two samples stretched: the average", 25000, 101000, {{2, 1500}, {98, 1000}}, 100.0F * 25000 / 101000},
        {"two lengths: the average", 600, 600, {{10, 20}, {10, 40}}, 20.0F},
        {"three lengths: the average", 600, 600, {{10, 20}, {1, 40}, {12, 30}}, 600.0F * 23 / 600},
        {"two samples of two lengths", 600, 60, {{1, 20}, {1, 40}}, 20.0F},
        {"long table: the media header", 25000, 750000, varying, 100.0F * 25000 / 750000},
        {"long table, no media duration: its own sum", 25000, 0, varying, 600.0F * 25000 / 750000},
        {"long table, media duration not known", 25000, 0xFFFFFFFF, varying, 600.0F * 25000 / 750000},
        {"no samples", 25000, 100000, {}, 0.0F},
        {"samples that last no time", 25000, 100000, {{100, 0}}, 0.0F},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        MovieTrack track;
        track.timescale = c.timescale;
        track.duration = c.mediaDuration;
        track.times = c.times;
        const Bytes file = movieFile({.tracks = {track}});
        const auto asset = readAsset(file);
        ASSERT_TRUE(asset) << asset.error().text();
        EXPECT_EQ(asset->tracks()[0].nominalFrameRate, c.rate);
    }
}

TEST(Container, TracksKeepTheirOrderAndTheirTypes)
{
    MovieTrack dark;
    dark.mediaType = "sdsm"; // nobody knows it
    dark.descriptions = {atom("????", {})};
    const Bytes file = movieFile({.tracks = {timecodeTrack(), dark, soundTrack(), MovieTrack{}, soundTrack()}});
    const auto asset = readAsset(file);
    ASSERT_TRUE(asset) << asset.error().text();
    std::string types;
    for (const quicktime::Track& track : asset->tracks())
        types += track.mediaType.text() + " ";
    EXPECT_EQ(types, "tmcd sdsm soun vide soun ");
    EXPECT_EQ(asset->countTracksWithMediaType(quicktime::kSoundMedia), 2U);
    EXPECT_EQ(asset->firstTrackWithMediaType(quicktime::kVideoMedia), &asset->tracks()[3]);
    EXPECT_EQ(asset->firstTrackWithMediaType(FourCC{"text"}), nullptr);
}

/// A file of which only the ends are written.
class SparseFile {
public:
    explicit SparseFile(const std::string& path) : descriptor_{::open(path.c_str(), O_CREAT | O_RDWR, 0600)} {}
    void write(std::uint64_t offset, const Bytes& bytes)
    {
        ASSERT_EQ(::pwrite(descriptor_.value(), bytes.str().data(), bytes.size(), static_cast<off_t>(offset)),
                  static_cast<ssize_t>(bytes.size()));
    }

private:
    FileDescriptor descriptor_;
};

TEST(Container, MovieBeyondFourGigabytesIsReadFromBothEnds)
{
    constexpr std::uint64_t kDataSize = 5ULL << 30;
    constexpr std::uint64_t kSampleAt = 20 + 16 + kDataSize - 4;
    Movie movie = smallMovie();
    movie.tracks[1].offsets = {kSampleAt};
    movie.tracks[1].hasLongOffsets = true;

    const TempFolder folder;
    const std::string path = folder.file("big.mov");
    SparseFile file{path};
    file.write(0, head().first(20).u32(1).text("mdat").u64(16 + kDataSize));
    file.write(kSampleAt, Bytes{}.u32(90000));
    file.write(kSampleAt + 4, movieAtom(movie));
    const auto asset = Asset::open(path);
    ASSERT_TRUE(asset) << asset.error().text();
    expectSmallMovie(*asset);
    EXPECT_LE(asset->counts().bytes, 8U << 10);
}

TEST(Container, LongTablesAreSteppedOver)
{
    constexpr std::uint32_t kSamples = 1'000'000;
    MovieTrack track;
    track.times = {{kSamples, 1000}};
    track.sizes.assign(kSamples, 40);
    track.offsets.assign(kSamples, 28);
    Movie movie = smallMovie();
    movie.tracks.front() = track;
    const Bytes file = movieFile(movie);
    ASSERT_GT(file.size(), 8'000'000U);
    const auto asset = readAsset(file);
    ASSERT_TRUE(asset) << asset.error().text();
    expectSmallMovie(*asset);
    EXPECT_LE(asset->counts().bytes, 8U << 10);
}

TEST(Container, OnlyRegularFilesAreOpened)
{
    const TempFolder folder;
    ASSERT_EQ(::mkfifo(folder.file("pipe.mov").c_str(), 0600), 0);
    struct Case {
        std::string path;
        Fault fault;
    };
    const Case cases[] = {
        {folder.file("missing.mov"), Fault::notFound},
        {folder.path().string(), Fault::unsupported},
        {folder.file("pipe.mov"), Fault::unsupported}, // must not wait for a writer
        {folder.write("empty.mov", ""), Fault::notFound},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path);
        const auto asset = Asset::open(c.path);
        ASSERT_FALSE(asset);
        EXPECT_EQ(asset.error().fault, c.fault) << asset.error().text();
    }
}

} // namespace
